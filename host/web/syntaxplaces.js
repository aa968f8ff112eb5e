    // Where a syntax error is can only be had from the event of a script that the document loads; it does not run.
    const guard = 'throw 0;';
    let placing; // {address, line, column}
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
    const placeSyntaxError = (error, compiled, known) => new PromiseType((resolve) => {
        const element = document.createElement('script');
        placing = { address: URL.createObjectURL(new Blob([guard + compiled])), line: undefined, column: undefined };
        element.onload = element.onerror = () => {
            placeAtEnd(error, known);
            define(error, 'sourceURL', known, false);
            define(error, 'line', placing.line, false);
            define(error, 'column', placing.column, false);
            URL.revokeObjectURL(placing.address);
            placing = undefined;
            element.remove();
            resolve();
        };
        element.src = placing.address;
        (document.head ?? document.documentElement).appendChild(element);
    });
    const failWithPlace = async (ticket, error, compiled, known) => {
        if (isErrorObject(error) && isPrototypeOf(syntaxErrorPrototype, error))
            await placeSyntaxError(error, compiled, known);
        fail(ticket, error);
    };
