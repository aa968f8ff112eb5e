// What the console prints of values: the same script runs in Node, whose output is the model.
class Shape {
    constructor() { this.sides = 3; }
    get area() { throw new Error("no getter is run"); }
}
class Square extends Shape { }
class Bag extends Map { }
class Bytes extends Uint8Array { }
const revoked = Proxy.revocable({}, {});
revoked.revoke();
const cycle = { name: "cycle", list: [] };
cycle.self = cycle;
cycle.list.push(cycle);
const words = Array.from({ length: 30 }, (_, i) => `item${i}`);
const rows = [
    [], [""], ["text", 1, -0, 5n, null, undefined, true, Symbol("s")], [["text", -0, 5n, null, undefined, true, Symbol("s")]],
    [{}, [], [[]], { a: { b: { c: { d: 1 } } } }, { a: { b: { c: {} } } }, [[[[1]], [[]]]]],
    [{ "a-b": 1, $a: 2, 3: 3, [Symbol("key")]: 4, get g() { throw 1; }, set s(_) { }, get both() { throw 1; }, set both(_) { } }],
    [{ first: "x".repeat(30), second: "y".repeat(25) }], [{ first: "x".repeat(30), second: "y".repeat(26) }],
    [{ list: [{ id: 1, tags: ["a", "b"] }, { id: 2, tags: [] }], more: { deep: [[["too deep"]]] } }],
    [Array.from({ length: 120 }, (_, i) => i)], [words], [words.map((id) => ({ id })).slice(0, 10)], [[1, , , 2]], [Object.assign([1, 2], { extra: 1 })],
    [Array(7).fill("a rather long text that is no number").map((text, i) => text + i)], [[1.5, 22, 333, -4444, 55555, 6, 7, 8]],
    [new Shape(), new Square(), Shape, Square, class { }, Object.create(null), Object.create({ inherited: 1 }), Object.create(Shape.prototype)],
    [function named() { }, () => 1, async () => 1, function* () { }, Object.assign(function f() { }, { p: 1 }), Math.max],
    [new Map([["k", { v: [1] }], [{ o: 1 }, 2]]), new Set(["a", [1]]), new Bag([[1, 2]]), new WeakMap(), new Map()],
    [new Uint8Array(3), new Float64Array([0.5]), new ArrayBuffer(3), new DataView(new ArrayBuffer(2), 1)],
    [new Date(0), new Date(NaN), /a\/b/gi, [new Date(0), /x/]],
    [[new Number(3), new String("abc"), Object(Symbol("q")), Object(5n), new Boolean(false)]],
    [cycle], [[cycle, cycle]],
    [["it's", 'say "it\'s"', "`it's \"all\"`", "line\nbreak\t\\ \u001b \u007f \u00e9 \ud83d\ude00 \ud83d"]],
    [[`${"x".repeat(50)}\n${"y".repeat(50)}`]], ["first\nsecond", ["x".repeat(10003)]],
    ["%s|%s|%s|%d|%i|%f|%j|%O|%c|%%|%x|%s", "a", 5n, -0, "42.5", "42.5px", "42.5px", { a: [1] }, { b: { c: {} } }, "color: red", "last", "rest", { z: 1 }],
    ["100%", "%s"], ["%d %d", 1], ["%s %s", Symbol("s"), () => 1, "more"], ["%", 1], ["%o", [1].length], [1, "%s", 2],
    [(function () { return arguments; })(1), new Bytes(2), revoked.proxy, [revoked.proxy]],
    ["%o %o %o", () => 1, [{ a: [2] }], "text"], [new URL("http://a.b:8/c?d=e#f"), new URLSearchParams("a=1&b=2")],
    [Math, JSON, (function* () { })()], [[undefined, null], { a: undefined }],
];
for (const row of rows)
    console.log(...row);
console.profile();
console.profileEnd();
console.timeStamp();
console.group("group", 1);
console.info("in\nit", { a: 1 });
console.groupCollapsed();
console.debug("deeper");
console.groupEnd();
console.groupEnd();
console.groupEnd();
console.dir({ a: { b: { c: { d: 1 } } } }, { depth: 0 });
console.dir({ a: { b: { c: { d: { e: 1 } } } } }, { depth: null });
console.dirxml([1], "x");
console.table("no table");
console.count();
console.count("x");
console.count();
console.countReset();
console.count();
console.warn("a warning", [1]);
console.error("an error", { a: "b" });
console.assert(true, "not printed");
console.assert(false, "%s is wrong", "this");
console.assert(false);
