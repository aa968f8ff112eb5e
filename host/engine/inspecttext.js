    // --- Values as text ------------------------------------------------------------------------------------------
    // Strings, numbers and the like, and how parts become lines, as Node's util.inspect does it.

    const symbolText = uncurry(Symbol.prototype.toString);
    const padStart = uncurry(String.prototype.padStart);
    const padEnd = uncurry(String.prototype.padEnd);
    const lineLength = 80;
    const levelsOnALine = 3;
    const maximumText = 10000; // of a string in an object

    const styles = { __proto__: null, string: '32', number: '33', bigint: '33', boolean: '33', undefined: '90', null: '1', symbol: '32',
        special: '36', date: '35', regexp: '31', dim: '90', error: '31' };
    const paint = (context, text, style) => {
        if (!context.colors || !styles[style])
            return text;
        return '\u001b[' + styles[style] + 'm' + text + (style === 'null' ? '\u001b[22m' : '\u001b[39m');
    };
    // Without the sequences for colours. Escapes of the page's own are quoted.
    const shownLength = (context, text) => {
        let count = text.length;
        if (!context.colors)
            return count;
        for (let at = indexOf(text, '\u001b[', 0); at >= 0;) {
            const end = indexOf(text, 'm', at) + 1;
            count -= end - at;
            at = indexOf(text, '\u001b[', end);
        }
        return count;
    };

    const lowerDigits = '0123456789abcdef';
    const hex = (code, count, digits) => {
        let text = '';
        for (let i = 0; i < count; ++i) {
            const digit = (code >> (i * 4)) & 15;
            text = digits[digit] + text;
        }
        return text;
    };
    const escapes = { __proto__: null, 8: '\\b', 9: '\\t', 10: '\\n', 12: '\\f', 13: '\\r', 92: '\\\\' };
    const isHalf = (text, at, code) => {
        if ((code & 0xf800) !== 0xd800)
            return false;
        const other = code < 0xdc00 ? at + 1 : at - 1;
        const next = other >= 0 && other < text.length ? codeAt(text, other) : 0;
        return (next & 0xfc00) !== (code < 0xdc00 ? 0xdc00 : 0xd800);
    };
    const quote = (text) => {
        let mark = "'";
        if (indexOf(text, "'", 0) >= 0) {
            if (indexOf(text, '"', 0) < 0)
                mark = '"';
            else if (indexOf(text, '`', 0) < 0 && indexOf(text, '${', 0) < 0)
                mark = '`';
        }
        const markCode = codeAt(mark, 0);
        let quoted = mark;
        let from = 0;
        for (let i = 0; i < text.length; ++i) {
            const code = codeAt(text, i);
            let escape;
            if (code < 32 || code === 92 || (code >= 127 && code < 160))
                escape = escapes[code] ?? '\\x' + hex(code, 2, '0123456789ABCDEF');
            else if (code === markCode)
                escape = '\\' + mark;
            else if (isHalf(text, i, code))
                escape = '\\u' + hex(code, 4, lowerDigits);
            if (escape) {
                quoted = quoted + slice(text, from, i) + escape;
                from = i + 1;
            }
        }
        return quoted + slice(text, from) + mark;
    };

    const inspectText = (context, text) => {
        let rest = '';
        if (text.length > maximumText) {
            const more = text.length - maximumText;
            rest = '... ' + more + ' more character' + (more > 1 ? 's' : '');
            text = slice(text, 0, maximumText);
        }
        if (text.length <= 16 || text.length <= lineLength - context.indent - 4 || indexOf(text, '\n', 0) < 0)
            return paint(context, quote(text), 'string') + rest;
        const lines = makeList();
        for (let from = 0; from < text.length;) {
            const end = indexOf(text, '\n', from) < 0 ? text.length : indexOf(text, '\n', from) + 1;
            push(lines, paint(context, quote(slice(text, from, end)), 'string'));
            from = end;
        }
        return joinAll(lines, ' +\n' + repeat(' ', context.indent + 2)) + rest;
    };
    const numberText = (number) => (number === 0 && 1 / number < 0 ? '-0' : toText(number));
    const inspectPrimitive = (context, value) => {
        switch (typeof value) {
        case 'string':
            return inspectText(context, value);
        case 'number':
            return paint(context, numberText(value), 'number');
        case 'bigint':
            return paint(context, toText(value) + 'n', 'bigint');
        case 'symbol':
            return paint(context, symbolText(value), 'symbol');
        case 'object':
            return paint(context, 'null', 'null');
        default:
            return paint(context, toText(value), typeof value);
        }
    };

    const isPlainName = (name) => {
        for (let i = 0; i < name.length; ++i) {
            const code = codeAt(name, i);
            const isLetter = (code >= 97 && code <= 122) || (code >= 65 && code <= 90) || code === 95;
            if (!isLetter && !(i > 0 && code >= 48 && code <= 57))
                return false;
        }
        return name !== '';
    };
    const keyText = (context, key) => {
        if (typeof key === 'symbol')
            return '[' + paint(context, symbolText(key), 'symbol') + ']';
        if (key === '__proto__')
            return "['__proto__']";
        return isPlainName(key) ? key : paint(context, quote(key), 'string');
    };
    // Puts the short items of a long list into columns.
    const groupItems = (context, parts, list) => {
        const count = parts.length - (list.hasMore ? 1 : 0);
        const lengths = makeList();
        let total = 0;
        let longest = 0;
        for (let i = 0; i < count; ++i) {
            const length = shownLength(context, parts[i]);
            push(lengths, length);
            total += length + 2;
            longest = max(longest, length);
        }
        const widest = longest + 2;
        if (widest * 3 + context.indent >= lineLength || (total / widest <= 5 && longest > 6))
            return parts;
        const biased = max(widest - 3 - sqrt(widest - total / parts.length), 1);
        const columns = min(round(sqrt(2.5 * biased * count) / biased), floor((lineLength - context.indent) / widest), 4 * levelsOnALine, 15);
        if (columns <= 1)
            return parts;
        const widths = makeList();
        for (let i = 0; i < columns; ++i) {
            let width = 0;
            for (let j = i; j < count; j += columns)
                width = max(width, lengths[j]);
            push(widths, width + 2);
        }
        const grouped = makeList();
        for (let i = 0; i < count; i += columns) {
            const end = min(i + columns, count);
            let line = '';
            for (let j = i; j < end; ++j) {
                const item = j < end - 1 ? parts[j] + ', ' : parts[j];
                const width = widths[j - i] + parts[j].length - lengths[j] - (j < end - 1 ? 0 : 2);
                if (list.isNumeric)
                    line = line + padStart(item, width, ' ');
                else
                    line = line + (j < end - 1 ? padEnd(item, width, ' ') : item);
            }
            push(grouped, line);
        }
        if (list.hasMore)
            push(grouped, parts[count]);
        return grouped;
    };
    // What an object becomes: one line where it is short and not deep, else a line for each part. `list` is undefined for
    // parts that are not to be put into columns.
    const layOut = (context, level, parts, base, open, close, list) => {
        const count = parts.length;
        const grouped = list && count > 6 ? groupItems(context, parts, list) : parts;
        const front = base === '' ? '' : base + ' ';
        if (context.lastLevel - level < levelsOnALine && grouped.length === count) {
            let length = 2 * count + context.indent + open.length + base.length + 10;
            let isOneLine = length + count <= lineLength && indexOf(base, '\n', 0) < 0;
            for (let i = 0; i < count && isOneLine; ++i) {
                length += shownLength(context, grouped[i]);
                isOneLine = length <= lineLength && indexOf(grouped[i], '\n', 0) < 0;
            }
            if (isOneLine)
                return front + open + ' ' + joinAll(grouped, ', ') + ' ' + close;
        }
        const line = '\n' + repeat(' ', context.indent);
        return front + open + line + '  ' + joinAll(grouped, ',' + line + '  ') + line + close;
    };

