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
    // Awaits a result and reports it with its ticket.
    const settle = async (ticket, value, isKept) => {
        let answer;
        try {
            answer = await value;
        } catch (error) {
            (isKept ? failKept : fail)(ticket, error);
            return;
        }
        if (isKept)
            keep('_', answer);
        native.finish(ticket, true, show(answer), toJson(answer), '', undefined, '');
    };
    // The same for an input of a prompt, whose result the page gets as a global.
    const settleKept = (ticket, value) => settle(ticket, value, true);
    const run = (ticket, body) => settle(ticket, apply(body, undefined, []));

    // --- process and exit() --------------------------------------------------------------------------------------

    let processObject;
    const isExitCode = (code) => isInteger(code) && code >= 0 && code <= 255;
    // What the page has set, -1 for a wrong one.
    const exitCode = () => {
        const code = peek(processObject, 'exitCode') ?? 0;
        return isExitCode(code) ? code : -1;
    };
    // `end` ends the page with an exit code, -1 where the page has set none, `playSteps` plays steps and may throw.
    const installProcess = (argv, end, playSteps) => {
        const play = function play(steps) {
            if (typeof steps !== 'string')
                throw makeTypeError('process.play: a string is expected');
            playSteps(steps);
        };
        processObject = { argv, play };
        define(globalThis, 'process', processObject, false);
        define(globalThis, 'exit', function exit(code) {
            const given = code ?? peek(processObject, 'exitCode') ?? undefined;
            if (given !== undefined && !isExitCode(given)) {
                const name = code === undefined ? 'process.exitCode' : 'exit: the code';
                throw makeTypeError(name + ' must be an integer from 0 to 255');
            }
            end(given ?? -1);
        }, false);
    };
