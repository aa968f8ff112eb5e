/**
 * Something that happens: subscribers are called in their order, each time.
 *
 * @template Payload
 */
export class Signal {
    /** @type {((payload: Payload) => void)[]} */
    #subscribers = [];

    /** @param {(payload: Payload) => void} subscriber */
    subscribe(subscriber) {
        this.#subscribers.push(subscriber);
    }

    /** @param {Payload} payload */
    emit(payload) {
        this.#subscribers.forEach((subscriber) => subscriber(payload));
    }
}
