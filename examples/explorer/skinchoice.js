// The choice of the suite's skin in the bar.

import { fill, make } from "./dom.js";
import { actOn } from "./panels.js";
import { skinChanged } from "./skin.js";
import { SKINS } from "./skinnames.js";
import { outcomeText } from "./values.js";

/**
 * @param {HTMLElement} place
 * @param {(text: string) => void} showNotice
 */
export function makeSkinChoice(place, showNotice) {
    const select = make("select", { "data-role": "skin" });
    const act = actOn("Skin", (made) => made.ended);

    function refresh() {
        const current = document.documentElement.dataset.skin ?? "";
        const names = SKINS.includes(current) ? SKINS : [current, ...SKINS];
        fill(select, ...names.map((name) => make("option", { value: name, selected: name === current }, name)));
    }

    async function choose() {
        const name = select.value;
        const made = await act("switchSkin", name);
        showNotice(made.state === "ok" ? "" : `The skin ${name} is not used: ${outcomeText(made)}`);
        refresh();
    }

    select.addEventListener("change", choose);
    skinChanged.subscribe(refresh);
    refresh();
    place.append(select);
    place.hidden = false;
    document.querySelector("[data-action=theme]")?.remove();
}
