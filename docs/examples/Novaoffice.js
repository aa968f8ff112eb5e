const { Novaoffice } = NovaExtension;

console.log(`${Novaoffice.getApplicationName().data} ${Novaoffice.getNovaVersion().data}`);
