    // --- Scripts that the suite runs -----------------------------------------------------------------------------

    const soon = queueMicrotask;
    const indirectEval = eval;
    const encodeName = encodeURI;
    const decodeName = decodeURIComponent;
    const moduleOrigin = 'nova://script/';
    const getterOf = (type, name) => uncurry(getOwnPropertyDescriptor(type.prototype, name).get);
    const reasonOf = getterOf(PromiseRejectionEvent, 'reason');
    const errorOf = getterOf(ErrorEvent, 'error');
    const fileOf = getterOf(ErrorEvent, 'filename');
    const messageOfEvent = getterOf(ErrorEvent, 'message');
    const lineNumberOf = getterOf(ErrorEvent, 'lineno');
    const columnNumberOf = getterOf(ErrorEvent, 'colno');
    const preventDefault = uncurry(Event.prototype.preventDefault);
    const stopImmediatePropagation = uncurry(Event.prototype.stopImmediatePropagation);
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
    const isCallPlace = () => true;
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
@SCRIPT_PAGE@
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
    const outcomes = new WeakMap(); // the reports of results, by what promises are rejected with
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
    // An error at once: it may end the document. All else behind the events of promises that nobody has handled, which come when
    // the script has returned to the event loop.
    native.finish = (ticket, ok, text, json, stack, code, facts) => {
        const part = compose('f', '' + ticket, ok ? '1' : '', text, json, stack, code === undefined ? '' : '' + code, facts);
        if (!ok) {
            report(part);
            return;
        }
        const token = { __proto__: null };
        weakSet(outcomes, token, part);
        new PromiseType((resolve, reject) => inPage.call(reject, token));
        later(() => report(part), 1000); // a script can remove all listeners of the document
    };
    native.uncaught = (text, stack, code, facts) => {
        report(compose('u', text, stack, code === undefined ? '' : '' + code, facts));
    };

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
    // The document hears of what its own functions make, throw and reject.
    let isPrepared = false;
    const prepareDocument = () => {
        if (isPrepared)
            return;
        isPrepared = true;
        const own = runInDocument(`__novaTake({ __proto__: null, construct: (Type, message) => new Type(message),
            call: (callee, value) => callee(value), raise: (error) => { throw error; } });
            //# sourceURL=nova-prelude-document`);
        inPage.construct = withOwnFrames(own.construct);
        inPage.call = own.call;
        inPage.raise = own.raise;
    };
    // The kinds: b, the body of a function; e, an expression; k, one whose result is kept as a global.
    const runSource = (ticket, kind, fileName, source, typed, pieces, name) => {
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
                noteInput(known, name || fileName, typed, pieces, source);
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
    const importModule = async (address) => {
        try {
            return await runInDocument('__novaTake((address) => import(address))')(address);
        } catch (error) {
            if (isErrorObject(error) && isPrototypeOf(syntaxErrorPrototype, error))
                await placeModuleError(error, address);
            throw error;
        }
    };
    // Modules are served from the folder of the script that is run.
    let folder = '';
    const responseText = getterOf(XMLHttpRequest, 'responseText');
    loadSource = (file) => {
        if (!startsWith(file, moduleOrigin))
            return undefined;
        let text = '';
        let path = slice(file, moduleOrigin.length);
        try {
            path = decodeName(path);
            const request = new RequestType();
            open(request, 'GET', file, false);
            send(request);
            text = responseText(request);
        } catch {
            // There is no such file any more, or its name has no meaning.
        }
        noteSource(file, folder + path, text, 0);
        return sources[file];
    };
    const performRun = (reader) => {
        const ticket = nextCount(reader);
        const kind = reader.text[reader.at++];
        const fileName = nextText(reader);
        const source = nextText(reader);
        const typed = nextText(reader);
        const pieces = nextText(reader);
        const name = nextText(reader);
        const start = () => {
            prepareDocument();
            const shown = kind === 'm' ? name : fileName;
            folder = slice(shown, 0, lastIndexOf(shown, '/') + 1);
            if (kind === 'm') {
                noteSource(fileName, name, source, 0);
                settle(ticket, importModule(fileName));
            } else {
                runSource(ticket, kind, fileName, source, typed, pieces, name);
            }
            later(() => report('b'), 0);
        };
        // It may come before the document has an element to put the script into.
        if (document.readyState === 'loading')
            listen(document, 'DOMContentLoaded', start);
        else
            start();
    };
    script.setUp = (reader) => {
        script.beforeRequest = () => {
            if (printed !== '')
                sendPrinted();
        };
        script.perform = (kind, message) => (kind === 'q' ? reportSettled(nextCount(message)) : performRun(message));
        script.describeThrown = (error) => describeError(error, '')[0];
        script.callingPlace = () => {
            const frame = firstFrame(peekText(new ErrorType(), 'stack'));
            return frame ? placeText(frame) : '';
        };
        script.reportError = reportError;
        const argv = [];
        for (let count = nextCount(reader); count > 0; --count)
            argv[argv.length] = nextText(reader);
        colors.output = reader.text[reader.at++] === 't';
        colors.errors = reader.text[reader.at++] === 't';
        installConsole(console);
        define(world, 'queueMicrotask', function queueMicrotask(callback) {
            soon(typeof callback === 'function' ? () => callReporting(callback, undefined, [], 'in a microtask') : callback);
        }, true);
        installProcess(argv, (code) => reportEnd(compose('x', '' + code)), (steps) => {
            const answer = report(compose('s', steps));
            if (answer && answer.text[answer.at++] === 't')
                throw errorFromObject(readValue(answer));
        });
        countTimers();
        addEventListener('error', (event) => {
            preventDefault(event);
            const error = errorOf(event);
            const place = placeFor(event);
            if (!place)
                return reportError(error ?? messageOfEvent(event), '');
            if (error === 0)
                return;
            place.file = fileOf(event);
            place.line = lineNumberOf(event);
            place.column = columnNumberOf(event);
        });
        addEventListener('unhandledrejection', (event) => {
            preventDefault(event);
            const reason = reasonOf(event);
            const part = isObject(reason) ? weakGet(outcomes, reason) : undefined;
            if (part === undefined) {
                reportError(reason, 'in promise');
            } else {
                stopImmediatePropagation(event);
                report(part);
            }
        });
    };
