// The catalogue, and who uses what.

const catalogue = JSON.parse(document.getElementById("catalogue").textContent);

const byName = (rows) => new Map(rows.map((row) => [row.name, row]));
const tables = byName(catalogue.tables);
const actions = byName(catalogue.actions);
const profiles = byName(catalogue.profiles);
const groups = new Map(
    catalogue.groups.map((group) => [group.group, { ...group, name: group.group, tables: [] }]),
);
for (const table of catalogue.tables) groups.get(table.group).tables.push(table);

// Each kind of resource by its word in links, with the list that it stands in.
const resourceKinds = {
    counter: { list: "counters", text: "counter" },
    meter: { list: "meters", text: "meter" },
    register: { list: "registers", text: "register" },
    digest: { list: "digests", text: "digest" },
    value_set: { list: "value_sets", text: "parser value set" },
    hash: { list: "hashes", text: "hash calculation" },
};
const resources = new Map();
for (const [kind, { list }] of Object.entries(resourceKinds))
    for (const row of catalogue[list]) resources.set(row.name, { ...row, kind, tables: [] });

// Fields by the name of their member, with each table that has one.
const fields = new Map();
for (const table of catalogue.tables) {
    for (const field of table.key) {
        if (!fields.has(field.field))
            fields.set(field.field, { name: field.field, display: field.display, uses: [] });
        fields.get(field.field).uses.push({ table, field });
    }
    for (const name of [table.counter, table.meter, table.indexed_resource].filter(Boolean))
        resources.get(name).tables.push(table);
}
for (const action of catalogue.actions) action.uses = [];
for (const table of catalogue.tables)
    for (const binding of table.actions) actions.get(binding.action).uses.push({ table, binding });

// Everything that has a handle: {handle, kind, name, text, table}.
const handled = [
    ...catalogue.tables.map((row) => ({ handle: row.handle, kind: "table", name: row.name, text: "table" })),
    ...catalogue.tables.flatMap((table) =>
        table.actions.map(({ action, handle }) => ({
            handle,
            kind: "action",
            name: action,
            text: `action in ${table.name}`,
        })),
    ),
    ...catalogue.profiles.flatMap(({ name, action_table, selector }) => [
        { handle: action_table, kind: "profile", name, text: "action data table" },
        { handle: selector, kind: "profile", name, text: "selector" },
    ]),
    ...[...resources.values()].map(({ handle, kind, name }) => ({
        handle,
        kind,
        name,
        text: resourceKinds[kind].text,
    })),
];

function hrefOf(kind, name) {
    return `#${kind}/${encodeURIComponent(name)}`;
}

function handleText(handle) {
    return [el("code", {}, handle), ` (${Number(handle)})`];
}

const isKeyless = (table) => table.match === "none";
const hasTernary = (table) => table.match === "ternary";
const count = (number, one) => `${number.toLocaleString("en")} ${one}${number === 1 ? "" : "s"}`;
