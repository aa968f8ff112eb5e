    // --- Results -------------------------------------------------------------------------------------------------

    const toJson = (value) => {
        try {
            const text = jsonOf(value);
            return typeof text === 'string' ? text : '';
        } catch {
            return '';
        }
    };
    const fail = (ticket, error) => {
        const facts = describeError(error, '');
        native.finish(ticket, false, facts[0], '', facts[1], facts[2], facts[3]);
    };
    // Awaits a result and reports it with its ticket.
    const settle = async (ticket, value) => {
        let answer;
        try {
            answer = await value;
        } catch (error) {
            fail(ticket, error);
            return;
        }
        native.finish(ticket, true, show(answer), toJson(answer), '', undefined, '');
    };
    // The same for an input of a prompt, whose result the page gets as a global.
    const keep = (name, value) => {
        try {
            define(globalThis, name, value, false);
        } catch {
            // The page has frozen its global object.
        }
    };
    const failKept = (ticket, error) => {
        keep('_error', error);
        fail(ticket, error);
    };
    const settleKept = async (ticket, value) => {
        let answer;
        try {
            answer = await value;
        } catch (error) {
            failKept(ticket, error);
            return;
        }
        keep('_', answer);
        settle(ticket, answer);
    };
    const run = (ticket, body) => settle(ticket, apply(body, undefined, []));
