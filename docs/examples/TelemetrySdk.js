NovaExtension.TelemetrySdk.postEvent({ eventName: "notes_opened", postContent: { view: "outline" } });
