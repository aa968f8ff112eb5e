// What a page hears of the steps that it plays itself.
const { Account } = NovaExtension;
/** @type {string[]} */
const log = [];
Account.addLoginListener(({ userId, isSwitching }) => log.push(`${userId} in${isSwitching ? ", switching" : ""}`));
Account.addLogoutListener(({ userId, isSwitching }) => log.push(`${userId} out${isSwitching ? ", switching" : ""}`));
Account.addUserInfoChangedListener(() => log.push("user"));
/**
 * What is heard of steps, and the user's name at the end; `count` events are awaited, and a little longer.
 *
 * @param {number} count
 * @param {string[]} plays
 */
async function heard(count, ...plays) {
    plays.forEach((steps) => process.play(steps));
    const inCall = log.splice(0);
    for (const end = Date.now() + 10000; log.length < count && Date.now() < end;)
        await new Promise((resolve) => setTimeout(resolve, 5));
    await new Promise((resolve) => setTimeout(resolve, 30));
    return [...inCall, "returned", ...log.splice(0), Account.getUserInfo().data.nickName];
}
/** @type {(steps: string, why: string) => any[]} */
const wrong = (steps, why) => [`wrong: ${steps}`, () => process.play(steps), refusal(1, why)];

await check([
    ["answers nothing", () => process.play(""), undefined],
    ["one step after another, also of a switch", () => heard(5, "user:nickName=A,login:user-2,logout,login:user-1"),
        ["returned", "user", "user-1 out, switching", "user-2 in, switching", "user-2 out", "user-1 in", "A"]],
    ["times, and several plays", () => heard(6, "login:user-2@500ms,logout,login:user-1", "login:user-1@20ms", "logout"),
        ["returned", "user-1 out", "user-1 in", "user-1 out, switching", "user-2 in, switching", "user-2 out", "user-1 in", "A"]],
    ["a play within one", async () => {
        const again = () => { Account.removeUserInfoChangedListener(again); process.play("user:nickName=E"); };
        Account.addUserInfoChangedListener(again);
        return await heard(2, "user:nickName=D");
    }, ["returned", "user", "user", "E"]],
    wrong("logout,fly@5ms", "fly@5ms: a step is login[:USER], logout, user:KEY=TEXT, member:TIER=on|off, cloud:kill, "
        + "plugin:add|cancel|remove=NAME, skin:NAME or config:KEY=JSON, with @100ms behind it or without"),
    wrong("cloud:rain", "cloud:rain: the cloud process can only be killed"),
    wrong("plugin:fly=sample", "plugin:fly=sample: a plugin can be added, removed, or cancelled while it is loaded"),
    wrong("plugin:add=none", 'plugin:add=none: there is no plugin "none"'),
    wrong("skin:none", 'skin:none: there is no skin "none"'),
    wrong("login:nobody", 'login:nobody: the profile has no user "nobody"'),
    wrong("logout,member:super=5", 'member:super=5: a membership is "on" or "off"'),
    // @ts-expect-error
    ["no text", () => process.play(["logout"]), "TypeError: process.play: a string is expected"],
    ["nothing of what is wrong is played", () => heard(0), ["returned", "E"]],
]);
exit(failures ? 1 : 0);
