const { CloudAdapter } = NovaExtension;

const { state, resultString } = await CloudAdapter.commonRequest({ method: "getRoamingMode" });
console.log(state, resultString); // a refusal resolves, too
