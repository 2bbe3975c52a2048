// SPDX-License-Identifier: MIT
// The page: log-in, navigation, and the state of the connection.
import { type FunctionComponent, render } from "preact";
import { useEffect, useLayoutEffect, useRef, useState } from "preact/hooks";
import { logIn, logOut, onEvent, onState, session, start, state } from "./connection.ts";
import { textOf } from "./format.ts";
import { Field, Messages } from "./parts.tsx";
import { useReply } from "./store.ts";
import "./style.css";
import { Home } from "./views/home.tsx";
import { Commands } from "./views/commands.tsx";
import { EventLog } from "./views/event_log.tsx";
import { Firmware } from "./views/firmware.tsx";
import { Hosts } from "./views/hosts.tsx";
import { Inspection } from "./views/inspection.tsx";
import { Internet } from "./views/internet.tsx";
import { Notices } from "./views/notices.tsx";
import { Parental } from "./views/parental.tsx";
import { Qos } from "./views/qos.tsx";
import { Simulation } from "./views/simulation.tsx";
import { WiFi } from "./views/wifi.tsx";

interface View {
    id: string;
    label: string;
    component: FunctionComponent<{ path: string }>;
    // One of these commands has to be allowed.
    needs?: string[];
    available?: () => boolean;
    developer?: boolean;
}

const views: View[] = [
    { id: "home", label: "Home", component: Home, needs: ["GET_TSLINK_TOPOLOGY_INFO", "GET_HG_BASE_INFO"] },
    { id: "devices", label: "Devices", component: Hosts, needs: ["GET_AD_BASE_INFO"] },
    {
        id: "wifi",
        label: "Wi-Fi",
        component: WiFi,
        needs: ["GET_WIFI_LIST_INFO", "GET_SCAN_CHANNEL_COUNT", "GET_HG_GUEST_SSID", "GET_SCAN_WIFI_SSIDLIST"],
    },
    { id: "parental", label: "Parental control", component: Parental, needs: ["GET_GREENNET_DEVICE_LIST"] },
    { id: "internet", label: "Internet and LAN", component: Internet, needs: ["QUERY_WAN_NUM", "GET_LAN_IP_INFO"] },
    { id: "firmware", label: "Firmware", component: Firmware, needs: ["GET_UPDATE_STATUS", "RP_HG_REBOOT"] },
    { id: "qos", label: "Quality of service", component: Qos, needs: ["GET_QOS_INFO"] },
    { id: "inspection", label: "Inspection", component: Inspection, needs: ["HG_INSPECTION", "HG_WIFI_INSPECTION"] },
    { id: "notices", label: "Notices", component: Notices },
    { id: "commands", label: "Commands", component: Commands, developer: true },
    { id: "events", label: "Events", component: EventLog, developer: true },
    {
        id: "simulation",
        label: "Simulated gateway",
        component: Simulation,
        developer: true,
        available: () => session!.control && session!.device === "simulated",
    },
];

const isAvailable = ({ needs, available }: View): boolean =>
    (needs === undefined || needs.some((command) => session!.commands.includes(command))) &&
    (available === undefined || available());

// The address is #/VIEW or #/VIEW/PATH.
function useRoute(): { allowed: View[]; current: View; path: string } {
    const [hash, setHash] = useState(location.hash);
    useEffect(() => {
        const update = () => setHash(location.hash);
        addEventListener("hashchange", update);
        return () => removeEventListener("hashchange", update);
    }, []);
    const [, id, path] = /^#\/(\w+)\/?(.*)$/.exec(hash) ?? [];
    const allowed = views.filter(isAvailable);
    return { allowed, current: allowed.find((view) => view.id === id) ?? allowed[0]!, path: path ?? "" };
}

