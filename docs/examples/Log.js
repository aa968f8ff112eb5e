const { Log } = NovaExtension;

Log.logInfo({ moduleName: "notes", logStr: "opened" });
Log.logWarning({ moduleName: "notes", logStr: "no settings yet" });
