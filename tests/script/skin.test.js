// Values of the theme, their forms, and what is heard of another skin. The profile begins with the skin "light".
const { Skin } = NovaExtension;
const noConfig = refusal(1, "empty config json obj");
const noTypes = refusal(1, "empty fileIdentifyList");
/** @type {(member: string, ...args: unknown[]) => () => unknown} */
const data = (member, ...args) => () => call(Skin, member, ...args).data;
/** What `getSkinConfig` makes of one text of CSS. @type {(text: string, expected: unknown) => any[]} */
const css = (text, expected) => [`CSS: ${text.slice(0, 60)}`, () => Skin.getSkinConfig({ config: [text] }).data[text], expected];
const transparent = "rgba(0,0,0,0)";
const gradient = (/** @type {any[]} */ ...stops) => ({ type: "LinearGradient", spread: "PadSpread", coordinateMode: "ObjectMode",
    stops: stops.map(([position, color]) => ({ position, color })) });
const none = { type: "NoGradient", spread: "PadSpread", coordinateMode: "LogicalMode", stops: [] };
const red = "rgba(255,0,0,1)", blue = "rgba(0,0,255,1)";
/** @type {any[]} */
const heard = [];
const heardNext = async (/** @type {number} */ count) => {
    for (const end = Date.now() + 20000; heard.length < count && Date.now() < end;)
        await new Promise((resolve) => setTimeout(resolve, 5));
    return heard.splice(0);
};
const readers = ["getSkinHintConfig", "getSkinColorConfig", "getSkinGradientConfig", "getSkinConfig"];

await check([
    ["the skin", data("getCurrentSkinName"), "light"],
    // Refusals.
    ...readers.flatMap((member) => [[], [null], ["window"], [{}], [{ config: "window" }], [{ config: { 0: "window" } }],
        [{ config: ["window", 5] }]].map((args) => [`${member}(${show(args)})`, data(member, ...args), noConfig])),
    ...readers.map((member) => [`${member} of nothing`, data(member, { config: [] }), {}]),
    ["no skin", data("switchSkin", ""), refusal(1, "empty skin name param")],
    ["a skin that is no string", data("switchSkin", { name: "dark" }), refusal(1, "empty skin name param")],
    ["a skin that there is not", data("switchSkin", "nobody's"), refusal(3, "switch skin failed")],
    ["a skin with a path", data("switchSkin", "../dark"), refusal(3, "switch skin failed")],
    ["no types", data("getFileTypeIconInfo", {}), noTypes],
    ["an empty list of types", data("getFileTypeIconInfo", { fileIdentify: [] }), noTypes],
    ["types that are none", data("getFileTypeIconInfo", { fileIdentify: "docx" }), noTypes],
    ["no list of icons", data("getSkinIconPathInfo", {}), refusal(1, "missing required parameters.")],
    ["an empty list of icons", data("getSkinIconPathInfo", { icons: [] }), []],
    ["an icon without a name", data("getSkinIconPathInfo", { icons: [{ width: 5 }] }), refusal(1, "wrong parameters.")],
    // What the theme does not have, and the forms of CSS.
    ["hints", data("getSkinHintConfig", { config: ["nothing", "no/thing", "/", "toolbar/", "window"] }),
        { "nothing": 0, "no/thing": 0, "/": 0, "toolbar/": 0, "window": 0 }],
    ["colours", data("getSkinColorConfig", { config: ["nothing", "__proto__x"] }), { "nothing": transparent, "__proto__x": transparent }],
    ["gradients", data("getSkinGradientConfig", { config: ["nothing"] }), { nothing: none }],
    ["any value", data("getSkinConfig", { config: ["nothing", ""] }), { "nothing": "", "": "" }],
    css("#FFF", "rgba(255,255,255,1)"), css("#0f08", "rgba(0,255,0,0.53333)"), css("#00007f", "rgba(0,0,127,1)"),
    css("#ff000080", "rgba(255,0,0,0.50196)"), css("RGB(1, 2, 3)", "rgba(1,2,3,1)"), css(" rgba(1 2 3 / 50%) ", "rgba(1,2,3,0.5)"),
    css("rgb(300,-5,50%)", "rgba(255,0,128,1)"),
    ...["#", "#12", "#12345", "#ggg", "#1234567890", "rgb", "rgb(", "rgb(1,2)", "rgb(1,2,3,4,5)", "rgb(1,,3)", "rgb((1,2,3))",
        "rgb(1,2,3))", "rgb(nan,2,3)", "rgb(1e999,2,3)", "rgb(1,2,3);x"].map((text) => css(text, transparent)),
    css("linear-gradient(red, #00f)", gradient([0, red], [1, blue])),
    css("Linear-Gradient(90deg, rgba(255,0,0,1) 25%, blue)", gradient([0.25, red], [1, blue])),
    css("linear-gradient(to left top, red 50%, blue 50%)", gradient([0.5, red], [0.5, blue])),
    css("linear-gradient(red, red, red 80%, blue 20%, blue)", gradient([0, red], [0.4, red], [0.8, red], [0.8, blue], [1, blue])),
    css("linear-gradient(red 0% 40%, blue)", gradient([0, red], [0.4, red], [1, blue])),
    ...["linear-gradient", "linear-gradient(", "linear-gradient()", "linear-gradient(red)", "linear-gradient(red,)", "linear-gradient((red, blue)",
        "linear-gradient(red, blue))", "linear-gradient(90deg)", "linear-gradient(red, nobody)", "linear-gradient(red 5px, blue)",
        `linear-gradient(${"(".repeat(2000)}`, "linear-gradient(red, blue), url(x)"].map((text) => css(text, none)),
    ...["#fff\n", "rgb(1,2,3)\0", "linear-gradient(red,\x1bblue)", `#${"f".repeat(100000)}`, `linear-gradient(${"red,".repeat(50000)}red)`]
        .map((text) => css(text, "")),
]);

