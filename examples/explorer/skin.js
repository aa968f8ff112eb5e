// Has the page look as the suite does: the values of its skin as CSS variables, and again when they change.

import { Signal } from "./signal.js";

/** By a colour of the style its name in the theme. */
const COLORS = {
    ground: "window",
    surface: "base",
    sunken: "alternateBase",
    hover: "hover",
    line: "divider",
    "line-strong": "strongBorder",
    "field-line": "placeholderText", // a border of the theme has too little contrast for where one types
    text: "text",
    muted: "secondaryText",
    link: "link",
    "bar-text": "titleText",
    accent: "accent",
    "accent-hover": "accentPressed", // on "accentHover" a text has too little contrast
    "on-accent": "accentText",
    "accent-soft": "accentSoft",
    focus: "focusRing",
    ok: "success",
    "ok-soft": "successSoft",
    fail: "error",
    "fail-soft": "errorSoft",
    wait: "warning",
    "wait-soft": "warningSoft",
    string: "success",
    number: "link",
    word: "linkVisited",
    shade: "shadow",
    overlay: "overlay",
    "scroll-bar": "scrollBar",
    "scroll-bar-hover": "scrollBarHover"
};
const LENGTHS = {
    radius: "radius",
    "radius-small": "smallRadius",
    "border-width": "borderWidth",
    "focus-width": "focusWidth",
    "scroll-bar-width": "scrollBarWidth",
    "shadow-blur": "shadowBlur"
};
const GRADIENTS = { bar: "titleGradient", primary: "accentGradient", hero: "heroGradient" };
/** To where a linear gradient goes, which the suite does not say. */
const DIRECTIONS = { titleGradient: "to bottom" };
const MISSING = "rgba(0,0,0,0)";

/** The page looks as the skin does now. */
export const skinChanged = /** @type {Signal<NovaExtension.Skin.SkinChange>} */ (new Signal());

/**
 * A gradient as CSS; an empty string when the theme does not have it.
 *
 * @param {NovaExtension.Skin.SkinGradient} gradient
 * @param {string} [name]
 */
export function gradientText({ type, spread, stops }, name = "") {
    const shapes = new Map([
        ["LinearGradient", ["linear-gradient", Reflect.get(DIRECTIONS, name) ?? "to right"]],
        ["RadialGradient", ["radial-gradient", "circle at top"]],
        ["ConicalGradient", ["conic-gradient", "from 90deg"]]
    ]);
    const shape = shapes.get(type);
    if (!shape || !stops.length)
        return "";
    const colors = stops.map(({ position, color }) => `${color} ${position * 100}%`);
    return `${spread === "RepeatSpread" ? "repeating-" : ""}${shape[0]}(${[shape[1], ...colors].join(", ")})`;
}

function paint() {
    const { dataset, style } = document.documentElement;
    const { Skin } = NovaExtension;
    const colors = Skin.getSkinColorConfig({ config: Object.values(COLORS) }).data;
    const hints = Skin.getSkinHintConfig({ config: [...Object.values(LENGTHS), "isDark"] }).data;
    const gradients = Skin.getSkinGradientConfig({ config: Object.values(GRADIENTS) }).data;
    const isWhole = !Object.values(colors).includes(MISSING); // half a skin may be unreadable

    /**
     * @param {Record<string, string>} names
     * @param {(name: string) => string} valueOf
     */
    function setAll(names, valueOf) {
        for (const [variable, name] of Object.entries(names))
            style.setProperty(`--${variable}`, isWhole ? valueOf(name) : "");
    }

    setAll(COLORS, (name) => colors[name]);
    setAll(LENGTHS, (name) => `${hints[name]}px`);
    setAll(GRADIENTS, (name) => gradientText(gradients[name], name));
    dataset.skin = Skin.getCurrentSkinName().data;
    if (isWhole)
        dataset.theme = hints.isDark ? "dark" : "light";
}

/**
 * Paints the page in the suite's skin, now and with each change. Without one it stays as it is.
 *
 * @returns {boolean} whether there is a skin
 */
export function followSkin() {
    try {
        paint();
        NovaExtension.Skin.addSkinChangeListener((change) => {
            paint();
            skinChanged.emit(change);
        });
        return true;
    } catch {
        return false; // no suite, or one that does not give its skin to this page
    }
}
