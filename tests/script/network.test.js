// Requests and downloads, to tests/support/http_server.py.
const { FileSystem, Network } = NovaExtension;
const [, , data, portsText] = process.argv;
/** @type {Record<string, number>} */
const ports = JSON.parse(portsText);
const server = `http://127.0.0.1:${ports.plain}`;
const secure = (/** @type {string} */ kind) => `https://localhost:${ports[kind]}/text?text=hello`;
const at = (/** @type {string} */ name) => `${data}/${name}`;
const failed = (/** @type {string} */ msg) => refusal(3, msg);
const denied = failed("Permission denied."), broken = failed("Response is broken."), large = failed("Response is too large.");
const wrong = refusal(1, "wrong parameters."), missing = refusal(1, "missing required parameters.");
const illegal = (/** @type {string} */ what) => refusal(1, `${what} illegal.`);
/** @type {(path: string, options?: object) => Promise<NovaExtension.Network.HttpResponse>} */
const fetched = (path, options) => Network.fetch({ url: path.includes("://") ? path : `${server}/${path}`, ...options });
const body = (/** @type {string} */ path, options = {}) => async () => (await fetched(path, options)).body;
const echo = async (/** @type {string} */ path, options = {}) => JSON.parse(await body(path, options)());
/** The requests that the server has seen whose host and path have a text in them. */
const seen = async (/** @type {string} */ about) => JSON.parse(await body(`log?about=${encodeURIComponent(about)}`)())
    .filter((/** @type {any} */ one) => !one.path.startsWith("/log"));
const to = (/** @type {number} */ status, /** @type {string} */ url) => `to?status=${status}&url=${encodeURIComponent(url)}`;
/** All that a download's function is called with, without its progress, once it has ended. @type {(options: any) => Promise<any>} */
const download = ({ url, ...options }) => new Promise((resolve) => {
    const { requestId } = Network.download({ url: `${server}/${url}`, path: at("file"), ...options }, (report) => {
        if (report.state !== "progress")
            setTimeout(() => resolve(report.requestId === requestId ? report : "another's"), 0);
    }).data;
});
const ended = (/** @type {any} */ options) => async () => {
    const { state, receivedBytes, resumedBytes, httpStatus, error } = await download(options);
    return [state, error ?? httpStatus, receivedBytes, ...resumedBytes ? [resumedBytes] : []];
};
const size = 256 * 4000;

