// URL and URLSearchParams.
import 'core-js/modules/web.url.js';
import 'core-js/modules/web.url.to-json.js';
import 'core-js/modules/web.url-search-params.js';

export const { URL, URLSearchParams } = globalThis;
