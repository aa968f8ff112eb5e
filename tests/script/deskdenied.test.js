// Pages that may do nothing beyond their window: nothing happens, whatever they pass.
const { CloudAdapter, CloudDoc, Tools, Utils } = NovaExtension;
const denied = refusal(3, "Permission denied.");
await check([
    ["the clipboard", () => Utils.getClipboardText(), denied],
    ["the screen", () => call(Utils, "getSnapperColor"), denied],
    ["a program", () => Utils.startDetach({ program: "/usr/bin/true" }), denied],
    ["a program of the suite's", () => Tools.launchProcessByNova({ program: "true" }), denied],
    ["an address", () => Tools.openUrl({ url: "https://docs.example" }), denied],
    ["a mail address with sendMail alone", () => Tools.openUrl({ url: "mailto:a@b.example" }), denied],
    ["a page", () => Tools.openInnerUrl({ url: "nova://app/" }), denied],
    ["a mail", () => Tools.sendMail({ subject: "s" }), denied],
    ["the session", () => Utils.getCsrf(), denied],
    ["a request to the cloud service", () => CloudAdapter.commonRequest({ method: "getRoamingMode" }), denied],
    ["one to its servers", () => CloudDoc.Orbitapi.commonRequest({ requestKey: "user.space" }), denied],
    ["a text for the clipboard", () => Utils.setTextToClipboard("a").success, true],
]);
exit(failures ? 1 : 0);
