// What may come next in an unfinished input, and what is declared of an expression. Behind plan.js. Nothing of the page runs.
let objects; // of the API, by name
const types = {
    root: { kind: 'root' },
    native: (name) => ({ kind: 'handle', name }),
    promise: (type) => ({ kind: 'promise', type }),
    envelope: (type) => ({ kind: 'envelope', type }),
    boolean: { kind: 'boolean' },
};
const objectNamed = (name) => {
    objects ??= new Map(JSON.parse(api).objects.map((object) => [object.name, object]));
    return objects.get(name);
};
const answerOf = (member) =>
    (types[member.answer.form] instanceof Function ? types[member.answer.form](member.answer.type) : member.answer.type);

// The type of a property; undefined where nothing is declared.
const propertyOf = (type, name) => {
    switch (type?.kind) {
    case 'root':
        return objectNamed(name) && types.native(name);
    case 'handle': {
        const member = objectNamed(type.name)?.members.find((one) => one.name === name);
        return member && (member.kind === 'property' ? answerOf(member) : { kind: 'member', object: type.name, member });
    }
    case 'envelope':
        return name === 'data' ? type.type : name === 'success' ? types.boolean : undefined;
    case 'object':
        return type.fields.find((field) => field.name === name)?.type;
    case 'map':
        return type.values;
    case 'array':
        return /^\d+$/.test(name) ? type.items : undefined;
    case 'union':
        return type.types.map((one) => propertyOf(one, name)).find((found) => found);
    }
};
const keyOf = ({ computed, property }) =>
    (computed ? (property.type === 'Literal' ? String(property.value) : undefined) : property.name);
const typeOf = (node) => {
    switch (node?.type) {
    case 'ChainExpression':
    case 'ParenthesizedExpression':
        return typeOf(node.expression);
    case 'Identifier': {
        if (node.name === 'NovaExtension')
            return types.root;
        const known = initialisers.get(node.name);
        if (!known)
            return undefined;
        known.type ??= known.path.reduce(propertyOf, typeOf(known.init)) ?? 'none';
        return known.type === 'none' ? undefined : known.type;
    }
    case 'MemberExpression': {
        const key = keyOf(node);
        return key === undefined ? undefined : propertyOf(typeOf(node.object), key);
    }
    case 'CallExpression': {
        const callee = typeOf(node.callee);
        return callee?.kind === 'member' ? answerOf(callee.member) : undefined;
    }
    case 'AwaitExpression': {
        const type = typeOf(node.argument);
        return type?.kind === 'promise' ? type.type : type;
    }
    }
};
// The properties that lead to a value without a call; undefined where there are none.
const prototypes = { string: 'String', number: 'Number', integer: 'Number', boolean: 'Boolean', array: 'Array', promise: 'Promise' };
const stepsTo = (node) => {
    switch (node?.type) {
    case 'ChainExpression':
        return stepsTo(node.expression);
    case 'Identifier':
        return [node.name];
    case 'ThisExpression':
        return ['globalThis'];
    case 'MemberExpression': {
        const [steps, key] = [stepsTo(node.object), keyOf(node)];
        return steps && key !== undefined ? [...steps, key] : undefined;
    }
    case 'Literal':
        return node.regex ? ['RegExp', 'prototype'] : prototypes[typeof node.value] && [prototypes[typeof node.value], 'prototype'];
    case 'TemplateLiteral':
        return ['String', 'prototype'];
    case 'ArrayExpression':
        return ['Array', 'prototype'];
    case 'ObjectExpression':
        return ['Object', 'prototype'];
    }
};

// --- The unfinished text -----------------------------------------------------------------------------------------------------