await check([
    ["connected or not", () => typeof Network.isConnected().data, "boolean"],
    ["ids", () => new Set(Array.from({ length: 1000 }, () => Network.genarateRequestId().data)).size, 1000],
    // What is refused before anything is sent.
    ["nothing", () => call(Network, "fetch"), missing],
    ["no object", () => call(Network, "fetch", "http://127.0.0.1"), wrong],
    ...["", "x", "/x", "file:///etc/passwd", "ftp://localhost/", "data:,x", "http://", "http:///x", "http://a:b@localhost/", "http://a@localhost/",
        "http://localhost:0/", "http://localhost:65536/", "http://a b/", "http://[::1/", `http://localhost/${"x".repeat(16384)}`].map((url) =>
        [`URL ${url.slice(0, 40)}`, () => Network.fetch({ url }), url ? illegal("URL is") : missing]),
    ...["CONNECT", "trace", "Track", "", "GE T", "GET\r\nX: y", "GÉT", "x".repeat(65)].map((method) =>
        [`method ${method.slice(0, 20)}`, () => fetched("echo", { method }), illegal("Method is")]),
    ...["Host", "Content-Length", "Connection", "cookie", "Cookie2", "Transfer-Encoding", "TE", "Proxy-Authorization", "Sec-Fetch-Site", "Origin", "Referer",
        "Accept-Encoding", "Expect", "Upgrade", "", "a b", "a:", "a\r\nb", "é"].map((name) =>
        [`header ${show(name)}`, () => fetched("echo", { headers: { [name]: "x" } }), illegal("Headers are")]),
    ...["a\r\nHost: b", "a\nb", "a\0b", "\u{1f600}", "x".repeat(32768)].map((value) =>
        [`value ${show(value.slice(0, 20))}`, () => fetched("echo", { headers: { a: value } }), illegal("Headers are")]),
    ["too many headers", () => fetched("echo", { headers: Object.fromEntries(Array.from({ length: 101 }, (_, i) => [`a${i}`, ""])) }), illegal("Headers are")],
    ["a body of GET", () => fetched("echo", { body: "x" }), illegal("Body is")],
    ["too large a body", () => fetched("echo", { method: "POST", body: "x".repeat((64 << 20) + 1) }), illegal("Body is")],
    ...[{ timeoutMs: 0 }, { timeoutMs: 600001 }, { timeoutMs: "5" }, { maxBytes: 0 }, { maxBytes: 1.5 }, { maxBytes: 2 ** 28 + 1 }, { requestId: "" },
        { requestId: 5 }, { requestId: "x".repeat(129) }, { headers: [] }, { headers: { a: 5 } }, { method: 5 }, { body: "\ud800", method: "POST" }].map((options) =>
        [`options ${show(options).slice(0, 30)}`, () => fetched("echo", options), wrong]),
    ["a throwing getter", () => fetched("echo", { get method() { throw new Error("no"); } }), "Error: no"],
    ["none of it was sent", () => seen("echo"), []],
    // Addresses that the page may not reach, however they are spelled.
    ...["127.0.0.2", "127.2", "0x7f.2", "0177.0.0.2", "2130706434"].map((host) =>
        [`http://${host}`, () => fetched(`http://${host}:${ports.plain}/text?text=reached`), denied]),
    ["a server that is not permitted", () => Network.fetch({ url: `http://127.0.0.1:${ports.right}/` }), denied],
    ["a redirect to one", () => fetched(to(302, `http://127.0.0.1:${ports.right}/`)), denied],
    ["a redirect to an address", () => fetched(to(302, `http://127.0.0.2:${ports.plain}/reached`)), denied],
    ["no such host", () => fetched(`http://nobody.invalid:${ports.plain}/`), failed("Host not found.")],
    ["nobody was reached", async () => (await seen("reached")).filter((/** @type {any} */ one) => !one.path.startsWith("/to")), []],
    ...["127.1", "0x7f.1", "2130706433", "localhost"].map((host) => [`http://${host}`, body(`http://${host}:${ports.plain}/text?text=reached`), "reached"]),
    // Requests.
    ["a response", async () => { const { requestId, headers, ...rest } = await fetched("text?text=hello"); return [typeof requestId, headers["content-length"], rest]; },
        ["string", "5", { ok: true, status: 200, statusText: "Said", url: `${server}/text?text=hello`, redirected: false, body: "hello" }]],
    ["headers of a response", async () => { const { headers } = await fetched("echo"); return [headers["x-two"], headers["set-cookie"]]; }, ["a, b", undefined]],
    ["what a request says", async () => { const { method, headers } = await echo("echo", { headers: { "X-Mine": " é\t " } });
        return [method, headers.host, headers["x-mine"], headers.cookie, headers["accept-encoding"]]; },
        ["GET", `127.0.0.1:${ports.plain}`, "é", undefined, "gzip, deflate"]],
    ["the name in Host", async () => (await echo(`http://localhost:${ports.plain}/echo`)).headers.host, `localhost:${ports.plain}`],
    ...[["post", "é€"], ["PUT", "x"], ["PATCH", "x"], ["DELETE", ""], ["DELETE", "x"], ["POST", ""], ["patch", "x"], ["OPTIONS", ""]].map(([method, text]) =>
        [`${method} ${text}`, async () => { const one = await echo("echo", { method, body: text });
            return [one.method, one.body, one.headers["content-type"]]; },
        [method === "patch" ? method : method.toUpperCase(), unescape(encodeURIComponent(text)), text ? "text/plain;charset=UTF-8" : undefined]]),
    ["1 MiB and a type", async () => { const one = await echo("echo", { method: "POST", body: "x".repeat(1 << 20), headers: { "content-type": "a/b" } });
        return [one.body.length, one.headers["content-type"]]; }, [1 << 20, "a/b"]],
    ["bytes there and back", async () => { const given = Uint8Array.from({ length: 256 }, (_, i) => i);
        const { body, bytes } = await fetched("raw", { method: "PUT", body: given, responseType: "bytes" });
        return [body, bytes instanceof Uint8Array, show(Array.from(bytes ?? [])) === show(Array.from(given))]; }, ["", true, true]],
    ["bytes have no type", async () => (await echo("echo", { method: "POST", body: new Uint8Array(1) })).headers["content-type"], undefined],
    ["a body that is neither", () => fetched("echo", { method: "POST", body: 5 }), wrong],
    ["another type of content", () => fetched("echo", { responseType: "json" }), wrong],
    ["HEAD", async () => { const { body, headers } = await fetched("echo", { method: "HEAD" }); return [body, Number(headers["content-length"]) > 100]; }, ["", true]],
    ...[400, 401, 404, 407, 500, 503, 599].map((status) => [`status ${status}`, async () => {
        const response = await fetched(`echo?status=${status}`); return [response.ok, response.status, response.body.length > 100]; }, [false, status, true]]),
    ["a redirect without a place", async () => (await fetched("echo?status=302")).status, 302],
    ["nothing new", async () => (await fetched("echo?status=204", { method: "HEAD" })).status, 204],
    ...["Basic realm=\"x\"", "Negotiate", "NTLM"].map((scheme) => [`login with ${scheme}`, async () => [(await fetched(`login?scheme=${encodeURIComponent(scheme)}`)).status,
        (await seen("login")).filter((/** @type {any} */ one) => one.headers.authorization).length], [401, 0]]),
    ["chunks", body("chunked"), "hello world"],
    ["until the connection closes", body("closing"), "until the end"],
    ["more than was announced", body("long"), "hello"],
    ["UTF-8, and what is none", body("text?text=%C3%AF%C2%BB%C2%BF%C3%A9%C3%83%C2%A9"), "\ufffdé"],
    ...["gzip", "twice", "deflate", "raw"].map((how) => [`packed: ${how}`, body(`packed?how=${how}`), "hello ".repeat(how === "twice" ? 200 : 100)]),
    ...["cut", "wrong"].map((how) => [`packed: ${how}`, body(`packed?how=${how}`), broken]),
    ["a bomb", body("packed?how=gzip&bomb="), large],
    ["as large as may be", body("packed?how=gzip", { maxBytes: 600 }), "hello ".repeat(100)],
    ["too large", body("packed?how=gzip", { maxBytes: 599 }), large],
    ["too large without packing", body("text?text=hello", { maxBytes: 4 }), large],
    // Faults.
    ["cut off", body("cut"), broken],
    ["chunks that are cut off", body("chunked?cut="), broken],
    ["garbage", body("garbage"), failed("Connection failed.")],
    ["300 KiB of headers", body("headers"), broken],
    ["two lengths", body("lengths"), broken],
    ["what comes before a response", async () => [await fetched("early").catch((error) => error.msg), (await fetched("release?key=early")).body,
        await body("text?text=next")()], ["Response is broken.", "", "next"]],
    ["POST to a server that closes is sent once", async () => [await fetched("drop", { method: "POST", body: "x" }).catch((error) => error.msg), (await seen("drop")).length],
        ["Connection failed.", 1]],
    ["no answer", body("hang", { timeoutMs: 50 }), failed("Timed out.")],
    ["headers that do not come", body("hang?first=HTTP%2F1.1%20200%20OK%0D%0AA%3A", { timeoutMs: 50 }), failed("Timed out.")],
    ["content that does not come", body("hang?first=HTTP%2F1.1%20200%20OK%0D%0A%0D%0Ahello", { timeoutMs: 50 }), failed("Timed out.")],
    ["no server", body("http://127.0.0.1:1/"), denied],
    // Redirects.
    ["20 redirects", async () => { const { redirected, url } = await fetched("redirects?left=20"); return [redirected, url]; }, [true, `${server}/echo`]],
    ["21 redirects", body("redirects?left=21"), failed("Too many redirects.")],
    ["a loop", body("loop"), failed("Too many redirects.")],
    ...[[301, "POST", "GET"], [302, "POST", "GET"], [303, "PUT", "GET"], [307, "POST", "POST"], [308, "PUT", "PUT"], [301, "PUT", "PUT"], [303, "HEAD", undefined]].map(
        ([status, method, expected]) => [`${status} of ${method}`, async () => {
            const text = await body(to(Number(status), "/echo"), { method, headers: { "Content-Type": "a/b" }, ...method === "HEAD" ? {} : { body: "x" } })();
            const one = text ? JSON.parse(text) : {};
            return [one.method, one.body, one.headers?.["content-type"]];
        }, method === "HEAD" ? [undefined, undefined, undefined] : expected === "GET" ? ["GET", "", undefined] : [expected, "x", "a/b"]]),
    ...[["/echo", "secret"], [`http://localhost:${ports.plain}/echo`, undefined]].map(([url, expected]) => [`Authorization to ${url}`, async () => {
        const { headers } = await echo(to(302, String(url)), { headers: { Authorization: "secret", "X-Mine": "mine" } });
        return [headers.authorization, headers["x-mine"]]; }, [expected, "mine"]]),
    ...["file:///etc/passwd", "ftp://localhost/", "data:,x", `http://a:b@127.0.0.1:${ports.plain}/echo`, "http://"].map((url) =>
        [`redirect to ${url}`, body(to(302, url)), failed("Redirect is illegal.")]),
    // Certificates.
    ["a right certificate", body(secure("right")), "hello"],
    ...["wrong_name", "expired", "unknown"].map((kind) => [`certificate: ${kind}`, body(secure(kind)), failed("TLS failed.")]),
    ["from https to http", body(`https://localhost:${ports.right}/${to(302, `${server}/echo`)}`), failed("Redirect is illegal.")],
    ["to https", body(to(302, secure("right"))), "hello"],
    ["to https with a wrong certificate", body(to(302, secure("expired"))), failed("TLS failed.")],
]);

