// The kit: fakes of all objects, rows or a recording that say what calls return, and what there is to look at afterwards.
import { objects as described } from "../api.js";
import { Clock, settled } from "./clock.js";
import { conform } from "./declared.js";
import { Fakes, callByteBuffer } from "./fakes.js";
import { dialogKinds, dialogs, serviceNames } from "./faults.js";
import { makeFailure } from "./failure.js";
import { hint } from "./nearest.js";
import { Recording } from "./recording.js";
import { genericMembers, refusalOf } from "./refusals.js";
import { Row, callbackOf, conformAnswer } from "./rows.js";
import { copy, instances, show, whyNotPassable } from "./values.js";

const objects = new Map(described.map((object) => [object.name, object]));
for (const object of objects.values()) {
    for (const member of object.members)
        member.parameters ??= [];
}

const Options = ["rows", "dialogs", "missing", "recording", "clock"];

/** The declaration of a member, or with `isObject` of an object, by its name. */
function find(name, isObject = false) {
    const text = String(name).replace(/^NovaExtension\./, "");
    const all = [...objects.values()].flatMap((object) =>
        isObject ? [object.name] : object.members.map((member) => `${object.name}.${member.name}`));
    const found = isObject ? objects.get(text)
        : objects.get(text.slice(0, text.lastIndexOf(".")))?.members.find((member) => text.endsWith(`.${member.name}`));
    if (!found)
        throw new TypeError(`NovaExtension has no ${isObject ? "object" : "member"} ${show(name)}${hint(text, all)}`);
    return found;
}

function checkNames(what, given, known) {
    const unknown = given.find((name) => !known.includes(name));
    if (unknown !== undefined)
        throw new TypeError(`${what} ${show(unknown)}${hint(unknown, known)} There are: ${known.join(", ")}`);
}

/** A call that nothing was said of. */
export class UnexpectedCall extends Error {
    name = "UnexpectedCall";
}

export class Kit {
    #options;
    #fakes;
    #groups = [];
    #recording;
    #dialogs = [];
    #missing = new Set();
    #unexpected = [];
    #extension;
    #previous;

    constructor(options = {}) {
        checkNames("createKit has no option", Object.keys(options), Options);
        this.#options = options;
        this.reset();
    }

