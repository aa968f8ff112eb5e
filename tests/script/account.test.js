// Begins with what the profile has; then steps that it plays, then logins of its own.
const { Account, Payment } = NovaExtension;
const missing = refusal(1, "missing required parameters.");
const wrong = refusal(1, "wrong parameters.");
/** @type {(member: string, ...args: unknown[]) => () => unknown} */
const data = (member, ...args) => () => call(Account, member, ...args).data;
const TIERS = ["trial", "education", "nova", "novaPlus", "novaPro", "folio", "folioPlus", "folioPro", "super", "superPlus",
    "superPro", "company", "companyPro"];
/** @type {(held: Record<string, number>) => object} */
const tiers = (held) => Object.fromEntries(TIERS.map((tier) => [tier,
    { isMember: tier in held, expireTime: held[tier] ?? 0 }]));
/** @type {(userId: string, held: Record<string, number>) => object} */
const memberships = (userId, held) => ({ members: tiers(held),
    rawData: { userId, tiers: Object.entries(held).map(([tier, expireTime]) => ({ expireTime, tier })) } });
const NEVER = 0, LATE = 4102444800000;
const kinds = () => ["isNovaMember", "isFolioMember", "isSuperMember", "isCompanyMember", "isMultiAccount"].map(
    (member) => call(Account, member).data);
const granted = () => Account.Privilege.getPrivileges().data.filter(({ isGranted }) => isGranted).map(({ name, expireTime }) => [name, expireTime]);
const has = (/** @type {any} */ name) => Account.Privilege.hasPrivilege(name).data;
/** @type {(userId: string, account: string, nickName: string, isCurrent: boolean, ...rest: string[]) => object} */
const entry = (userId, account, nickName, isCurrent, pic = "", companyId = "", companyName = "") =>
    ({ userId, account, nickName, pic, companyId, companyName, isCurrent });

await check([
    ["signed in", data("isLoggedIn"), true],
    ["the user's id", data("getUserId"), "user-1"],
    ["the user", data("getUserInfo"), { userId: "user-1", account: "ada@example.invalid", nickName: "Ada",
        pic: "https://example.invalid/ada.png", thumbnailLocalPath: "", email: "ada@example.invalid", phoneNumber: "5550101",
        status: "active", sex: "", loginMode: "password", country: "Norway", province: "", city: "Oslo", address: "Storgata 1",
        postal: "0155", companyId: "company-1", regtime: 1577836800000, deviceStatus: "trusted", isPlus: true,
        roleList: ["member", "editor"] }],
    ["the company", data("getCompanyInfo"), { companyId: "company-1", name: "Example Works", email: "office@example.invalid",
        phoneNumber: "5550100", description: "Examples of all kinds", address: "Storgata 1", city: "Oslo", country: "Norway",
        province: "", postal: "0155", fax: "", adminId: "user-1" }],
    ["the memberships", data("getMemberInfo"), memberships("user-1", { nova: LATE, company: NEVER })],
    ["what they count as", kinds, [true, false, false, true, false]],
    ["the privileges that there are", () => Account.Privilege.getPrivileges().data.map(({ name }) => name),
        ["pdfToWord", "ocr", "batchPrint", "fonts", "templates", "sharedTemplates", "auditLog"]],
    ["what the memberships grant, and until when", granted, [["pdfToWord", LATE], ["ocr", LATE], ["sharedTemplates", NEVER]]],
    ["one by one", () => ["ocr", "fonts", "none", ""].map(has), [true, false, false, false]],
    ["a privilege that is no string", () => has(1), wrong],
    ["no privilege", () => call(Account.Privilege, "hasPrivilege"), missing],
    ["the accounts", data("getAccountListInfo"), [entry("user-1", "ada@example.invalid", "Ada", true,
        "https://example.invalid/ada.png", "company-1", "Example Works")]],
    ["an envelope", () => Account.getUserId(), { success: true, data: "user-1" }],
    // @ts-expect-error
    ["a login without parameters", () => Account.login(), missing],
    // @ts-expect-error
    ["a login from nowhere", () => Account.login({ qrcode: true, from: "x" }), missing],
    ["a logout from nowhere", () => Account.logout(""), missing],
    // @ts-expect-error
    ["a logout with an object", () => Account.logout({ src: "x" }), missing],
    // @ts-expect-error
    ["an upgrade from nowhere", () => Account.upgradeMember({ payUrl: "x" }), missing],
    // @ts-expect-error
    ["a login with a text for a flag", () => Account.login({ src: "x", bShowModal: "true" }), wrong],
    ["an upgrade with half a window", () => Account.upgradeMember({ csource: "x", parentWidget: 0.5 }), wrong],
    // @ts-expect-error
    ["a listener that is none", () => Account.addLoginListener({}), wrong],
    // @ts-expect-error
    ["removing a listener that is none", () => Account.removeLogoutListener(5), wrong],
]);

