/// <reference types="@vexlite/nova-extension-types" />
import type { Events, Members } from "./members.js";

/** What a call of the member resolves with, has as its `data`, or returns. */
type Outcome<Member> = Member extends (...values: any[]) => infer Result ? Unwrapped<Result> : Unwrapped<Member>;
type Unwrapped<Result> = Result extends NovaExtension.Answer<infer Data> ? Data : Result extends Promise<infer Data> ? Data : Result;
type Values<Member> = Member extends (...values: infer Given) => any ? Given : [];
type TextOf<Name extends keyof Members> = Name extends keyof NovaExtension.Failures ? NovaExtension.Failures[Name]["msg"] : string;

declare const filled: unique symbol;
/** Some properties of a value; the kit adds the others that are declared, empty. */
export interface Filled<Properties> {
    readonly [filled]: Properties;
}
export function fill<Properties extends object>(properties?: Properties): Filled<Properties>;

/** Something that stands for any value of a kind. */
export interface Pattern {
    readonly describe: string;
    test(value: unknown): boolean;
}
export const match: {
    readonly any: Pattern;
    readonly string: Pattern;
    readonly number: Pattern;
    readonly boolean: Pattern;
    readonly function: Pattern;
    readonly bytes: Pattern;
    /** An object that has at least these properties. */
    partial(properties: object): Pattern;
    /** This very function or object. */
    same(expected: unknown): Pattern;
};

/** What calls of a member return. */
export interface Row<Name extends keyof Members = keyof Members> {
    /** The member, such as `"FileSystem.copy"`; `"Log.*"` for all of an object's that return nothing. */
    member: Name;
    /** The arguments of the call: values, patterns, or functions that say whether an argument fits. Without them any. */
    arguments?: readonly unknown[];
    /** Of objects that are handed out: the arguments with which, or the object itself. */
    of?: readonly unknown[] | object;
    /** The data; without its envelope. A function is called with the arguments of each call. */
    answer?: Outcome<Members[Name]> | Filled<object>
        | ((...values: Values<Members[Name]>) => Outcome<Members[Name]> | Filled<object> | Promise<Outcome<Members[Name]> | Filled<object>>);
    /** The failure that is thrown: one that the member is declared with. */
    failure?: TextOf<Name> | { code: number; msg: TextOf<Name> };
    /** The failure with which the promise is rejected. */
    rejects?: TextOf<Name> | { code: number; msg: TextOf<Name> };
    /** With what the function among the arguments is called afterwards: a payload a call. */
    callback?: readonly unknown[];
    /** Milliseconds of the kit's clock until the promise is settled, or the callback called. */
    after?: number;
    /** For how many calls the row is; without it for any number, but one at least. */
    times?: number;
    /** The row need not be used. */
    optional?: boolean;
}
/** A row of any member: which it is decides what the other properties can be. */
export type AnyRow = { [Name in keyof Members]: Row<Name> }[keyof Members] | { member: `${string}.*`; times?: number; optional?: boolean };

/** How a dialog ends, as in the stand-in's profile. */
export interface DialogAnswer {
    dialog?: "file" | "files" | "folder" | "save" | "panel" | "access" | "sync" | "confirm" | "color";
    accept?: boolean;
    files?: readonly string[];
    values?: Readonly<Record<string, unknown>>;
}

/** A service of the suite that can be missing. */
export type Service = "accountSdk" | "cloudFileDialog" | "cloudIpc" | "currentAccount" | "dataCollection" | "domainManager"
    | "eventHubs" | "fileFilter" | "filePanel" | "pluginManager" | "promiseService" | "purchase" | "remoteConfig" | "syncFolderUi";

export interface KitOptions {
    rows?: readonly AnyRow[];
    /** How dialogs end, in this order. Without it, members that show dialogs need rows. */
    dialogs?: readonly DialogAnswer[];
    /** Services that the suite lacks from the beginning. */
    missing?: readonly Service[];
    /** What `novahost run --record FILE` wrote. "strict", the default: each object's calls in their order; "loose": in any. */
    recording?: string | { text: string; order?: "strict" | "loose" };
    /** "kit", the default: time passes with `clock.advance`. "timers": with setTimeout, which a test runner can replace. */
    clock?: "kit" | "timers";
}

export interface Call {
    /** Such as `"FileSystem.copy"`. */
    readonly member: keyof Members;
    readonly object: object;
    /** Copies of the arguments; functions are the page's own. */
    readonly arguments: readonly any[];
    readonly answer?: unknown;
    readonly promise?: Promise<unknown>;
    readonly thrown?: unknown;
    /** Milliseconds of the kit's clock. */
    readonly at: number;
}

export interface Kit {
    readonly NovaExtension: typeof NovaExtension;
    /** All calls that the page has made. */
    readonly calls: readonly Call[];
    readonly clock: {
        readonly now: number;
        readonly pending: number;
        /** Lets time pass, and waits for what comes of it. */
        advance(milliseconds: number): Promise<void>;
    };
    /** Makes NovaExtension a global, until uninstall() brings back what there was: perhaps that of another kit. */
    install(target?: object): this;
    uninstall(): void;
    /** Adds rows, which come before those that there are. */
    use(...rows: AnyRow[]): this;
    callsOf(member: keyof Members): readonly Call[];
    /** Has an object emit an event: all of that name, or this one. */
    emit<Name extends keyof Events>(target: Name, event: Events[Name], ...payload: unknown[]): void;
    emit(target: object, event: string, ...payload: unknown[]): void;
    /** A new object that is otherwise handed out by a member. */
    object(path: string, ...made: unknown[]): any;
    lose(...services: Service[]): void;
    restore(...services: Service[]): void;
    /** Waits until all that promises have begun has run. */
    settled(): Promise<void>;
    /** Throws if a row or a recorded call was never used, or a call was unexpected. */
    verify(): void;
    /** Begins afresh, as createKit() did. */
    reset(): void;
}

/** A call that neither a row nor the recording has. */
export class UnexpectedCall extends Error {}

export function createKit(options?: KitOptions): Kit;