// Functions, ids, ends.
/** @type {(options: object) => Promise<any[]>} */
const requested = (options) => new Promise((resolve) => {
    /** @type {any[]} */
    const reports = [];
    const returned = Network.httpRequest({ url: `${server}/text?text=hello`, ...options }, (report) => {
        reports.push(report);
        setTimeout(() => resolve([returned.data.requestId === report.requestId, ...reports.map(({ ok, error, body }) => [ok, error ?? body])]), 0);
    });
    reports.push(...reports.length ? [{ error: "called too early" }] : []);
});
await check([
    ["a function", () => requested({ requestId: "mine" }), [true, [true, "hello"]]],
    ["a function and a failure", () => requested({ url: `${server}/cut` }), [true, [false, "Response is broken."]]],
    ["no function", async () => { call(Network, "httpRequest", { url: `${server}/text?text=alone` });
        while ((await seen("alone")).length === 0);
        return "sent"; }, "sent"],
    ["an id that is in use", async () => {
        const first = requested({ url: `${server}/hang`, requestId: "same" });
        let second;
        try { Network.fetch({ url: server, requestId: "same" }); } catch (error) { second = caught(error); }
        return [second, Network.cancelDownload("same").data, Network.abortRequest("same").data, Network.abortRequest("same").data, await first,
            await requested({ requestId: "same" })];
    }, [refusal(1, "Request id is in use."), false, true, false, [true, [false, "Canceled."]], [true, [true, "hello"]]]],
    ["an abort of fetch", () => { const promise = fetched("hang", { requestId: "mine" }); Network.abortRequest("mine"); return promise; }, failed("Canceled.")],
    ["an abort of nothing", () => Network.abortRequest("nobody's").data, false],
    ["an abort without an id", () => call(Network, "abortRequest"), missing],
    ["a cancel with an object", () => call(Network, "cancelDownload", {}), missing],
    ["6 run, 250 wait, the rest is refused, and each ends", async () => {
        const ends = [];
        let refused = 0;
        for (let i = 0; i < 100000 && refused < 1000; ++i) {
            try { ends.push(fetched("hang", { requestId: `id ${i}` }).catch((error) => error.msg)); } catch (error) { refused += show(caught(error)) === show(failed("Too many requests.")) ? 1 : 0; }
        }
        // From the last one on, so that none of those that wait begins.
        for (let i = ends.length; i-- > 0;)
            Network.abortRequest(`id ${i}`);
        return [refused, ends.length, new Set(await Promise.all(ends)).size, (await seen("hang")).length < 20];
    }, [1000, 256, 1, true]],
    ["those that wait begin when others end", async () => (await Promise.all(Array.from({ length: 50 }, (_, i) => body(`text?text=${i}`)()))).length, 50],
]);