/** @type {unknown[]} */
const log = [];
/** The next `count` events, in order. */
async function next(/** @type {number} */ count) {
    for (const end = Date.now() + 20000; log.length < count && Date.now() < end;)
        await new Promise((resolve) => setTimeout(resolve, 5));
    return log.splice(0);
}
/** @type {(name: string) => (...payload: unknown[]) => void} */
const note = (name) => (...payload) => log.push([name, ...payload]);
const never = () => log.push("a removed listener was called");
await check([
    ["adding answers nothing", () => Account.addLoginListener(note("login")), { success: true, data: undefined }],
    ["all ways to listen", () => {
        Account.addLogoutListener(note("logout"));
        Account.addUserInfoChangedListener(note("user"));
        Account.addEventListener("event.account.Member.info.changed", note("member"));
        Account.addEventListener("confirmLoginSuccess", note("confirmed"));
        Account.Privilege.addEventListener("event.privilege.info.changed", note("privilege"));
    }, undefined],
    ["removing", () => {
        for (const kind of ["Login", "Logout", "UserInfoChanged"]) {
            call(Account, `add${kind}Listener`, never);
            call(Account, `remove${kind}Listener`, never);
        }
        const once = () => { Account.removeUserInfoChangedListener(once); log.push("once"); };
        Account.addUserInfoChangedListener(once);
        return Account.removeLoginListener(never);
    }, { success: true, data: undefined }],
]);

/** Whether it begins when the one before has ended. @type {(member: string, ...args: unknown[]) => () => Promise<boolean>} */
const begun = (member, ...args) => async () => {
    for (const end = Date.now() + 20000; Date.now() < end; await new Promise((resolve) => setTimeout(resolve))) {
        if (call(Account, member, ...args).data)
            return true;
    }
    return false;
};

const ok = { callstatus: "ok" };
/** @type {(userId: string, userName: string, count: number, isSwitching: boolean) => unknown} */
const login = (userId, userName, count, isSwitching) =>
    ["login", { ...ok, isSwitching, userId, userName, novasid: `${userId}-session-${count}` }];
/** @type {(userId: string, userName: string, isSwitching: boolean) => unknown} */
const logout = (userId, userName, isSwitching) => ["logout", { ...ok, isSwitching, userId, userName, novasid: "" }];
/** @type {(userId: string, held: Record<string, number>) => unknown} */
const member = (userId, held) => ["member", { ...ok, data: memberships(userId, held) }];
/** @type {(confirmId: string, userId: string) => unknown} */
const confirmed = (confirmId, userId) => ["confirmed", { ...ok, confirmId, userId }];
await check([
    ["a change", () => process.play("user:nickName=Countess"), undefined],
    ["its event", () => next(2), [["user", ok], "once"]],
    ["more of them", () => process.play("user:email=a@b@1ms,member:folio=on@1ms,member:folio=off@1ms,login:user-2@1ms,"
        + "login:user-2@1ms,logout@1ms,login@1ms"), undefined],
    ["their events", () => next(10), [
        ["user", ok],
        member("user-1", { nova: LATE, folio: NEVER, company: NEVER }), ["privilege", { ...ok, data: { folio: true } }],
        member("user-1", { nova: LATE, company: NEVER }), ["privilege", { ...ok, data: { folio: false } }],
        logout("user-1", "Countess", true), login("user-2", "Bob", 2, true), login("user-2", "Bob", 3, false),
        logout("user-2", "Bob", false), login("user-1", "Countess", 4, false)]],
    ["back with the changes", data("getUserInfo"), { ...Account.getUserInfo().data, nickName: "Countess", email: "a@b" }],
]);

