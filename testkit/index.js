// nova-extension-testkit: NovaExtension for a page's own tests. README.md says how to use it.
import { Kit, UnexpectedCall } from "./src/kit.js";

export { fill } from "./src/declared.js";
export { match } from "./src/patterns.js";
export { UnexpectedCall };

/** A NovaExtension whose calls return what rows, a recording or dialogs say. */
export function createKit(options) {
    return new Kit(options);
}
