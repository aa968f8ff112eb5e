// What every engine's prelude begins with: the language's own functions, bytes, and names that there are not. errors.js
// follows. Where scripts of the tool run, inspecttext.js, inspectkinds.js, inspect.js, report.js, console.js and results.js do so
// as well.
// Runs before any script of the page and keeps the built-in functions that it needs, so that the page can not change its
// behaviour by replacing them. For the same reason none of these files uses prototypes: no iteration protocol, no assignment
// of new properties but to objects without a prototype, no methods.
//
// The prelude around them defines
//   native                 with unknownName(owner, name), which returns the text of an error to throw, or undefined
//   isOwnFrame(line)       whether a line of a stack is of the engine's own scripts
// and for scripts of the tool
//   native                 with finish(ticket, ok, text, json, stack, code, report) and uncaught(text, stack, code, report)
//   jsonOf(value)          may throw
//   readFrame(line)        what a line of a stack says, {name, file, line, column}; undefined where it is not of the page
//   columnOf(text, column) the column at which a frame of a line of source is shown
//   isCallPlace(text, column)  whether a frame that is none of the innermost can be at a column of a line of source
//   write(text, isError)   prints a line
//   now()                  milliseconds, for console.time
    const { apply } = Reflect;
    const { keys, defineProperty, getOwnPropertyDescriptor, getPrototypeOf } = Object;
    const { isArray } = Array;
    const { stringify } = JSON;
    const { isInteger } = Number;
    const { sqrt, round, floor, min, max } = Math;
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
    const functionText = uncurry(Function.prototype.toString);
    const slice = uncurry(String.prototype.slice);
    const indexOf = uncurry(String.prototype.indexOf);
    const lastIndexOf = uncurry(String.prototype.lastIndexOf);
    const codeAt = uncurry(String.prototype.charCodeAt);
    const repeat = uncurry(String.prototype.repeat);
    const startsWith = uncurry(String.prototype.startsWith);
    const weakGet = uncurry(WeakMap.prototype.get);
    const weakSet = uncurry(WeakMap.prototype.set);
    const tagSymbol = Symbol.toStringTag;

    const accessor = (prototype, name) => uncurry(getOwnPropertyDescriptor(prototype, name).get);
    const BytesType = Uint8Array;
    const { isView } = ArrayBuffer;
    const typedArrayPrototype = getPrototypeOf(Uint8Array.prototype);
    const typedArrayKind = accessor(typedArrayPrototype, tagSymbol);
    const typedArrayBuffer = accessor(typedArrayPrototype, 'buffer');
    const typedArrayOffset = accessor(typedArrayPrototype, 'byteOffset');
    const typedArrayBytes = accessor(typedArrayPrototype, 'byteLength');
    const dataViewBuffer = accessor(DataView.prototype, 'buffer');
    const dataViewOffset = accessor(DataView.prototype, 'byteOffset');
    const dataViewBytes = accessor(DataView.prototype, 'byteLength');
    const bufferBytes = accessor(ArrayBuffer.prototype, 'byteLength');

    const isObject = (value) => (typeof value === 'object' && value !== null) || typeof value === 'function';
    // Defines an own property, regardless of setters in prototypes.
    const define = (object, name, value, enumerable) =>
        defineProperty(object, name, { __proto__: null, value, writable: true, enumerable, configurable: true });

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
    const peekOwn = (object, name) => getOwnPropertyDescriptor(object, name)?.value;
    const peekText = (object, name) => {
        try {
            const value = peek(object, name);
            return typeof value === 'string' ? value : '';
        } catch {
            return '';
        }
    };

    // A list without a prototype, whose setters an assignment would call.
    const makeList = () => ({ __proto__: null, length: 0 });
    const push = (list, item) => {
        list[list.length] = item;
        ++list.length;
    };
    const joinAll = (list, separator) => {
        let text = list.length > 0 ? list[0] : '';
        for (let i = 1; i < list.length; ++i)
            text = text + separator + list[i];
        return text;
    };

    // An object stays the value of a property, with all that the page puts on it, as long as the owner is there.
    const keptValues = new WeakMap();
    const keepValue = (owner, name, value) => {
        let kept = weakGet(keptValues, owner);
        if (!kept) {
            kept = { __proto__: null };
            weakSet(keptValues, owner, kept);
        }
        kept[name] = value;
    };

    // --- Bytes ---------------------------------------------------------------------------------------------------

    // The bytes of an ArrayBuffer, or those that a view shows of one, as a Uint8Array on the same memory; a string that says
    // what it is when they can not be had. Runs no script of the page.
    const bytesOf = (object) => {
        const kind = isView(object) ? (typedArrayKind(object) ?? 'DataView') : '';
        const buffer = kind === '' ? object : kind === 'DataView' ? dataViewBuffer(object) : typedArrayBuffer(object);
        try {
            bufferBytes(buffer);
        } catch {
            return kind === '' ? 'a SharedArrayBuffer' : 'a view of a SharedArrayBuffer';
        }
        try {
            if (kind === '')
                return new BytesType(buffer);
            return kind === 'DataView' ? new BytesType(buffer, dataViewOffset(object), dataViewBytes(object))
                : new BytesType(buffer, typedArrayOffset(object), typedArrayBytes(object));
        } catch {
            return 'a detached ArrayBuffer';
        }
    };

    // --- Names that NovaExtension does not have ------------------------------------------------------------------

    const ProxyType = Proxy;
    const { get: readProperty, setPrototypeOf: setBase } = Reflect;
    let isChecked = false; // set by the prelude: somebody wants to know of misspelt names
    // What NovaExtension and the classes of its objects inherit from then. Only the reading of a name that they do not have
    // comes here; to ask whether they have one, by `in` or hasOwnProperty, is no mistake.
    const makeBase = (owner) => new ProxyType({}, {
        __proto__: null,
        get: (base, name, self) => {
            const refusal = typeof name === 'string' && !(name in base) ? native.unknownName(owner, name) : undefined;
            if (refusal !== undefined)
                inPage.raise(noteRead(makeTypeError(refusal), name));
            return readProperty(base, name, self);
        },
    });
    const setTag = (object, tag) => {
        defineProperty(object, tagSymbol, { __proto__: null, value: tag, configurable: true });
        if (isChecked)
            setBase(object, makeBase(tag));
    };
