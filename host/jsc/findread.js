// Where a name is read in a pattern, "line:column", for a place that the engine has for it, which may be that of the call before
// it, of the pattern or of the statement's end; the place itself where nothing reads the name in a pattern, or something else
// reads it there; '' where several may be meant. Takes {source, line, column, name} as JSON. Runs behind acorn, in a context of
// the tool's own.
const findRead = (request) => {
    const { source, line, column, name } = JSON.parse(request);
    const lines = source.split('\n');
    const at = lines.slice(0, line - 1).reduce((sum, { length }) => sum + length + 1, column - 1);
    const reads = [];
    let isOther = false;
    const visit = (node, owner, body) => {
        if (/Function/.test(node.type))
            body = node;
        if (node.type === 'MemberExpression' && (node.computed || node.property.name === name))
            isOther ||= node.object.end <= at && at <= node.end;
        if (/^(VariableDeclarator|AssignmentExpression|ForOfStatement|ForInStatement)$/.test(node.type))
            owner = node;
        if (node.type === 'ObjectPattern') {
            for (const property of node.properties) {
                if (property.type === 'Property' && !property.computed && (property.key.name ?? property.key.value) === name)
                    reads.push({ key: property.key, owner: owner ?? node, pattern: node, body });
            }
        }
        for (const child of Object.values(node).flat()) {
            if (child && typeof child.type === 'string')
                visit(child, /Function/.test(node.type) ? undefined : owner, body);
        }
    };
    try {
        visit(acorn.parse(source, { ecmaVersion: 'latest', locations: true, allowAwaitOutsideFunction: true, allowHashBang: true,
            allowReturnOutsideFunction: true }));
    } catch {
        return '';
    }
    if (isOther || reads.length === 0)
        return `${line}:${column}`;
    const holds = (node) => !node || (node.start <= at && at <= node.end + 1);
    const isNamed = (list) => list.length === 1;
    const behind = reads.filter(({ body, key }) => holds(body) && key.start >= at).slice(0, 1);
    const found = [reads.filter(({ pattern }) => holds(pattern)), reads.filter(({ owner }) => holds(owner)), reads, behind].find(isNamed);
    return found ? `${found[0].key.loc.start.line}:${found[0].key.loc.start.column + 1}` : '';
};
