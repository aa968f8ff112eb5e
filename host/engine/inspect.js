    // --- Values as text ------------------------------------------------------------------------------------------
    // As Node's util.inspect prints them, with its limits. Runs no getter, no toString and no toJSON of the page.

    const maximumItems = 100;
    const usualDepth = 2;
    const maximumText = 10000; // of a string in an object
    const maximumShown = 1 << 20; // units of one value; objects beyond it are not opened any more
    const lineLength = 80;
    const levelsOnALine = 3;

    const typedArrayLength = accessor(typedArrayPrototype, 'length');
    const regExpSource = accessor(RegExp.prototype, 'source');
    const regExpFlags = makeList();
    for (const [letter, name] of [['d', 'hasIndices'], ['g', 'global'], ['i', 'ignoreCase'], ['m', 'multiline'], ['s', 'dotAll'],
        ['u', 'unicode'], ['v', 'unicodeSets'], ['y', 'sticky']]) {
        if (getOwnPropertyDescriptor(RegExp.prototype, name))
            push(regExpFlags, { __proto__: null, letter, has: accessor(RegExp.prototype, name) });
    }
    const mapSize = accessor(Map.prototype, 'size');
    const setSize = accessor(Set.prototype, 'size');
    const { getOwnPropertySymbols } = Object;
    const isEnumerable = uncurry(objectPrototype.propertyIsEnumerable);
    const isSymbolEnumerable = (object, symbol) => isEnumerable(object, symbol);
    const domError = globalThis.DOMException?.prototype;
    const domErrorName = domError && accessor(domError, 'name');
    const domErrorMessage = domError && accessor(domError, 'message');

    // Built-in classes that are not printed as plain objects, by prototype.
    const builtInKinds = new WeakMap();
    for (const name of ['Map', 'Set', 'WeakMap', 'WeakSet', 'WeakRef', 'Date', 'RegExp', 'Promise', 'ArrayBuffer', 'DataView',
        'Number', 'String', 'Boolean', 'Symbol', 'BigInt']) {
        if (globalThis[name])
            weakSet(builtInKinds, globalThis[name].prototype, name);
    }
    for (const [name, callee] of [['AsyncFunction', async () => {}], ['GeneratorFunction', function* () {}],
        ['AsyncGeneratorFunction', async function* () {}]])
        weakSet(builtInKinds, getPrototypeOf(callee), name);
    const primitiveOf = { __proto__: null };
    for (const name of ['Number', 'String', 'Boolean', 'Symbol', 'BigInt'])
        primitiveOf[name] = uncurry(globalThis[name].prototype.valueOf);

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

    const styles = { __proto__: null, string: '32', number: '33', bigint: '33', boolean: '33', undefined: '90', null: '1', symbol: '32',
        special: '36', date: '35', regexp: '31', dim: '90', error: '31' };
    const paint = (context, text, style) => {
        if (!context.colors || !styles[style])
            return text;
        return '\u001b[' + styles[style] + 'm' + text + (style === 'null' ? '\u001b[22m' : '\u001b[39m');
    };
    // Without the sequences for colours. Escapes of the page's own are quoted.
    const shownLength = (context, text) => {
        let count = text.length;
        if (!context.colors)
            return count;
        for (let at = indexOf(text, '\u001b[', 0); at >= 0;) {
            const end = indexOf(text, 'm', at) + 1;
            count -= end - at;
            at = indexOf(text, '\u001b[', end);
        }
        return count;
    };

    const lowerDigits = '0123456789abcdef';
    const hex = (code, count, digits) => {
        let text = '';
        for (let i = 0; i < count; ++i) {
            const digit = (code >> (i * 4)) & 15;
            text = digits[digit] + text;
        }
        return text;
    };
    const escapes = { __proto__: null, 8: '\\b', 9: '\\t', 10: '\\n', 12: '\\f', 13: '\\r', 92: '\\\\' };
    const isHalf = (text, at, code) => {
        if ((code & 0xf800) !== 0xd800)
            return false;
        const other = code < 0xdc00 ? at + 1 : at - 1;
        const next = other >= 0 && other < text.length ? codeAt(text, other) : 0;
        return (next & 0xfc00) !== (code < 0xdc00 ? 0xdc00 : 0xd800);
    };
    const quote = (text) => {
        let mark = "'";
        if (indexOf(text, "'", 0) >= 0) {
            if (indexOf(text, '"', 0) < 0)
                mark = '"';
            else if (indexOf(text, '`', 0) < 0 && indexOf(text, '${', 0) < 0)
                mark = '`';
        }
        const markCode = codeAt(mark, 0);
        let quoted = mark;
        let from = 0;
        for (let i = 0; i < text.length; ++i) {
            const code = codeAt(text, i);
            let escape;
            if (code < 32 || code === 92 || (code >= 127 && code < 160))
                escape = escapes[code] ?? '\\x' + hex(code, 2, '0123456789ABCDEF');
            else if (code === markCode)
                escape = '\\' + mark;
            else if (isHalf(text, i, code))
                escape = '\\u' + hex(code, 4, lowerDigits);
            if (escape) {
                quoted = quoted + slice(text, from, i) + escape;
                from = i + 1;
            }
        }
        return quoted + slice(text, from) + mark;
    };

    const inspectText = (context, text) => {
        let rest = '';
        if (text.length > maximumText) {
            const more = text.length - maximumText;
            rest = '... ' + more + ' more character' + (more > 1 ? 's' : '');
            text = slice(text, 0, maximumText);
        }
        if (text.length <= 16 || text.length <= lineLength - context.indent - 4 || indexOf(text, '\n', 0) < 0)
            return paint(context, quote(text), 'string') + rest;
        const lines = makeList();
        for (let from = 0; from < text.length;) {
            const end = indexOf(text, '\n', from) < 0 ? text.length : indexOf(text, '\n', from) + 1;
            push(lines, paint(context, quote(slice(text, from, end)), 'string'));
            from = end;
        }
        return joinAll(lines, ' +\n' + repeat(' ', context.indent + 2)) + rest;
    };
    const numberText = (number) => (number === 0 && 1 / number < 0 ? '-0' : toText(number));
    const inspectPrimitive = (context, value) => {
        switch (typeof value) {
        case 'string':
            return inspectText(context, value);
        case 'number':
            return paint(context, numberText(value), 'number');
        case 'bigint':
            return paint(context, toText(value) + 'n', 'bigint');
        case 'symbol':
            return paint(context, symbolText(value), 'symbol');
        case 'object':
            return paint(context, 'null', 'null');
        default:
            return paint(context, toText(value), typeof value);
        }
    };

    const isPlainName = (name) => {
        for (let i = 0; i < name.length; ++i) {
            const code = codeAt(name, i);
            const isLetter = (code >= 97 && code <= 122) || (code >= 65 && code <= 90) || code === 95;
            if (!isLetter && !(i > 0 && code >= 48 && code <= 57))
                return false;
        }
        return name !== '';
    };
    const keyText = (context, key) => {
        if (typeof key === 'symbol')
            return '[' + paint(context, symbolText(key), 'symbol') + ']';
        if (key === '__proto__')
            return "['__proto__']";
        return isPlainName(key) ? key : paint(context, quote(key), 'string');
    };
    const inspectWithin = (context, value, level) => {
        context.indent += 2;
        const text = inspectValue(context, value, level);
        context.indent -= 2;
        return text;
    };
    const inspectProperty = (context, object, key, level) => {
        const found = getOwnPropertyDescriptor(object, key);
        if (!found)
            return paint(context, 'undefined', 'undefined');
        if ('value' in found)
            return inspectWithin(context, found.value, level);
        if (found.get)
            return paint(context, found.set ? '[Getter/Setter]' : '[Getter]', 'special');
        return paint(context, found.set ? '[Setter]' : 'undefined', found.set ? 'special' : 'undefined');
    };

    // {name, kind, tag}: the constructor's name, '' for none; the built-in class; and toStringTag where that differs.
    const classOf = (value) => {
        let name = '';
        let kind = '';
        let tag = '';
        let object = getPrototypeOf(value);
        const own = getOwnPropertyDescriptor(value, tagSymbol);
        if (own && !own.enumerable && typeof own.value === 'string')
            tag = own.value;
        if (object === objectPrototype)
            return { __proto__: null, name: 'Object', kind, tag };
        for (let step = 0; object !== null && step < 20; ++step) {
            if (name === '') {
                const maker = getOwnPropertyDescriptor(object, 'constructor')?.value;
                if (typeof maker === 'function')
                    name = peekText(maker, 'name');
            }
            if (kind === '')
                kind = weakGet(builtInKinds, object) ?? '';
            if (tag === '') {
                const found = getOwnPropertyDescriptor(object, tagSymbol)?.value;
                if (typeof found === 'string')
                    tag = found;
            }
            object = getPrototypeOf(object);
        }
        return { __proto__: null, name, kind, tag: tag === name ? '' : tag };
    };
    const prefixOf = (type, fallback, size) => {
        const tag = type.tag !== '' && type.tag !== fallback ? '[' + type.tag + '] ' : '';
        if (type.name === '')
            return '[' + fallback + size + ': null prototype] ' + tag;
        return type.name + size + ' ' + (type.tag !== '' ? '[' + type.tag + '] ' : '');
    };

    // `depth` is how many levels are opened.
    const makeContext = (colors, depth) => (
        { __proto__: null, colors, depth, isReport: false, indent: 0, lastLevel: 0, shown: 0, above: null, references: 0 });
    const isFull = (context) => context.shown > maximumShown;
    const longList = 10000; // of whose keys a list would take too long
    const addKeys = (context, value, parts, level, isListed) => {
        const names = isListed === isIndex && getOwnPropertyDescriptor(value, longList) ? [] : keys(value);
        const all = makeList();
        for (let i = 0; i < names.length; ++i) {
            if (!isListed(names[i]))
                push(all, names[i]);
        }
        const symbols = getOwnPropertySymbols(value);
        for (let i = 0; i < symbols.length; ++i) {
            if (isSymbolEnumerable(value, symbols[i]))
                push(all, symbols[i]);
        }
        for (let i = 0; i < all.length && i < maximumItems * 10; ++i)
            push(parts, keyText(context, all[i]) + ': ' + inspectProperty(context, value, all[i], level));
        if (all.length > maximumItems * 10)
            push(parts, moreItems(all.length - maximumItems * 10, 'key'));
    };
    const nothingListed = () => false;
    const moreItems = (count, what) => '... ' + count + ' more ' + what + (count > 1 ? 's' : '');
    const isIndex = (name) => {
        const code = codeAt(name, 0);
        return code >= 48 && code <= 57;
    };
    const addElements = (context, value, length, parts, level) => {
        let next = 0;
        let isNumeric = true;
        while (next < length && parts.length < maximumItems) {
            const found = getOwnPropertyDescriptor(value, next);
            if (!found) {
                const from = next;
                // Looks at the keys for a sparse array, which may have a billion elements.
                next = nextIndex(value, from, length);
                push(parts, paint(context, '<' + (next - from) + ' empty item' + (next - from > 1 ? 's' : '') + '>', 'undefined'));
                isNumeric = false;
                continue;
            }
            isNumeric = isNumeric && (typeof found.value === 'number' || typeof found.value === 'bigint');
            push(parts, inspectProperty(context, value, next, level));
            ++next;
        }
        if (next < length)
            push(parts, moreItems(length - next, 'item'));
        return { __proto__: null, isNumeric, hasMore: next < length };
    };
    const nextIndex = (value, from, length) => {
        for (let i = from + 1; i < length && i < from + 1000; ++i) {
            if (getOwnPropertyDescriptor(value, i))
                return i;
        }
        if (length <= from + 1000)
            return length;
        const names = keys(value);
        for (let i = 0; i < names.length; ++i) {
            if (isIndex(names[i]) && toNumber(names[i]) > from)
                return toNumber(names[i]);
        }
        return length;
    };

    // --- Lines

    // Puts the short items of a long list into columns.
    const groupItems = (context, parts, list) => {
        const count = parts.length - (list.hasMore ? 1 : 0);
        const lengths = makeList();
        let total = 0;
        let longest = 0;
        for (let i = 0; i < count; ++i) {
            const length = shownLength(context, parts[i]);
            push(lengths, length);
            total += length + 2;
            longest = max(longest, length);
        }
        const widest = longest + 2;
        if (widest * 3 + context.indent >= lineLength || (total / widest <= 5 && longest > 6))
            return parts;
        const biased = max(widest - 3 - sqrt(widest - total / parts.length), 1);
        const columns = min(round(sqrt(2.5 * biased * count) / biased), floor((lineLength - context.indent) / widest), 4 * levelsOnALine, 15);
        if (columns <= 1)
            return parts;
        const widths = makeList();
        for (let i = 0; i < columns; ++i) {
            let width = 0;
            for (let j = i; j < count; j += columns)
                width = max(width, lengths[j]);
            push(widths, width + 2);
        }
        const grouped = makeList();
        for (let i = 0; i < count; i += columns) {
            const end = min(i + columns, count);
            let line = '';
            for (let j = i; j < end; ++j) {
                const item = j < end - 1 ? parts[j] + ', ' : parts[j];
                const width = widths[j - i] + parts[j].length - lengths[j] - (j < end - 1 ? 0 : 2);
                if (list.isNumeric)
                    line = line + padStart(item, width, ' ');
                else
                    line = line + (j < end - 1 ? padEnd(item, width, ' ') : item);
            }
            push(grouped, line);
        }
        if (list.hasMore)
            push(grouped, parts[count]);
        return grouped;
    };
    // What an object becomes: one line where it is short and not deep, else a line for each part. `list` is undefined for
    // parts that are not to be put into columns.
    const layOut = (context, level, parts, base, open, close, list) => {
        const count = parts.length;
        const grouped = list && count > 6 ? groupItems(context, parts, list) : parts;
        const front = base === '' ? '' : base + ' ';
        if (context.lastLevel - level < levelsOnALine && grouped.length === count) {
            let length = 2 * count + context.indent + open.length + base.length + 10;
            let isOneLine = length + count <= lineLength && indexOf(base, '\n', 0) < 0;
            for (let i = 0; i < count && isOneLine; ++i) {
                length += shownLength(context, grouped[i]);
                isOneLine = length <= lineLength && indexOf(grouped[i], '\n', 0) < 0;
            }
            if (isOneLine)
                return front + open + ' ' + joinAll(grouped, ', ') + ' ' + close;
        }
        const line = '\n' + repeat(' ', context.indent);
        return front + open + line + '  ' + joinAll(grouped, ',' + line + '  ') + line + close;
    };

    // --- Kinds of objects

    const functionBase = (value, type) => {
        const name = getOwnPropertyDescriptor(value, 'name')?.value;
        const hasName = typeof name === 'string' && name !== '';
        const source = functionText(value);
        const tag = type.tag !== '' && type.tag !== type.kind ? ' [' + type.tag + ']' : '';
        if (startsWith(source, 'class') && source[source.length - 1] === '}') {
            const parent = getPrototypeOf(value);
            const parentName = parent === null ? '[null prototype]' : peekText(parent, 'name');
            return '[class ' + (hasName ? name : '(anonymous)') + tag + (parentName === '' ? '' : ' extends ' + parentName) + ']';
        }
        const kind = type.kind === '' ? 'Function' : type.kind;
        return '[' + kind + (type.name === '' ? ' (null prototype)' : '') + (hasName ? ': ' + name : ' (anonymous)') + ']' + tag;
    };
    const bytesText = (bytes) => {
        const count = typedArrayBytes(bytes);
        let text = '';
        for (let i = 0; i < count && i < 50; ++i)
            text = text + (i === 0 ? '' : ' ') + hex(bytes[i], 2, lowerDigits);
        return '<' + text + (count > 50 ? ' ' + moreItems(count - 50, 'byte') : '') + '>';
    };

    // NovaExtension and its objects: the names of their members, none of which is bound for that.
    const inspectNative = (context, value, tag, level) => {
        if (level > 0)
            return paint(context, '[' + tag + ']', 'special');
        const isRoot = tag === 'NovaExtension';
        const holder = isRoot ? value : getPrototypeOf(value);
        const names = keys(holder);
        const parts = makeList();
        for (let i = 0; i < names.length; ++i) {
            const found = getOwnPropertyDescriptor(holder, names[i]);
            push(parts, isRoot ? names[i] : found?.get ? names[i] + ': ' + paint(context, '[Getter]', 'special') : names[i] + '()');
        }
        if (!isRoot)
            addKeys(context, value, parts, level + 1, nothingListed);
        if (parts.length === 0)
            return tag + ' {}';
        return layOut(context, level, parts, tag, '{', '}', { __proto__: null, isNumeric: false, hasMore: false });
    };

    // How an object of a built-in class is shown: {open, close, base, list, isListed, add(parts)}, all but the last two texts.
    // Undefined where it is no real one, but an heir of the class's prototype.
    const shapeOf = (context, value, type, level) => {
        const shape = { __proto__: null, open: '{', close: '}', base: '', list: undefined, isListed: nothingListed, add: undefined };
        const prefix = (fallback, size) => prefixOf(type, fallback, size);
        const elements = (length) => (parts) => { shape.list = addElements(context, value, length, parts, level + 1); };
        if (isArray(value)) {
            const length = getOwnPropertyDescriptor(value, 'length')?.value ?? 0;
            shape.open = type.name === 'Array' && type.tag === '' ? '[' : prefix('Array', '(' + length + ')') + '[';
            shape.close = ']';
            shape.isListed = isIndex;
            shape.add = elements(length);
            return shape;
        }
        if (isView(value) && typedArrayKind(value) !== undefined) {
            const length = typedArrayLength(value);
            shape.open = prefix(typedArrayKind(value), '(' + length + ')') + '[';
            shape.close = ']';
            shape.isListed = isIndex;
            shape.add = elements(length);
            return shape;
        }
        switch (type.kind) {
        case 'Map':
            shape.open = prefix('Map', '(' + mapSize(value) + ')') + '{';
            shape.add = (parts) => mapEach(value, (item, key) => {
                if (parts.length < maximumItems)
                    push(parts, inspectWithin(context, key, level + 1) + ' => ' + inspectWithin(context, item, level + 1));
                else if (parts.length === maximumItems)
                    push(parts, moreItems(mapSize(value) - maximumItems, 'item'));
            });
            return shape;
        case 'Set':
            shape.open = prefix('Set', '(' + setSize(value) + ')') + '{';
            shape.add = (parts) => setEach(value, (item) => {
                if (parts.length < maximumItems)
                    push(parts, inspectWithin(context, item, level + 1));
                else if (parts.length === maximumItems)
                    push(parts, moreItems(setSize(value) - maximumItems, 'item'));
            });
            return shape;
        case 'WeakMap':
        case 'WeakSet':
            shape.open = prefix(type.kind, '') + '{';
            shape.add = (parts) => push(parts, paint(context, '<items unknown>', 'special'));
            return shape;
        case 'ArrayBuffer': {
            const bytes = bytesOf(value);
            shape.open = prefix(type.kind, '') + '{';
            shape.add = (parts) => {
                if (typeof bytes === 'string') {
                    push(parts, '(detached)');
                } else {
                    push(parts, '[' + paint(context, 'Uint8Contents', 'special') + ']: ' + bytesText(bytes));
                    push(parts, 'byteLength: ' + paint(context, toText(typedArrayBytes(bytes)), 'number'));
                }
            };
            return shape;
        }
        case 'DataView':
            shape.open = prefix('DataView', '') + '{';
            shape.add = (parts) => {
                push(parts, 'byteLength: ' + paint(context, toText(dataViewBytes(value)), 'number'));
                push(parts, 'byteOffset: ' + paint(context, toText(dataViewOffset(value)), 'number'));
                push(parts, 'buffer: ' + inspectWithin(context, dataViewBuffer(value), level + 1));
            };
            return shape;
        case 'Date':
            try {
                shape.base = paint(context, dateText(value), 'date');
            } catch {
                shape.base = paint(context, 'Invalid Date', 'date');
            }
            return shape;
        case 'RegExp': {
            let flags = '';
            for (let i = 0; i < regExpFlags.length; ++i)
                flags = flags + (regExpFlags[i].has(value) ? regExpFlags[i].letter : '');
            shape.base = paint(context, '/' + regExpSource(value) + '/' + flags, 'regexp');
            return shape;
        }
        case 'Number':
        case 'String':
        case 'Boolean':
        case 'Symbol':
        case 'BigInt': {
            const primitive = primitiveOf[type.kind](value);
            const named = type.name !== type.kind && type.name !== '' ? ' (' + type.name + ')' : '';
            const text = inspectPrimitive({ __proto__: null, colors: false, indent: 0 }, primitive);
            shape.base = paint(context, '[' + type.kind + named + ': ' + text + ']', typeof primitive);
            if (type.kind === 'String')
                shape.isListed = isIndex;
            return shape;
        }
        }
        return undefined;
    };

    const circularMark = (context, value) => {
        for (let one = context.above; one !== null; one = one.next) {
            if (one.value === value) {
                if (one.reference === 0)
                    one.reference = ++context.references;
                return paint(context, '[Circular *' + one.reference + ']', 'special');
            }
        }
        return '';
    };
    const inspectObject = (context, value, level) => {
        const circular = circularMark(context, value);
        if (circular !== '')
            return circular;
        const type = classOf(value);
        if (startsWith(type.tag, 'NovaExtension') && typeof value === 'object')
            return inspectNative(context, value, type.tag, level);
        let shape;
        try {
            shape = typeof value === 'function' ? undefined : shapeOf(context, value, type, level);
        } catch {
            // An heir of a built-in class's prototype that is none itself.
        }
        if (typeof value === 'function') {
            shape = { __proto__: null, open: '{', close: '}', base: paint(context, functionBase(value, type), 'special'), list: undefined,
                isListed: nothingListed, add: undefined };
        } else if (!shape) {
            const open = type.name === 'Object' && type.tag === '' ? '{' : prefixOf(type, 'Object', '') + '{';
            shape = { __proto__: null, open, close: '}', base: '', list: undefined, isListed: nothingListed, add: undefined };
        }
        const isError = isErrorObject(value);
        const isEmpty = !shape.add && !isError && keys(value).length === 0;
        if ((level > context.depth && !isEmpty && !(isArray(value) && peekOwn(value, 'length') === 0)) || isFull(context)) {
            if (isError || shape.base !== '')
                return isError ? '[' + fullTitle(value) + ']' : shape.base;
            const name = isArray(value) ? 'Array' : type.name === '' ? 'Object: null prototype' : type.name;
            return paint(context, '[' + name + ']', 'special');
        }
        const here = { __proto__: null, value, reference: 0, next: context.above };
        const levelBefore = context.lastLevel;
        context.above = here;
        context.lastLevel = level;
        let text;
        if (isError) {
            text = inspectError(context, value, level);
        } else {
            const parts = makeList();
            if (shape.add)
                shape.add(parts);
            const listed = parts.length;
            addKeys(context, value, parts, level + 1, shape.isListed);
            if (shape.list && parts.length > listed)
                shape.list.isNumeric = false;
            if (parts.length === 0) {
                context.lastLevel = levelBefore;
                text = shape.base !== '' ? shape.base : shape.open + shape.close;
            } else {
                text = layOut(context, level, parts, shape.base, shape.open, shape.close, shape.list);
            }
        }
        context.above = here.next;
        context.shown += text.length;
        if (here.reference !== 0)
            text = paint(context, '<ref *' + here.reference + '>', 'special') + ' ' + text;
        return text;
    };
    const inspectValue = (context, value, level) => (isObject(value) ? inspectObject(context, value, level) : inspectPrimitive(context, value));

    const inspect = (value, isColored, depth) => {
        try {
            return inspectValue(makeContext(isColored, depth), value, 0);
        } catch {
            return '[' + typeof value + ' that can not be shown]';
        }
    };

    // Whether what is printed has colours; set before the page's script runs.
    const colors = { __proto__: null, output: false, errors: false };
    // A result as the repl shows it.
    const show = (value) => inspect(value, colors.output, usualDepth);