await check([
    ["a logout", () => Account.logout("page").data, true],
    ["its event", () => next(1), [logout("user-1", "Countess", false)]],
    ["signed out", data("isLoggedIn"), false],
    ["nobody's id", data("getUserId"), ""],
    ["nobody's roles", () => Account.getUserInfo().data.roleList, []],
    ["nobody's memberships", data("getMemberInfo"), memberships("", {})],
    ["nobody's privileges", () => [granted(), has("ocr")], [[], false]],
    ["nobody buys", () => Payment.open({ source: "page" }), refusal(3, "User not login")],
    ["nobody is a member", kinds, [false, false, false, false, false]],
    ["no accounts", data("getAccountListInfo"), []],
    ["a logout of nobody", data("logout", "page"), false],
    ["an upgrade of nobody", data("upgradeMember", { csource: "page" }), false],
    ["a login that the user cancels", data("login", { src: "page", confirmId: "cancelled" }), true],
    ...bare(["another one meanwhile", data("login", { src: "page", confirmId: "refused" }), false]),
    ["a login the way that a user signs in", begun("login", { src: "page", qrcode: true, confirmId: "mine" }), true],
    ["it is confirmed once", () => next(2), [login("user-2", "Bob", 5, false), confirmed("mine", "user-2")]],
    ["another user takes over", data("login", { src: "page", confirmId: "other" }), true],
    ["both are told, and confirmed at the end", () => next(3),
        [logout("user-2", "Bob", true), login("user-1", "Countess", 6, true), confirmed("other", "user-1")]],
    ["both stay signed in", () => [Account.isMultiAccount().data, Account.getAccountListInfo().data.map((one) => one.isCurrent)],
        [true, [false, true]]],
    ["the same user again", data("login", { src: "page", confirmId: "other" }), true],
    ["is a login too", () => next(2), [login("user-1", "Countess", 7, false), confirmed("other", "user-1")]],
    ["an upgrade that the user cancels", data("upgradeMember", { csource: "page", parentWidget: 7 }), true],
    ...bare(["another one meanwhile", data("upgradeMember", { csource: "page" }), false]),
    ["an upgrade", begun("upgradeMember", { csource: "page" }), true],
    ["its events", () => next(2), [member("user-1", { nova: LATE, super: NEVER, company: NEVER }),
        ["privilege", { ...ok, data: { super: true } }]]],
    ["what it counts as", kinds, [true, true, true, true, true]],
    ["the privileges of both memberships end with the last", granted,
        [["pdfToWord", NEVER], ["ocr", NEVER], ["fonts", NEVER], ["sharedTemplates", NEVER]]],
]);

const cancelled = { status: "cancelled", item: "" };
await check([
    // @ts-expect-error
    ["a purchase from nowhere", () => Payment.open({ item: "super" }), missing],
    // @ts-expect-error
    ["a purchase of a number", () => Payment.open({ source: "page", item: 1 }), wrong],
    ["a purchase that the user cancels", () => Payment.open({ source: "page" }), cancelled],
    ["a purchase of what the page names", () => Payment.open({ source: "page", item: "novaPro" }), { status: "purchased", item: "novaPro" }],
    ["its events have come", () => next(2), [member("user-1", { nova: LATE, novaPro: NEVER, super: NEVER, company: NEVER }),
        ["privilege", { ...ok, data: { novaPro: true } }]]],
    ["what it grants", () => has("batchPrint"), true],
    ["of what is not for sale the user takes the first", () => Payment.open({ source: "page", item: "a yacht" }),
        { status: "purchased", item: "trial" }],
    ...bare(["another one meanwhile", async () => {
        const first = Payment.open({ source: "page" });
        const second = await Payment.open({ source: "page" }).catch(caught);
        return [second, await first];
    }, [refusal(3, "Another purchase is open."), cancelled]]),
]);
exit(failures ? 1 : 0);
