// TextEncoder and TextDecoder.
import encoding from 'text-encoding';

export const { TextDecoder } = encoding;

const lengthIn = (utf16, point) => utf16 + (point > 0xffff ? 2 : 1);

export class TextEncoder {
    #encoder = new encoding.TextEncoder();

    get encoding() {
        return 'utf-8';
    }
    encode(source = '') {
        return this.#encoder.encode(String(source));
    }
    // Writes as many whole characters as there is space for.
    encodeInto(source, destination) {
        const text = String(source);
        if (!(destination instanceof Uint8Array))
            throw new TypeError('TextEncoder.encodeInto: a Uint8Array is expected');
        let read = 0;
        let written = 0;
        for (const character of text) {
            const bytes = this.#encoder.encode(character);
            if (written + bytes.length > destination.length)
                break;
            destination.set(bytes, written);
            written += bytes.length;
            read = lengthIn(read, character.codePointAt(0));
        }
        return { read, written };
    }
    get [Symbol.toStringTag]() {
        return 'TextEncoder';
    }
}

Object.defineProperty(TextDecoder.prototype, Symbol.toStringTag, { value: 'TextDecoder', configurable: true });