const openers = { '(': ')', '[': ']', '{': '}', '${': '}' };
const isWord = (token) => token.label === 'name' || token.isKeyword;
// The tokens, each with the number of brackets around it, those that are open at the end, and the string in which the text ends;
// undefined where it can not be read so far.
const scan = (text) => {
    const tokens = [];
    const open = [];
    let string;
    try {
        for (const { type, value, start, end } of acorn.tokenizer(text, parserOptions)) {
            if (/^[)\]}]$/.test(type.label) && open.length > 0) {
                tokens.push({ label: type.label, start, end, opener: open.pop(), depth: open.length });
                continue;
            }
            tokens.push({ label: type.label, value, start, end, depth: open.length, isKeyword: Boolean(type.keyword) });
            if (type.label in openers)
                open.push(tokens.length - 1);
        }
    } catch (error) {
        if (!/^Unterminated string/.test(error.message))
            return undefined;
        string = error.pos;
    }
    return { text, tokens, open, string };
};
// The expression that ends with a token: names, indexes and calls behind each other.
const expressionAt = ({ text, tokens }, last) => {
    let first = last;
    for (;;) {
        const token = tokens[first];
        if (!token || token.label === '}')
            return undefined;
        const before = tokens[token.opener - 1];
        if (token.opener !== undefined && before && (/^(name|string|[)\]])$/.test(before.label) || before.value === 'this')) {
            first = token.opener - 1;
            continue;
        }
        first = token.opener ?? first;
        if (!/^\??\.$/.test(tokens[first - 1]?.label ?? ''))
            break;
        first -= 2;
    }
    try {
        const { start } = tokens[first];
        const end = tokens[last].end;
        const node = acorn.parseExpressionAt(text.slice(0, end), start, parserOptions);
        return node.end <= end ? node : undefined;
    } catch {
        return undefined;
    }
};
const calleeAt = (scanned, opener) => {
    const type = scanned.tokens[opener].label === '(' && opener > 0 ? typeOf(expressionAt(scanned, opener - 1)) : undefined;
    return type?.kind === 'member' ? type : undefined;
};
const commas = ({ tokens }, opener, index) =>
    tokens.slice(opener + 1, index).filter(({ label, depth }) => label === ',' && depth === tokens[opener].depth + 1).length;
// The declared type of a value that begins at the token with this index, within so many brackets.
const expectedAt = (scanned, index, level = scanned.open.filter((opener) => opener < index).length) => {
    const { tokens, open } = scanned;
    const opener = open[level - 1];
    if (opener === undefined)
        return undefined;
    const before = tokens[index - 1];
    const isFirst = index - 1 === opener;
    switch (tokens[opener].label) {
    case '(': {
        if (!isFirst && before.label !== ',')
            return undefined;
        const parameters = calleeAt(scanned, opener)?.member.parameters ?? [];
        const rest = parameters.at(-1)?.rest ? parameters.at(-1) : undefined;
        return (parameters[commas(scanned, opener, index)] ?? rest)?.type;
    }
    case '{': {
        const key = before.label === ':' ? tokens[index - 2] : undefined;
        return key && propertyOf(expectedAt(scanned, opener, level - 1), String(key.value));
    }
    case '[': {
        const list = expectedAt(scanned, opener, level - 1);
        return isFirst || before.label === ',' ? list?.items : undefined;
    }
    }
};
const alternatives = (type) => (type?.kind === 'union' ? type.types.flatMap(alternatives) : type ? [type] : []);
const fieldsOf = (type) => alternatives(type).flatMap((one) => (one.kind === 'object' ? one.fields : []));
const valuesOf = (type) => alternatives(type).flatMap((one) => (Array.isArray(one.values) ? one.values : []));
const propertyNamesOf = (type) => {
    switch (type?.kind) {
    case 'root':
        objectNamed('');
        return [...objects.keys()].filter((name) => !name.includes('.'));
    case 'handle':
        return (objectNamed(type.name)?.members ?? []).map(({ name }) => name);
    case 'envelope':
        return ['data', 'success'];
    default:
        return fieldsOf(type).map(({ name }) => name);
    }
};

