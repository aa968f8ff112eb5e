const { Crypto } = NovaExtension;

console.log(Crypto.md5Data("caf\u00e9").data); // "07117fe4a1ebd544965dc19573183da2"
console.log(Crypto.c64Encode(new Uint8Array([251, 255])).data); // "+/8="
