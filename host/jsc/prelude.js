// Prepares a page and inspects its values for the engine. host/engine/pagescript.js and what follows it come first, whose
// rules hold here, too.
(function (native, signalArray) {
    'use strict';
    const isOwnFrame = (frame) => indexOf(frame, '@nova:', 0) >= 0;
    // "name@file:line:column", where file and name may hold any character; "@" alone for functions without a name.
    const readFrame = (line) => {
        const at = indexOf(line, '@', 0);
        const frame = isOwnFrame(line) ? undefined : readPlace(slice(line, at + 1));
        const name = at > 0 ? slice(line, 0, at) : '';
        if (frame)
            frame.name = name === 'global code' || name === 'eval code' || name === 'module code' ? '' : name;
        return frame;
    };
    // The engine points behind what is called or read: at the bracket of a call, where others point at the name, and of a
    // construction at its "new"; and at the dot of a property.
    const isNameUnit = (unit) => (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z') || (unit >= '0' && unit <= '9')
        || unit === '_' || unit === '$' || unit > '\x7f';
    const columnOf = (text, column) => {
        if (text[column - 1] === '.')
            return column + 1;
        if (text[column - 1] !== '(')
            return column;
        let start = column - 1;
        while (start > 0 && isNameUnit(text[start - 1]))
            --start;
        let first = start;
        while (first > 0 && (isNameUnit(text[first - 1]) || text[first - 1] === '.'))
            --first;
        return first >= 4 && slice(text, first - 4, first) === 'new ' ? first - 3 : start + 1;
    };
    const isCallPlace = (text, column) => indexOf('(.`[', text[column - 1] ?? ' ', 0) >= 0 || slice(text, column - 1, column + 3) === 'new ';
    const write = (text, isError) => native.print(text, isError);
    const now = () => native.now();
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
    const { unknownName } = native;
    native.unknownName = (owner, name) => {
        const outer = readName;
        readName = name;
        try {
            return unknownName(owner, name);
        } finally {
            readName = outer;
        }
    };
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

    const console = {};
    installConsole(console);
    define(globalThis, 'console', console, false);

    const needFunction = (name, callback) => {
        if (typeof callback !== 'function')
            throw new TypeErrorType(name + ': a function is expected');
    };
    const startTimer = (name, repeats) => function (callback, delay, ...rest) {
        needFunction(name, callback);
        return native.startTimer(() => apply(callback, undefined, rest), toNumber(delay), repeats, true);
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
        afterThis(() => callReporting(callback, undefined, [], 'in a microtask'));
    }, false);
    const makeProcess = (argv) => installProcess(argv, (code) => native.exit(code), (steps) => native.play(steps));
    const setColors = (output, errors) => {
        colors.output = output;
        colors.errors = errors;
    };

    // What pages have in every browser beside the language, loaded when it is first used. Each script's functions are those
    // that it exports; what else it defines stays in a global object of its own.
    const webApis = {
        __proto__: null,
        clone: ['DOMException', 'structuredClone', 'atob', 'btoa'],
        crypto: ['crypto'],
        events: ['Event', 'CustomEvent', 'EventTarget', 'AbortSignal', 'AbortController'],
        performance: ['performance'],
        text: ['TextEncoder', 'TextDecoder'],
        url: ['URL', 'URLSearchParams'],
    };
    const { milliseconds, fillRandom } = native;
    const forWebApis = {
        __proto__: null, milliseconds, fillRandom, reportError, timeOrigin: Date.now(),
        startTimer: (callback, delay) => native.startTimer(callback, toNumber(delay), false, false),
    };
    const loadWebApi = (script) => {
        const names = webApis[script];
        const prototypes = [];
        const scope = {};
        const globals = ownKeys(globalThis);
        for (let i = 0; i < globals.length; ++i)
            define(scope, globals[i], getOwnPropertyDescriptor(globalThis, globals[i]).value, false);
        const made = apply(native.webApi(script), undefined, [scope, forWebApis]);
        for (let i = 0; i < names.length; ++i) {
            const value = made[names[i]];
            const prototype = typeof value === 'function' ? getOwnPropertyDescriptor(value, 'prototype')?.value : undefined;
            if (isObject(prototype)) {
                define(prototypes, prototypes.length, names[i], true);
                define(prototypes, prototypes.length, prototype, true);
                noteWebClass(names[i], prototype);
            }
            if (weakGet(lazyGetters, getOwnPropertyDescriptor(globalThis, names[i])?.get ?? names) === script)
                define(globalThis, names[i], value, false);
        }
        apiPrototypes[script] = prototypes;
        native.addKinds(prototypes);
        return made;
    };
    const lazyGetters = new WeakMap(); // the script behind each
    const apiPrototypes = { __proto__: null }; // kept as long as the page, also when it deletes the functions
    for (const script of keys(webApis)) {
        let made;
        const none = { __proto__: null };
        const load = () => {
            if (!made) {
                made = none; // the script looks whether the engine has them
                try {
                    made = loadWebApi(script);
                } catch (error) {
                    made = undefined; // the stack is short
                    throw error;
                }
            }
            return made;
        };
        for (const name of webApis[script]) {
            const get = () => load()[name];
            const set = function (value) {
                define(this ?? globalThis, name, value, true);
            };
            weakSet(lazyGetters, get, script);
            defineProperty(globalThis, name, { __proto__: null, get, set, enumerable: false, configurable: true });
        }
    }

    // NovaExtension: every object is bound at its first access and is a plain property from then on.
    const makeRoot = (names, checksNames) => {
        const root = {};
        isChecked = checksNames;
        for (const name of names) {
            const get = native.makeGetter(name);
            defineProperty(root, name, { __proto__: null, get, enumerable: true, configurable: true });
        }
        setTag(root, 'NovaExtension');
        define(globalThis, 'NovaExtension', root, false);
        return root;
    };
    const bindRoot = (root, name, value) => {
        if (getOwnPropertyDescriptor(root, name)?.get)
            define(root, name, value, true);
    };
    // Makes an object of methods the prototype of a class, and returns the function that makes its wrappers.
    const makeClass = (tag, prototype) => {
        setTag(prototype, tag);
        return () => ({ __proto__: prototype });
    };
    const addGetter = (prototype, name, get) =>
        defineProperty(prototype, name, { __proto__: null, get, enumerable: true, configurable: true });

    return {
        __proto__: null, nativePrototype, signalArray, keys: listKeys, languagePrototypes, objectPrototype, makeError,
        errorFromObject, makeTypeError, makeRangeError, describeError, noteRefusal, noteSource, noteInput, setColors, settle, settleKept,
        run, fail, failKept, propertyNames, afterThis, makeProcess, exitCode, makeRoot, bindRoot, makeClass, addGetter,
        keepValue, bytesOf, copyBytes,
        spread: (callee, values) => apply(callee, undefined, values), bare: () => ({ __proto__: null }),
    };
})
