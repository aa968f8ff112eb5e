// "Did you mean": the nearest of some names.

function distance(a, b) {
    let row = Array.from({ length: b.length + 1 }, (_, index) => index);
    for (let i = 1; i <= a.length; ++i) {
        const next = [i];
        for (let j = 1; j <= b.length; ++j)
            next[j] = Math.min(row[j] + 1, next[j - 1] + 1, row[j - 1] + (a[i - 1].toLowerCase() === b[j - 1].toLowerCase() ? 0 : 1));
        row = next;
    }
    return row[b.length];
}

/** The name that is nearest, if it is near enough to be meant. */
export function nearest(name, names) {
    let found;
    let best = Math.max(2, Math.floor(name.length / 5)) + 1;
    for (const candidate of names) {
        const far = distance(name, candidate);
        if (far < best)
            [best, found] = [far, candidate];
    }
    return found;
}

/** The same as the end of a message. */
export function hint(name, names) {
    const found = nearest(name, names);
    return found === undefined ? "." : `. Did you mean ${JSON.stringify(found)}?`;
}
