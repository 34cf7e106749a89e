// The library's functions, made from the rows of their families and the words of the objects.

const familyRows = JSON.parse(document.getElementById("families").textContent);
const objectWords = JSON.parse(document.getElementById("words").textContent);
const actionWords = new Map(objectWords.action.map((words) => [words.action, words]));

// An object's own word, and the kinds of what belongs to it.
const objectKinds = {
    table: { word: "table", parts: ["binding", "field", "reference"] },
    profile: { word: "profile", parts: ["member"] },
    action: { word: "action", parts: [] },
    ...Object.fromEntries(Object.keys(resourceKinds).map((kind) => [kind, { word: "name", parts: [] }])),
};

// A word is looked up in the innermost object, then in its action, then in its owner.
function scopeOf(owner, object) {
    return {
        prefix: catalogue.prefix,
        ...owner,
        ...(object?.action && actionWords.get(object.action)),
        ...object,
    };
}

function fill(text, scope) {
    return (text ?? "").replace(/\{(\w+)\}/g, (all, word) => scope[word] ?? "");
}

// The name alone: thousands are made at once, and the rest only of those that are looked at.
function makeFunction(family, over, object, kind, scope) {
    return { name: fill(family.name, scope), family, over, object, kind, scope };
}

function functionsOf(kind, owner) {
    const made = [];
    for (const { over, families } of familyRows.sections) {
        const parts =
            over === kind ? [undefined] : objectKinds[kind].parts.includes(over) ? (owner[over] ?? []) : [];
        for (const part of parts) {
            const scope = scopeOf(owner, part);
            for (const family of families)
                if ((family.when ?? []).every((predicate) => scope[predicate]))
                    made.push(makeFunction(family, over, owner[objectKinds[kind].word], kind, scope));
        }
    }
    return made;
}

function programFunctions() {
    const scope = scopeOf({});
    return familyRows.sections
        .filter(({ over }) => over === "program")
        .flatMap(({ families }) =>
            families.map((family) => makeFunction(family, "program", "", "program", scope)),
        );
}

const functionLists = new Map(
    Object.keys(objectKinds).flatMap((kind) =>
        objectWords[kind].map((owner) => [
            `${kind}/${owner[objectKinds[kind].word]}`,
            functionsOf(kind, owner),
        ]),
    ),
);
functionLists.set("program/", programFunctions());
const functions = new Map([...functionLists.values()].flat().map((made) => [made.name, made]));

const families = new Map();
for (const made of functions.values()) {
    if (!families.has(made.family.name))
        families.set(made.family.name, { name: made.family.name, over: made.over, functions: [] });
    families.get(made.family.name).functions.push(made);
}

// All that functions.json has of it, and the ids of the arguments.
function detailsOf({ name, family, over, object, scope }) {
    const args = (family.arguments ?? [])
        .map((id) => ({ id, ...familyRows.arguments[id] }))
        .filter(({ when }) => !when || scope[when])
        .map((row) => ({
            id: row.id,
            name: fill(row.name, scope),
            type: fill(row.type, scope),
            direction: row.out ? "out" : "in",
            unit: row.unit ?? "",
            text: fill(row.text, scope),
        }));
    return {
        name,
        family: family.name,
        over,
        object: object || catalogue.program,
        result: fill(family.result, scope),
        arguments: args,
        returns: fill(family.returns, scope),
        brief: fill(family.brief, scope),
    };
}

const declared = (type, name) => type + (type.endsWith("*") ? "" : " ") + name;

// On one line where it fits, else an argument a line.
function prototypeOf({ name, result, arguments: args }) {
    const parts = args.map((argument) => declared(argument.type, argument.name));
    const head = `${declared(result, name)}(`;
    const line = `${head}${parts.join(", ") || "void"});`;
    return line.length <= 100 ? line : `${head}\n    ${parts.join(",\n    ")});`;
}
