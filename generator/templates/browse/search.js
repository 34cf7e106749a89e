// One list of everything that has a name or a handle, and how well a query fits each.

const kindWeight = {
    table: 6,
    action: 5,
    profile: 5,
    group: 4,
    resource: 4,
    field: 3,
    family: 2,
    function: 0,
};

// A word begins behind a separator, at a capital, and where digits and letters meet; so "host" finds ipv4Host
// before ghosts.
function beginsWord(name, at) {
    if (at === 0) return true;
    const before = name[at - 1],
        here = name[at];
    return (
        !/[A-Za-z0-9]/.test(before) ||
        (/[A-Z]/.test(here) && /[^A-Z]/.test(before)) ||
        /\d/.test(before) !== /\d/.test(here)
    );
}

function findable(kind, name, { aliases = [], text = "", told = "", users = [], weight = kind, href } = {}) {
    return {
        kind,
        name,
        told: told || text,
        users,
        weight: kindWeight[weight],
        href: href ?? hrefOf(kind, name),
        names: [name, ...aliases],
        lower: [name, ...aliases].map((one) => one.toLowerCase()),
        text: text.toLowerCase(),
    };
}

function resourceFindable({ name, kind, tables: users }) {
    const text = resourceKinds[kind].text;
    return findable(kind, name, { text, users, weight: "resource" });
}

function usersOf({ kind, object }) {
    if (kind === "table") return [tables.get(object)];
    if (kind === "action") return actions.get(object).uses.map(({ table }) => table);
    if (kind === "profile") return [tables.get(profiles.get(object).table)];
    return resources.get(object)?.tables ?? [];
}

function withoutPrefix(name) {
    return name.startsWith(`${catalogue.prefix}_`) ? [name.slice(catalogue.prefix.length + 1)] : [];
}

const findables = [
    ...catalogue.tables.map((table) => findable("table", table.name, { text: table.brief, users: [table] })),
    ...catalogue.actions.map(({ name, uses }) =>
        findable("action", name, {
            told: `in ${count(uses.length, "table")}`,
            users: uses.map(({ table }) => table),
        }),
    ),
    ...catalogue.profiles.map(({ name, table }) =>
        findable("profile", name, { text: `action profile of ${table}`, users: [tables.get(table)] }),
    ),
    ...[...groups.values()].map(({ name, title, tables: users }) =>
        findable("group", name, { aliases: [title], told: title, users }),
    ),
    ...[...resources.values()].map(resourceFindable),
    ...[...fields.values()].map(({ name, display, uses }) =>
        findable("field", name, {
            aliases: [...new Set(uses.map(({ field }) => field.display))],
            users: uses.map(({ table }) => table),
            told: `${display}, in ${count(uses.length, "table")}`,
        }),
    ),
    ...[...families.values()]
        .filter(({ over }) => over !== "program")
        .map(({ name, functions: made }) =>
            findable("family", name, {
                aliases: [name.replaceAll(/\{(prefix|table|profile|name)\}_?/g, "")],
                text: made[0].family.brief,
                told: count(made.length, "function"),
                users: made.flatMap(usersOf),
            }),
        ),
    ...[...functions.values()].map((made) =>
        findable("function", made.name, { aliases: withoutPrefix(made.name), users: usersOf(made) }),
    ),
];

// How well one word fits one name, from 100, the same, to 40, somewhere in it.
function nameScore(name, lower, word) {
    const at = lower.indexOf(word);
    if (at < 0) return 0;
    if (lower.length === word.length) return 100;
    if (at === 0) return 80;
    for (let next = at; next >= 0; next = lower.indexOf(word, next + 1))
        if (beginsWord(name, next)) return 60;
    return 40;
}

function wordScore(found, word) {
    let best = 0;
    for (let i = 0; i < found.names.length; ++i) {
        const score = nameScore(found.names[i], found.lower[i], word) - (i > 0 ? 3 : 0);
        if (score > best) best = score - found.lower[i].length / 100;
    }
    if (best === 0 && found.text.includes(word))
        best = beginsWord(found.text, found.text.indexOf(word)) ? 20 : 10;
    return best;
}

function score(found, words) {
    let sum = found.weight;
    for (const word of words) {
        const own = wordScore(found, word);
        if (own <= 0) return 0;
        sum += own;
    }
    return sum;
}

// A handle is whole, in hex or decimal, or the beginning of one in hex.
function handleAnswers(word) {
    if (!/^(0x[0-9a-f]+|\d+)$/.test(word)) return [];
    const number = Number(word);
    return handled
        .filter(({ handle }) => Number(handle) === number || (/^0x/.test(word) && handle.startsWith(word)))
        .map((row) => ({
            found: findable(row.kind, row.name, {
                told: `${row.text}, ${row.handle}`,
                weight: "table",
                users: usersOf({ kind: row.kind, object: row.name }),
            }),
            score: Number(row.handle) === number ? 200 : 50,
        }));
}

// ---- Facets -----------------------------------------------------------------------------------------------

const matchTexts = { exact: "exact", ternary: "ternary", lpm: "longest prefix", none: "no key" };
const yesNo = (holds) => (holds ? "yes" : "no");

// Each with the values that a table has of it.
const facets = {
    group: {
        title: "Group",
        values: [...groups.keys()],
        of: (table) => [table.group],
        text: (value) => groups.get(value).title,
    },
    match: {
        title: "Kind of match",
        values: Object.keys(matchTexts),
        of: (table) => [table.match],
        text: (value) => matchTexts[value],
    },
    resources: {
        title: "Resources",
        values: ["direct counter", "direct meter", "by index", "none"],
        text: (value) => value,
        of: (table) => {
            const has = [
                ["counter", "direct counter"],
                ["meter", "direct meter"],
                ["indexed_resource", "by index"],
            ]
                .filter(([column]) => table[column])
                .map(([, text]) => text);
            return has.length ? has : ["none"];
        },
    },
    profile: {
        title: "Action profile",
        values: ["yes", "no"],
        of: (table) => [yesNo(table.profile)],
        text: (value) => value,
    },
    ageing: {
        title: "Entries age",
        values: ["yes", "no"],
        of: (table) => [yesNo(table.idle_time)],
        text: (value) => value,
    },
};

// `chosen` holds a set of values for each facet; an empty one lets everything through.
function passes(table, chosen) {
    return Object.entries(facets).every(
        ([name, facet]) => !chosen[name]?.size || facet.of(table).some((value) => chosen[name].has(value)),
    );
}

const isChosen = (chosen) => Object.values(chosen).some((values) => values.size);

// The best answers first: at the same score tables before functions, then short names.
function search(query, chosen = {}) {
    const words = query.toLowerCase().split(/\s+/).filter(Boolean);
    const filtered = isChosen(chosen);
    const passing = new Set(catalogue.tables.filter((table) => passes(table, chosen)));
    const allowed = (found) => !filtered || found.users.some((table) => passing.has(table));
    if (!words.length) return findables.filter((found) => found.kind === "table" && allowed(found));
    const answers = words.length === 1 ? handleAnswers(words[0]).filter(({ found }) => allowed(found)) : [];
    for (const found of findables) {
        const own = score(found, words);
        if (own > 0 && allowed(found)) answers.push({ found, score: own });
    }
    answers.sort((a, b) => b.score - a.score || (a.found.name < b.found.name ? -1 : 1));
    return answers.map(({ found }) => found);
}