// Downloads.
const tagged = (/** @type {string} */ more, tag = "\"a\"") => `file?tag=${encodeURIComponent(tag)}&${more}`;
const whole = ["finished", 200, size];
const cutAt = (/** @type {number} */ bytes) => ["failed", "Response is broken.", bytes];
const path = at("kept"), other = at("other");
const md5 = (/** @type {string} */ file) => FileSystem.getFileMd5(file);
const sum = "6134696ca1b050d4564d58a18aa9d35a", hello = "5d41402abc4b2a76b9719d911017c592";
/** Downloads in parts until nothing is left. */
const inParts = async (/** @type {any} */ options) => {
    for (let i = 0; i < 10; ++i) {
        const { state, resumedBytes } = await download({ resume: true, ...options });
        if (state === "finished")
            return [resumedBytes, await md5(options.path)];
    }
    return "no end";
};
await check([
    ["a download", ended({ url: "file", path }), whole],
    ["its content", () => md5(path), sum],
    ["its report", async () => { const { path, totalBytes } = await download({ url: "text?text=hello", path: other }); return [path, totalBytes]; }, [other, 5]],
    ["a file that is there", () => Network.download({ url: `${server}/file`, path }), failed("File exists.")],
    ...[["cut", "Response is broken."], ["chunked?cut=", "Response is broken."], ["echo?status=404", "Status is no success."],
        ["echo?status=206", "Status is no success."], ["loop", "Too many redirects."], ["file", "Response is too large."]].map(([url, error]) =>
        [`${url} leaves the file as it was`, async () => [(await download({ url, path: other, overwrite: true, maxBytes: size - 1 })).error, await md5(other)], [error, hello]]),
    ["a file that is replaced", ended({ url: "file", path: other, overwrite: true }), whole],
    ["a directory", () => Network.download({ url: `${server}/file`, path: data, overwrite: true }), failed("File exists.")],
    ["a directory that is not there", () => Network.download({ url: `${server}/file`, path: at("none/file") }), failed("Path is illegal.")],
    ["a path that is closed", () => Network.download({ url: `${server}/file`, path: at("closed/file") }), failed("Path is illegal.")],
    ["no path", () => Network.download({ url: server, path: "" }), refusal(1, "Path is empty.")],
    ["a range of the page's", () => Network.download({ url: server, path: at("x"), headers: { range: "bytes=1-" } }), illegal("Headers are")],
    ["a fractional limit", () => Network.download({ url: server, path: at("x"), maxBytes: 0.5 }), wrong],
    ["chunks", async () => (await download({ url: "chunked", path: at("chunks") })).totalBytes, undefined],
    ["packed as it is", async () => (await download({ url: "packed?how=gzip", path: at("packed") })).receivedBytes < 600, true],
    ["a file that comes meanwhile", async () => {
        const end = download({ url: "held?key=taken", path: at("raced") });
        while ((await seen("taken")).length === 0);
        await download({ url: "text?text=hello", path: at("raced") });
        await fetched("release?key=taken");
        return [(await end).error, await md5(at("raced"))];
    }, ["File exists.", hello]],
    ["progress, and a cancel in its function", () => new Promise((resolve) => {
        /** @type {any[]} */
        const states = [];
        /** @type {boolean[]} */
        const cancels = [];
        Network.download({ url: `${server}/held?key=never`, path: at("canceled"), requestId: "mine" }, ({ state, receivedBytes, totalBytes, error }) => {
            states.push([state, receivedBytes, totalBytes, error]);
            if (state === "progress")
                cancels.push(Network.abortRequest("mine").data, Network.cancelDownload("mine").data, Network.cancelDownload("mine").data);
            else
                setTimeout(() => resolve([...states, ...cancels, FileSystem.exists(at("canceled")).data]), 0);
        });
    }), [["progress", 5, 10, undefined], ["canceled", 5, 10, "Canceled."], false, true, false, false]],
    // To go on with.
    ["in parts, and asked for as they must be", async () => [await inParts({ url: tagged("cut=300000"), path: at("parts") }),
        (await seen("cut=300000")).map((/** @type {any} */ one) => [one.headers.range, one.headers["if-range"]])],
    [[900000, sum], [[undefined, undefined], ...[300000, 600000, 900000].map((from) => [`bytes=${from}-`, "\"a\""])]]],
    ["by the date", () => inParts({ url: `file?cut=600000&date=${encodeURIComponent("Sat, 05 Nov 2022 10:00:00 GMT")}`, path: at("dated") }), [600000, sum]],
    // Each begins with a part, which the second download must not use.
    .../** @type {[string, string, string][]} */ ([
        ["a weak tag", tagged("cut=1000", "W/\"a\""), "file"], ["a date that is too young", `file?cut=1000&date=${encodeURIComponent("Sun, 06 Nov 2022 10:00:00 GMT")}`, "file"],
        ["no validator", "file?cut=1000", "file"], ["another URL", tagged("cut=1000"), tagged("other=")],
    ]).map(([name, first, second], i) => [`not resumed: ${name}`, async () => {
        await download({ url: first, path: at(`not resumed ${i}`), resume: true });
        return [...await ended({ url: second, path: at(`not resumed ${i}`), resume: true })(), await md5(at(`not resumed ${i}`))];
    }, [...whole, sum]]),
    // The same URL with another answer each time: see the server.
    .../** @type {[string, string, number][]} */ ([["another tag", "changes", 0], ["no ranges", "whole", 0], ["a wrong range", "shifts", 0], ["what is no longer there", "shrinks", 0]]).map(
        ([name, how, resumed]) => [`resumed: ${name}`, async () => {
            const url = tagged(`then=${how}`), path = at(`then ${how}`);
            return [await ended({ url, path, resume: true })(), await ended({ url, path, resume: true })()];
        }, [cutAt(2000), ["finished", 200, how === "shrinks" ? 1000 : size, ...resumed ? [resumed] : []]]]),
    ["a part that is canceled is kept", async () => {
        const url = tagged("then=held");
        const first = new Promise((resolve) => {
            const { requestId } = Network.download({ url: `${server}/${url}`, path: at("held"), resume: true }, ({ state }) => {
                if (state === "progress")
                    Network.cancelDownload(requestId);
                else
                    resolve(state);
            }).data;
        });
        return [await first, await inParts({ url, path: at("held") })];
    }, ["canceled", [2000, sum]]],
]);
exit(failures ? 1 : 0);