// Values of three skins, which never are another one's, and what is heard.
const colors = () => Skin.getSkinColorConfig({ config: ["window", "CommonPalette/window", "windowText", "CommonThemePalette/window"] }).data;
/** @type {Map<string, any>} */
const palettes = new Map();
Skin.addSkinChangeListener(({ name, previousName }) => heard.push([previousName, name, colors().window]));
for (const [skin, radius] of /** @type {const} */ ([["dark", 4], ["contrast", 0], ["light", 4]])) {
    const before = Skin.getCurrentSkinName().data;
    const window = (colors(), Skin.switchSkin(skin), colors().window);
    palettes.set(skin, colors());
    await check([
        [`${skin}: heard with its own values`, () => heardNext(1), [[before, skin, window]]],
        [`${skin}: is the skin`, data("getCurrentSkinName"), skin],
        [`${skin}: a name without a group`, () => colors().window === colors()["CommonPalette/window"], true],
        [`${skin}: kept and read values agree`, () => same(Skin.getSkinConfig({ config: ["window"] }).data.window, colors().window), true],
        [`${skin}: hints and gradients`, () => [Skin.getSkinHintConfig({ config: ["radius", "smallIconSize"] }).data,
            Skin.getSkinGradientConfig({ config: ["titleGradient"] }).data.titleGradient.stops.length], [{ radius, smallIconSize: 16 }, 2]],
    ]);
}
await check([
    ["three palettes", () => new Set([...palettes.values()].map((one) => one.window)).size, 3],
    ["no colour where there is none", () => colors()["CommonThemePalette/window"], transparent],
    ["a switch by the user", () => { process.play("skin:dark"); return heardNext(1); }, [["light", "dark", palettes.get("dark").window]]],
    ["a switch in a listener", () => {
        const back = () => { Skin.removeSkinChangeListener(back); Skin.switchSkin("light"); };
        Skin.addSkinChangeListener(back);
        Skin.switchSkin("contrast");
        return heardNext(2).then((all) => all.map(([from, to]) => `${from} ${to}`));
    }, ["dark contrast", "contrast light"]],
]);

// A skin that is a plugin, with a file of values over its theme.
const ocean = () => { Skin.switchSkin("novaskin-ocean"); return ["waterline", "window"].map((name) =>
    [Skin.getSkinColorConfig({ config: [name] }).data[name], Skin.getSkinConfig({ config: [name] }).data[name]]); };
await check([
    ["a plugin's own values", ocean, [[transparent, "rgba(95,212,230,1)"], ["rgba(12,43,58,1)", "rgba(12,43,58,1)"]]],
    ["a plugin's gradient", () => Skin.getSkinConfig({ config: ["accentGradient"] }).data.accentGradient,
        gradient([0, "rgba(23,120,140,1)"], [1, "rgba(123,232,200,1)"])],
    ["without the plugin", async () => {
        process.play("plugin:remove=novaskin-ocean");
        await new Promise((resolve) => setTimeout(resolve, 0));
        return [Skin.getSkinConfig({ config: ["waterline"] }).data.waterline, Skin.getCurrentSkinName().data];
    }, ["", "novaskin-ocean"]],
]);

// Icons.
const icons = (/** @type {any} */ ...wanted) => Skin.getSkinIconPathInfo({ icons: wanted, defaultThemeArea: "toolbar" }).data;
const address = (/** @type {any} */ { icon }) => icon.replace(/[?].*/, "");
const one = (/** @type {any} */ options = {}) => icons({ name: "document-save", ...options })[0];
await check([
    ["an icon", () => { const { name, width, height } = one(); return { name, width, height }; }, { name: "document-save", width: 16, height: 16 }],
    ["the smallest that is large enough, or else the largest", () => [-5, 0, 16, 17, 22, 23, 33, 2147483647].map((width) =>
        one({ width, height: 1 }).width), [16, 16, 16, 22, 22, 32, 32, 32]],
    ["the height counts, too", () => one({ width: 1, height: 17 }).height, 22],
    ["its own area", () => address(one({ themeArea: "sidebar" })) === address(one()), false],
    ["icons that there are not", () => icons({ name: "nobody" }, { name: "../../etc/passwd" }, { name: "x".repeat(100000) }).map(
        (/** @type {any} */ { icon, width, height }) => [icon, width, height]), [["", 0, 0], ["", 0, 0], ["", 0, 0]]],
    ["another skin, another address", () => { const light = one(); Skin.switchSkin("dark"); return address(one()) === address(light); }, false],
    ["file types", () => {
        const { docx, DOCX, nobody } = Skin.getFileTypeIconInfo({ fileIdentify: ["docx", "DOCX", "nobody"], retrieveFullExtList: true }).data;
        return [docx.hasIcon, docx.extList?.includes("docx"), docx.icon.includes("://"), DOCX.name === docx.name, nobody.hasIcon, nobody.extList, nobody.icon.includes("://")];
    }, [true, true, true, true, false, [], true]],
    ["file types without their extensions", () => Object.keys(Skin.getFileTypeIconInfo({ fileIdentify: ["pdf"] }).data.pdf).includes("extList"), false],
    ["all icons, in any case", () => Skin.getFileTypeIconInfo({ fileIdentify: ["docm"], all: "TRUE" }).data.docm.hasIcon, true],
]);
exit(failures ? 1 : 0);
