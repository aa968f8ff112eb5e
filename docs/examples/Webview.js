const { Webview } = NovaExtension;

try {
    Webview.setWindowTitle("Notes");
    Webview.setMinimumSize({ minw: 320, minh: 240 });
} catch (error) {
    console.log(/** @type {NovaExtension.Failure} */ (error).msg); // a page without a window of its own
}
