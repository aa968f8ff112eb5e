// The shapes that the explorer's scripts share. Those of the reference are as in types/api.json.

interface ApiType {
    readonly kind: string;
    readonly name?: string;
    readonly values?: any;
    readonly items?: ApiType;
    readonly types?: readonly ApiType[];
    readonly fields?: readonly ApiField[];
    readonly parameters?: readonly { readonly name: string; readonly type: ApiType }[];
    readonly strict?: boolean;
}
interface ApiField {
    readonly name: string;
    readonly type: ApiType;
    readonly optional: boolean;
    readonly doc: string;
    readonly default?: unknown;
    readonly rest?: boolean;
}
interface ApiFailure {
    readonly code: number;
    readonly text: string;
    readonly rejects: boolean;
}
interface ApiMember {
    readonly name: string;
    readonly kind: "method" | "property";
    readonly category: string;
    readonly built: boolean;
    readonly doc: string;
    readonly parameters: readonly ApiField[];
    readonly answer: { readonly form: "envelope" | "promise" | "object" | "plain"; readonly type: ApiType };
    readonly failures: readonly ApiFailure[];
    readonly event: string | null;
}
interface ApiEvent {
    readonly name: string;
    readonly doc: string;
    readonly payload: ApiType;
}
interface ApiObject {
    readonly name: string;
    readonly instance: "shared" | "page" | "handed out";
    readonly doc: string;
    readonly members: readonly ApiMember[];
    readonly events: readonly ApiEvent[];
}

/** What members are called on: an object of NovaExtension, or one that a call has handed out. */
interface Target {
    readonly object: ApiObject;
    /** How script spells it: `NovaExtension.FileSystem`, `file1`. */
    readonly name: string;
    /** The call that handed it out. */
    readonly origin?: Call;
    find(): any;
}
interface Call {
    readonly id: number;
    readonly target: Target;
    readonly member: ApiMember;
    readonly given: readonly unknown[];
    readonly started: Date;
    state: "pending" | "ok" | "failed";
    /** What was returned, or what the promise has resolved with. */
    value?: unknown;
    error?: unknown;
    /** Whether a promise was returned. */
    promised: boolean;
    /** In milliseconds, until the member returned, or until its promise was settled. */
    elapsed: number;
    handedOut?: Target;
    /** Fulfilled when the call has ended, however it has. */
    ended: Promise<Call>;
}
/** Something that has listeners on an object: an event by name, or a pair of members. */
interface ListenerPair {
    readonly label: string;
    readonly doc: string;
    readonly add: ApiMember;
    readonly remove: ApiMember;
    readonly eventName: string | null;
}
type LogListener = (...payload: unknown[]) => void;
interface ActiveListener {
    readonly target: Target;
    readonly remove: ApiMember;
    readonly eventName: string | null;
    readonly label: string;
    readonly listener: LogListener;
}
interface Arrival {
    readonly label: string;
    readonly time: Date;
    readonly payload: readonly unknown[];
}
/** A line of the trace. */
interface TraceLine {
    readonly kind: "call" | "settled" | "event";
    readonly state: "pending" | "ok" | "failed" | "event";
    readonly time: Date;
    readonly text: string;
    readonly outcome: string;
    readonly elapsed?: number;
}
/** A part of a form: reads one value. */
interface Control {
    readonly node: HTMLElement;
    /** What is given, or `omitted`. Throws an InputError when it is no value. */
    read(): unknown;
}

interface Window {
    explorer: unknown;
}
