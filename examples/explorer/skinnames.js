// What the stand-in's themes have. A page can not ask a suite for the names of its theme.

/** Skins that one can switch to: those that are built in, and one that is a plugin. */
export const SKINS = ["light", "dark", "contrast", "novaskin-ocean"];

export const AREAS = ["toolbar", "sidebar", "panel", "statusbar", "menu"];

/** @type {Record<string, string[]>} */
export const COLORS = {
    CommonPalette: [
        ...["window", "windowText", "base", "alternateBase", "text", "secondaryText", "placeholderText"],
        ...["disabledText", "disabledBase", "button", "buttonText", "buttonHover", "buttonPressed", "buttonBorder"],
        ...["highlight", "highlightedText", "inactiveHighlight", "hover", "pressed", "selected", "border"],
        ...["strongBorder", "divider", "focusRing", "shadow", "overlay", "tooltip", "tooltipText", "tooltipBorder"],
        ...["link", "linkVisited", "scrollBar", "scrollBarHover", "titleText", "inactiveTitleText"]
    ],
    CommonThemePalette: [
        ...["accent", "accentText", "accentHover", "accentPressed", "accentSoft", "badge", "badgeText", "error"],
        ...["errorSoft", "warning", "warningSoft", "success", "successSoft", "info", "infoSoft", "writer"],
        ...["spreadsheet", "presentation", "pdf"]
    ],
    ...Object.fromEntries(
        AREAS.map((area) => [area, ["background", "text", "icon", "activeIcon", "disabledIcon", "hover", "border"]])
    )
};

export const GRADIENTS = ["titleGradient", "inactiveTitleGradient", "accentGradient", "heroGradient", "wheelGradient"];

export const HINTS = [
    ...["radius", "smallRadius", "borderWidth", "focusWidth", "spacing", "smallSpacing", "margin", "controlHeight"],
    ...["rowHeight", "titleHeight", "scrollBarWidth", "iconSize", "smallIconSize", "largeIconSize", "shadowBlur"],
    ...["animationMs", "fontSize", "isDark", "isHighContrast"]
];

export const ICONS = ["document-open", "document-save", "edit-find"];

export const ICON_SIZES = [16, 22, 32];

export const FILE_TYPES = ["docx", "xlsx", "pptx", "odt", "pdf", "txt", "html", "png", "mp3", "zip", "nobody"];
