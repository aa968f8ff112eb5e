// Random bytes of the system.
const { fillRandom } = native;

const maximumBytes = 65536;
const integerArrays = [
    Int8Array, Uint8Array, Uint8ClampedArray, Int16Array, Uint16Array, Int32Array, Uint32Array, BigInt64Array, BigUint64Array,
];

class Crypto {
    getRandomValues(array) {
        if (!integerArrays.some((type) => array instanceof type))
            throw new DOMException('A typed array of integers is expected.', 'TypeMismatchError');
        if (array.byteLength > maximumBytes)
            throw new DOMException(`At most ${maximumBytes} bytes can be had at once.`, 'QuotaExceededError');
        fillRandom(new Uint8Array(array.buffer, array.byteOffset, array.byteLength));
        return array;
    }
    randomUUID() {
        const bytes = this.getRandomValues(new Uint8Array(16));
        bytes[6] = (bytes[6] & 0x0f) | 0x40;
        bytes[8] = (bytes[8] & 0x3f) | 0x80;
        const digits = Array.from(bytes, (byte) => byte.toString(16).padStart(2, '0')).join('');
        return digits.replace(/^(.{8})(.{4})(.{4})(.{4})(.{12})$/, '$1-$2-$3-$4-$5');
    }
    get [Symbol.toStringTag]() {
        return 'Crypto';
    }
}

export const crypto = new Crypto();
