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
    const refuseThrown = (writer, error) => refuse(writer, 'reading it threw: ' + script.describeThrown(error));
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
        { __proto__: null, out, values: 0, bytes: 0, byteCount: 0, problem: '', path: '', isCut: false,
            near: { __proto__: null }, deep: undefined, sent: undefined });
    const takeBack = (writer) => {
        for (let { sent } = writer; sent; sent = sent.next)
            dropFunction(sent.id, 1);
    };
