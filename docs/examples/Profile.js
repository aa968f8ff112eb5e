const { Profile } = NovaExtension;

const { browserid, c_cb_ts, c_cbf_ts } = Profile.getBrowserTraceInfo().data;
console.log(`The view ${browserid} was there after ${c_cbf_ts - c_cb_ts} ms`);
