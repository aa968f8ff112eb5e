const { Skin } = NovaExtension;

const paint = () => {
    const { window, windowText } = Skin.getSkinColorConfig({ config: ["window", "windowText"] }).data;
    console.log(`background: ${window}; color: ${windowText}`);
};
Skin.addSkinChangeListener(paint);
paint();
