const buffer = NovaExtension.ByteBufferManager.create(new Uint8Array([1, 2, 3]));

buffer.setSize(2);
console.log([...buffer.data()]); // [1, 2]
buffer.setSize(0); // its memory is free at once