// Names that the text itself declares.
const localNames = ({ tokens }) => {
    const names = [];
    const take = (from, to) => {
        for (let i = from; i < to; ++i) {
            if (tokens[i].label === 'name' && tokens[i + 1]?.label !== ':')
                names.push(tokens[i].value);
        }
    };
    const find = (from, label) => {
        const end = tokens.findIndex((token, i) => i >= from && token.label === label && token.depth <= tokens[from].depth);
        return end < 0 ? tokens.length : end;
    };
    tokens.forEach((token, i) => {
        const next = tokens[i + 1];
        if (/^(const|var)$/.test(token.value) || (token.value === 'let' && next && /^(name|[[{])$/.test(next.label)))
            take(i + 1, Math.min(find(i + 1, '='), find(i + 1, ';')));
        else if (/^(function|class|catch)$/.test(token.value) && next)
            take(i + 1, find(i + 1, '{'));
        else if (token.label === '=>' && i > 0)
            take(tokens[i - 1].opener ?? i - 1, i);
    });
    return names.filter((name) => name !== 'extends');
};
const keywords = ('async await break case catch class const continue default delete do else export false finally for function if '
    + 'import in instanceof let new null of return static super switch this throw true try typeof undefined var void while yield')
    .split(' ');

// {from, names, steps, member}: what is typed begins at `from` and becomes one of the names, or of the properties that `steps`
// lead to; `member` is the one that is being called.
const complete = (text) => {
    const scanned = scan(text);
    if (!scanned)
        return { from: text.length, names: [] };
    const { tokens, open, string } = scanned;
    const member = open.map((opener) => calleeAt(scanned, opener)).findLast((callee) => callee);
    const found = (from, names, steps) => ({ from, names, steps, member: member && `${member.object}.${member.member.name}` });
    if (string !== undefined)
        return found(string + 1, valuesOf(expectedAt(scanned, tokens.length))
            .filter((value) => typeof value === 'string').map((value) => value + text[string]));
    const last = tokens.at(-1);
    const index = last && isWord(last) && last.end === text.length ? tokens.length - 1 : tokens.length;
    const from = tokens[index]?.start ?? text.length;
    const before = tokens[index - 1];
    if (before && /^\??\.$/.test(before.label)) {
        const node = expressionAt(scanned, index - 2);
        const type = typeOf(node);
        const steps = stepsTo(node) ?? (prototypes[type?.kind] && [prototypes[type.kind], 'prototype']);
        return found(from, propertyNamesOf(type), steps);
    }
    const opener = open.at(-1);
    if (opener !== undefined && tokens[opener].label === '{' && (index - 1 === opener || before.label === ',')) {
        const written = tokens.slice(opener + 1, index).filter((token, i) =>
            token.depth === tokens[opener].depth + 1 && /^[{,]$/.test(tokens[opener + i].label)).map(({ value }) => value);
        const fields = fieldsOf(expectedAt(scanned, opener));
        if (fields.length > 0)
            return found(from, fields.map(({ name }) => name).filter((name) => !written.includes(name)).map((name) => name + ': '));
    }
    if (index > 0 && before.end === text.length && isWord(before))
        return found(from, []);
    if (from === text.length && before) {
        return found(from, valuesOf(expectedAt(scanned, index)).map((value) =>
            (typeof value === 'string' ? `'${value}'` : String(value))));
    }
    return found(from, [...localNames({ tokens: tokens.slice(0, index) }), ...declared.keys(), ...keywords], []);
};

// {type, form} or {member}, and {} where nothing is declared of the expression.
const typeOfText = (text) => {
    try {
        const node = acorn.parseExpressionAt(text, 0, parserOptions);
        const type = /^[\s;]*$/.test(text.slice(node.end)) ? typeOf(node) : undefined;
        return type?.kind === 'member' ? { member: `${type.object}.${type.member.name}` }
            : type?.kind === 'root' || !type ? {}
                : types[type.kind] ? { type: type.type, form: type.kind } : { type, form: 'plain' };
    } catch {
        return {};
    }
};
