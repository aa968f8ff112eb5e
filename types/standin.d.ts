// What a script finds in novahost beside NovaExtension and the language. For use in place of the library "dom":
//
//     /// <reference types="@vexlite/nova-extension-types/standin" />

/** As Node's, with its format specifiers. What is no output goes to standard error: warn, error, trace, assert. */
declare const console: {
    log(...values: unknown[]): void;
    info(...values: unknown[]): void;
    debug(...values: unknown[]): void;
    /** Prints to standard error. */
    warn(...values: unknown[]): void;
    /** Prints to standard error. */
    error(...values: unknown[]): void;
    /** Prints to standard error, with the stack. */
    trace(...values: unknown[]): void;
    /** Prints a value opened to a depth, 2 levels by default; null opens all. */
    dir(value: unknown, options?: { depth?: number | null }): void;
    dirxml(...values: unknown[]): void;
    table(data: unknown, columns?: readonly string[]): void;
    group(...values: unknown[]): void;
    groupCollapsed(...values: unknown[]): void;
    groupEnd(): void;
    count(label?: string): void;
    countReset(label?: string): void;
    time(label?: string): void;
    timeLog(label?: string, ...values: unknown[]): void;
    timeEnd(label?: string): void;
    /** Prints to standard error unless the condition holds. */
    assert(condition?: unknown, ...values: unknown[]): void;
    clear(): void;
};

declare const process: {
    /** "novahost", the script, and what follows it on the command line. */
    readonly argv: readonly string[];
    /**
     * Has the stand-in suite do what a user would, in the form of `novahost --play`: "login:user-2@1000ms,logout".
     *
     * @throws 1 what is wrong with the steps
     */
    play(steps: string): void;
};

/** Ends the page with this exit code, 0 to 255, once the script has returned to the event loop. */
declare function exit(code?: number): void;

declare function setTimeout(callback: (...values: any[]) => void, delay?: number, ...values: unknown[]): number;
declare function setInterval(callback: (...values: any[]) => void, delay?: number, ...values: unknown[]): number;
declare function clearTimeout(timer: number | undefined): void;
declare function clearInterval(timer: number | undefined): void;
declare function queueMicrotask(callback: () => void): void;

// What browsers have beside the language. Without the browser engine scripts have these parts of it.

declare class DOMException extends Error {
    constructor(message?: string, name?: string);
    readonly code: number;
}
declare function structuredClone<T>(value: T): T;
/** Text whose characters are bytes, from base64. */
declare function atob(base64: string): string;
declare function btoa(bytes: string): string;

declare class URL {
    constructor(url: string | URL, base?: string | URL);
    href: string;
    readonly origin: string;
    protocol: string;
    username: string;
    password: string;
    host: string;
    hostname: string;
    port: string;
    pathname: string;
    search: string;
    readonly searchParams: URLSearchParams;
    hash: string;
    toJSON(): string;
}
declare class URLSearchParams {
    constructor(query?: string | URLSearchParams | Record<string, string> | Iterable<[string, string]>);
    append(name: string, value: string): void;
    delete(name: string): void;
    get(name: string): string | null;
    getAll(name: string): string[];
    has(name: string): boolean;
    set(name: string, value: string): void;
    sort(): void;
    forEach(callback: (value: string, name: string, query: URLSearchParams) => void): void;
    keys(): IterableIterator<string>;
    values(): IterableIterator<string>;
    entries(): IterableIterator<[string, string]>;
    [Symbol.iterator](): IterableIterator<[string, string]>;
}

declare class TextEncoder {
    readonly encoding: "utf-8";
    encode(text?: string): Uint8Array;
    encodeInto(text: string, destination: Uint8Array): { read: number; written: number };
}
declare class TextDecoder {
    constructor(encoding?: string, options?: { fatal?: boolean; ignoreBOM?: boolean });
    readonly encoding: string;
    readonly fatal: boolean;
    readonly ignoreBOM: boolean;
    decode(bytes?: ArrayBuffer | ArrayBufferView, options?: { stream?: boolean }): string;
}

interface EventInit {
    bubbles?: boolean;
    cancelable?: boolean;
    composed?: boolean;
}
declare class Event {
    constructor(type: string, options?: EventInit);
    readonly type: string;
    readonly target: EventTarget | null;
    readonly currentTarget: EventTarget | null;
    readonly eventPhase: number;
    readonly bubbles: boolean;
    readonly cancelable: boolean;
    readonly defaultPrevented: boolean;
    /** Milliseconds since the page was opened. */
    readonly timeStamp: number;
    preventDefault(): void;
    stopPropagation(): void;
    stopImmediatePropagation(): void;
    composedPath(): EventTarget[];
}
declare class CustomEvent<T = any> extends Event {
    constructor(type: string, options?: EventInit & { detail?: T });
    readonly detail: T;
}
type EventCallback = ((event: Event) => void) | { handleEvent(event: Event): void } | null;
declare class EventTarget {
    addEventListener(type: string, callback: EventCallback,
        options?: boolean | { capture?: boolean; once?: boolean; passive?: boolean; signal?: AbortSignal }): void;
    removeEventListener(type: string, callback: EventCallback, options?: boolean | { capture?: boolean }): void;
    /** Returns false when a listener has called preventDefault(). */
    dispatchEvent(event: Event): boolean;
}
declare class AbortSignal extends EventTarget {
    private constructor();
    static abort(reason?: unknown): AbortSignal;
    static timeout(milliseconds: number): AbortSignal;
    static any(signals: Iterable<AbortSignal>): AbortSignal;
    readonly aborted: boolean;
    readonly reason: any;
    onabort: ((event: Event) => void) | null;
    throwIfAborted(): void;
}
declare class AbortController {
    readonly signal: AbortSignal;
    abort(reason?: unknown): void;
}

declare class PerformanceEntry {
    private constructor();
    readonly entryType: "mark" | "measure";
    readonly name: string;
    readonly startTime: number;
    readonly duration: number;
    readonly detail: any;
}
/** Times in milliseconds since the page was opened. */
declare const performance: {
    /** When that was, in milliseconds since 1970. */
    readonly timeOrigin: number;
    now(): number;
    mark(name: string, options?: { startTime?: number; detail?: unknown }): PerformanceEntry;
    measure(name: string, from?: string | { start?: string | number; end?: string | number; duration?: number; detail?: unknown },
        to?: string): PerformanceEntry;
    clearMarks(name?: string): void;
    clearMeasures(name?: string): void;
    getEntries(): PerformanceEntry[];
    getEntriesByType(type: string): PerformanceEntry[];
    getEntriesByName(name: string, type?: string): PerformanceEntry[];
};
declare const crypto: {
    /** Fills an array of at most 65,536 bytes. */
    getRandomValues<T extends Int8Array | Uint8Array | Uint8ClampedArray | Int16Array | Uint16Array | Int32Array | Uint32Array
        | BigInt64Array | BigUint64Array>(array: T): T;
    randomUUID(): `${string}-${string}-${string}-${string}-${string}`;
};
