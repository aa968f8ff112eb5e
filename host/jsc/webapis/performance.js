// The clock of a page, and what it has measured.
const { milliseconds, timeOrigin } = native;

const entries = [];

class PerformanceEntry {
    constructor(entryType, name, startTime, duration, detail) {
        Object.assign(this, { entryType, name, startTime, duration, detail });
    }
    toJSON() {
        return { ...this };
    }
}
class PerformanceMark extends PerformanceEntry { }
class PerformanceMeasure extends PerformanceEntry { }

const add = (entry) => {
    entries.push(entry);
    entries.sort((one, other) => one.startTime - other.startTime);
    return entry;
};
// The time of a mark by its name, or a time; undefined without either.
const timeOf = (point) => {
    if (typeof point !== 'string')
        return point;
    const mark = entries.findLast(({ entryType, name }) => entryType === 'mark' && name === point);
    if (!mark)
        throw new DOMException(`The mark '${point}' does not exist.`, 'SyntaxError');
    return mark.startTime;
};
const clear = (type, name) => {
    for (let i = entries.length - 1; i >= 0; --i) {
        if (entries[i].entryType === type && (name === undefined || entries[i].name === name))
            entries.splice(i, 1);
    }
};

class Performance {
    get timeOrigin() {
        return timeOrigin;
    }
    now() {
        return milliseconds();
    }
    mark(name, { startTime = milliseconds(), detail = null } = {}) {
        return add(new PerformanceMark('mark', `${name}`, startTime, 0, detail));
    }
    measure(name, from, to) {
        const options = typeof from === 'object' && from !== null ? from : { start: from, end: to };
        let start = timeOf(options.start);
        let end = timeOf(options.end);
        if (options.duration !== undefined) {
            start ??= end - options.duration;
            end ??= start + options.duration;
        }
        start ??= 0;
        end ??= milliseconds();
        return add(new PerformanceMeasure('measure', `${name}`, start, end - start, options.detail ?? null));
    }
    clearMarks(name) {
        clear('mark', name);
    }
    clearMeasures(name) {
        clear('measure', name);
    }
    getEntries() {
        return [...entries];
    }
    getEntriesByType(type) {
        return entries.filter(({ entryType }) => entryType === type);
    }
    getEntriesByName(name, type) {
        return entries.filter((entry) => entry.name === name && (type === undefined || entry.entryType === type));
    }
    toJSON() {
        return { timeOrigin };
    }
    get [Symbol.toStringTag]() {
        return 'Performance';
    }
}

export const performance = new Performance();
