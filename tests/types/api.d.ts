// What run_test.py puts in front of a script test that works from the description of the members.
interface ApiType {
    readonly kind: string;
    readonly name?: string;
    readonly values?: unknown;
    readonly items?: ApiType;
    readonly types?: readonly ApiType[];
    readonly fields?: readonly { readonly name: string; readonly type: ApiType; readonly optional: boolean }[];
    readonly parameters?: readonly { readonly name: string; readonly type: ApiType }[];
}
interface ApiMember {
    readonly name: string;
    readonly kind: string;
    readonly built: boolean;
    readonly parameters: readonly { readonly type: ApiType; readonly optional: boolean; readonly rest: boolean }[];
    readonly answer: { readonly form: string; readonly type: ApiType };
    readonly event: string | null;
}
declare const api: {
    readonly objects: readonly {
        readonly name: string;
        readonly instance: string;
        readonly members: readonly ApiMember[];
        readonly events: readonly { readonly name: string }[];
    }[];
};
