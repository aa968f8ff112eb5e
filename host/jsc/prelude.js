// Prepares a page and inspects its values for the engine. host/engine/pagescript.js comes first, whose rules hold here, too.
(function (native, signalArray) {
    'use strict';
    const isOwnFrame = (frame) => indexOf(frame, '@nova:', 0) >= 0;
    const { rawJSON } = JSON;
    const bigIntAsNumber = (key, value) => (typeof value === 'bigint' ? rawJSON(toText(value)) : value);
    const jsonOf = (value) => {
        try {
            return stringify(value);
        } catch {
            return stringify(value, bigIntAsNumber);
        }
    };
@PAGE_SCRIPT@
    const { ownKeys } = Reflect;
    // The prototype of the native functions behind methods, in place of one that the page can change.
    const nativePrototype = { __proto__: null, apply: Function.prototype.apply };
    const then = uncurry(Promise.prototype.then);
    const setBytes = uncurry(typedArrayPrototype.set);
    const transfer = uncurry(ArrayBuffer.prototype.transfer);

    const listKeys = (object) => {
        // A typed array has a key for each element.
        const names = isView(object) ? object : keys(object);
        signalArray[1] = names === object ? -1 : names.length;
        return names;
    };

    // Copies bytes into an array on memory of the engine's, and has the array let go of that at once.
    const copyBytes = (bytes, target) => {
        setBytes(target, bytes);
        transfer(typedArrayBuffer(target), 0);
    };

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

    const printer = (isError) => function (...values) {
        native.print(consoleLine(values), isError);
    };
    const console = {};
    for (const name of ['log', 'info', 'debug'])
        define(console, name, printer(false), true);
    for (const name of ['warn', 'error'])
        define(console, name, printer(true), true);
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
    let process;
    const makeProcess = (argv) => {
        process = { argv, play };
        define(globalThis, 'process', process, false);
    };
    const exitCode = () => {
        const code = peek(process, 'exitCode');
        return isInteger(code) && code >= 0 && code <= 255 ? code : 0;
    };

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

    return {
        __proto__: null, nativePrototype, signalArray, keys: listKeys, languagePrototypes, objectPrototype, makeError,
        errorFromObject, makeTypeError, makeRangeError, describeError, settle, settleWith, run, fail, propertyNames,
        afterThis, makeProcess, exitCode, makeRoot, bindRoot, makeClass, addGetter, keepValue, bytesOf, copyBytes,
        spread: (callee, values) => apply(callee, undefined, values), bare: () => ({ __proto__: null }),
    };
})
