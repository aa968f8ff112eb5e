// Why and where a text is no script, as {message, line, column}; null where it is one. Runs behind acorn, in a context of the
// tool's own. The messages are those of browsers where acorn has shorter ones.
const faultFinder = (options) => (source) => {
    const text = source.trimEnd();
    try {
        acorn.parse(text, { ecmaVersion: 'latest', allowAwaitOutsideFunction: true, ...options });
        return null;
    } catch ({ message, pos, loc }) {
        return { message: describe(message.replace(/ \(\d+:\d+\)$/, ''), text, pos), line: loc.line, column: loc.column + 1 };
    }
};
const describe = (message, text, pos) => {
    if (message.startsWith("'import' and 'export' may appear only with"))
        return 'Cannot use import or export statements outside a module';
    if (message !== 'Unexpected token')
        return message;
    if (pos >= text.length)
        return 'Unexpected end of input';
    const rest = text.slice(pos);
    let length = 1;
    try {
        length = acorn.tokenizer(rest, { ecmaVersion: 'latest' }).getToken().end;
    } catch { }
    return `Unexpected token '${rest.slice(0, length)}'`;
};
const findFault = faultFinder({});
const findFaultInStatements = faultFinder({ allowReturnOutsideFunction: true });
// Some names, such as `await`, are no names in a function that is async.
const findFaultInBody = (source) => {
    const begin = 'async function f() {';
    const fault = findFaultInStatements(source) ?? findFault(begin + source + '\n}');
    if (fault?.line === 1 && fault.column > begin.length)
        fault.column -= begin.length;
    return fault;
};
