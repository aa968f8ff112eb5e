// What an input of the prompt becomes before a page runs it. Runs in a context of the tool's own, behind acorn.
//
// Declarations go into a script of their own, so that they stay: names of let, const and class are declared there with let,
// and the input only assigns to them. So they can be declared again, a failed initialiser leaves a usable name, and an input
// with await can be the body of a function.
const parserOptions = { ecmaVersion: 'latest', allowAwaitOutsideFunction: true, allowHashBang: true };
const declared = new Map(); // name: 'var', 'let' or 'const'
const initialisers = new Map(); // name: {init, path}, the expression and the properties that lead from it to the value
let pending; // what the last plan declares

// Remembers the names of the outermost scope that are assigned to: the engine does not know which are constants.
const InputParser = acorn.Parser.extend((Base) => class extends Base {
    checkLValSimple(expression, bindingType = 0, ...rest) {
        const isInner = (name) => this.scopeStack.slice(1).some((scope) =>
            [scope.var, scope.lexical, scope.functions].some((names) => names.includes(name)));
        if (bindingType === 0 && expression.type === 'Identifier' && !isInner(expression.name))
            (this.assigned ??= []).push(expression.name);
        super.checkLValSimple(expression, bindingType, ...rest);
    }
});
const parse = (source) => {
    const parser = new InputParser(parserOptions, source);
    return { text: source, body: parser.parse().body, assigned: parser.assigned ?? [] };
};

