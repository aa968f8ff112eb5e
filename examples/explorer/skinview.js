// The place of the skin: what the theme has, as a page gets it, and the way to another skin.

import { copyFrom, fill, make } from "./dom.js";
import { makeLog } from "./log.js";
import { actionButton, actOn, inputRow, makeOutcome, panel, panelsView } from "./panels.js";
import { gradientText, skinChanged } from "./skin.js";
import { AREAS, COLORS, FILE_TYPES, GRADIENTS, HINTS, ICONS, ICON_SIZES, SKINS } from "./skinnames.js";
import { clock, oneLine, outcomeText } from "./values.js";

/** @typedef {import("./panels.js").Act} Act */

export function makeSkinView() {
    const { node: outcome, report } = makeOutcome();
    const act = actOn("Skin", report);
    const read = actOn("Skin", (made) => made.ended);
    const current = make("dd", { "data-role": "current-skin" });
    const parts = [makeColors(read), makeGradients(read), makeIcons(read), makeFileTypes(read), makeHints(read)];
    const [colors, gradients, ...others] = parts.map(({ node }) => node);
    const log = makeLog("changes", "Each change of the skin appears here.");

    async function refresh() {
        const { value } = await read("getCurrentSkinName");
        current.textContent = Object(value).data;
        parts.forEach((part) => part.refresh());
    }

    skinChanged.subscribe(({ name, previousName }) => {
        const time = make("time", {}, clock(new Date()));
        log.add(make("li", { "data-change": name }, time, ` ${previousName} → ${name}`));
        refresh();
    });
    refresh();
    return panelsView(
        "skin",
        "Skin",
        undefined,
        make(
            "div",
            { class: "card status-card" },
            make("dl", { class: "facts" }, make("div", {}, make("dt", {}, "Current skin"), current)),
            make("div", { class: "buttons" }, ...SKINS.map((name) => actionButton(name, () => act("switchSkin", name))))
        ),
        outcome,
        make(
            "div",
            { class: "panels" },
            gradients,
            ...others,
            makeValueReader(act),
            panel(
                "Changes",
                inputRow("Switch", { name: "nobody's" }, ({ name }) => act("switchSkin", name)),
                make("div", { class: "tools-line" }, ...log.tools),
                log.node
            )
        ),
        colors
    );
}

/**
 * What a call has returned in its envelope; what it failed with is shown in its place.
 *
 * @param {Act} read
 * @param {Element} place
 * @param {(data: any) => Node[]} show
 * @param {string} member
 * @param {unknown} given
 */
async function showData(read, place, show, member, given) {
    const made = await read(member, given);
    if (made.state === "ok")
        fill(place, ...show(/** @type {{ data: unknown }} */ (made.value).data));
    else
        fill(place, make("p", { class: "problem" }, outcomeText(made)));
}

/**
 * A piece of paint.
 *
 * @param {string} kind
 * @param {string} background
 */
function chip(kind, background) {
    const node = make("span", { class: `chip ${kind}` }, make("span", {}));
    /** @type {HTMLElement} */ (node.firstElementChild).style.background = background;
    return node;
}

/** @param {Act} read */
function makeColors(read) {
    const content = make("div", {});
    const swatch = (/** @type {string} */ name, /** @type {string} */ value) => {
        const button = make(
            "button",
            { type: "button", class: "swatch-button", "data-color": name, title: `Copy ${value}` },
            chip("color", value),
            make("span", { class: "name" }, name.slice(name.indexOf("/") + 1)),
            make("span", { class: "label" }, value)
        );
        button.addEventListener("click", () => copyFrom(button, value));
        return button;
    };
    const groups = Object.entries(COLORS).map(([group, names]) => names.map((name) => `${group}/${name}`));
    const show = (/** @type {Record<string, string>} */ data) =>
        groups.flatMap((names) => [
            make("h3", {}, names[0].split("/")[0]),
            make("div", { class: "swatches" }, ...names.map((name) => swatch(name, data[name])))
        ]);
    const refresh = () => showData(read, content, show, "getSkinColorConfig", { config: groups.flat() });
    return { node: panel("Colours", make("p", { class: "note" }, "A click copies the value."), content), refresh };
}

