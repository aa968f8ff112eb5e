// The listeners of one object.

export class Hub {
    #lists = new Map();

    add(event, listener) {
        const list = this.#lists.get(event) ?? new Set();
        this.#lists.set(event, list.add(listener));
    }

    remove(event, listener) {
        const list = this.#lists.get(event);
        if (listener === undefined)
            list?.clear();
        else
            list?.delete(listener);
        if (!list?.size)
            this.#lists.delete(event);
    }

    /** Calls the listeners that there are now, except for those that are removed meanwhile. Returns what they threw. */
    dispatch(event, values) {
        const list = this.#lists.get(event) ?? new Set();
        const errors = [];
        for (const listener of [...list]) {
            if (!list.has(listener))
                continue;
            try {
                listener(...values);
            } catch (error) {
                errors.push(error);
            }
        }
        return errors;
    }

    count(event) {
        return this.#lists.get(event)?.size ?? 0;
    }

    report() {
        return [...this.#lists].map(([eventName, list]) => ({ eventName, listenerCount: list.size }))
            .sort((a, b) => (a.eventName < b.eventName ? -1 : 1));
    }
}
