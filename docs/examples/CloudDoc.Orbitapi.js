const { Orbitapi } = NovaExtension.CloudDoc;

const { ok, data, message } = await Orbitapi.commonRequest({ requestKey: "user.space", timeoutMs: 5000 });
console.log(ok ? data : `refused: ${message}`);