/** @param {Act} read */
function makeGradients(read) {
    const content = make("div", {});
    const show = (/** @type {Record<string, NovaExtension.Skin.SkinGradient>} */ data) =>
        GRADIENTS.map((name) =>
            make(
                "div",
                { class: "sample", "data-gradient": name, title: oneLine(data[name].stops) },
                chip("gradient", gradientText(data[name], name)),
                make("span", { class: "name" }, name),
                make("span", { class: "note" }, `${data[name].type}, ${data[name].stops.length} stops`)
            )
        );
    return {
        node: panel("Gradients", content),
        refresh: () => showData(read, content, show, "getSkinGradientConfig", { config: GRADIENTS })
    };
}

/** @param {Act} read */
function makeHints(read) {
    const content = make("dl", { class: "facts hints" });
    const show = (/** @type {Record<string, number>} */ data) =>
        HINTS.map((name) =>
            make("div", { "data-hint": name }, make("dt", {}, name), make("dd", {}, String(data[name])))
        );
    return {
        node: panel("Hints", content),
        refresh: () => showData(read, content, show, "getSkinHintConfig", { config: HINTS })
    };
}

/** @param {{ icon: string, name: string, width?: number, height?: number }} options */
function image({ icon, name, width, height }) {
    return icon
        ? make("img", { src: icon, width, height, alt: name, title: name })
        : make("span", { class: "note", title: name }, "none");
}

/** @param {Act} read */
function makeIcons(read) {
    const content = make("div", {});
    const icons = AREAS.flatMap((themeArea) =>
        ICONS.flatMap((name) => ICON_SIZES.map((size) => ({ name, width: size, height: size, themeArea })))
    );

    /**
     * @param {NovaExtension.Skin.Icon[]} data
     * @param {Record<string, string>} colors
     */
    const strips = (data, colors) =>
        AREAS.map((area) => {
            const images = data.splice(0, icons.length / AREAS.length).map(image);
            const strip = make("div", { class: "icon-strip" }, make("span", { class: "name" }, area), ...images);
            const [background, color, borderColor] = ["background", "text", "border"].map(
                (name) => colors[`${area}/${name}`]
            );
            Object.assign(strip.style, { background, color, borderColor });
            return strip;
        });

    async function refresh() {
        const { value } = await read("getSkinColorConfig", {
            config: AREAS.flatMap((area) => COLORS[area].map((name) => `${area}/${name}`))
        });
        const colors = Object(value).data ?? {};
        showData(read, content, (data) => strips(data, colors), "getSkinIconPathInfo", { icons });
    }

    return { node: panel("Icons", content), refresh };
}

/** @param {Act} read */
function makeFileTypes(read) {
    const content = make("div", { class: "file-types" });
    const show = (/** @type {Record<string, NovaExtension.Skin.FileTypeIcon>} */ data) =>
        FILE_TYPES.map((type) => {
            const { hasIcon, icon, name, extList } = data[type];
            return make(
                "figure",
                { "data-file-type": type, "data-has-icon": String(hasIcon), title: `${name}: ${extList?.join(" ")}` },
                image({ icon, name, width: 32, height: 32 }),
                make("figcaption", {}, type)
            );
        });
    return {
        node: panel(
            "File types",
            content,
            make("p", { class: "note" }, "Faint: the type has no icon of its own.")
        ),
        refresh: () =>
            showData(read, content, show, "getFileTypeIconInfo", {
                fileIdentify: FILE_TYPES,
                retrieveFullExtList: true
            })
    };
}

/** @param {Act} act */
function makeValueReader(act) {
    const result = make("div", { class: "sample", "data-role": "value" });
    const examples = ["linear-gradient(90deg, red, blue)", "CommonPalette/waterline", "font", "rgb(0 120 215 / 50%)"];
    const show = (/** @type {Record<string, string | NovaExtension.Skin.SkinGradient>} */ data) =>
        Object.values(data).flatMap((value) => [
            chip("gradient", typeof value === "string" ? value : gradientText(value)),
            make("code", {}, oneLine(value, 4))
        ]);
    return panel(
        "Any value",
        make("p", { class: "note" }, "A name, or a colour or gradient of CSS."),
        inputRow("Read", { value: examples }, ({ value }) =>
            showData(act, result, show, "getSkinConfig", { config: [value] })
        ),
        result
    );
}