const isCutOff = (source) => {
    try {
        parse(source);
        return false;
    } catch (error) {
        return /^Unterminated (template|comment)/.test(error.message) || error.pos >= source.length
            || (/^Unterminated string/.test(error.message) && /\\\n?$/.test(source));
    }
};
// What begins with a brace is an object where it can be one.
const read = (source) => {
    const isBraced = /^\s*\{/.test(source);
    if (isBraced) {
        try {
            return { ...parse('(' + source.replace(/[;\s]*$/, '') + '\n)'), shift: 1 };
        } catch { }
    }
    try {
        return parse(source);
    } catch {
        return { isIncomplete: isCutOff(source) || (isBraced && isCutOff('(' + source)) };
    }
};

const children = (node) => Object.values(node).flat().filter((value) => value && typeof value.type === 'string');
// Nodes that belong to the input itself, not to a function in it.
const visit = (node, see, parent) => {
    see(node, parent);
    if (!/Function/.test(node.type) && node.type !== 'StaticBlock')
        children(node).forEach((child) => visit(child, see, node));
};
const namesIn = (pattern, path = []) => {
    switch (pattern?.type) {
    case 'Identifier':
        return [{ name: pattern.name, path }];
    case 'AssignmentPattern':
        return namesIn(pattern.left, path);
    case 'RestElement':
        return namesIn(pattern.argument, null);
    case 'ArrayPattern':
        return pattern.elements.flatMap((element, i) => namesIn(element, path && [...path, String(i)]));
    case 'ObjectPattern':
        return pattern.properties.flatMap((property) => (property.type === 'RestElement' ? namesIn(property, path)
            : namesIn(property.value, path && !property.computed ? [...path, property.key.name ?? property.key.value] : null)));
    default:
        return [];
    }
};

// A script with pieces of what was typed, which begins at `shift` of `text`.
class Made {
    text = '';
    pieces = '';

    constructor(text, shift) {
        Object.assign(this, { from: text, shift });
    }
    add(text) {
        this.text += text;
    }
    take(start, end) {
        if (end > start)
            this.pieces += `${this.text.length} ${start - this.shift} ${end - start};`;
        this.text += this.from.slice(start, end);
    }
}

class Rewriting {
    constructor({ text, body, shift = 0 }, isAsync) {
        Object.assign(this, { text, body, shift, isAsync, edits: [], functions: [], names: new Map(), inits: new Map() });
        for (const statement of body)
            this.declare(statement);
        for (const statement of body)
            visit(statement, (node, parent) => this.moveVariables(node, parent));
    }

    edit(start, end, text) {
        this.edits.push({ start, end, text });
    }
    isLexical(name) {
        return ['let', 'const'].includes(declared.get(name));
    }
    add(name, kind) {
        if (!this.names.has(name))
            this.names.set(name, kind);
        this.inits.delete(name);
    }
    declare(statement) {
        const name = statement.id?.name;
        if (statement.type === 'ClassDeclaration') {
            this.add(name, 'let');
            this.edit(statement.start, statement.start, `void (${name} = `);
            this.edit(statement.end, statement.end, ');');
        } else if (statement.type === 'FunctionDeclaration') {
            this.add(name, 'var');
            this.functions.push(statement);
        } else if (statement.type === 'VariableDeclaration' && statement.kind !== 'var') {
            this.addVariables(statement);
            this.assign(statement);
        }
    }
    addVariables(declaration) {
        for (const { id, init } of declaration.declarations) {
            for (const { name, path } of namesIn(id)) {
                this.add(name, declaration.kind);
                if (init && path)
                    this.inits.set(name, { init, path });
            }
        }
    }
    // A declaration as an expression without a value.
    assign({ start, end, kind, declarations }) {
        this.edit(start, declarations[0].start, 'void (');
        for (const { id, init } of declarations) {
            if (!init && kind !== 'var')
                this.edit(id.end, id.end, ' = undefined');
        }
        const last = declarations.at(-1).end;
        this.edit(last, last, ')' + (this.text[end - 1] === ';' ? '' : ';'));
    }
    moveVariables(node, parent) {
        if (node.type !== 'VariableDeclaration' || node.kind !== 'var')
            return;
        this.addVariables(node);
        if (!this.isAsync && !node.declarations.some(({ id }) => namesIn(id).some(({ name }) => this.isLexical(name))))
            return;
        if (/^For/.test(parent?.type ?? '') && parent.body !== node)
            this.edit(node.start, node.declarations[0].start, '');
        else
            this.assign(node);
    }
    // The value of the last statement becomes that of the function.
    returnLast() {
        const last = this.body.at(-1);
        if (last?.type !== 'ExpressionStatement')
            return;
        const end = this.text[last.end - 1] === ';' ? last.end - 1 : last.end;
        this.edit(last.start, last.start, 'return (');
        this.edit(end, end, ')');
    }
    finish() {
        const made = new Made(this.text, this.shift);
        const isFunction = (name) => this.functions.some(({ id }) => id.name === name);
        const names = [...this.names].filter(([name]) => !declared.has(name) && !isFunction(name));
        // Functions stay in their places, but for those whose names have been declared otherwise.
        let kept = this.text.replace(/[^\n]/g, ' ');
        if (this.isAsync)
            made.add('(async () => {');
        for (const { id, start, end } of this.functions) {
            this.edit(start, end, ';');
            if (this.isLexical(id.name)) {
                made.add(`void (${id.name} = `);
                made.take(start, end);
                made.add(');');
            } else {
                kept = kept.slice(0, start) + this.text.slice(start, end) + kept.slice(end);
            }
        }
        if (this.isAsync)
            this.returnLast();
        let next = 0;
        for (const { start, end, text } of this.edits.sort((a, b) => a.start - b.start)) {
            made.take(next, start);
            made.add(text);
            next = end;
        }
        made.take(next, this.text.length);
        if (this.isAsync)
            made.add('\n})()');
        const declarations = (kept.trim() === '' ? '' : kept + '\n;')
            + names.map(([name, kind]) => (kind === 'var' ? `var ${name};` : `let ${name};`)).join('');
        return { declarations, source: made.text, pieces: made.pieces };
    }
}

// Whether a file has import or export statements, which the body of a function can not have.
const isModule = (source) => {
    try {
        acorn.parse(source, { ...parserOptions, allowReturnOutsideFunction: true });
        return false;
    } catch (error) {
        return /^'import' and 'export' may appear only with/.test(error.message);
    }
};

// {isIncomplete, declarations, source, pieces, isKept, error}. A text that is no script at all is left to the engine, which knows why.
const plan = (source) => {
    pending = undefined;
    const script = read(source);
    if (!script.body)
        return { isIncomplete: script.isIncomplete, declarations: '', source, isKept: true };
    let isAsync = false;
    script.body.forEach((statement) => visit(statement, (node) => {
        isAsync ||= node.type === 'AwaitExpression' || node.await === true;
    }));
    const rewriting = new Rewriting(script, isAsync);
    const constant = script.assigned.find((name) => (rewriting.names.get(name) ?? declared.get(name)) === 'const');
    if (constant !== undefined)
        return { error: `TypeError: ${constant} is a constant; declare it again with const or let to give it another value.` };
    pending = { names: rewriting.names, inits: rewriting.inits };
    if (script.assigned.includes('_'))
        pending.names.set('_', 'var');
    const isKept = !declared.has('_') && !pending.names.has('_');
    return { isIncomplete: false, ...rewriting.finish(), isKept };
};
// The page has run the declarations.
const commit = () => {
    for (const [name, kind] of pending?.names ?? []) {
        const before = declared.get(name);
        declared.set(name, kind === 'const' || !before ? kind : before === 'var' ? 'var' : 'let');
        if (pending.inits.has(name))
            initialisers.set(name, pending.inits.get(name));
        else
            initialisers.delete(name);
    }
};
