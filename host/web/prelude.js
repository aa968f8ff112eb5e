// Runs in every document before its own script and gives it NovaExtension, when its origin may have it. It reaches the
// suite by prompt(), whose default value carries a request and whose result the reply; host/web/wire.h says how they are
// written. host/engine/pagescript.js comes first, whose rules hold here, too.
(function () {
    'use strict';
    const isOwnFrame = (frame) => indexOf(frame, '    at ', 0) !== 0 || indexOf(frame, 'nova-prelude', 0) >= 0
        || indexOf(frame, '<anonymous>', 0) >= 0;
    // "    at name (file:line:column)", "    at file:line:column"
    const readFrame = (line) => {
        if (isOwnFrame(line))
            return undefined;
        const open = indexOf(line, ' (', 7);
        const frame = readPlace(open < 0 ? slice(line, 7) : slice(line, open + 2, -1));
        if (frame && open > 0)
            frame.name = slice(line, 7, open) === 'eval' ? '' : slice(line, 7, open);
        return frame;
    };
    const columnOf = (text, column) => column;
    const write = (text, isError) => printLine(text, isError);
    const clock = performance;
    const clockNow = performance.now;
    const now = () => apply(clockNow, clock, []);
    // Replaced by itself without its quotes, which no text of the page can hold: half of a surrogate pair and a random number.
    const jsonOf = (value) => {
        const mark = '\ud800' + random();
        const text = stringify(value, (key, item) => (typeof item === 'bigint' ? mark + item : item));
        if (typeof text !== 'string')
            return text;
        const quoted = slice(stringify(mark), 0, -1);
        let plain = '';
        let from = 0;
        for (let at = indexOf(text, quoted, 0); at >= 0; at = indexOf(text, quoted, from)) {
            const end = indexOf(text, '"', at + quoted.length);
            plain = plain + slice(text, from, at) + slice(text, at + quoted.length, end);
            from = end + 1;
        }
        return plain + slice(text, from);
    };
@PAGE_SCRIPT@
    const ask = prompt;
    const world = globalThis;
    const later = setTimeout;
    const soon = queueMicrotask;
    const { parse } = JSON;
    const { random } = Math;
    const { fromCharCode } = String;
    const { iterator } = Symbol;
    const PromiseType = Promise;
    const WeakRefType = WeakRef;
    const indirectEval = eval;
    const encodeName = encodeURI;
    const BigIntType = BigInt;
    const RequestType = XMLHttpRequest;
    const open = uncurry(XMLHttpRequest.prototype.open);
    const send = uncurry(XMLHttpRequest.prototype.send);
    const listen = uncurry(EventTarget.prototype.addEventListener);
    const getterOf = (type, name) => uncurry(getOwnPropertyDescriptor(type.prototype, name).get);
    const reasonOf = getterOf(PromiseRejectionEvent, 'reason');
    const errorOf = getterOf(ErrorEvent, 'error');
    const fileOf = getterOf(ErrorEvent, 'filename');
    const messageOfEvent = getterOf(ErrorEvent, 'message');
    const lineNumberOf = getterOf(ErrorEvent, 'lineno');
    const columnNumberOf = getterOf(ErrorEvent, 'colno');
    const preventDefault = uncurry(Event.prototype.preventDefault);
    const stopImmediatePropagation = uncurry(Event.prototype.stopImmediatePropagation);
    const mapGet = uncurry(Map.prototype.get);
    const mapSet = uncurry(Map.prototype.set);
    const mapDelete = uncurry(Map.prototype.delete);
    const setHas = uncurry(Set.prototype.has);
    const setAdd = uncurry(Set.prototype.add);
    const setDelete = uncurry(Set.prototype.delete);
    const deref = uncurry(WeakRef.prototype.deref);
    const register = uncurry(FinalizationRegistry.prototype.register);
    const SetType = Set;

    const operationFailed = 3;
    const wrongArgument = 1;
    let frame = ''; // the name that the suite has given to this document; empty: it has none any more

    // --- Requests and replies ------------------------------------------------------------------------------------

@WIRE_TEXT@
    // What the suite has had for this document and is still to be done, in the order in which it came: a function of the page
    // that is called may send a request, whose reply brings what came later. What came before that is then done first.
    let firstBatch;
    let lastBatch;
    let performing = 0;
    const deepestPerforming = 20;
    const performBatches = () => {
        // Where each of many functions sends a request, the stack would not suffice: the outer ones do the rest.
        if (performing === deepestPerforming)
            return;
        ++performing;
        try {
            while (firstBatch) {
                if (firstBatch.count === 0) {
                    firstBatch = firstBatch.next;
                    lastBatch = firstBatch && lastBatch;
                } else {
                    --firstBatch.count;
                    performMessage(firstBatch.reader);
                }
            }
        } finally {
            --performing;
        }
    };
    // Sends a request, does what the suite had for this document until then, and returns a reader of what the request itself
    // is answered; undefined when there is nobody, as for a document that is going away.
    const transact = (request) => {
        if (printed !== '')
            sendPrinted();
        const reply = ask('nova', request);
        if (typeof reply !== 'string' || reply === '')
            return undefined;
        const reader = { text: reply, at: toNumber(slice(reply, lastIndexOf(reply, ';') + 1)) };
        for (let count = nextCount(reader); count > 0; --count)
            readClass(reader);
        const count = nextCount(reader);
        if (count > 0) {
            const batch = { __proto__: null, reader, count, next: undefined };
            if (firstBatch)
                lastBatch.next = batch;
            else
                firstBatch = batch;
            lastBatch = batch;
            performBatches();
        }
        return { text: reply, at: 0 };
    };

    // --- Values to the suite -------------------------------------------------------------------------------------

    const maximumValues = 1000000;
    const maximumTextBytes = 268435456;
    const maximumBytes = 268435456;
    const maximumDepth = 1000;
    const maximumPath = 200;
    const maximumPathKey = 40;
    const nearCount = 8;
    const maximumInt64 = BigInt('9223372036854775807');
    const minimumInt64 = BigInt('-9223372036854775808');

    const functionIds = new WeakMap();
    const functions = new Map(); // by id: {callee, uses}; held while the suite keeps them
    let lastFunction = 0;

    const wrapperRecords = new WeakMap(); // by wrapper: {id, made}

    const refuse = (writer, problem) => {
        writer.problem = problem;
        return false;
    };
    const refuseThrown = (writer, error) => refuse(writer, 'reading it threw: ' + describeError(error)[0]);
    const takeText = (writer, units) => {
        writer.bytes += units * 2;
        return writer.bytes <= maximumTextBytes || refuse(writer, 'more than 256 MB of text in one call');
    };
    const isLetter = (unit) => (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z') || unit === '_' || unit === '$'
        || unit > '\x7f';
    const isIdentifier = (key) => {
        for (let i = 0; i < key.length; ++i) {
            if (!isLetter(key[i]) && !(i > 0 && key[i] >= '0' && key[i] <= '9'))
                return false;
        }
        return key !== '';
    };
    const formatStep = (key) => {
        if (key.length > maximumPathKey)
            return '["' + slice(key, 0, maximumPathKey) + '..."]';
        return isIdentifier(key) ? '.' + key : '["' + key + '"]';
    };
    // An error is returned from the innermost value outwards, so the path grows at the front and is cut at the end.
    const prependPath = (writer, step) => {
        writer.path = step + writer.path;
        if (writer.path.length > maximumPath) {
            writer.path = slice(writer.path, 0, maximumPath);
            writer.isCut = true;
        }
        return false;
    };
    const problemOf = (writer) => {
        if (writer.path === '')
            return writer.problem;
        const path = writer.path[0] === '.' ? slice(writer.path, 1) : writer.path;
        return writer.problem + ' (at ' + path + (writer.isCut ? '...' : '') + ')';
    };

    // Built-in prototypes by class: objects that inherit from one are no plain data.
    const kinds = new Map();
    const addKind = (name, prototype) => {
        if (isObject(prototype) && prototype !== objectPrototype)
            mapSet(kinds, prototype, name);
    };
    for (const name of ['AggregateError', 'Array', 'ArrayBuffer', 'BigInt', 'BigInt64Array', 'BigUint64Array', 'Boolean',
        'DataView', 'Date', 'Error', 'EvalError', 'FinalizationRegistry', 'Float32Array', 'Float64Array', 'Function',
        'Int16Array', 'Int32Array', 'Int8Array', 'Map', 'Number', 'Promise', 'RangeError', 'ReferenceError', 'RegExp', 'Set',
        'SharedArrayBuffer', 'String', 'Symbol', 'SyntaxError', 'TypeError', 'URIError', 'Uint16Array', 'Uint32Array',
        'Uint8Array', 'Uint8ClampedArray', 'WeakMap', 'WeakRef', 'WeakSet'])
        addKind(name, globalThis[name]?.prototype);
    for (const space of ['Intl', 'WebAssembly']) {
        for (const name of Object.getOwnPropertyNames(globalThis[space] ?? {}))
            addKind(space + '.' + name, globalThis[space][name]?.prototype);
    }
    addKind('TypedArray', getPrototypeOf(Uint8Array.prototype));
    addKind('Generator', getPrototypeOf(function* () {}.prototype));
    addKind('AsyncGenerator', getPrototypeOf(async function* () {}.prototype));
    addKind('Iterator', getPrototypeOf(getPrototypeOf([][iterator]())));

    const withArticle = (kind) => (indexOf('AEIO', kind[0], 0) >= 0 ? 'an ' : 'a ') + kind;
    // The class of a prototype when it is one of the browser's (a Blob, an Element) or another document's.
    const nativeKind = (prototype) => {
        const maker = getOwnPropertyDescriptor(prototype, 'constructor')?.value;
        if (typeof maker !== 'function' || indexOf(functionText(maker), '[native code]', 0) < 0)
            return '';
        const name = getOwnPropertyDescriptor(maker, 'name')?.value;
        return typeof name === 'string' && name !== 'Object' ? name : '';
    };
    const isPlainData = (writer, object) => {
        let one = object;
        for (let i = 0; i < maximumDepth; ++i) {
            const next = getPrototypeOf(one);
            if (next === objectPrototype || next === null)
                return true;
            const kind = mapGet(kinds, next) || nativeKind(next);
            if (kind)
                return refuse(writer, withArticle(kind) + ' can not be passed');
            one = next;
        }
        return refuse(writer, 'an object with too many prototypes can not be passed');
    };

    const enter = (writer, object, depth) => {
        if (depth >= maximumDepth)
            return refuse(writer, 'nested deeper than 1000');
        for (let i = 0; i < depth && i < nearCount; ++i) {
            if (writer.near[i] === object)
                return refuse(writer, 'a cycle can not be passed');
        }
        if (depth < nearCount) {
            writer.near[depth] = object;
            return true;
        }
        writer.deep = writer.deep ?? new SetType();
        if (setHas(writer.deep, object))
            return refuse(writer, 'a cycle can not be passed');
        setAdd(writer.deep, object);
        return true;
    };
    const leave = (writer, object, depth) => {
        if (depth >= nearCount)
            setDelete(writer.deep, object);
    };

    const writeArray = (writer, array, depth) => {
        const { length } = array;
        if (!(length <= maximumValues - writer.values))
            return refuse(writer, 'more than 1000000 values in one call');
        writer.out += 'a' + length + ';';
        for (let i = 0; i < length; ++i) {
            let item;
            try {
                item = array[i];
            } catch (error) {
                refuseThrown(writer, error);
                return prependPath(writer, '[' + i + ']');
            }
            if (!writeValue(writer, item, depth + 1))
                return prependPath(writer, '[' + i + ']');
        }
        return true;
    };
    const isArrayBuffer = (object) => {
        try {
            return bufferBytes(object) >= 0;
        } catch {
            return false;
        }
    };
    const writeObject = (writer, object, depth) => {
        let names;
        try {
            names = keys(object);
            if (!isPlainData(writer, object))
                return isArrayBuffer(object) && writeBytes(writer, object);
        } catch (error) {
            return refuseThrown(writer, error);
        }
        if (names.length > maximumValues - writer.values)
            return refuse(writer, 'more than 1000000 values in one call');
        writer.out += 'o' + names.length + ';';
        for (let i = 0; i < names.length; ++i) {
            const name = names[i];
            let item;
            let isRead = takeText(writer, name.length);
            try {
                item = object[name];
            } catch (error) {
                isRead = refuseThrown(writer, error);
            }
            writer.out += written(name);
            if (!isRead || !writeValue(writer, item, depth + 1))
                return prependPath(writer, formatStep(name));
        }
        return true;
    };
    const writeBytes = (writer, object) => {
        const bytes = bytesOf(object);
        if (typeof bytes === 'string')
            return refuse(writer, bytes + ' can not be passed');
        const count = typedArrayBytes(bytes);
        writer.byteCount += count;
        if (writer.byteCount > maximumBytes)
            return refuse(writer, 'more than 256 MB of bytes in one call');
        const units = new UnitsType(count);
        for (let i = 0; i < count; ++i)
            units[i] = 0x100 + bytes[i];
        writer.out += 'x' + count + ';' + decodeUnits(unitsDecoder, units);
        return true;
    };
    const writeFunction = (writer, callee) => {
        let id = weakGet(functionIds, callee);
        if (id === undefined) {
            id = ++lastFunction;
            weakSet(functionIds, callee, id);
        }
        const record = mapGet(functions, id);
        if (record)
            ++record.uses;
        else
            mapSet(functions, id, { __proto__: null, callee, uses: 1 });
        writer.sent = { __proto__: null, id, next: writer.sent };
        writer.out += 'F' + id + ';';
        return true;
    };
    const dropFunction = (id, uses) => {
        const record = mapGet(functions, id);
        if (record && (record.uses -= uses) <= 0)
            mapDelete(functions, id);
    };
    const writeValue = (writer, value, depth) => {
        if (++writer.values > maximumValues)
            return refuse(writer, 'more than 1000000 values in one call');
        switch (typeof value) {
        case 'undefined':
            writer.out += 'u';
            return true;
        case 'boolean':
            writer.out += value ? 't' : 'f';
            return true;
        case 'number':
            writer.out += 'd' + (value === 0 && 1 / value < 0 ? '-0' : value) + ';';
            return true;
        case 'string':
            if (!takeText(writer, value.length))
                return false;
            writer.out += 's' + written(value);
            return true;
        case 'bigint':
            if (value > maximumInt64 || value < minimumInt64)
                return refuse(writer, 'a BigInt of more than 64 bits can not be passed');
            writer.out += 'b' + value + ';';
            return true;
        case 'symbol':
            return refuse(writer, 'a symbol can not be passed');
        }
        if (value === null) {
            writer.out += 'n';
            return true;
        }
        const record = weakGet(wrapperRecords, value);
        if (record) {
            writer.out += 'h' + record.id + ';';
            return true;
        }
        if (typeof value === 'function')
            return writeFunction(writer, value);
        if (isView(value))
            return writeBytes(writer, value);
        if (!enter(writer, value, depth))
            return false;
        let isList;
        try {
            isList = isArray(value);
        } catch {
            return refuse(writer, 'a proxy can not be passed'); // it has been revoked
        }
        const done = isList ? writeArray(writer, value, depth) : writeObject(writer, value, depth);
        leave(writer, value, depth);
        return done;
    };
    const makeWriter = (out) => (
        { __proto__: null, out, values: 0, bytes: 0, byteCount: 0, problem: '', path: '', isCut: false, near: { __proto__: null }, deep: undefined, sent: undefined });
    const takeBack = (writer) => {
        for (let { sent } = writer; sent; sent = sent.next)
            dropFunction(sent.id, 1);
    };

    // --- Values from the suite -----------------------------------------------------------------------------------

    const readValue = (reader) => {
        switch (reader.text[reader.at++]) {
        case 'n':
            return null;
        case 't':
            return true;
        case 'f':
            return false;
        case 'd':
            return toNumber(nextWord(reader));
        case 'b':
            return BigIntType(nextWord(reader));
        case 's':
            return nextText(reader);
        case 'j':
            return parse(nextText(reader));
        case 'x': {
            const count = nextCount(reader);
            const bytes = new BytesType(count);
            for (let i = 0; i < count; ++i)
                bytes[i] = codeAt(reader.text, reader.at + i); // but for its lowest 8 bits nothing is stored
            reader.at += count;
            return bytes;
        }
        case 'e': {
            const data = readValue(reader);
            return { data, success: true };
        }
        case 'a': {
            const list = [];
            const count = nextCount(reader);
            for (let i = 0; i < count; ++i)
                define(list, i, readValue(reader), true);
            return list;
        }
        case 'o': {
            const object = {};
            for (let count = nextCount(reader); count > 0; --count) {
                const name = nextText(reader);
                define(object, name, readValue(reader), true);
            }
            return object;
        }
        case 'F':
            return mapGet(functions, nextCount(reader))?.callee;
        case 'h': {
            const id = nextCount(reader);
            return wrap(id, nextCount(reader));
        }
        case 'p':
            return promiseOf(nextCount(reader)).promise;
        default:
            return undefined;
        }
    };

    // --- Native objects ------------------------------------------------------------------------------------------

    const classes = new Map(); // by id: {id, prototype}
    const wrappers = new Map(); // by id of the object: {ref, id, seen}
    let released = ''; // ids, and how often each was seen, for the next request that says so
    const collected = new FinalizationRegistry((entry) => {
        if (mapGet(wrappers, entry.id) === entry)
            mapDelete(wrappers, entry.id);
        if (released === '')
            later(() => {
                const all = released;
                released = '';
                transact('R' + frame + ';' + all);
            }, 0);
        released += entry.id + ';' + entry.seen + ';';
    });
    const wrap = (id, classId) => {
        const known = mapGet(wrappers, id);
        const alive = known && deref(known.ref);
        if (alive) {
            ++known.seen;
            return alive;
        }
        const made = { __proto__: mapGet(classes, classId).prototype };
        const entry = { __proto__: null, id, seen: 1, ref: new WeakRefType(made) };
        mapSet(wrappers, id, entry);
        weakSet(wrapperRecords, made, { __proto__: null, id, classId });
        register(collected, made, entry);
        return made;
    };

    const readFailure = (reader) => {
        const failure = readValue(reader);
        return isObject(failure) ? errorFromObject(failure) : makeError(false, operationFailed, toText(failure));
    };
    const returnPromise = (reader, member) => {
        ++reader.at;
        const record = promiseOf(nextCount(reader));
        record.member = record.member || member;
        if (record.reason)
            noteRefusal(record.reason, member);
        return record.promise;
    };
    // What a member returns or throws.
    const result = (reader, member) => {
        if (!reader)
            throw makeError(false, operationFailed, 'the page has been closed');
        switch (reader.text[reader.at++]) {
        case 'r':
            if (reader.text[reader.at] === 'p')
                return returnPromise(reader, member);
            return readValue(reader);
        case 't':
            throw noteRefusal(readFailure(reader), member);
        case 'w':
            return result(waitFor(nextWord(reader)), member);
        case 'y':
            throw makeTypeError(nextText(reader));
        default:
            throw makeError(false, operationFailed, 'the page has been closed');
        }
    };
    // Waits for a member that shows a dialog while other pages go on: the request ends when the dialog has ended.
    const waitFor = (ticket) => {
        const request = new RequestType();
        try {
            open(request, 'GET', 'nova-bridge://wait/' + frame + '/' + ticket, false);
            send(request);
        } catch {
            // It was ended from outside; what there is of the result can be had.
        }
        return transact('T' + frame + ';' + ticket + ';');
    };
    const invoke = (self, classId, member, name, given) => {
        const record = isObject(self) ? weakGet(wrapperRecords, self) : undefined;
        if (!record || record.classId !== classId)
            throw makeTypeError('Illegal invocation');
        if (given.length > 255)
            throw noteRefusal(makeError(false, wrongArgument, 'more than 255 arguments'), name);
        const writer = makeWriter('C' + frame + ';' + record.id + ';' + member + ';' + given.length + ';');
        let done = 0;
        try {
            while (done < given.length && writeValue(writer, given[done], 0))
                ++done;
        } catch (error) {
            takeBack(writer);
            throw error; // the stack is short
        }
        if (done < given.length) {
            takeBack(writer);
            throw noteRefusal(makeError(false, wrongArgument, 'argument ' + (done + 1) + ': ' + problemOf(writer)), name);
        }
        return result(transact(writer.out), name);
    };
    const makeMethod = (classId, tag, member, name) => {
        const holder = {
            [name](...given) {
                /* [native code] */
                return invoke(this, classId, member, tag + '.' + name, given);
            },
        };
        return holder[name];
    };
    const makeGetter = (classId, tag, member, name) => function () {
        /* [native code] */
        const value = invoke(this, classId, member, tag + '.' + name, []);
        if (isObject(value) && weakGet(wrapperRecords, value))
            keepValue(this, name, value);
        return value;
    };
    const readClass = (reader) => {
        const id = nextCount(reader);
        const tag = nextText(reader);
        const prototype = {};
        for (let count = nextCount(reader); count > 0; --count) {
            const isProperty = reader.text[reader.at++] === 'g';
            const member = nextCount(reader);
            const name = nextText(reader);
            if (isProperty)
                defineProperty(prototype, name,
                    { __proto__: null, get: makeGetter(id, tag, member, name), enumerable: true, configurable: true });
            else
                define(prototype, name, makeMethod(id, tag, member, name), true);
        }
        setTag(prototype, tag);
        mapSet(classes, id, { __proto__: null, prototype });
    };
    // NovaExtension: every object is bound at its first access and is a plain property from then on.
    const makeRoot = (reader) => {
        const root = {};
        for (let count = nextCount(reader); count > 0; --count) {
            const name = nextText(reader);
            const get = () => {
                const bound = result(transact('B' + frame + ';' + name), '');
                if (getOwnPropertyDescriptor(root, name)?.configurable)
                    define(root, name, bound, true);
                keepValue(root, name, bound);
                return bound;
            };
            defineProperty(root, name, { __proto__: null, get, enumerable: true, configurable: true });
        }
        setTag(root, 'NovaExtension');
        define(world, 'NovaExtension', root, false);
    };

    // --- What the suite has for the page -------------------------------------------------------------------------

    const promises = new Map(); // by id: {promise, resolve, reject}
    const promiseOf = (id) => {
        let record = mapGet(promises, id);
        if (!record) {
            record = { __proto__: null, promise: undefined, settle: undefined, isReleased: false, member: '', reason: undefined };
            record.promise = new PromiseType((resolve, reject) => {
                record.settle = { __proto__: null, resolve, reject };
            });
            mapSet(promises, id, record);
        }
        return record;
    };
    const settlePromise = (reader) => {
        const id = nextCount(reader);
        const record = promiseOf(id);
        const { settle } = record;
        const isResolved = reader.text[reader.at++] === 'r';
        const value = readValue(reader);
        record.settle = undefined;
        if (record.isReleased)
            mapDelete(promises, id);
        if (settle && isResolved)
            settle.resolve(value);
        if (!settle || isResolved)
            return;
        record.reason = isObject(value) ? errorFromObject(value) : makeError(false, operationFailed, toText(value));
        settle.reject(noteRefusal(record.reason, record.member));
    };
    const releasePromise = (id) => {
        const record = mapGet(promises, id);
        if (!record)
            return;
        record.isReleased = true;
        if (!record.settle)
            mapDelete(promises, id);
    };
    const callFunction = (reader) => {
        const id = nextCount(reader);
        const event = nextText(reader);
        const given = [];
        const count = nextCount(reader);
        for (let i = 0; i < count; ++i)
            define(given, i, readValue(reader), true);
        const record = mapGet(functions, id);
        if (!record)
            return;
        try {
            apply(record.callee, undefined, given);
        } catch (error) {
            try {
                reportError(error, event === '' ? 'in a callback' : 'in a listener of ' + event);
            } catch {
                // The stack is short; what else there is must not be lost.
            }
        }
    };
    const performMessage = (reader) => {
        switch (reader.text[reader.at++]) {
        case 'f':
            return callFunction(reader);
        case 's':
            return settlePromise(reader);
        case 'p':
            return releasePromise(nextCount(reader));
        case 'd': {
            const id = nextCount(reader);
            return dropFunction(id, nextCount(reader));
        }
        case 'q':
            return reportSettled(nextCount(reader));
        case 'v': {
            const ticket = nextCount(reader);
            const kind = reader.text[reader.at++];
            const fileName = nextText(reader);
            const source = nextText(reader);
            const typed = nextText(reader);
            const start = () => {
                rejectPromise ??= runInDocument('{ const P = Promise; __novaTake((reason) => { new P((resolve, reject) => reject(reason)); }); }');
                if (kind === 'm') {
                    noteSource(fileName, typed, source, 0);
                    settle(ticket, runInDocument('__novaTake((address) => import(address))')(fileName));
                } else {
                    runSource(ticket, kind, fileName, source, typed);
                }
            };
            // It may come before the document has an element to put the script into.
            if (document.readyState === 'loading')
                listen(document, 'DOMContentLoaded', start);
            else
                start();
            return;
        }
        }
    };
    const wake = () => {
        if (frame !== '')
            transact('P' + frame + ';');
    };

    // A request that the suite holds. The "line" ends when the document does, by which the suite knows of that; the "bell" is
    // answered to wake the document.
    const hold = (kind) => {
        const request = new RequestType();
        const again = () => {
            if (transact('P' + frame + ';'))
                hold(kind);
        };
        const soon = () => later(again, 100);
        listen(request, 'load', again);
        listen(request, 'error', soon);
        listen(request, 'abort', soon);
        open(request, 'GET', 'nova-bridge://' + kind + '/' + frame + '/' + random(), true);
        send(request);
    };

    // --- Scripts that the suite runs -----------------------------------------------------------------------------

    const compose = (what, ...parts) => {
        let part = what;
        for (let i = 0; i < parts.length; ++i)
            part += written(parts[i]);
        return part;
    };
    const report = (part) => transact('E' + frame + ';' + timersPart() + part);
@SCRIPT_TIMERS@
    // exit() is reported when the script has returned to the event loop: nothing is heard after it.
    let ending = '';
    const reportEnd = (part) => {
        if (ending === '')
            soon(() => report(ending));
        ending += part;
    };
    let isScripted = false;
    const outcome = Symbol('outcome');
    // Lines of the console go together: the first at once, those that come soon after it with the next request, at the latest
    // when the script has returned to the event loop.
    const soonAfter = 20; // milliseconds
    let printed = '';
    let printedAt = -soonAfter;
    let willPrint = false;
    const maximumPrinted = 1 << 20;
    const sendPrinted = () => {
        const part = printed;
        printed = '';
        printedAt = now();
        if (part !== '')
            report(part);
    };
    const printLine = (text, isError) => {
        printed += compose('p', isError ? '1' : '', text);
        if (printed.length > maximumPrinted || now() - printedAt >= soonAfter) {
            sendPrinted();
        } else if (!willPrint) {
            willPrint = true;
            soon(() => {
                willPrint = false;
                sendPrinted();
            });
        }
    };
    const native = {
        __proto__: null,
        // Behind the events of promises that nobody has handled, which come when the script has returned to the event loop.
        finish: (ticket, ok, text, json, stack, code, facts) => {
            const part = compose('f', '' + ticket, ok ? '1' : '', text, json, stack, code === undefined ? '' : '' + code, facts);
            rejectPromise({ __proto__: null, [outcome]: part });
            later(() => report(part), 1000); // a script can remove all listeners of the document
        },
        unknownName: (owner, name) => result(transact('N' + frame + ';' + written(owner) + written(name))),
        uncaught: (text, stack, code, facts) => {
            if (isScripted)
                report(compose('u', text, stack, code === undefined ? '' : '' + code, facts));
            else
                showError(facts);
        },
    };
    const consoleObject = console;
    const consoleError = console.error;
    const showError = (text) => apply(consoleError, consoleObject, [text]);

    // Runs a script as one of the document's own, whose errors the document may see, and returns what it gives to
    // __novaTake().
    const runInDocument = (source) => {
        let taken;
        define(world, '__novaTake', (value) => { taken = value; }, false);
        const element = document.createElement('script');
        element.textContent = source;
        (document.head ?? document.documentElement).appendChild(element).remove();
        delete world.__novaTake;
        return taken;
    };
@SYNTAX_PLACES@
    let rejectPromise; // one of the document's own functions, whose promises it hears of
    // The kinds: b, the body of a function; e, an expression; k, one whose result is kept as a global.
    const runSource = (ticket, kind, fileName, source, typed) => {
        const known = encodeName(fileName);
        const end = '\n//# sourceURL=' + known;
        // All on the first line of the source, so that line numbers stay right.
        let compiled;
        const wrap = (before, after) => {
            compiled = before + source + after;
            noteSource(known, fileName, source, before.length);
            return compiled;
        };
        let value;
        try {
            if (kind !== 'b') {
                compiled = source;
                const shift = indexOf(source, typed, 0);
                noteSource(known, fileName, shift < 0 ? '' : typed, max(shift, 0));
                value = runInDocument('__novaTake((source) => (0, eval)(source))')(source + end);
            } else {
                // Checked as a method as well: source that closes one of the two wrappers, "}); ... (function () {", is a
                // syntax error in the other.
                indirectEval(wrap('({ async run() {', '\n}})'));
                indirectEval(wrap('(async function () {', '\n})'));
                value = runInDocument(wrap('__novaTake(async function () {', '\n})') + end);
            }
        } catch (error) {
            if (kind === 'k')
                keep('_error', error);
            failWithPlace(ticket, error, compiled, known);
            return;
        }
        (kind === 'b' ? run : kind === 'e' ? settle : settleKept)(ticket, value);
    };
    const setUpScript = (reader) => {
        isScripted = true;
        const argv = [];
        for (let count = nextCount(reader); count > 0; --count)
            argv[argv.length] = nextText(reader);
        colors.output = reader.text[reader.at++] === 't';
        colors.errors = reader.text[reader.at++] === 't';
        installConsole(console);
        define(world, 'queueMicrotask', function queueMicrotask(callback) {
            soon(typeof callback === 'function' ? () => callReporting(callback, undefined, [], 'in a microtask') : callback);
        }, true);
        define(world, 'exit', function exit(code = 0) {
            if (!isInteger(code) || code < 0 || code > 255)
                throw makeTypeError('exit: the code must be an integer from 0 to 255');
            reportEnd(compose('x', '' + code));
        }, false);
        const play = function play(steps) {
            if (typeof steps !== 'string')
                throw makeTypeError('process.play: a text is expected');
            const reader = report(compose('s', steps));
            if (reader && reader.text[reader.at++] === 't')
                throw errorFromObject(readValue(reader));
        };
        scriptProcess = { argv, play };
        define(world, 'process', scriptProcess, false);
        countTimers();
        addEventListener('error', (event) => {
            preventDefault(event);
            const error = errorOf(event);
            if (!placing || fileOf(event) !== placing.address)
                // The browser hides what the suite's own script has thrown.
                return reportError(error ?? lastMade ?? messageOfEvent(event), '');
            if (error === 0)
                return;
            placing.line = lineNumberOf(event);
            placing.column = columnNumberOf(event) - (placing.line === 1 ? guard.length : 0);
        });
        addEventListener('unhandledrejection', (event) => {
            preventDefault(event);
            const reason = reasonOf(event);
            const part = isObject(reason) ? getOwnPropertyDescriptor(reason, outcome)?.value : undefined;
            if (part === undefined) {
                reportError(reason, 'in promise');
            } else {
                stopImmediatePropagation(event);
                report(part);
            }
        });
    };

    // --- The beginning -------------------------------------------------------------------------------------------

    const isTop = self === top;
    const reader = transact('H' + (isTop ? 't' : 's'));
    if (!reader || reader.text[reader.at++] !== 'k')
        return;
    frame = nextWord(reader);
    const isScript = reader.text[reader.at++] === 's';
    isChecked = reader.text[reader.at++] === 'n';
    makeRoot(reader);
    if (isScript)
        setUpScript(reader);
    defineProperty(world, '__novaWake', { __proto__: null, value: wake });
    hold('line');
    if (!isTop)
        hold('bell');
})();
//# sourceURL=nova-prelude
