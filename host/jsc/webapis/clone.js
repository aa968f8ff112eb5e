// structuredClone and the errors it throws, and text as base64.
import 'core-js/modules/web.dom-exception.constructor.js';
import 'core-js/modules/web.dom-exception.stack.js';
import 'core-js/modules/web.dom-exception.to-string-tag.js';
import 'core-js/modules/web.structured-clone.js';
import 'core-js/modules/web.atob.js';
import 'core-js/modules/web.btoa.js';

export const { DOMException, structuredClone, atob, btoa } = globalThis;
