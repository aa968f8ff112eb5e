    // --- The console ---------------------------------------------------------------------------------------------

    const parseWhole = parseInt;
    const parseDecimal = parseFloat;
    const dateNow = Date.now;
    const numberOf = (value, parse) => {
        if (typeof value === 'bigint')
            return toText(value) + 'n';
        return isObject(value) || typeof value === 'symbol' ? 'NaN' : numberText(parse(value));
    };
    const textOf = (value) => {
        if (typeof value === 'string')
            return value;
        if (isErrorObject(value))
            return fullTitle(value);
        if (typeof value === 'function')
            return functionText(value);
        return inspect(value, false, 0);
    };
    const jsonText = (value) => {
        try {
            return toText(jsonOf(value));
        } catch {
            return '[Circular]';
        }
    };
    // One value for a specifier; undefined where the letter is none.
    const formatOne = (letter, value, isColored) => {
        switch (letter) {
        case 's':
            return textOf(value);
        case 'd':
            return numberOf(value, toNumber);
        case 'i':
            return numberOf(value, parseWhole);
        case 'f':
            return numberOf(value, parseDecimal);
        case 'j':
            return jsonText(value);
        case 'o':
            return inspect(value, isColored, 4, true);
        case 'O':
            return inspect(value, isColored, usualDepth);
        case 'c':
            return '';
        default:
            return undefined;
        }
    };
    // The values of a call as a line; a first one that is a string may have specifiers.
    const formatLine = (values, isColored) => {
        let line = '';
        let next = 0;
        if (values.length > 0 && typeof values[0] === 'string') {
            const form = values[0];
            next = 1;
            let from = 0;
            for (let at = indexOf(form, '%', 0); values.length > 1 && at >= 0 && at < form.length - 1; at = indexOf(form, '%', at)) {
                const letter = form[at + 1];
                const made = letter === '%' ? '%' : next < values.length ? formatOne(letter, values[next], isColored) : undefined;
                if (made === undefined) {
                    ++at;
                    continue;
                }
                line = line + slice(form, from, at) + made;
                next += letter === '%' ? 0 : 1;
                at += 2;
                from = at;
            }
            line = line + slice(form, from);
        }
        for (let i = next; i < values.length; ++i)
            line = (i === 0 ? '' : line + ' ') + (typeof values[i] === 'string' ? values[i] : inspect(values[i], isColored, usualDepth));
        return line;
    };

    let groups = '';
    const print = (text, isError) => write(groups === '' ? text : groups + indented(text, groups.length), isError);
    const printValues = (values, isError) => print(formatLine(values, isError ? colors.errors : colors.output), isError);
    const printWith = (front, values) => {
        const rest = formatLine(values, colors.errors);
        print(rest === '' ? front : front + ': ' + rest, true);
    };
    const warnOf = (text) => print('Warning: ' + text, true);

    const tableWidth = (text) => {
        let width = 0;
        for (let i = 0; i < text.length; ++i) {
            const code = codeAt(text, i);
            // The second half of a pair, and marks that are drawn over a letter.
            const isNone = (code & 0xfc00) === 0xdc00 || (code >= 0x300 && code < 0x370);
            const isWide = (code >= 0x1100 && code < 0x1160) || (code >= 0x2e80 && code < 0xa4d0) || (code >= 0xac00 && code < 0xd7a4)
                || (code >= 0xd83c && code < 0xd840) || (code >= 0xff00 && code < 0xff61);
            width += isNone ? 0 : isWide ? 2 : 1;
        }
        return width;
    };
    const drawTable = (rows) => {
        const widths = makeList();
        for (let i = 0; i < rows.length; ++i) {
            for (let j = 0; j < rows[i].length; ++j)
                widths[j] = max(widths[j] ?? 0, tableWidth(rows[i][j]) + 2);
            widths.length = max(widths.length, rows[i].length);
        }
        const rule = (left, cross, right) => {
            const lines = makeList();
            for (let j = 0; j < widths.length; ++j)
                push(lines, repeat('─', widths[j]));
            return left + joinAll(lines, cross) + right;
        };
        let text = rule('┌', '┬', '┐');
        for (let i = 0; i < rows.length; ++i) {
            let line = '│';
            for (let j = 0; j < widths.length; ++j) {
                const cell = rows[i][j] ?? '';
                const space = widths[j] - tableWidth(cell);
                line = line + repeat(' ', floor(space / 2)) + cell + repeat(' ', space - floor(space / 2)) + '│';
            }
            text = text + '\n' + line + (i === 0 ? '\n' + rule('├', '┼', '┤') : '');
        }
        return text + '\n' + rule('└', '┴', '┘');
    };
    // The rows of a table: [name, value] of the elements of an array, a map or a set, else of the properties.
    const tableEntries = (data) => {
        const entries = makeList();
        const add = (name, value) => push(entries, { __proto__: null, name, value });
        const { kind } = classOf(data);
        if (kind === 'Map') {
            mapEach(data, (value, key) => add(inspect(key, false, 0), value));
        } else if (kind === 'Set') {
            setEach(data, (value) => add(toText(entries.length), value));
        } else {
            const names = keys(data);
            for (let i = 0; i < names.length; ++i)
                add(names[i], getOwnPropertyDescriptor(data, names[i])?.value);
        }
        return entries;
    };
    const tableOf = (data, chosen) => {
        const entries = tableEntries(data);
        const heads = makeList();
        const known = { __proto__: null };
        const head = (name) => {
            if (known[name] === undefined) {
                known[name] = heads.length;
                push(heads, name);
            }
        };
        let hasValues = false;
        for (let i = 0; chosen && i < chosen.length; ++i)
            head(textOf(getOwnPropertyDescriptor(chosen, i)?.value));
        for (let i = 0; i < entries.length; ++i) {
            const { value } = entries[i];
            const names = isObject(value) && typeof value !== 'function' ? keys(value) : undefined;
            hasValues = hasValues || names === undefined;
            for (let j = 0; names && !chosen && j < names.length; ++j)
                head(names[j]);
        }
        const rows = makeList();
        const first = makeList();
        push(first, '(index)');
        for (let j = 0; j < heads.length; ++j)
            push(first, heads[j]);
        if (hasValues)
            push(first, 'Values');
        push(rows, first);
        for (let i = 0; i < entries.length; ++i) {
            const { name, value } = entries[i];
            const row = makeList();
            push(row, name);
            const isRow = isObject(value) && typeof value !== 'function';
            for (let j = 0; j < heads.length; ++j) {
                const found = isRow ? getOwnPropertyDescriptor(value, heads[j]) : undefined;
                push(row, found ? ('value' in found ? inspect(found.value, false, 0) : '[Getter]') : '');
            }
            if (hasValues)
                push(row, isRow ? '' : inspect(value, false, 0));
            push(rows, row);
        }
        return drawTable(rows);
    };

    const counts = { __proto__: null };
    const starts = { __proto__: null };
    const labelOf = (label) => (label === undefined ? 'default' : textOf(label));
    const durationText = (milliseconds) => {
        if (milliseconds < 1000)
            return toText(round(milliseconds * 1000) / 1000) + 'ms';
        const seconds = milliseconds / 1000;
        if (seconds < 60)
            return toText(round(seconds * 1000) / 1000) + 's';
        const minutes = floor(seconds / 60);
        return minutes + ':' + padStart(toText(floor(seconds % 60)), 2, '0') + ' (m:ss)';
    };
    const elapsed = (name, label, values) => {
        if (starts[label] === undefined)
            return warnOf("No such label '" + label + "' for console." + name + '()');
        const rest = values.length > 0 ? ' ' + formatLine(values, colors.output) : '';
        print(label + ': ' + durationText(now() - starts[label]) + rest, false);
    };
    const consoleMethods = {
        __proto__: null,
        log(...values) { printValues(values, false); },
        info(...values) { printValues(values, false); },
        debug(...values) { printValues(values, false); },
        warn(...values) { printValues(values, true); },
        error(...values) { printValues(values, true); },
        trace(...values) {
            const frames = framesText(framesOf(new ErrorType().stack));
            const rest = formatLine(values, colors.errors);
            print('Trace' + (rest === '' ? '' : ': ' + rest) + (frames === '' ? '' : '\n' + frames), true);
        },
        dir(value, options) {
            const depth = isObject(options) ? peek(options, 'depth') : undefined;
            print(inspect(value, colors.output, typeof depth === 'number' ? depth : depth === null ? 1 / 0 : usualDepth), false);
        },
        dirxml(...values) { printValues(values, false); },
        table(data, columns) {
            let text;
            try {
                text = isObject(data) ? tableOf(data, isArray(columns) ? columns : undefined) : undefined;
            } catch {
                text = undefined;
            }
            if (text === undefined)
                printValues([data], false);
            else
                print(text, false);
        },
        group(...values) {
            if (values.length > 0)
                printValues(values, false);
            groups = groups.length < 100 ? groups + '  ' : groups;
        },
        groupCollapsed(...values) { apply(consoleMethods.group, undefined, values); },
        groupEnd() { groups = slice(groups, 2); },
        count(label) {
            const name = labelOf(label);
            counts[name] = (counts[name] ?? 0) + 1;
            print(name + ': ' + counts[name], false);
        },
        countReset(label) {
            const name = labelOf(label);
            if (counts[name] === undefined)
                warnOf("Count for '" + name + "' does not exist");
            else
                counts[name] = 0;
        },
        time(label) {
            const name = labelOf(label);
            if (starts[name] !== undefined)
                warnOf("Label '" + name + "' already exists for console.time()");
            else
                starts[name] = now();
        },
        timeLog(label, ...values) { elapsed('timeLog', labelOf(label), values); },
        timeEnd(label) {
            elapsed('timeEnd', labelOf(label), []);
            starts[labelOf(label)] = undefined;
        },
        assert(condition, ...values) {
            if (!condition)
                printWith('Assertion failed', values);
        },
        profile() { },
        profileEnd() { },
        timeStamp() { },
        clear() {
            if (colors.output)
                write('\u001b[1;1H\u001b[0J', false);
            groups = '';
        },
    };
    const installConsole = (target) => {
        const names = keys(consoleMethods);
        for (let i = 0; i < names.length; ++i)
            define(target, names[i], consoleMethods[names[i]], true);
    };
