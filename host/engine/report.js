    // --- Reports of errors ---------------------------------------------------------------------------------------

    // One engine quotes a piece of the script that it runs where it can not name what is wrong.
    const shownMessage = (message) => {
        const at = lastIndexOf(message, " (near '...");
        return at > 0 && slice(message, -5) === "...')" ? slice(message, 0, at) : message;
    };
    // The name, with that of the class where nothing else has it: "E [Error]", as Node shows it.
    const shownName = (error) => {
        const name = nameOf(error) || 'Error';
        let type = '';
        try {
            type = slice(name, -5) === 'Error' ? classOf(error).name : '';
        } catch { } // a proxy's trap
        return type === '' || type === name ? name : indexOf(type, name, 0) >= 0 ? type : type + ' [' + name + ']';
    };
    const fullTitle = (error) => {
        const name = shownName(error);
        const message = shownMessage(messageOf(error));
        return message ? name + ': ' + message : name;
    };

    // The sources of scripts that the tool runs, by the name that the engine knows them by: {name, text, shift, pieces, compiled},
    // where `shift` is by how much a wrapper shifts the columns of the first line. Of an input that has been rewritten, `pieces`
    // of it are in the script that is `compiled`, see PageScript.
    const sources = { __proto__: null };
    const declarationsOf = (known) => known + '/functions';
    const noteSource = (known, name, text, shift, pieces, compiled) => {
        sources[known] = { __proto__: null, name, text, shift, pieces: pieces ?? '', compiled };
    };
    let loadSource = () => undefined; // the source of a script that another one has loaded, where the prelude can have it
    const noteInput = (known, name, typed, pieces, compiled) => {
        const shift = pieces === '' ? indexOf(compiled, typed, 0) : 0;
        noteSource(known, name, shift < 0 ? '' : typed, max(shift, 0), pieces, compiled);
        noteSource(declarationsOf(known), name, typed, 0);
    };
    let countedText; // whose lines begin at `lineStarts`
    let lineStarts;
    // The offset of a line; -1 beyond the end.
    const lineStart = (text, number) => {
        if (text !== countedText) {
            countedText = text;
            lineStarts = makeList();
            push(lineStarts, 0);
            for (let at = indexOf(text, '\n', 0); at >= 0; at = indexOf(text, '\n', at + 1))
                push(lineStarts, at + 1);
        }
        return number >= 1 && number <= lineStarts.length ? lineStarts[number - 1] : -1;
    };
    const lineAt = (text, from) => {
        const end = indexOf(text, '\n', from);
        return slice(text, from, end < 0 ? text.length : end);
    };
    // {line, column} in what was typed; undefined where the rewriting has added something.
    const typedPlace = ({ text, pieces, compiled }, line, column) => {
        const offset = lineStart(compiled, line) + column - 1;
        for (let at = 0; at < pieces.length;) {
            const second = indexOf(pieces, ' ', at) + 1;
            const third = indexOf(pieces, ' ', second) + 1;
            const end = indexOf(pieces, ';', third);
            const from = toNumber(slice(pieces, at, second - 1));
            const after = from + toNumber(slice(pieces, third, end));
            // The place behind a piece is its own, unless the next one begins there.
            if (offset >= from && (offset < after || (offset === after && indexOf(pieces, after + ' ', end) !== end + 1))) {
                const typed = toNumber(slice(pieces, second, third - 1)) + offset - from;
                const place = { __proto__: null, line: 1, column: typed + 1 };
                for (let next = indexOf(text, '\n', 0) + 1; next > 0 && next <= typed; next = indexOf(text, '\n', next) + 1) {
                    ++place.line;
                    place.column = typed - next + 1;
                }
                return place;
            }
            at = end + 1;
        }
        return undefined;
    };
    // A frame as the user has written the source; undefined for one in the wrapper around it.
    const placed = (frame) => {
        const source = sources[frame.file] ?? loadSource(frame.file);
        if (!source)
            return frame;
        if (source.text === '')
            return frame;
        const place = source.pieces !== '' ? typedPlace(source, frame.line, frame.column)
            : { __proto__: null, line: frame.line, column: frame.line === 1 ? frame.column - source.shift : frame.column };
        const start = place ? lineStart(source.text, place.line) : -1;
        if (start < 0 || place.column < 1)
            return undefined;
        const text = lineAt(source.text, start);
        return { __proto__: null, name: frame.name, file: source.name, line: place.line, column: columnOf(text, place.column),
            text, source: source.text, isCall: isCallPlace(text, place.column) };
    };
    // "file:line:column", whose name may have colons.
    const readPlace = (text) => {
        const column = lastIndexOf(text, ':');
        const line = column > 0 ? lastIndexOf(text, ':', column - 1) : -1;
        const numbers = { __proto__: null, line: toNumber(slice(text, line + 1, column)), column: toNumber(slice(text, column + 1)) };
        if (line < 1 || !isInteger(numbers.line) || !isInteger(numbers.column))
            return undefined;
        return { __proto__: null, name: '', file: slice(text, 0, line), line: numbers.line, column: numbers.column };
    };
    // The page's own frames.
    const framesOf = (stack) => {
        const frames = makeList();
        eachLine(stack, (line) => {
            const read = readFrame(line);
            const frame = read && placed(read);
            const inner = frames[frames.length - 1];
            // One engine has two frames of a function that is async; the outer one is at no call, and has the name.
            if (frame && frame.isCall === false && inner && inner.file === frame.file && (inner.name === '' || inner.name === frame.name))
                inner.name = frame.name;
            else if (frame)
                push(frames, frame);
        });
        return frames;
    };
    const firstFrame = (stack) => {
        for (let from = 0; from < stack.length;) {
            const end = indexOf(stack, '\n', from) < 0 ? stack.length : indexOf(stack, '\n', from);
            const read = readFrame(slice(stack, from, end));
            const frame = read && placed(read);
            if (frame)
                return frame;
            from = end + 1;
        }
        return undefined;
    };
    // As many as Node shows, unless the page has set how many there are.
    const mostFrames = 10;
    const frameLimit = peekOwn(ErrorType, 'stackTraceLimit');
    const limitFrames = (frames) => {
        if (peekOwn(ErrorType, 'stackTraceLimit') === frameLimit)
            frames.length = min(frames.length, mostFrames);
        return frames;
    };
    const placeText = (frame) => frame.file + ':' + frame.line + ':' + frame.column;
    const frameText = (frame) => '    at ' + (frame.name === '' ? placeText(frame) : frame.name + ' (' + placeText(frame) + ')');
    const framesText = (frames) => {
        let text = '';
        for (let i = 0; i < frames.length; ++i)
            text = text + (i === 0 ? '' : '\n') + frameText(frames[i]);
        return text;
    };
    // One engine has frames of the classes that errors are of, as the other has not.
    const isConstructor = (error, name) => {
        try {
            for (let prototype = getPrototypeOf(error); name !== '' && prototype !== null; prototype = getPrototypeOf(prototype)) {
                const maker = peekOwn(prototype, 'constructor');
                if (typeof maker === 'function' && peekOwn(maker, 'name') === name)
                    return true;
            }
        } catch { } // a proxy's trap
        return false;
    };
    // One engine points behind a name that there is not, where the other points at it.
    const missing = "Can't find variable: ";
    const pointAtName = (frame, message) => {
        if (!frame.text || !startsWith(message, missing))
            return;
        const at = lastIndexOf(frame.text, slice(message, missing.length), frame.column - 1);
        if (at >= 0)
            frame.column = at + 1;
    };
    // One engine has the place of a call or of a statement's end for a name that is read in a pattern: the place of the name.
    let readName; // while native code says of it that there is none
    const pointAtRead = (frames, name) => {
        const frame = frames[0];
        const isAtName = (text, column) => slice(text, column - 2, column - 1 + name.length) === '.' + name;
        if (name === undefined || !native.findRead || !frame.source || isAtName(frame.text, frame.column))
            return;
        const { source, line, column } = frame;
        const place = readPlace('_:' + native.findRead(stringify({ __proto__: null, source, line, column, name })));
        if (!place) {
            frames.length = 0; // which of several is not known
            return;
        }
        frame.line = place.line;
        frame.column = place.column;
        frame.text = lineAt(source, lineStart(source, place.line));
    };
    // Where an error comes from: its frames; of a syntax error of a whole script its place, which the engine has noted.
    const errorFrames = (error) => {
        const all = framesOf(peekText(error, 'stack'));
        const frames = makeList();
        for (let i = 0; i < all.length; ++i) {
            if (frames.length > 0 || !isConstructor(error, all[i].name))
                push(frames, all[i]);
        }
        if (frames.length > 0) {
            pointAtName(frames[0], messageOf(error));
            pointAtRead(frames, readName ?? weakGet(unknownNames, error));
            return limitFrames(frames);
        }
        if (!isPrototypeOf(syntaxErrorPrototype, error))
            return frames;
        const line = getOwnPropertyDescriptor(error, 'line')?.value;
        const file = getOwnPropertyDescriptor(error, 'sourceURL')?.value;
        const column = getOwnPropertyDescriptor(error, 'column')?.value;
        if (typeof line === 'number' && typeof file === 'string' && typeof column === 'number') {
            const frame = placed({ __proto__: null, name: '', file, line, column });
            if (frame)
                push(frames, frame);
        }
        return frames;
    };

    // An error with its frames, what it carries, the errors in it and its causes.
    const inspectError = (context, error, level) => {
        const outer = context.indent;
        context.indent = 0;
        let text = context.isReport && level === 0 ? paint(context, fullTitle(error), 'error') : fullTitle(error);
        const frames = framesText(errorFrames(error));
        if (frames !== '')
            text = text + '\n' + paint(context, frames, 'dim');
        const own = (name) => getOwnPropertyDescriptor(error, name)?.value;
        const code = own('code');
        const isRefusal = own('success') === false && isInteger(code) && own('msg') === messageOf(error);
        if (isRefusal) {
            const member = weakGet(refusals, error);
            text = text + '\n    code: ' + code + (member ? ', from ' + member : '');
        }
        const inner = own('errors');
        const hasErrors = isObject(inner) && isArray(inner);
        const cause = getOwnPropertyDescriptor(error, 'cause');
        const isSyntax = isPrototypeOf(syntaxErrorPrototype, error);
        const parts = makeList();
        const isInTitle = (name, text) => own(name) === text;
        addKeys(context, error, parts, level + 1, (name) => name === 'stack'
            || (name === 'name' && isInTitle(name, nameOf(error))) || (name === 'message' && isInTitle(name, messageOf(error)))
            || (isSyntax && (name === 'line' || name === 'column' || name === 'sourceURL'))
            || (isRefusal && (name === 'success' || name === 'code' || name === 'msg'))
            || (name === 'errors' && hasErrors) || (name === 'cause' && cause && 'value' in cause));
        if (frames === '' && !isRefusal && level > 0)
            text = '[' + text + ']';
        if (parts.length > 0)
            text = layOut(context, level, parts, text, '{', '}', undefined);
        for (let i = 0; hasErrors && i < maximumItems; ++i) {
            const found = getOwnPropertyDescriptor(inner, i);
            if (!found)
                break;
            text = text + '\n    ' + indented(inspectValue(context, found.value, level), 4);
        }
        if (cause && 'value' in cause)
            text = text + '\nCaused by: ' + inspectValue(context, cause.value, level);
        context.indent = outer;
        return indented(text, outer);
    };
    const indented = (text, count) => {
        if (count === 0 || indexOf(text, '\n', 0) < 0)
            return text;
        let made = '';
        let isFirst = true;
        eachLine(text, (line) => {
            made = isFirst ? line : made + '\n' + (line === '' ? '' : repeat(' ', count)) + line;
            isFirst = false;
        });
        return made;
    };

    // The line of source that a frame names, with a caret below it; '' where it is not known. Of a long line what lies around
    // the place.
    const maximumExcerpt = 120;
    const excerpt = (context, frame) => {
        if (!frame || !frame.text)
            return '';
        const from = frame.column > maximumExcerpt - 20 ? frame.column - 60 : 0;
        const line = slice(frame.text, from, from + maximumExcerpt);
        let space = '';
        for (let i = 0; i < frame.column - 1 - from; ++i)
            space = space + (line[i] === '\t' ? '\t' : ' ');
        return placeText(frame) + '\n' + line + '\n' + space + paint(context, '^', 'error') + '\n\n';
    };

    // [text, stack, code or undefined, report] of a thrown value: the report is what is printed, and `where` what has thrown
    // it, such as "in a timer"; '' for the script itself.
    const describeError = (error, where) => {
        let text = '';
        let stack = '';
        let report = '';
        const title = 'Uncaught' + (where === '' ? '' : ' (' + where + ')');
        let code;
        try {
            if (isObject(error)) {
                const number = peek(error, 'code');
                if (isInteger(number))
                    code = number;
            }
            const context = makeContext(colors.errors, usualDepth);
            context.isReport = true;
            if (isErrorObject(error)) {
                const frames = errorFrames(error);
                text = errorTitle(error);
                stack = framesText(frames);
                report = excerpt(context, frames[0]);
            } else {
                text = typeof error === 'string' ? error : inspect(error, false, usualDepth);
            }
            report += paint(context, title, 'error') + ' ' + inspectValue(context, error, 0);
        } catch {
            text = text || 'an error that can not be shown';
            report += title + ' ' + text + (stack === '' ? '' : '\n' + stack);
        }
        return [text, stack, code, report];
    };
    const reportError = (error, where) => {
        const facts = describeError(error, where);
        native.uncaught(facts[0], facts[1], facts[2], facts[3]);
    };
    // Calls a function of the page whose errors nobody else gets.
    const callReporting = (callee, self, values, where) => {
        try {
            apply(callee, self, values);
        } catch (error) {
            reportError(error, where);
        }
    };
