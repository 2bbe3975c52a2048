// SPDX-License-Identifier: MIT
// How a program uses the types. Each line with @ts-expect-error is a mistake that the compiler has to find.
import type {
  Answer, Code, Command, Event, EventName, Events, Reply, ReportReply, Request,
} from "../../protocol/types/hg_protocol";

declare function call<C extends Command>(command: C, params: Request<C>): Promise<Answer<C>>;

export async function use(): Promise<void> {
  const answer = await call("GET_SN_INFO", {});
  if ("error" in answer) {
    const code: Code = answer.code;
    console(code, answer.rule ?? answer.error);
    // @ts-expect-error An error has no reply.
    answer.reply;
  } else if (answer.reply.Status === "0") {
    const mac: string = answer.reply.MAC;
    console(mac);
    // @ts-expect-error A success has no reason.
    answer.reply.FailReason;
  } else {
    console(answer.reply.FailReason);
  }

  // @ts-expect-error There is no such command.
  await call("GET_NOTHING", {});
  // @ts-expect-error The name is missing.
  await call("SET_HG_BASE_INFO", {});
  // @ts-expect-error Values are strings.
  await call("SET_HG_BASE_INFO", { Name: 1 });
  // @ts-expect-error There is no such key.
  await call("SET_HG_BASE_INFO", { Name: "Attic", Colour: "red" });
}

export function show(event: Event): string {
  switch (event.event) {
    case "update.progress":
      return `${event.data.percent} %`;
    case "update.failed":
      return event.data.reason;
    case "background.ended": {
      const worker: "wifi-batch" | "firmware" = event.data.worker;
      return worker;
    }
    default:
      return event.event;
  }
}

// @ts-expect-error There is no such event.
export const name: EventName = "update.lost";
// @ts-expect-error The percentage is a number.
export const progress: Events["update.progress"] = { task: "firmware", percent: "54" };
// @ts-expect-error Status is "0" or "1".
export const reply: Reply<"SET_HG_BASE_INFO"> = { Status: "2" };

export function stations(report: ReportReply<"stations">): string[] {
  return "MainBaseInfo" in report ? report.MainBaseInfo.map((station) => station.Name) : [];
}

declare function console(...texts: string[]): void;
