// The time of a kit: what is to come after some milliseconds comes when the test says so, or by the runner's timers.

const laterTurn = globalThis.setImmediate ?? ((action) => setTimeout(action, 0));

/** Has everything run that promises have begun. */
export const settled = () => new Promise((resolve) => laterTurn(resolve));

export class Clock {
    #now = 0;
    #tasks = [];
    #useTimers;

    constructor(useTimers) {
        this.#useTimers = useTimers;
    }

    /** Milliseconds since the kit was made. */
    get now() {
        return this.#now;
    }

    /** How many answers and events are still to come. */
    get pending() {
        return this.#tasks.length;
    }

    /** Does something `after` milliseconds; without any once the page's current code has returned. */
    schedule(after, action) {
        if (after === undefined)
            queueMicrotask(action);
        else if (this.#useTimers)
            setTimeout(action, after);
        else
            this.#tasks.push({ at: this.#now + after, action });
    }

    /** Lets time pass, and waits for what comes of it. */
    async advance(milliseconds) {
        const end = this.#now + milliseconds;
        await settled();
        for (;;) {
            const next = this.#tasks.filter((task) => task.at <= end).sort((a, b) => a.at - b.at)[0];
            if (!next)
                break;
            this.#tasks.splice(this.#tasks.indexOf(next), 1);
            this.#now = Math.max(this.#now, next.at);
            next.action();
            await settled();
        }
        this.#now = end;
    }
}
