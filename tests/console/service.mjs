// SPDX-License-Identifier: MIT
// A service with the console, as a process of the test's own, and a second client on its Unix socket, which knows what
// the home really holds.
import { spawn } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { connect } from "node:net";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";

// 2026-01-01, a Thursday, 00:00: with a stopped clock the home is the same in every run.
export const stoppedClock = "1767225600";

function linesOf(stream, listener) {
    createInterface({ input: stream }).on("line", listener);
}

export class Service {
    // Options: agent (before "run"), run (after it), clock (seconds since 1970, or null for a running clock).
    static async start(options = {}) {
        const service = new Service();
        service.folder = mkdtempSync(join(tmpdir(), "console-test-"));
        service.options = options;
        await service.#launch("127.0.0.1:0");
        return service;
    }

    async #launch(address) {
        const { agent = [], run = [], clock = stoppedClock } = this.options;
        this.socket = join(this.folder, "socket");
        const state = join(this.folder, "home.json");
        const environment = { ...process.env, XDG_RUNTIME_DIR: this.folder };
        if (clock !== null) {
            environment.SIMULATED_GATEWAY_TIME = clock;
        }
        this.process = spawn(
            process.env.HGAGENT,
            ["--state", state, ...agent, "run", "--socket", this.socket, "--console", address, ...run],
            { env: environment, stdio: ["ignore", "inherit", "pipe"] },
        );
        this.ended = new Promise((resolve) => this.process.once("exit", resolve));
        this.log = [];
        await new Promise((resolve, reject) => {
            this.ended.then(() => reject(new Error(`the service has ended:\n${this.log.join("\n")}`)));
            linesOf(this.process.stderr, (line) => {
                this.log.push(line);
                this.origin ??= /listening on (http:\/\/[^/]+)\/$/.exec(line)?.[1];
                // Standard error is no terminal, so the address with the token is in a file.
                const file = /the address with the token is in (\S+)/.exec(line)?.[1];
                if (file !== undefined) {
                    this.address = readFileSync(file, "utf8").trim();
                }
                if (this.address !== undefined && this.log.some((each) => each.includes("listening on unix:"))) {
                    resolve();
                }
            });
        });
    }

    get token() {
        return /#token=(\w+)/.exec(this.address)[1];
    }

    // The same service again at the same address.
    async restart() {
        await this.end();
        const address = this.origin.replace("http://", "");
        this.address = undefined;
        await this.#launch(address);
    }

    async end() {
        this.#client?.end();
        this.#client = undefined;
        this.process.kill("SIGTERM");
        await this.ended;
    }

    async stop() {
        await this.end();
        rmSync(this.folder, { recursive: true });
    }

    #client;
    #waiting = [];

    // Sends a line to the service and returns the answer.
    async ask(request) {
        if (this.#client === undefined) {
            const client = connect(this.socket);
            await new Promise((resolve, reject) => client.once("connect", resolve).once("error", reject));
            linesOf(client, (line) => {
                const answer = JSON.parse(line);
                if ("id" in answer) {
                    this.#waiting.shift()(answer);
                }
            });
            this.#client = client;
        }
        return new Promise((resolve) => {
            this.#waiting.push(resolve);
            this.#client.write(`${JSON.stringify({ id: 0, ...request })}\n`);
        });
    }

    async call(command, params = {}) {
        const answer = await this.ask({ command, params });
        if (answer.error !== undefined) {
            throw new Error(answer.error);
        }
        return answer.reply;
    }
}

// A file in the service's folder.
export function fileFor(service, name, contents) {
    const file = join(service.folder, name);
    writeFileSync(file, contents);
    return file;
}