function LogIn() {
    const [values, setValues] = useState({ user: "", password: "", token: "" });
    const [problem, setProblem] = useState("");
    const field = (
        name: keyof typeof values,
        label: string,
        type: "text" | "password",
        autocomplete?: "username" | "current-password",
    ) => (
        <Field
            field={{ name, label, type, autocomplete }}
            value={values[name]}
            onInput={(value) => setValues({ ...values, [name]: value })}
        />
    );
    const submit = async (event: Event) => {
        event.preventDefault();
        const token = values.token.trim().replace(/^.*#token=/, "");
        setProblem(await logIn(token !== "" ? { token } : { user: values.user, password: values.password }));
    };
    return (
        <main class="login">
            <form class="card" onSubmit={submit}>
                <h1>Gateway console</h1>
                <p>
                    Open the address that <code>hgagent run --console</code> has printed, or enter its token here.
                </p>
                {field("token", "Token or address", "password")}
                <p>With an account of this gateway:</p>
                {field("user", "User", "text", "username")}
                {field("password", "Password", "password", "current-password")}
                {problem && (
                    <p class="problem" role="alert">
                        {problem}
                    </p>
                )}
                <div class="buttons">
                    <button type="submit" class="primary">
                        Log in
                    </button>
                </div>
            </form>
        </main>
    );
}

function Connection(props: { state: string }) {
    const [rebooting, setRebooting] = useState(false);
    useEffect(
        () =>
            onEvent(({ name }) => {
                if (name.startsWith("reboot.")) {
                    setRebooting(name === "reboot.begun");
                }
            }),
        [],
    );
    const [kind, text] =
        props.state !== "open"
            ? ["lost", "Connecting…"]
            : rebooting
              ? ["busy", "The gateway restarts…"]
              : ["open", "Connected"];
    return (
        <p class={`connection ${kind}`} role="status">
            {text}
        </p>
    );
}

function Page(props: { state: string }) {
    const { allowed, current, path } = useRoute();
    const name = textOf(useReply({ command: "GET_HG_BASE_INFO" }, 3000).reply?.Name) || "Gateway";
    const main = useRef<HTMLElement>(null);
    const nav = useRef<HTMLElement>(null);
    useEffect(() => {
        scrollTo(0, 0);
        nav.current!.querySelector("[aria-current]")?.scrollIntoView({ block: "nearest", inline: "center" });
    }, [current]);
    useEffect(() => {
        document.title = `${current.label} – ${name}`;
    }, [current.label, name]);
    const link = (view: View) => (
        <a key={view.id} href={`#/${view.id}`} aria-current={view === current ? "page" : undefined}>
            {view.label}
        </a>
    );
    const View = current.component;
    return (
        <>
            <a class="skip" href="#content" onClick={(event) => (event.preventDefault(), main.current?.focus())}>
                Skip to the content
            </a>
            <header class="top">
                <strong>{name}</strong>
                <Connection state={props.state} />
                <span class="who muted" title={session!.who}>
                    {session!.role}
                </span>
                <button type="button" class="plain" onClick={() => void logOut()}>
                    Log out
                </button>
            </header>
            <nav aria-label="Views" ref={nav}>
                {allowed.filter((view) => !view.developer).map(link)}
                <span class="group">Developer</span>
                {allowed.filter((view) => view.developer).map(link)}
            </nav>
            <main id="content" ref={main} tabIndex={-1} class={props.state === "open" ? "" : "stale"}>
                <h1>{current.label}</h1>
                <View path={path} />
            </main>
            <Messages />
        </>
    );
}

function App() {
    const [known, setKnown] = useState(state);
    // Before anything else happens: an effect would come too late for an answer that is there at once.
    useLayoutEffect(() => onState(setKnown), []);
    if (known === "login") {
        return <LogIn />;
    }
    if (session === undefined) {
        return (
            <main class="login">
                <p role="status">{known === "lost" ? "The service does not answer. Trying again…" : "Connecting…"}</p>
            </main>
        );
    }
    return <Page state={known} />;
}

render(<App />, document.getElementById("app")!);
void start();
