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
