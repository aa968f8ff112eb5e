// Runs in every document before its own script and gives it NovaExtension, when its origin may have it. It reaches the
// suite by prompt(), whose default value carries a request and whose result the reply; host/web/wire.h says how they are
// written. host/engine/pagescript.js comes first, whose rules hold here, too. Documents of scripts of the command line have
// script.js in it, which the others do without.
(function () {
    'use strict';
    // Also those without a place, as of the engine's own functions, and what the page has made of a string.
    const isOwnFrame = (frame) => indexOf(frame, '    at ', 0) !== 0 || indexOf(frame, 'nova-prelude', 0) >= 0
        || indexOf(frame, ' <anonymous>:', 0) >= 0 || indexOf(frame, '(<anonymous>)', 0) >= 0 || frame === '    at <anonymous>';
@PAGE_SCRIPT@
    const ask = prompt;
    const world = globalThis;
    const later = setTimeout;
    const { parse } = JSON;
    const { random } = Math;
    const { fromCharCode } = String;
    const { iterator } = Symbol;
    const PromiseType = Promise;
    const WeakRefType = WeakRef;
    const BigIntType = BigInt;
    const RequestType = XMLHttpRequest;
    const open = uncurry(XMLHttpRequest.prototype.open);
    const send = uncurry(XMLHttpRequest.prototype.send);
    const listen = uncurry(EventTarget.prototype.addEventListener);
    const mapGet = uncurry(Map.prototype.get);
    const mapSet = uncurry(Map.prototype.set);
    const mapDelete = uncurry(Map.prototype.delete);
    const setHas = uncurry(Set.prototype.has);
    const setAdd = uncurry(Set.prototype.add);
    const setDelete = uncurry(Set.prototype.delete);
    const deref = uncurry(WeakRef.prototype.deref);
    const register = uncurry(FinalizationRegistry.prototype.register);
    const SetType = Set;

    const operationFailed = 3;
    const wrongArgument = 1;
    let frame = ''; // the name that the suite has given to this document; empty: it has none any more

    // "file:line:column" of the first line of a stack, "    at name (file:line:column)".
    const linePlace = (stack) => {
        const end = indexOf(stack, '\n', 0);
        const line = end < 0 ? stack : slice(stack, 0, end);
        const open = lastIndexOf(line, ' (');
        return open < 0 ? slice(line, 7) : slice(line, open + 2, -1);
    };
    // The end of a request, where the suite gives hints.
    const placePart = () => (isChecked ? written(script.callingPlace()) : '');
    // An error's stack has as many of the page's frames as without the suite's own, which come first.
    const ownFrames = 15;
    const withOwnFrames = (construct) => (Type, message) => {
        const limit = getOwnPropertyDescriptor(ErrorType, 'stackTraceLimit');
        if (!limit?.writable || !isInteger(limit.value) || limit.value <= 0)
            return construct(Type, message);
        ErrorType.stackTraceLimit = limit.value + ownFrames;
        try {
            return construct(Type, message);
        } finally {
            ErrorType.stackTraceLimit = limit.value;
        }
    };
    inPage.construct = withOwnFrames(inPage.construct);
    const native = { __proto__: null };
    const consoleObject = console;
    const consoleError = console.error;
    // Replaced in documents of the command line's scripts.
    const script = {
        __proto__: null,
        setUp: undefined,
        beforeRequest: () => {},
        perform: undefined,
        describeThrown: (error) => (isErrorObject(error) ? errorTitle(error) : isObject(error) ? 'an object' : toText(error)),
        callingPlace: () => linePlace(pageFrames(peekText(new ErrorType(), 'stack'))),
        reportError: (error, where) => {
            const place = isErrorObject(error) ? linePlace(pageFrames(peekText(error, 'stack'))) : '';
            const title = 'Uncaught (' + where + ')';
            apply(consoleError, consoleObject, place === '' ? [title, error] : [title, error, '(' + place + ')']);
        },
    };

    // --- Requests and replies ------------------------------------------------------------------------------------

@WIRE_TEXT@
    // What the suite has had for this document and is still to be done, in the order in which it came: a function of the page
    // that is called may send a request, whose reply brings what came later. What came before that is then done first.
    let firstBatch;
    let lastBatch;
    let performing = 0;
    const deepestPerforming = 20;
    const performBatches = () => {
        // Where each of many functions sends a request, the stack would not suffice: the outer ones do the rest.
        if (performing === deepestPerforming)
            return;
        ++performing;
        try {
            while (firstBatch) {
                if (firstBatch.count === 0) {
                    firstBatch = firstBatch.next;
                    lastBatch = firstBatch && lastBatch;
                } else {
                    --firstBatch.count;
                    performMessage(firstBatch.reader);
                }
            }
        } finally {
            --performing;
        }
    };
    // Sends a request, does what the suite had for this document until then, and returns a reader of what the request itself
    // is answered; undefined when there is nobody, as for a document that is going away.
    const transact = (request) => {
        script.beforeRequest();
        const reply = ask('nova', request);
        if (typeof reply !== 'string' || reply === '')
            return undefined;
        const reader = { text: reply, at: toNumber(slice(reply, lastIndexOf(reply, ';') + 1)) };
        for (let count = nextCount(reader); count > 0; --count)
            readClass(reader);
        const count = nextCount(reader);
        if (count > 0) {
            const batch = { __proto__: null, reader, count, next: undefined };
            if (firstBatch)
                lastBatch.next = batch;
            else
                firstBatch = batch;
            lastBatch = batch;
            performBatches();
        }
        return { text: reply, at: 0 };
    };

@WRITE_VALUES@
@OBJECTS@
    // --- What the suite has for the page -------------------------------------------------------------------------

    const performMessage = (reader) => {
        const kind = reader.text[reader.at++];
        switch (kind) {
        case 'f':
            return callFunction(reader);
        case 's':
            return settlePromise(reader);
        case 'p':
            return releasePromise(nextCount(reader));
        case 'd': {
            const id = nextCount(reader);
            return dropFunction(id, nextCount(reader));
        }
        default:
            return script.perform(kind, reader);
        }
    };
    const wake = () => {
        if (frame !== '')
            transact('P' + frame + ';');
    };

    // A request that the suite holds. The "line" ends when the document does, by which the suite knows of that; the "bell" is
    // answered to wake the document.
    const hold = (kind) => {
        const request = new RequestType();
        const again = () => {
            if (transact('P' + frame + ';'))
                hold(kind);
        };
        const soon = () => later(again, 100);
        listen(request, 'load', again);
        listen(request, 'error', soon);
        listen(request, 'abort', soon);
        open(request, 'GET', 'nova-bridge://' + kind + '/' + frame + '/' + random(), true);
        send(request);
    };

@SCRIPT@
    // --- The beginning -------------------------------------------------------------------------------------------

    const isTop = self === top;
    const reader = transact('H' + (isTop ? 't' : 's'));
    if (!reader || reader.text[reader.at++] !== 'k')
        return;
    frame = nextWord(reader);
    const isScript = reader.text[reader.at++] === 's';
    isChecked = reader.text[reader.at++] === 'n';
    native.unknownName = (owner, name) => result(transact('N' + frame + ';' + written(owner) + written(name) + placePart()));
    makeRoot(reader);
    if (isScript)
        script.setUp(reader);
    defineProperty(world, '__novaWake', { __proto__: null, value: wake });
    hold('line');
    if (!isTop)
        hold('bell');
})();
//# sourceURL=nova-prelude
