// Light or dark, before anything is painted: as the user has chosen here, or else as the desktop is. A page that has the
// suite's skin (skin.js) looks as that.

(() => {
    const root = document.documentElement;
    const desktop = matchMedia("(prefers-color-scheme: dark)");

    /** @returns {string | null} */
    function chosen() {
        try {
            return localStorage.getItem("explorer.theme");
        } catch {
            return null; // the page may have no storage: then the choice ends with it
        }
    }

    /** @param {string} theme */
    function remember(theme) {
        try {
            localStorage.setItem("explorer.theme", theme);
        } catch {
            // as above
        }
    }

    /** @param {string} theme */
    function apply(theme) {
        if (!root.dataset.skin)
            root.dataset.theme = theme;
    }

    const desktops = () => (desktop.matches ? "dark" : "light");
    apply(chosen() ?? desktops());
    desktop.addEventListener("change", () => apply(chosen() ?? desktops()));
    document.addEventListener("click", (event) => {
        if (!(event.target instanceof Element) || !event.target.closest("[data-action=theme]"))
            return;
        const theme = root.dataset.theme === "dark" ? "light" : "dark";
        apply(theme);
        remember(theme);
    });
})();
