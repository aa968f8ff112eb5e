const { Utils } = NovaExtension;

Utils.setTextToClipboard("2 + 2");
const { width, height, scale } = Utils.getCurrentScreenGeometry().data;
console.log(`${width} x ${height}, ${scale} physical pixels each`);
Utils.pickColor({ color: "#204080" }, ({ accepted, color }) => console.log(accepted ? color : "cancelled"));
