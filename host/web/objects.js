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
            return inPage.raise(makeError(false, operationFailed, 'the page has been closed'));
        switch (reader.text[reader.at++]) {
        case 'r':
            if (reader.text[reader.at] === 'p')
                return returnPromise(reader, member);
            return readValue(reader);
        case 't':
            return inPage.raise(noteRefusal(readFailure(reader), member));
        case 'w':
            return result(waitFor(nextWord(reader)), member);
        case 'y':
            return inPage.raise(makeTypeError(nextText(reader)));
        default:
            return inPage.raise(makeError(false, operationFailed, 'the page has been closed'));
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
            return inPage.raise(makeTypeError('Illegal invocation'));
        if (given.length > 255)
            return inPage.raise(noteRefusal(makeError(false, wrongArgument, 'more than 255 arguments'), name));
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
            return inPage.raise(noteRefusal(makeError(false, wrongArgument, 'argument ' + (done + 1) + ': ' + problemOf(writer)), name));
        }
        return result(transact(writer.out + placePart()), name);
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

    // --- Promises and functions ----------------------------------------------------------------------------------

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
        inPage.call(settle.reject, noteRefusal(record.reason, record.member));
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
                script.reportError(error, event === '' ? 'in a callback' : 'in a listener of ' + event);
            } catch {
                // The stack is short; what else there is must not be lost.
            }
        }
    };
