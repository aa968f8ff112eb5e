const { KContract, Profile } = NovaExtension;

KContract.registerCallback(({ dates, sums }) => console.log(dates, sums));
KContract.panelNotify({ type: "contract", viewId: Profile.getBrowserTraceId().data.browserid, text: "Of 1 May 2026: EUR 1,200.50." });
