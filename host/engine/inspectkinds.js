    // --- What an object is, for its text -------------------------------------------------------------------------

    const kindText = uncurry(objectPrototype.toString);

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
    // Of the web's classes, which one engine has from the beginning, the other when they are first used.
    const urlParts = makeList();
    const noteUrl = (prototype) => {
        for (const name of ['href', 'origin', 'protocol', 'username', 'password', 'host', 'hostname', 'port', 'pathname', 'search',
            'searchParams', 'hash'])
            push(urlParts, { __proto__: null, name, get: accessor(prototype, name) });
    };
    let searchEach;
    const noteWebClass = (name, prototype) => {
        if (name === 'DOMException') {
            noteDomException(prototype);
        } else if (name === 'URL' || name === 'URLSearchParams') {
            weakSet(builtInKinds, prototype, name);
            if (name === 'URL')
                noteUrl(prototype);
            else
                searchEach = uncurry(prototype.forEach);
        }
    };
    for (const name of ['URL', 'URLSearchParams']) {
        if (globalThis[name])
            noteWebClass(name, globalThis[name].prototype);
    }

    // {name, kind, tag}: the constructor's name, '' for none; the built-in class; and toStringTag where that differs.
    const classOf = (value) => {
        let name = '';
        let kind = '';
        let tag = '';
        let object = getPrototypeOf(value);
        const own = getOwnPropertyDescriptor(value, tagSymbol);
        if (own && !own.enumerable && typeof own.value === 'string')
            tag = own.value;
        if (object === objectPrototype || object === arrayPrototype)
            return { __proto__: null, name: object === arrayPrototype ? 'Array' : 'Object', kind, tag };
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

    // The class of an argument object is in its text, where no tag hides it.
    const isArguments = (value, type) => type.name === 'Object' && type.tag === '' && getPrototypeOf(value) === objectPrototype
        && !getOwnPropertyDescriptor(value, tagSymbol) && !getOwnPropertyDescriptor(objectPrototype, tagSymbol)
        && kindText(value) === '[object Arguments]';
    const isRevoked = (value) => {
        try {
            isArray(value);
            return false;
        } catch {
            return true;
        }
    };