    /** Begins afresh, as createKit() did: page code has to read NovaExtension again. */
    reset() {
        const { rows = [], missing = [], recording, clock = "kit" } = this.#options;
        checkNames("clock:", [clock], ["kit", "timers"]);
        this.clock = new Clock(clock === "timers");
        this.calls = [];
        this.#unexpected = [];
        this.#fakes = new Fakes(objects, (...call) => this.#invoke(...call));
        this.#extension = Object.fromEntries([...objects.values()].filter((object) => object.instance !== "handed out")
            .map((object) => [object.name, this.#fakes.make(object.name, [], true)]));
        if (this.#previous)
            this.#previous.target.NovaExtension = this.#extension;
        this.#groups = [];
        this.use(...rows);
        this.#missing = new Set();
        this.lose(...missing);
        this.#dialogs = (this.#options.dialogs ?? []).map((answer) => {
            checkNames("dialogs: there is no kind", answer.dialog === undefined ? [] : [answer.dialog], dialogKinds);
            return { ...answer };
        });
        this.#recording = recording && new Recording(typeof recording === "string" ? { text: recording } : recording, {
            object: (path, ...made) => this.object(path, ...made),
            dispatch: (target, event, values) => this.#dispatch(target, event, values),
        });
    }

    get NovaExtension() {
        return this.#extension;
    }

    /** Makes NovaExtension a global, until uninstall() brings back what there was: perhaps that of another kit. */
    install(target = globalThis) {
        this.#previous ??= { target, had: Object.hasOwn(target, "NovaExtension"), value: target.NovaExtension };
        target.NovaExtension = this.#extension;
        return this;
    }

    uninstall() {
        const { target, had, value } = this.#previous ?? {};
        if (had)
            target.NovaExtension = value;
        else if (target)
            delete target.NovaExtension;
        this.#previous = undefined;
    }

    /** Adds rows, which come before those that there are. */
    use(...rows) {
        this.#groups.unshift(rows.map((row) => new Row(row, find)));
        return this;
    }

    /** Has services of the suite be missing from now on, and be back. */
    lose(...services) {
        checkNames("missing: there is no service", services, serviceNames);
        services.forEach((service) => this.#missing.add(service));
    }

    restore(...services) {
        checkNames("there is no service", services, serviceNames);
        services.forEach((service) => this.#missing.delete(service));
    }

    /** An object that is handed out, to be the answer of a row, or to emit its events. */
    object(path, ...made) {
        if (find(path, true).instance === "handed out" || path === "Webview")
            return this.#fakes.make(path, made);
        throw new TypeError(`${path} is not handed out: kit.NovaExtension.${path} is the object`);
    }

    /** The calls of one member. */
    callsOf(name) {
        find(name);
        return this.calls.filter((call) => call.member === name);
    }

    /** Waits until all that promises have begun has run. */
    settled() {
        return settled();
    }

    /** Has an object emit an event: one that is handed out, or one by its name. */
    emit(target, event, ...values) {
        const path = typeof target === "string" ? target : instances.get(target)?.path;
        const { events = [] } = find(path ?? target, true);
        const declared = events.find((one) => one.name === event);
        const names = events.map((one) => one.name);
        if (!declared)
            throw new TypeError(`${path} emits no event ${show(event)}${hint(event, names)} It emits: ${names.join(", ") || "none"}`);
        const given = declared.arguments.map((type, index) => conform(type, values[index], `${path} ${event}`));
        const errors = this.#dispatch(target, event, given);
        if (errors.length > 1)
            throw new AggregateError(errors, `${errors.length} listeners of ${event} threw`);
        if (errors.length)
            throw errors[0];
    }

    #dispatch(target, event, values) {
        const heard = typeof target === "string" ? this.#fakes.all(target) : [target];
        return heard.flatMap((one) => instances.get(one).hub.dispatch(event, values.map(copy)));
    }

    /** Throws if a row or a recorded call was never used, or a call was unexpected. */
    verify() {
        const problems = [
            ...this.#unexpected.map((error) => error.message),
            ...this.#groups.flat().filter((row) => !row.optional && (row.times === undefined ? !row.uses && !row.isWildcard : row.left))
                .map((row) => `never called${row.uses ? ` as often as it should be, ${row.times} times` : ""}: ${row}`),
            ...(this.#recording?.left ?? []).map((text) => `recorded, but not called: ${text}`),
        ];
        if (problems.length)
            throw new Error(problems.join("\n"));
    }

    #invoke(path, member, instance, values, caller) {
        const call = { member: `${path}.${member.name}`, object: instance, arguments: values.map(copy), at: this.clock.now };
        if (member.kind !== "property")
            this.calls.push(call);
        try {
            const made = this.#answer(path, member, instance, values);
            call[made instanceof Promise ? "promise" : "answer"] = made;
            return made;
        } catch (error) {
            call.thrown = error;
            // The stack begins with the page's call.
            if (caller && (error instanceof UnexpectedCall || error?.success === false))
                Error.captureStackTrace?.(error, caller);
            throw error;
        }
    }

    #answer(path, member, instance, values) {
        const why = values.map((value, index) => [index + 1, whyNotPassable(value)]).find(([, text]) => text);
        if (why)
            throw makeFailure(1, `argument ${why[0]}: ${why[1]}`);
        const refusal = refusalOf(path, member, values, this.#missing);
        // What the library refused then is in the recording, too.
        const recorded = refusal && this.#missing.size ? {} : this.#recording?.take(path, member.name, instance, values) ?? {};
        if (refusal && !recorded.entry)
            return refuse(refusal);
        const { hub } = instances.get(instance);
        const isForHub = genericMembers.includes(member.name) || member.event;
        if (isForHub && recorded.entry && !recorded.entry.thrown)
            callHub(hub, member, values);
        if (recorded.entry) {
            const answer = this.#recording.answer(recorded.entry, values);
            return member.answer.type.kind === "handle" ? this.#handOut(member, instance, values, answer) : answer;
        }
        const name = `${path}.${member.name}`;
        const row = this.#groups.flat().find((one) => one.isFor(name, member.answer.type.kind === "void") && one.left > 0 && !one.differences(instance, values).length);
        if (row)
            return this.#answerByRow(row, member, instance, values);
        if (isForHub && !this.#recording)
            return callHub(hub, member, values);
        const usual = this.#usual(path, member, instance, values);
        if (usual)
            return usual.answer;
        throw this.#refuseUnexpected(name, instance, values, recorded);
    }

    #answerByRow(row, member, instance, values) {
        ++row.uses;
        if (row.failure)
            return refuse({ ...row.failure, rejects: false });
        if (row.callback)
            this.#scheduleCallbacks(row, member, values);
        const { form, type } = member.answer;
        const isPromise = form === "promise";
        if (isPromise && (row.after !== undefined || row.rejects || typeof row.answer === "function"))
            return this.#promise(row, type, values);
        const given = typeof row.answer === "function" ? row.answer(...values) : row.answer;
        if (type.kind === "handle")
            return this.#handOut(member, instance, values, given);
        return envelope(member, conformAnswer(type, given, `${row.member}: answer`));
    }

    #promise(row, type, values) {
        return new Promise((resolve, reject) => {
            const settle = async () => {
                if (row.rejects) {
                    reject(makeFailure(row.rejects.code, row.rejects.msg));
                    return;
                }
                const given = await (typeof row.answer === "function" ? row.answer(...values) : row.answer);
                resolve(conformAnswer(type, given, `${row.member}: answer`));
            };
            this.clock.schedule(row.after, () => settle().catch(reject));
        });
    }

    #scheduleCallbacks(row, member, values) {
        const listener = values[callbackOf(member).index];
        row.callback.forEach((payload) => this.clock.schedule(row.after, () => listener?.(copy(payload))));
    }

    /** What members do without a row: those of a ByteBuffer, those that show dialogs or hand out objects. */
    #usual(path, member, instance, values) {
        const bytes = path === "ByteBufferManager.ByteBuffer" && callByteBuffer(member.name, instance, values);
        if (bytes)
            return { answer: envelope(member, bytes.data) };
        const dialog = this.#options.dialogs && dialogs[`${path}.${member.name}`];
        if (dialog)
            return { answer: this.#answerDialog(dialog, member, values) };
        if (member.answer.type.kind === "handle" && (member.kind === "property" || !this.#recording))
            return { answer: this.#handOut(member, instance, values) };
        return undefined;
    }

    /** A property has the same object each time, a method another one. */
    #handOut(member, instance, values, given) {
        const { kept } = instances.get(instance);
        const make = () => given ?? this.#fakes.make(member.answer.type.name, values);
        if (member.kind !== "property")
            return make();
        if (!kept.has(member.name))
            kept.set(member.name, make());
        return kept.get(member.name);
    }

    #answerDialog(dialog, member, values) {
        const kind = dialog.kindOf?.(values) ?? dialog.kind;
        const index = this.#dialogs.findIndex((one) => (one.dialog ?? kind) === kind);
        const [answer] = index < 0 ? [] : this.#dialogs.splice(index, 1);
        const isConfirmed = answer && answer.accept !== false;
        const outcome = conform(dialog.answer === undefined ? member.answer.type : callbackOf(member).parameters[0].type,
            isConfirmed ? dialog.confirmed(answer, values) : dialog.cancelled, `dialogs: ${kind}`);
        if (dialog.answer === undefined)
            return envelope(member, outcome);
        const listener = values[callbackOf(member).index];
        this.clock.schedule(undefined, () => listener(outcome));
        return envelope(member, dialog.answer);
    }

    #refuseUnexpected(name, instance, values, recorded) {
        const lines = [`Unexpected call: ${name}(${values.map((value) => show(value)).join(", ")})`];
        const returnsNothing = find(name).answer.type.kind === "void";
        const rows = this.#groups.flat().filter((row) => row.isFor(name, returnsNothing));
        const near = rows.map((row) => ({ row, texts: row.left > 0 ? row.differences(instance, values) : [`used up: ${row.times} times`] }))
            .sort((a, b) => (b.row.left > 0) - (a.row.left > 0) || a.texts.length - b.texts.length)[0];
        if (recorded.expected)
            lines.push(`  recorded: ${recorded.expected}`, ...recorded.differences.map((text) => `    ${text}`));
        if (near)
            lines.push(`  nearest row: ${near.row}`, ...near.texts.map((text) => `    ${text}`));
        lines.push(`  to have an answer: kit.use({ member: ${show(name)}, arguments: [${values.map((value) =>
            (typeof value === "function" ? "match.function" : show(value))).join(", ")}]${returnsNothing ? "" : ", answer: ..."} })`);
        const error = new UnexpectedCall(lines.join("\n"));
        this.#unexpected.push(error);
        return error;
    }
}

/** Throws, or returns a promise that is rejected. */
function refuse({ code, text, msg = text, rejects }) {
    const failure = makeFailure(code, msg);
    if (!rejects)
        throw failure;
    return Promise.reject(failure);
}

function envelope(member, data) {
    const { form } = member.answer;
    if (form === "envelope")
        return { data, success: true };
    return form === "promise" ? Promise.resolve(data) : data;
}

function callHub(hub, member, values) {
    if (member.name === "getAllEventInfo")
        return hub.report();
    if (member.name === "dispatchEvent") {
        const errors = hub.dispatch(String(values[0] ?? ""), values.slice(2));
        errors.forEach((error) => queueMicrotask(() => {
            throw error;
        }));
        return undefined;
    }
    const [event, listener] = member.event ? [member.event, values[0]] : [String(values[0] ?? ""), values[1]];
    if (member.name.startsWith("add"))
        hub.add(event, listener);
    else
        hub.remove(event, listener);
    return member.event ? { data: undefined, success: true } : undefined;
}
