// Events that script sends itself, and what is to be aborted.
const { reportError, startTimer } = native;

const internals = new WeakMap(); // what dispatching knows of an event
const NONE = 0;
const AT_TARGET = 2;

export class Event {
    constructor(type, { bubbles = false, cancelable = false, composed = false } = {}) {
        if (arguments.length === 0)
            throw new TypeError('Event: a type is expected');
        internals.set(this, {
            type: `${type}`, bubbles: !!bubbles, cancelable: !!cancelable, composed: !!composed, target: null,
            isDispatched: false, isStopped: false, isCancelled: false, isPassive: false, timeStamp: performance.now(),
        });
    }
    get type() {
        return internals.get(this).type;
    }
    get bubbles() {
        return internals.get(this).bubbles;
    }
    get cancelable() {
        return internals.get(this).cancelable;
    }
    get composed() {
        return internals.get(this).composed;
    }
    get target() {
        return internals.get(this).target;
    }
    get currentTarget() {
        const { target, isDispatched } = internals.get(this);
        return isDispatched ? target : null;
    }
    get eventPhase() {
        return internals.get(this).isDispatched ? AT_TARGET : NONE;
    }
    get defaultPrevented() {
        return internals.get(this).isCancelled;
    }
    get isTrusted() {
        return false;
    }
    get timeStamp() {
        return internals.get(this).timeStamp;
    }
    composedPath() {
        const { target, isDispatched } = internals.get(this);
        return isDispatched ? [target] : [];
    }
    preventDefault() {
        const own = internals.get(this);
        own.isCancelled ||= own.cancelable && !own.isPassive;
    }
    stopPropagation() { }
    stopImmediatePropagation() {
        internals.get(this).isStopped = true;
    }
    get [Symbol.toStringTag]() {
        return this.constructor.name;
    }
}
for (const [name, value] of Object.entries({ NONE, CAPTURING_PHASE: 1, AT_TARGET, BUBBLING_PHASE: 3 })) {
    for (const owner of [Event, Event.prototype])
        Object.defineProperty(owner, name, { value, enumerable: true });
}

export class CustomEvent extends Event {
    #detail;
    constructor(type, options = {}) {
        super(type, options);
        this.#detail = options.detail ?? null;
    }
    get detail() {
        return this.#detail;
    }
}

const call = (callback, target, event) => {
    try {
        if (typeof callback === 'function')
            callback.call(target, event);
        else
            callback.handleEvent(event);
    } catch (error) {
        reportError(error, `in a listener of ${event.type}`);
    }
};

export class EventTarget {
    #listeners = [];

    addEventListener(type, callback, options) {
        if (callback === null || callback === undefined)
            return;
        if (typeof callback !== 'function' && typeof callback !== 'object')
            throw new TypeError('addEventListener: a function, or an object with handleEvent, is expected');
        const { capture = false, once = false, passive = false, signal } = typeof options === 'object' && options !== null
            ? options : { capture: options };
        if (signal?.aborted)
            return;
        const isSame = (one) => one.type === `${type}` && one.callback === callback && one.capture === !!capture;
        if (this.#listeners.some(isSame))
            return;
        this.#listeners.push({ type: `${type}`, callback, capture: !!capture, once, passive, isRemoved: false });
        signal?.addEventListener('abort', () => this.removeEventListener(type, callback, { capture }), { once: true });
    }
    removeEventListener(type, callback, options) {
        const capture = !!(typeof options === 'object' && options !== null ? options.capture : options);
        const at = this.#listeners.findIndex(
            (one) => one.type === `${type}` && one.callback === callback && one.capture === capture);
        if (at >= 0)
            this.#listeners.splice(at, 1)[0].isRemoved = true;
    }
    dispatchEvent(event) {
        const own = internals.get(event);
        if (!own)
            throw new TypeError('dispatchEvent: an Event is expected');
        if (own.isDispatched)
            throw new DOMException('The event is being dispatched already.', 'InvalidStateError');
        Object.assign(own, { target: this, isDispatched: true, isStopped: false });
        for (const listener of this.#listeners.filter(({ type }) => type === own.type)) {
            if (own.isStopped)
                break;
            if (listener.isRemoved)
                continue;
            if (listener.once)
                this.removeEventListener(listener.type, listener.callback, listener.capture);
            own.isPassive = listener.passive;
            call(listener.callback, this, event);
        }
        Object.assign(own, { isDispatched: false, isPassive: false });
        return !own.isCancelled;
    }
    get [Symbol.toStringTag]() {
        return this.constructor.name;
    }
}

let maySignal = false; // only a controller and AbortSignal's own functions make signals
const makeSignal = () => {
    maySignal = true;
    try {
        return new AbortSignal();
    } finally {
        maySignal = false;
    }
};
let abortWith;

export class AbortSignal extends EventTarget {
    #isAborted = false;
    #reason;
    #handler = null;
    #dependents = [];

    constructor() {
        if (!maySignal)
            throw new TypeError('Illegal constructor');
        super();
    }
    static {
        abortWith = (signal, reason = new DOMException('This operation was aborted', 'AbortError')) => {
            if (signal.#isAborted)
                return;
            signal.#isAborted = true;
            signal.#reason = reason;
            signal.dispatchEvent(new Event('abort'));
            for (const dependent of signal.#dependents.splice(0))
                abortWith(dependent, reason);
        };
    }
    static abort(reason) {
        const signal = makeSignal();
        abortWith(signal, reason);
        return signal;
    }
    static timeout(milliseconds) {
        const signal = makeSignal();
        startTimer(() => abortWith(signal, new DOMException('The operation timed out.', 'TimeoutError')), milliseconds);
        return signal;
    }
    static any(signals) {
        const signal = makeSignal();
        for (const source of signals) {
            if (source.aborted) {
                abortWith(signal, source.reason);
                break;
            }
            source.#dependents.push(signal);
        }
        return signal;
    }
    get aborted() {
        return this.#isAborted;
    }
    get reason() {
        return this.#reason;
    }
    throwIfAborted() {
        if (this.#isAborted)
            throw this.#reason;
    }
    get onabort() {
        return this.#handler;
    }
    set onabort(handler) {
        if (this.#handler)
            this.removeEventListener('abort', this.#handler);
        this.#handler = typeof handler === 'function' ? handler : null;
        this.addEventListener('abort', this.#handler);
    }
}

export class AbortController {
    #signal = makeSignal();
    get signal() {
        return this.#signal;
    }
    abort(reason) {
        abortWith(this.#signal, reason);
    }
    get [Symbol.toStringTag]() {
        return 'AbortController';
    }
}
