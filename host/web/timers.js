    // --- What keeps a document of the command line's scripts -------------------------------------------------------

    // Timers are counted: the suite waits for them.
    const timers = new SetType();
    const timerCount = getterOf(SetType, 'size');
    let reportedTimers = 0;
    let isReportingTimers = false;
    const timersPart = () => {
        const count = timerCount(timers);
        if (count === reportedTimers)
            return '';
        reportedTimers = count;
        return compose('t', '' + count);
    };
    // Once in a turn: most timers are followed by another one.
    const reportTimers = () => {
        if (isReportingTimers)
            return;
        isReportingTimers = true;
        later(() => {
            isReportingTimers = false;
            if (timerCount(timers) !== reportedTimers)
                report('');
        }, 0);
    };
    const countTimers = () => {
        const starter = (name, start, repeats) => ({
            [name](callback, delay, ...rest) {
                if (typeof callback !== 'function')
                    return start(callback, delay);
                const id = start(() => {
                    if (!repeats && setDelete(timers, id))
                        reportTimers();
                    callReporting(callback, world, rest, 'in a timer');
                }, delay);
                setAdd(timers, id);
                reportTimers();
                return id;
            },
        })[name];
        const stopper = (name, stop) => ({
            [name](id) {
                stop(id);
                if (setDelete(timers, id))
                    reportTimers();
            },
        })[name];
        define(world, 'setTimeout', starter('setTimeout', later, false), true);
        define(world, 'setInterval', starter('setInterval', setInterval, true), true);
        define(world, 'clearTimeout', stopper('clearTimeout', clearTimeout), true);
        define(world, 'clearInterval', stopper('clearInterval', clearInterval), true);
    };

    // From the event loop: all that the document has got before has been done by then.
    const reportSettled = (ticket) => later(() => report(compose('q', '' + ticket, '' + exitCode())), 0);
