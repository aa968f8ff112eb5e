const { WebviewMgr } = NovaExtension;

const view = WebviewMgr.create({ id: "notes-help", windowType: "Dialog", geo: { x: 100, y: 100, width: 480, height: 360 } });
view.setWindowTitle("Help");
view.addCloseListener(() => console.log("closed"));
view.destroy();
