const { ByteBufferManager, Crypto } = NovaExtension;

const buffer = ByteBufferManager.create("caf\u00e9"); // in UTF-8
console.log(Crypto.md5Data(buffer).data); // what takes bytes takes it, and the page never holds them
