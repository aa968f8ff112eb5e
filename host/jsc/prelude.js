// Prepares a page and inspects its values for the engine. Runs before any script of the page and keeps the built-in
// functions that it needs, so that the page can not change its behaviour by replacing them. For the same reason it must
// not use prototypes: no iteration protocol, no assignment of new properties, no methods.
(function (native, signalArray) {
    'use strict';
    const { apply, ownKeys } = Reflect;
    const { keys, defineProperty, getOwnPropertyDescriptor, getPrototypeOf } = Object;
    // The prototype of the native functions behind methods, in place of one that the page can change.
    const nativePrototype = { __proto__: null, apply: Function.prototype.apply };
    const { isArray } = Array;
    const { stringify, rawJSON } = JSON;
    const { isInteger } = Number;
    const toText = String;
    const toNumber = Number;
    const ErrorType = Error;
    const TypeErrorType = TypeError;
    const RangeErrorType = RangeError;
    const objectPrototype = Object.prototype;
    const errorPrototype = Error.prototype;
    const syntaxErrorPrototype = SyntaxError.prototype;
    const uncurry = (method) => (self, ...rest) => apply(method, self, rest);
    const isPrototypeOf = uncurry(objectPrototype.isPrototypeOf);
    const symbolText = uncurry(Symbol.prototype.toString);
    const dateText = uncurry(Date.prototype.toISOString);
    const regExpText = uncurry(RegExp.prototype.toString);
    const mapEach = uncurry(Map.prototype.forEach);
    const setEach = uncurry(Set.prototype.forEach);
    const slice = uncurry(String.prototype.slice);
    const indexOf = uncurry(String.prototype.indexOf);
    const startsWith = uncurry(String.prototype.startsWith);
    const then = uncurry(Promise.prototype.then);
    const weakGet = uncurry(WeakMap.prototype.get);
    const weakSet = uncurry(WeakMap.prototype.set);
    const tagSymbol = Symbol.toStringTag;

    const isObject = (value) => (typeof value === 'object' && value !== null) || typeof value === 'function';
    const listKeys = (object) => {
        const names = keys(object);
        signalArray[1] = names.length;
        return names;
    };
    // Defines an own property, regardless of setters in prototypes.
    const define = (object, name, value, enumerable) =>
        defineProperty(object, name, { __proto__: null, value, writable: true, enumerable, configurable: true });

    // Built-in prototypes by class name: objects that inherit from one are no plain data.
    const languagePrototypes = () => {
        const found = [];
        const add = (name, prototype) => {
            if (isObject(prototype) && prototype !== objectPrototype)
                found.push(name, prototype);
        };
        const addAll = (holder, prefix) => {
            for (const name of Object.getOwnPropertyNames(holder)) {
                const value = getOwnPropertyDescriptor(holder, name).value;
                if (typeof value === 'function')
                    add(prefix + name, getOwnPropertyDescriptor(value, 'prototype')?.value);
            }
        };
        addAll(globalThis, '');
        for (const name of ['Intl', 'WebAssembly', 'Temporal']) {
            if (isObject(globalThis[name]))
                addAll(globalThis[name], name + '.');
        }
        add('TypedArray', getPrototypeOf(Uint8Array.prototype));
        add('Generator', getPrototypeOf((function* () {}).prototype));
        add('AsyncGenerator', getPrototypeOf((async function* () {}).prototype));
        add('Iterator', getPrototypeOf(getPrototypeOf([][Symbol.iterator]())));
        return found;
    };

    // --- Values as text ------------------------------------------------------------------------------------------

    const maximumItems = 100;
    const maximumNesting = 5;
    const maximumText = 10000;

    // A data property, own or inherited; never runs a getter.
    const peek = (object, name) => {
        for (let step = 0; object !== null && step < 20; ++step) {
            const found = getOwnPropertyDescriptor(object, name);
            if (found)
                return found.value;
            object = getPrototypeOf(object);
        }
        return undefined;
    };
    const read = (object, name) => {
        try {
            return object[name];
        } catch {
            return undefined;
        }
    };
    const readText = (object, name) => {
        const value = read(object, name);
        return typeof value === 'string' ? value : '';
    };
    const isError = (value) => isObject(value) && isPrototypeOf(errorPrototype, value);
    const errorTitle = (error) => {
        const name = readText(error, 'name');
        const message = readText(error, 'message');
        if (name === '' || name === 'Error')
            return message || 'Error';
        return message ? name + ': ' + message : name;
    };
    const objectTitle = (value) => {
        const tag = peek(value, tagSymbol);
        if (typeof tag === 'string')
            return startsWith(tag, 'NovaExtension') ? '[object ' + tag + ']' : tag;
        const maker = peek(value, 'constructor');
        const name = typeof maker === 'function' ? peek(maker, 'name') : undefined;
        return typeof name === 'string' && name !== 'Object' ? name : '';
    };
    const join = (left, right) => (left === '' ? right : left + ', ' + right);

    const inspectObject = (value, level, above) => {
        for (let one = above; one !== null; one = one.next) {
            if (one.value === value)
                return '[Circular]';
        }
        const title = objectTitle(value);
        const list = isArray(value);
        if (level >= maximumNesting)
            return list ? '[Array]' : '[Object]';
        const here = { __proto__: null, value, next: above };
        let text = '';
        let shown = 0;
        const add = (part) => {
            if (shown++ < maximumItems)
                text = join(text, part());
            return shown <= maximumItems && text.length < maximumText;
        };
        if (title === 'Map')
            mapEach(value, (item, key) => add(() => inspect(key, level + 1, here) + ' => ' + inspect(item, level + 1, here)));
        else if (title === 'Set')
            setEach(value, (item) => add(() => inspect(item, level + 1, here)));
        const member = (name) => {
            const found = getOwnPropertyDescriptor(value, name);
            if (!found)
                return 'undefined';
            return 'value' in found ? inspect(found.value, level + 1, here) : '[Getter]';
        };
        if (list) {
            const length = getOwnPropertyDescriptor(value, 'length').value;
            for (let i = 0; i < length && add(() => member(i)); ++i);
            if (length > maximumItems)
                text = join(text, '... ' + (length - maximumItems) + ' more');
            return '[' + text + ']';
        }
        const names = keys(value);
        for (let i = 0; i < names.length && add(() => names[i] + ': ' + member(names[i])); ++i);
        if (names.length > maximumItems)
            text = join(text, '... ' + (names.length - maximumItems) + ' more');
        if (text === '')
            return title === '' ? '{}' : startsWith(title, '[') ? title : title + ' {}';
        return (title === '' ? '{ ' : title + ' { ') + text + ' }';
    };

    const inspect = (value, level, above) => {
        switch (typeof value) {
        case 'string':
            return level === 0 ? value : stringify(value.length > maximumText ? slice(value, 0, maximumText) : value);
        case 'number':
            return value === 0 && 1 / value < 0 ? '-0' : toText(value);
        case 'bigint':
            return toText(value) + 'n';
        case 'symbol':
            return symbolText(value);
        case 'function': {
            const name = getOwnPropertyDescriptor(value, 'name')?.value;
            return typeof name === 'string' && name !== '' ? '[Function: ' + name + ']' : '[Function]';
        }
        case 'object':
            if (value === null)
                return 'null';
            if (isError(value))
                return level === 0 ? join2(errorTitle(value), readText(value, 'stack')) : '[' + errorTitle(value) + ']';
            if (objectTitle(value) === 'Date')
                return dateText(value);
            if (objectTitle(value) === 'RegExp')
                return regExpText(value);
            return inspectObject(value, level, above);
        default:
            return toText(value);
        }
    };
    const join2 = (title, stack) => (stack === '' ? title : title + '\n' + stack);

    const format = (value) => {
        try {
            const text = inspect(value, 0, null);
            return typeof value === 'string' || text.length <= maximumText ? text : slice(text, 0, maximumText) + '...';
        } catch {
            return '[' + typeof value + ' that can not be shown]';
        }
    };

    // --- Errors --------------------------------------------------------------------------------------------------

    // A stack without the frames of the engine's own scripts.
    const pageFrames = (stack) => {
        let kept = '';
        for (let from = 0; from < stack.length;) {
            const end = indexOf(stack, '\n', from) < 0 ? stack.length : indexOf(stack, '\n', from);
            const frame = slice(stack, from, end);
            if (indexOf(frame, '@nova:', 0) < 0)
                kept = kept === '' ? frame : kept + '\n' + frame;
            from = end + 1;
        }
        return kept;
    };
    const withPageFrames = (error) => {
        define(error, 'stack', pageFrames(readText(error, 'stack')), false);
        return error;
    };

    // The Error that script sees for a failure object {success, code, msg}.
    const makeError = (success, code, msg) => {
        const error = withPageFrames(new ErrorType(msg));
        define(error, 'success', success, true);
        define(error, 'code', code, true);
        define(error, 'msg', msg, true);
        return error;
    };
    const errorFromObject = (failure) => {
        const own = (name) => getOwnPropertyDescriptor(failure, name)?.value;
        const msg = own('msg');
        return makeError(own('success') === true, own('code'), typeof msg === 'string' ? msg : '');
    };
    const makeTypeError = (message) => withPageFrames(new TypeErrorType(message));
    const makeRangeError = (message) => withPageFrames(new RangeErrorType(message));

    // [text, stack, code or undefined] of a thrown value.
    const describeError = (error) => {
        let text = '';
        let stack = '';
        let code;
        try {
            if (isObject(error)) {
                const number = read(error, 'code');
                if (isInteger(number))
                    code = number;
            }
            if (isError(error)) {
                text = errorTitle(error);
                stack = pageFrames(readText(error, 'stack'));
                const line = read(error, 'line');
                if (isPrototypeOf(syntaxErrorPrototype, error) && typeof line === 'number') {
                    const place = readText(error, 'sourceURL') + ':' + line;
                    text = text + ' (' + place + ')';
                    stack = join2(place, stack);
                }
            } else {
                text = isObject(error) ? readText(error, 'msg') || format(error) : format(error);
            }
        } catch {
            text = 'an error that can not be shown';
        }
        return [text, stack, code];
    };
    const reportError = (error) => {
        const facts = describeError(error);
        native.uncaught(facts[0], facts[1], facts[2]);
    };

    // --- Results -------------------------------------------------------------------------------------------------

    const bigIntAsNumber = (key, value) => (typeof value === 'bigint' ? rawJSON(toText(value)) : value);
    const toJson = (value) => {
        try {
            const text = stringify(value);
            return typeof text === 'string' ? text : '';
        } catch {
            try {
                const text = stringify(value, bigIntAsNumber);
                return typeof text === 'string' ? text : '';
            } catch {
                return '';
            }
        }
    };
    const fail = (ticket, error) => {
        const facts = describeError(error);
        native.finish(ticket, false, facts[0], '', facts[1], facts[2]);
    };
    // Awaits a result and reports it with its ticket.
    const settle = async (ticket, value) => {
        let answer;
        try {
            answer = await value;
        } catch (error) {
            fail(ticket, error);
            return;
        }
        native.finish(ticket, true, format(answer), toJson(answer), '', undefined);
    };
    const run = (ticket, body) => settle(ticket, apply(body, undefined, []));
    // The same for a value that the caller itself needs.
    const settleWith = async (ticket, promise) => {
        let answer;
        try {
            answer = await promise;
        } catch (error) {
            fail(ticket, error);
            return;
        }
        native.awaited(ticket, answer);
    };

    // --- Completion ----------------------------------------------------------------------------------------------

    const step = (value, name, mayRead) => {
        for (let object = value; object !== null; object = getPrototypeOf(object)) {
            if (native.isProxy(object))
                return undefined;
            const found = getOwnPropertyDescriptor(object, name);
            if (!found)
                continue;
            if ('value' in found)
                return found.value;
            return mayRead && found.get && native.isNative(found.get) ? apply(found.get, value, []) : undefined;
        }
        return undefined;
    };
    // Runs no script of the page: no getter but the engine's own, no proxy trap.
    const propertyNames = (start, path, isNova) => {
        let value = start;
        for (let i = 0; i < path.length; ++i) {
            if (value === undefined || value === null)
                return [];
            value = step(isObject(value) ? value : getPrototypeOf(value), path[i], isNova);
        }
        if (value === undefined || value === null)
            return [];
        const names = { __proto__: null };
        for (let object = isObject(value) ? value : getPrototypeOf(value); object !== null; object = getPrototypeOf(object)) {
            if (native.isProxy(object))
                break;
            const own = ownKeys(object);
            for (let i = 0; i < own.length; ++i) {
                if (typeof own[i] === 'string')
                    define(names, own[i], true, true);
            }
        }
        return keys(names);
    };

    // --- Globals of the page -------------------------------------------------------------------------------------

    const consoleLine = (isError) => function (...values) {
        let line = '';
        for (let i = 0; i < values.length; ++i)
            line = i === 0 ? format(values[i]) : line + ' ' + format(values[i]);
        native.print(line, isError);
    };
    const console = {};
    for (const name of ['log', 'info', 'debug'])
        define(console, name, consoleLine(false), true);
    for (const name of ['warn', 'error'])
        define(console, name, consoleLine(true), true);
    define(globalThis, 'console', console, false);

    const needFunction = (name, callback) => {
        if (typeof callback !== 'function')
            throw new TypeErrorType(name + ': a function is expected');
    };
    const startTimer = (name, repeats) => function (callback, delay, ...rest) {
        needFunction(name, callback);
        return native.startTimer(() => apply(callback, undefined, rest), toNumber(delay), repeats);
    };
    const clearTimer = function (timer) {
        if (typeof timer === 'number')
            native.clearTimer(timer);
    };
    define(globalThis, 'setTimeout', startTimer('setTimeout', false), false);
    define(globalThis, 'setInterval', startTimer('setInterval', true), false);
    define(globalThis, 'clearTimeout', clearTimer, false);
    define(globalThis, 'clearInterval', clearTimer, false);

    const settled = Promise.resolve();
    define(settled, 'constructor', undefined, false);
    const afterThis = (callback) => {
        then(settled, callback);
    };
    define(globalThis, 'queueMicrotask', function queueMicrotask(callback) {
        needFunction('queueMicrotask', callback);
        afterThis(() => {
            try {
                callback();
            } catch (error) {
                reportError(error);
            }
        });
    }, false);
    define(globalThis, 'exit', function exit(code = 0) {
        if (!isInteger(code) || code < 0 || code > 255)
            throw makeTypeError('exit: the code must be an integer from 0 to 255');
        native.exit(code);
    }, false);
    const play = function play(steps) {
        if (typeof steps !== 'string')
            throw makeTypeError('process.play: a text is expected');
        native.play(steps);
    };
    const makeProcess = (argv) => define(globalThis, 'process', { argv, play }, false);

    // NovaExtension: every object is bound at its first access and is a plain property from then on.
    const makeRoot = (names) => {
        const root = {};
        for (const name of names) {
            const get = native.makeGetter(name);
            defineProperty(root, name, { __proto__: null, get, enumerable: true, configurable: true });
        }
        defineProperty(root, tagSymbol, { __proto__: null, value: 'NovaExtension', configurable: true });
        define(globalThis, 'NovaExtension', root, false);
        return root;
    };
    const bindRoot = (root, name, value) => {
        if (getOwnPropertyDescriptor(root, name)?.get)
            define(root, name, value, true);
    };
    // Makes an object of methods the prototype of a class, and returns the function that makes its wrappers.
    const makeClass = (tag, prototype) => {
        defineProperty(prototype, tagSymbol, { __proto__: null, value: tag, configurable: true });
        return () => ({ __proto__: prototype });
    };
    const addGetter = (prototype, name, get) =>
        defineProperty(prototype, name, { __proto__: null, get, enumerable: true, configurable: true });

    // An object stays the value of a property, with all that the page puts on it, as long as the owner is there.
    const values = new WeakMap();
    const keepValue = (owner, name, value) => {
        let kept = weakGet(values, owner);
        if (!kept) {
            kept = { __proto__: null };
            weakSet(values, owner, kept);
        }
        kept[name] = value;
    };

    return {
        __proto__: null, nativePrototype, signalArray, keys: listKeys, languagePrototypes, objectPrototype, makeError,
        errorFromObject, makeTypeError, makeRangeError, describeError, settle, settleWith, run, fail, propertyNames,
        afterThis, makeProcess, makeRoot, bindRoot, makeClass, addGetter, keepValue,
        spread: (callee, values) => apply(callee, undefined, values), bare: () => ({ __proto__: null }),
    };
})
