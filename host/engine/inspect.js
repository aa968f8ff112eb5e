    // --- Objects as text -----------------------------------------------------------------------------------------
    // As Node's util.inspect prints them, with its limits. Runs no getter, no toString and no toJSON of the page.

    const maximumItems = 100;
    const usualDepth = 2;
    const maximumShown = 1 << 20; // units of one value; objects beyond it are not opened any more

    const arrayPrototype = Array.prototype;
    const rangeErrorPrototype = RangeError.prototype;
    const dateText = uncurry(Date.prototype.toISOString);
    const regExpText = uncurry(RegExp.prototype.toString);
    const mapEach = uncurry(Map.prototype.forEach);
    const setEach = uncurry(Set.prototype.forEach);
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
    const { getOwnPropertyNames, getOwnPropertySymbols } = Object;
    const isEnumerable = uncurry(objectPrototype.propertyIsEnumerable);
    const isSymbolEnumerable = (object, symbol) => isEnumerable(object, symbol);

    const primitiveOf = { __proto__: null };
    for (const name of ['Number', 'String', 'Boolean', 'Symbol', 'BigInt'])
        primitiveOf[name] = uncurry(globalThis[name].prototype.valueOf);

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

    // `depth` is how many levels are opened.
    const makeContext = (colors, depth) => (
        { __proto__: null, colors, depth, showsHidden: false, isReport: false, indent: 0, lastLevel: 0, shown: 0, above: null,
            references: makeList() });
    const isFull = (context) => context.shown > maximumShown;
    const longList = 10000; // of whose keys a list would take too long
    const addKeys = (context, value, parts, level, isListed) => {
        const names = isListed === isIndex && getOwnPropertyDescriptor(value, longList) ? []
            : context.showsHidden ? getOwnPropertyNames(value) : keys(value);
        const all = makeList();
        for (let i = 0; i < names.length; ++i) {
            if (!isListed(names[i]))
                push(all, names[i]);
        }
        const symbols = getOwnPropertySymbols(value);
        for (let i = 0; i < symbols.length; ++i) {
            if (context.showsHidden || isSymbolEnumerable(value, symbols[i]))
                push(all, symbols[i]);
        }
        const shownKey = (key) => (context.showsHidden && typeof key === 'string' && !isEnumerable(value, key) ? '[' + key + ']'
            : keyText(context, key));
        for (let i = 0; i < all.length && i < maximumItems * 10; ++i)
            push(parts, shownKey(all[i]) + ': ' + inspectProperty(context, value, all[i], level));
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

    // How an object is shown: its own text, if any, whose style is used where nothing follows, and the parts between `open` and
    // `close`: what add(parts) adds, and the keys but for those that isListed(key) says have been added.
    const makeShape = (open) => (
        { __proto__: null, open, close: '}', base: '', style: '', list: undefined, isListed: nothingListed, add: undefined });
    const makeListShape = (context, value, open, length, level) => {
        const shape = makeShape(open + '[');
        shape.close = ']';
        shape.isListed = isIndex;
        shape.add = (parts) => { shape.list = addElements(context, value, length, parts, level + 1); };
        return shape;
    };
    // Adds what `text` makes of an item of a collection, up to the limit.
    const addItem = (parts, size, text) => {
        if (parts.length < maximumItems)
            push(parts, text());
        else if (parts.length === maximumItems)
            push(parts, moreItems(size - maximumItems, 'item'));
    };
    const collectionShapes = {
        __proto__: null,
        Map: (context, value, type, level) => {
            const size = mapSize(value);
            const shape = makeShape(prefixOf(type, 'Map', '(' + size + ')') + '{');
            shape.add = (parts) => mapEach(value, (item, key) => addItem(parts, size,
                () => inspectWithin(context, key, level + 1) + ' => ' + inspectWithin(context, item, level + 1)));
            return shape;
        },
        Set: (context, value, type, level) => {
            const size = setSize(value);
            const shape = makeShape(prefixOf(type, 'Set', '(' + size + ')') + '{');
            shape.add = (parts) => setEach(value, (item) => addItem(parts, size, () => inspectWithin(context, item, level + 1)));
            return shape;
        },
        WeakMap: (context, value, type) => {
            const shape = makeShape(prefixOf(type, type.kind, '') + '{');
            shape.add = (parts) => push(parts, paint(context, '<items unknown>', 'special'));
            return shape;
        },
        ArrayBuffer: (context, value, type) => {
            const bytes = bytesOf(value);
            const shape = makeShape(prefixOf(type, type.kind, '') + '{');
            shape.add = (parts) => {
                if (typeof bytes === 'string') {
                    push(parts, '(detached)');
                } else {
                    push(parts, paint(context, '[Uint8Contents]', 'special') + ': ' + bytesText(bytes));
                    push(parts, 'byteLength: ' + paint(context, toText(typedArrayBytes(bytes)), 'number'));
                }
            };
            return shape;
        },
        DataView: (context, value, type, level) => {
            const shape = makeShape(prefixOf(type, 'DataView', '') + '{');
            shape.add = (parts) => {
                push(parts, 'byteLength: ' + paint(context, toText(dataViewBytes(value)), 'number'));
                push(parts, 'byteOffset: ' + paint(context, toText(dataViewOffset(value)), 'number'));
                push(parts, 'buffer: ' + inspectWithin(context, dataViewBuffer(value), level + 1));
            };
            return shape;
        },
    };
    // Those of a real one can be read; what only inherits from the class is shown as any object.
    collectionShapes.URL = (context, value, type, level) => {
        urlParts[0].get(value);
        const shape = makeShape(prefixOf(type, 'URL', '') + '{');
        shape.add = (parts) => {
            for (let i = 0; i < urlParts.length; ++i)
                push(parts, urlParts[i].name + ': ' + inspectWithin(context, urlParts[i].get(value), level + 1));
        };
        return shape;
    };
    collectionShapes.URLSearchParams = (context, value, type) => {
        searchEach(value, () => {});
        const shape = makeShape(prefixOf(type, 'URLSearchParams', '') + '{');
        shape.add = (parts) => searchEach(value, (item, name) => push(parts,
            inspectPrimitive(context, name) + ' => ' + inspectPrimitive(context, item)));
        return shape;
    };
    collectionShapes.WeakSet = collectionShapes.WeakMap;
    const makeTextShape = (text, style) => {
        const shape = makeShape('{');
        shape.base = text;
        shape.style = style;
        return shape;
    };
    const regExpShape = (value) => {
        let flags = '';
        for (let i = 0; i < regExpFlags.length; ++i)
            flags = flags + (regExpFlags[i].has(value) ? regExpFlags[i].letter : '');
        return makeTextShape('/' + regExpSource(value) + '/' + flags, 'regexp');
    };
    const dateShape = (value) => {
        try {
            return makeTextShape(dateText(value), 'date');
        } catch {
            return makeTextShape('Invalid Date', 'date');
        }
    };
    // Of a built-in class; undefined for others, and may throw where it is no real one, but an heir of the class's prototype.
    const shapeOf = (context, value, type, level) => {
        if (isArray(value)) {
            const length = peekOwn(value, 'length') ?? 0;
            const open = type.name === 'Array' && type.tag === '' ? '' : prefixOf(type, 'Array', '(' + length + ')');
            return makeListShape(context, value, open, length, level);
        }
        if (isView(value) && typedArrayKind(value) !== undefined) {
            const length = typedArrayLength(value);
            const arrayKind = typedArrayKind(value);
            const tagged = type.tag === '' && type.name !== arrayKind ? { __proto__: null, name: type.name, tag: arrayKind } : type;
            return makeListShape(context, value, prefixOf(tagged, arrayKind, '(' + length + ')'), length, level);
        }
        const { kind } = type;
        if (kind === 'Date')
            return dateShape(value);
        if (kind === 'RegExp')
            return regExpShape(value);
        if (collectionShapes[kind])
            return collectionShapes[kind](context, value, type, level);
        if (!primitiveOf[kind])
            return undefined;
        const primitive = primitiveOf[kind](value);
        const named = type.name !== kind && type.name !== '' ? ' (' + type.name + ')' : '';
        const shape = makeTextShape('[' + kind + named + ': ' + inspectPrimitive(makeContext(false, 0), primitive) + ']', typeof primitive);
        if (kind === 'String')
            shape.isListed = isIndex;
        return shape;
    };

    // The number of an object that has itself in it, which it keeps where it is shown again.
    const referenceTo = (context, value) => {
        for (let i = 0; i < context.references.length; ++i) {
            if (context.references[i] === value)
                return i + 1;
        }
        push(context.references, value);
        return context.references.length;
    };
    const circularMark = (context, value) => {
        for (let one = context.above; one !== null; one = one.next) {
            if (one.value === value) {
                if (one.reference === 0)
                    one.reference = referenceTo(context, value);
                return paint(context, '[Circular *' + one.reference + ']', 'special');
            }
        }
        return '';
    };
    const referenceOf = (context, here) => (here.reference === 0 ? '' : paint(context, '<ref *' + here.reference + '>', 'special'));
    const inspectObject = (context, value, level) => {
        if (isRevoked(value))
            return paint(context, '<Revoked Proxy>', 'special');
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
            shape = makeTextShape(functionBase(value, type), 'special');
        } else if (!shape) {
            shape = makeShape(isArguments(value, type) ? '[Arguments] {'
                : type.name === 'Object' && type.tag === '' ? '{' : prefixOf(type, 'Object', '') + '{');
        }
        const isError = isErrorObject(value);
        const isEmpty = !shape.add && !isError && keys(value).length === 0;
        if ((level > context.depth && !isEmpty && !(isArray(value) && peekOwn(value, 'length') === 0)) || isFull(context)) {
            if (isError || shape.base !== '')
                return isError ? '[' + fullTitle(value) + ']' : paint(context, shape.base, shape.style);
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
            if (here.reference !== 0)
                text = referenceOf(context, here) + ' ' + text;
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
                text = shape.base !== '' ? paint(context, shape.base, shape.style) : shape.open + shape.close;
            } else {
                const mark = referenceOf(context, here);
                const base = mark === '' || shape.base === '' ? mark + shape.base : mark + ' ' + shape.base;
                text = layOut(context, level, parts, base, shape.open, shape.close, shape.list);
            }
        }
        context.above = here.next;
        context.shown += text.length;
        return text;
    };
    const inspectValue = (context, value, level) => {
        if (!isObject(value))
            return inspectPrimitive(context, value);
        const { above, indent, lastLevel } = context;
        try {
            return inspectObject(context, value, level);
        } catch (error) {
            if (isErrorObject(error) && isPrototypeOf(rangeErrorPrototype, error))
                throw error; // the stack is short
            context.above = above;
            context.indent = indent;
            context.lastLevel = lastLevel;
            return '[' + typeof value + ' that can not be shown]'; // a proxy's trap has thrown
        }
    };

    const inspect = (value, isColored, depth, showsHidden) => {
        try {
            const context = makeContext(isColored, depth);
            context.showsHidden = showsHidden === true;
            return inspectValue(context, value, 0);
        } catch {
            return '[' + typeof value + ' that can not be shown]';
        }
    };

    // Whether what is printed has colours; set before the page's script runs.
    const colors = { __proto__: null, output: false, errors: false };
    // A result as the repl shows it.
    const show = (value) => inspect(value, colors.output, usualDepth);

