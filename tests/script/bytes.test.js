// Bytes between pages and the library, ByteBuffer, and what Crypto makes of strings and bytes.
const { ByteBufferManager, Crypto, Event, SettingsManager } = NovaExtension;
const wrong = refusal(1, "wrong parameters.");
const illegal = refusal(1, "Size is illegal.");
const list = (/** @type {Uint8Array} */ bytes) => Array.from(bytes);
const through = (/** @type {any} */ content) => list(ByteBufferManager.create(content).data());
const every = Uint8Array.from({ length: 256 }, (_, i) => i);
const large = Uint32Array.from({ length: 2 << 20 }, (_, i) => i * 2654435761);
const detached = () => {
    const { buffer } = new Uint8Array(4);
    if ("document" in globalThis)
        /** @type {any} */ (globalThis).postMessage(0, "*", [buffer]);
    else
        /** @type {any} */ (buffer).transfer();
    return buffer;
};

await check([
    ["every byte", () => through(every), list(every)],
    ["none", () => through(new ArrayBuffer(0)), []],
    ["a whole buffer", () => through(every.buffer.slice(250)), [250, 251, 252, 253, 254, 255]],
    ["a part, of wider elements", () => through(new Uint16Array(every.buffer, 4, 2)), [4, 5, 6, 7]],
    ["elements that are no integers", () => through(new Float32Array([1])), [0, 0, 128, 63]],
    ["a part behind a DataView", () => through(new DataView(every.buffer, 254)), [254, 255]],
    ["8 MiB", () => {
        const back = ByteBufferManager.create(large).data();
        return back instanceof Uint8Array && back.byteOffset === 0 && new Uint32Array(back.buffer).every((x, i) => x === large[i]);
    }, true],
    ["copies both ways", () => {
        const given = new Uint8Array([1, 2]);
        const buffer = ByteBufferManager.create(given);
        given.fill(9);
        buffer.data().fill(9);
        return list(buffer.data());
    }, [1, 2]],
    ["within objects and lists, to a listener", () => new Promise((resolve) => {
        Event.addEventListener("bytes", (payload) => resolve([list(payload.all[1]), payload.all[0], list(payload.none)]));
        Event.dispatchEvent("bytes", undefined, { all: ["x", every.subarray(7, 9)], none: new Uint8Array() });
    }), [[7, 8], "x", []]],
    ["whatever a page does to its classes", () => {
        const kept = [[Uint8Array.prototype, "constructor"], [ArrayBuffer, Symbol.species], [Object.getPrototypeOf(Uint8Array.prototype), "length"],
            [Object.getPrototypeOf(Uint8Array.prototype), "set"]].map(([object, key]) => /** @type {const} */ ([object, key,
            Object.getOwnPropertyDescriptor(object, key)]));
        kept.forEach(([object, key]) => Object.defineProperty(object, key, { configurable: true, get() { throw new Error("page"); } }));
        try {
            return through(new Uint16Array([258]));
        } finally {
            kept.forEach(([object, key, descriptor]) => Object.defineProperty(object, key, /** @type {any} */ (descriptor)));
        }
    }, [2, 1]],
    ["a detached buffer", () => through(detached()), refusal(1, "argument 1: a detached ArrayBuffer can not be passed")],
    ["too many", () => through({ a: [new Uint8Array((256 << 20) + 1)] }),
        refusal(1, "argument 1: more than 256 MB of bytes in one call (at a[0])")],
    ["in settings", () => SettingsManager.settings({ format: 0 }).setValue({ key: "bytes", value: every }), wrong],

    ["a number of zeros", () => through(3), [0, 0, 0]],
    ["a string", () => through("\u00e4\0\ud83d\ude00"), [195, 164, 0, 240, 159, 152, 128]],
    ["half a surrogate pair", () => through("\ud800"), wrong],
    ["another buffer", () => through(ByteBufferManager.create("ab")), [97, 98]],
    ["another object", () => through(Event), wrong],
    ["no content", () => call(ByteBufferManager, "create"), refusal(1, "missing required parameters.")],
    ...[null, true, {}, [1], NaN, Infinity].map((content) => [`${content}`, () => through(content), wrong]),
    ...[-1, 0.5, 2 ** 28 + 1, 1e300].map((size) => [`a size of ${size}`, () => through(size), illegal]),
    ["smaller and larger", () => {
        const buffer = ByteBufferManager.create(every);
        return [2, 2 ** 28 + 1, "1", 4].map((size) => {
            try {
                return call(buffer, "setSize", size).success;
            } catch (error) {
                return /** @type {any} */ (error).msg;
            }
        }).concat(buffer.getSize().data, list(buffer.data()));
    }, [true, illegal.msg, wrong.msg, true, 4, 0, 1, 0, 0]],
    ["more than all may hold", () => {
        const buffers = Array.from({ length: 4 }, () => ByteBufferManager.create(0));
        try {
            return buffers.map((buffer) => buffer.setSize(2 ** 28)) && ByteBufferManager.create(1);
        } finally {
            buffers.forEach((buffer) => buffer.setSize(0));
        }
    }, refusal(3, "Too many bytes in buffers.")],
    ["and what they held can be had again", () => ByteBufferManager.create(2 ** 28).setSize(0).success, true],

    ...Object.entries({ "": "", "f": "Zg==", "fo": "Zm8=", "foo": "Zm9v", "\u00fb\u00ff": "w7vDvw==" }).map(([text, encoded]) =>
        [`Base64 of ${text}`, () => Crypto.c64Encode(text).data, encoded]),
    ["Base64 of bytes", () => Crypto.c64Encode(new Uint8Array([251, 255, 254])).data, "+//+"],
    ["MD5 of no string", () => Crypto.md5Data("").data, "d41d8cd98f00b204e9800998ecf8427e"],
    ["MD5 of a string", () => Crypto.md5Data("caf\u00e9").data, "07117fe4a1ebd544965dc19573183da2"],
    ["MD5 of a buffer", () => Crypto.md5Data(ByteBufferManager.create("abc")).data, "900150983cd24fb0d6963f7d28e17f72"],
    ...[12, null, {}, "\udc00"].map((content) => [`MD5 of ${show(content)}`, () => call(Crypto, "md5Data", content), wrong]),
]);
exit(failures ? 1 : 0);
