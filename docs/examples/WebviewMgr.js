const { WebviewMgr } = NovaExtension;

const view = WebviewMgr.create({ id: "notes-help", windowType: "Dialog", geo: { x: 100, y: 100, w: 480, h: 360 } });
view.setWindowTitle("Help");
view.addCloseListener(() => console.log("closed"));
view.destroy();
