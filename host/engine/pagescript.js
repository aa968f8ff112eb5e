// What every engine's prelude begins with: values as text for the console, errors as script sees them, and the results of
// scripts. Runs before any script of the page and keeps the built-in functions that it needs, so that the page can not
// change its behaviour by replacing them. For the same reason it must not use prototypes: no iteration protocol, no
// assignment of new properties, no methods.
//
// The prelude around it defines `native`, with finish(ticket, ok, text, json, stack, code) and uncaught(text, stack, code);
// isOwnFrame(frame), whether a line of a stack is of the engine's own script; and jsonOf(value), which may throw.
    const { apply } = Reflect;
    const { keys, defineProperty, getOwnPropertyDescriptor, getPrototypeOf } = Object;
    const { isArray } = Array;
    const { stringify } = JSON;
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

    const consoleLine = (values) => {
        let line = '';
        for (let i = 0; i < values.length; ++i)
            line = i === 0 ? format(values[i]) : line + ' ' + format(values[i]);
        return line;
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
            if (!isOwnFrame(frame))
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

    const toJson = (value) => {
        try {
            const text = jsonOf(value);
            return typeof text === 'string' ? text : '';
        } catch {
            return '';
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
    // The same for an input of a prompt, whose result the page gets as a global.
    const keep = (name, value) => {
        try {
            define(globalThis, name, value, false);
        } catch {
            // The page has frozen its global object.
        }
    };
    const failKept = (ticket, error) => {
        keep('_error', error);
        fail(ticket, error);
    };
    const settleKept = async (ticket, value) => {
        let answer;
        try {
            answer = await value;
        } catch (error) {
            failKept(ticket, error);
            return;
        }
        keep('_', answer);
        settle(ticket, answer);
    };
    const run = (ticket, body) => settle(ticket, apply(body, undefined, []));
