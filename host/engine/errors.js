    // --- Errors --------------------------------------------------------------------------------------------------

    const isErrorObject = (value) => {
        try {
            return isObject(value) && isPrototypeOf(errorPrototype, value);
        } catch {
            return false; // a proxy's trap
        }
    };
    // Of DOMException, which one engine has from the beginning, the other when it is first used.
    let domErrorName;
    let domErrorMessage;
    const noteDomException = (prototype) => {
        domErrorName = accessor(prototype, 'name');
        domErrorMessage = accessor(prototype, 'message');
    };
    if (globalThis.DOMException)
        noteDomException(DOMException.prototype);
    const domText = (read, error) => {
        try {
            const text = read ? read(error) : '';
            return typeof text === 'string' ? text : '';
        } catch {
            return '';
        }
    };
    const nameOf = (error) => domText(domErrorName, error) || peekText(error, 'name');
    const messageOf = (error) => domText(domErrorMessage, error) || peekText(error, 'message');
    // "TypeError: text"; of a plain Error, as most failures are, only the text.
    const errorTitle = (error) => {
        const name = nameOf(error);
        const message = messageOf(error);
        if (name === '' || name === 'Error')
            return message || 'Error';
        return message ? name + ': ' + message : name;
    };

    const eachLine = (text, take) => {
        for (let from = 0; from < text.length;) {
            const end = indexOf(text, '\n', from) < 0 ? text.length : indexOf(text, '\n', from);
            take(slice(text, from, end));
            from = end + 1;
        }
    };
    // A stack without the frames of the engine's own scripts.
    const pageFrames = (stack) => {
        let kept = '';
        eachLine(stack, (frame) => {
            if (!isOwnFrame(frame))
                kept = kept === '' ? frame : kept + '\n' + frame;
        });
        return kept;
    };
    // Where an engine hides from a page's handlers what scripts of others make, throw and reject, its prelude has the page do it.
    const inPage = {
        __proto__: null,
        construct: (Type, message) => new Type(message),
        call: (callee, value) => callee(value),
        raise: (error) => { throw error; },
    };
    const constructHere = (Type, message) => {
        const error = inPage.construct(Type, message);
        try {
            define(error, 'stack', pageFrames(peekText(error, 'stack')), false);
        } catch {
            // A page can take part in making it.
        }
        return error;
    };

    // The Error that script sees for a failure object {success, code, msg}.
    const makeError = (success, code, msg) => {
        const error = constructHere(ErrorType, msg);
        define(error, 'success', success, true);
        define(error, 'code', code, true);
        define(error, 'msg', msg, true);
        return error;
    };
    const errorFromObject = (failure) => {
        const own = (name) => getOwnPropertyDescriptor(failure, name)?.value;
        const msg = own('msg');
        return makeError(own('success') === true, own('code'), typeof msg === 'string' ? msg : '');
    };
    const makeTypeError = (message) => constructHere(TypeErrorType, message);
    const makeRangeError = (message) => constructHere(RangeErrorType, message);

    // The names that there are not, by the errors that say so.
    const unknownNames = new WeakMap();
    const noteRead = (error, name) => {
        weakSet(unknownNames, error, name);
        return error;
    };
    // The members that have refused, by their errors.
    const refusals = new WeakMap();
    const noteRefusal = (error, member) => {
        if (isObject(error))
            weakSet(refusals, error, startsWith(member, 'NovaExtension.') ? slice(member, 14) : member);
        return error;
    };
