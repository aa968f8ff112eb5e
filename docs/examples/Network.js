const { Network } = NovaExtension;

try {
    const { ok, status, body } = await Network.fetch({ url: "https://updates.example/news.json", timeoutMs: 2000 });
    console.log(ok ? JSON.parse(body ?? "") : status);
} catch (error) {
    console.log(/** @type {NovaExtension.Failure} */ (error).msg); // no connection, no answer, or not permitted
}
