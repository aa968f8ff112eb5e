    // Where a syntax error is can only be had from the event of a script that the document loads; it does not run.
    const guard = 'throw 0;';
    let placings; // {isMine, file, line, column, next}: the places that are looked for
    // Where the engine has stopped in the wrapper around the source, the end of that is what is wrong.
    const placeAtEnd = (error, known, place) => {
        const { text, shift } = sources[known];
        let end = text.length;
        while (end > 0 && (text[end - 1] === '\n' || text[end - 1] === ' '))
            --end;
        let all = 1;
        let lines = 1;
        let start = 0;
        for (let at = indexOf(text, '\n', 0); at >= 0; at = indexOf(text, '\n', at + 1)) {
            ++all;
            if (at < end) {
                ++lines;
                start = at + 1;
            }
        }
        if (place.line <= all)
            return;
        place.line = lines;
        place.column = end - start + 1 + (lines === 1 ? shift : 0);
        // Of a bracket too many only that is known.
        if (messageOf(error) !== "Unexpected token '}'")
            define(error, 'message', 'Unexpected end of input', false);
    };
    const placeFor = (event) => {
        let place = placings;
        while (place && !place.isMine(event))
            place = place.next;
        return place;
    };
    // Loads a script for that; `isMine` says of an event whether it is the error's.
    const findPlace = (address, type, isMine) => new PromiseType((resolve) => {
        const element = document.createElement('script');
        const place = { __proto__: null, isMine, file: '', line: 0, column: 0, next: placings };
        placings = place;
        element.onload = element.onerror = () => {
            element.remove();
            const list = { __proto__: null, next: placings };
            let before = list;
            while (before.next && before.next !== place)
                before = before.next;
            before.next = place.next;
            placings = list.next;
            resolve(place);
        };
        element.type = type;
        element.src = address;
        (document.head ?? document.documentElement).appendChild(element);
    });
    const notePlace = (error, file, place) => {
        define(error, 'sourceURL', file, false);
        define(error, 'line', place.line, false);
        define(error, 'column', place.column, false);
    };
    const placeSyntaxError = async (error, compiled, known) => {
        const address = URL.createObjectURL(new Blob([guard + compiled]));
        const place = await findPlace(address, '', (event) => fileOf(event) === address);
        URL.revokeObjectURL(address);
        if (place.line === 1)
            place.column -= guard.length;
        placeAtEnd(error, known, place);
        notePlace(error, known, place);
    };
    // The module, or one that it imports, has been loaded and is not run.
    const placeModuleError = async (error, address) => {
        const place = await findPlace(address, 'module', (event) => errorOf(event) === error
            || (isErrorObject(errorOf(event)) && messageOf(errorOf(event)) === messageOf(error)));
        // Of an export that there is not the browser does not know it.
        if (place.line > 0)
            notePlace(error, place.file, place);
    };
    const failWithPlace = async (ticket, error, compiled, known) => {
        if (isErrorObject(error) && isPrototypeOf(syntaxErrorPrototype, error))
            await placeSyntaxError(error, compiled, known);
        fail(ticket, error);
    };
