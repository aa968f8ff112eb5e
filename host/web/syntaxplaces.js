    // Where a syntax error is can only be had from the event of a script that the document loads; it does not run.
    const guard = 'throw 0;';
    let placing; // {isMine, file, line, column}
    // Where the engine has stopped in the wrapper around the source, the end of that is what is wrong.
    const placeAtEnd = (error, known) => {
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
        if (placing.line <= all)
            return;
        placing.line = lines;
        placing.column = end - start + 1 + (lines === 1 ? shift : 0);
        // Of a bracket too many only that is known.
        if (messageOf(error) !== "Unexpected token '}'")
            define(error, 'message', 'Unexpected end of input', false);
    };
    // Loads a script for that; `isMine` says of an event whether it is the error's.
    const findPlace = (address, type, isMine) => new PromiseType((resolve) => {
        const element = document.createElement('script');
        placing = { __proto__: null, isMine, file: '', line: undefined, column: undefined };
        element.onload = element.onerror = () => {
            element.remove();
            resolve();
        };
        element.type = type;
        element.src = address;
        (document.head ?? document.documentElement).appendChild(element);
    });
    const notePlace = (error, file) => {
        define(error, 'sourceURL', file, false);
        define(error, 'line', placing.line, false);
        define(error, 'column', placing.column, false);
    };
    const placeSyntaxError = async (error, compiled, known) => {
        const address = URL.createObjectURL(new Blob([guard + compiled]));
        await findPlace(address, '', (event) => fileOf(event) === address);
        URL.revokeObjectURL(address);
        if (placing.line === 1)
            placing.column -= guard.length;
        placeAtEnd(error, known);
        notePlace(error, known);
        placing = undefined;
    };
    // The module, or one that it imports, has been loaded and is not run.
    const placeModuleError = async (error, address) => {
        await findPlace(address, 'module', (event) => errorOf(event) === error
            || (isErrorObject(errorOf(event)) && messageOf(errorOf(event)) === messageOf(error)));
        // Of an export that there is not the browser does not know it.
        if (placing.line > 0)
            notePlace(error, placing.file);
        placing = undefined;
    };
    const failWithPlace = async (ticket, error, compiled, known) => {
        if (isErrorObject(error) && isPrototypeOf(syntaxErrorPrototype, error))
            await placeSyntaxError(error, compiled, known);
        fail(ticket, error);
    };
