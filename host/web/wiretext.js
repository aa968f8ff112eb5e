    // How texts are written to the suite and read; host/web/wire.h has the format.

    const decodeUnits = uncurry(TextDecoder.prototype.decode);
    const unitsDecoder = new TextDecoder('utf-16le', { ignoreBOM: true });
    const UnitsType = Uint16Array;

    // Replaces a unit that comes so often that a piece of text for each would take too long. Undefined when the text has
    // halves of surrogate pairs, which the decoder does not take.
    const replaceMany = (text, unit, by) => {
        const units = new UnitsType(text.length);
        const code = codeAt(unit, 0);
        const byCode = codeAt(by, 0);
        for (let i = 0; i < text.length; ++i) {
            const one = codeAt(text, i);
            if ((one & 0xf800) === 0xd800)
                return undefined;
            units[i] = one === code ? byCode : one;
        }
        return decodeUnits(unitsDecoder, units);
    };
    const runLengths = [4096, 64];
    const runOf = (unit, count) => {
        let run = unit;
        while (run.length < count)
            run = run + run;
        return run;
    };
    const replaceUnit = (text, unit, by) => {
        let made = '';
        let from = 0;
        let pieces = 0;
        for (let at = indexOf(text, unit, 0); at >= 0; at = indexOf(text, unit, from)) {
            if (++pieces > 100 + at / 32) {
                const all = replaceMany(text, unit, by);
                if (all !== undefined)
                    return all;
                pieces = -text.length;
            }
            made = made + slice(text, from, at) + by;
            from = at + 1;
            if (text[from] !== unit)
                continue;
            for (let i = 0; i < runLengths.length; ++i) {
                const count = runLengths[i];
                const run = runOf(unit, count);
                const byRun = runOf(by, count);
                for (; slice(text, from, from + count) === run; from += count)
                    made = made + byRun;
            }
        }
        return made + slice(text, from);
    };
    // A zero would end the request, so it is replaced by a unit that the text does not have. A long text gets such a unit in
    // any case: a string of single bytes, which it would be without, is slower on its way.
    const longText = 10000;
    // A text that has all units that are for private use is written in pieces, which are too short for that.
    const pieceUnits = 6000;
    const written = (text) => {
        if (text.length < longText && indexOf(text, '\0', 0) < 0)
            return text.length + ';' + text;
        let code = 0xe000;
        while (code < 0xf900 && indexOf(text, fromCharCode(code), 0) >= 0)
            ++code;
        if (code === 0xf900) {
            let pieces = '';
            let count = 0;
            for (let at = 0; at < text.length; at += pieceUnits, ++count)
                pieces += written(slice(text, at, at + pieceUnits));
            return count + '+' + pieces;
        }
        const stand = fromCharCode(code);
        return text.length + ':' + stand + replaceUnit(text, '\0', stand);
    };

    // A natural number or 0, with the character after it.
    const nextCount = (reader) => {
        const { text } = reader;
        let count = 0;
        for (let at = reader.at; ; ++at) {
            const unit = text[at];
            if (unit === ';' || unit === ':' || unit === '+') {
                reader.at = at + 1;
                return count;
            }
            count = count * 10 + +unit;
        }
    };
    const nextWord = (reader) => {
        const end = indexOf(reader.text, ';', reader.at);
        const word = slice(reader.text, reader.at, end);
        reader.at = end + 1;
        return word;
    };
    const nextText = (reader) => {
        const count = nextCount(reader);
        const mark = reader.text[reader.at - 1];
        if (mark === '+') {
            let whole = '';
            for (let i = 0; i < count; ++i)
                whole += nextText(reader);
            return whole;
        }
        const stand = mark === ':' ? reader.text[reader.at++] : '';
        const text = slice(reader.text, reader.at, reader.at + count);
        reader.at += count;
        return stand === '' ? text : replaceUnit(text, stand, '\0');
    };
