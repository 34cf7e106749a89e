// The pages of functions and of their families.

function argumentTable(details) {
    return dataTable(
        `Arguments of ${details.name}`,
        ["Argument", "", "What it is"],
        details.arguments.map((argument) => [
            el("code", {}, declared(argument.type, argument.name)),
            argument.direction,
            [prose(argument.text), argument.unit && `; unit: ${argument.unit}`],
        ]),
    );
}

const objectTexts = {
    binding: "action of a table",
    field: "key field of a table",
    reference: "kind of target of an indirect table",
    member: "action of a profile",
    program: "program",
};
const objectText = (over) => objectTexts[over] ?? resourceKinds[over]?.text ?? over;

function functionBody(made) {
    const details = detailsOf(made);
    return [
        el("p", {}, prose(details.brief)),
        codeBlock(prototypeOf(details), "prototype"),
        details.arguments.length > 0 && argumentTable(details),
        details.returns && el("p", {}, el("strong", {}, "Returns "), prose(details.returns), "."),
    ];
}

// The body is made when it is opened: a table has a hundred of them.
function functionItem(made) {
    const item = el(
        "details",
        { class: "function", id: made.name },
        el(
            "summary",
            {},
            el("code", {}, withoutPrefix(made.name)[0] ?? made.name),
            " ",
            el("span", { class: "told" }, prose(fill(made.family.brief, made.scope))),
        ),
    );
    item.addEventListener("toggle", () => {
        if (item.open && item.childElementCount === 1)
            item.append(
                ...el(
                    "div",
                    {},
                    functionBody(made),
                    el(
                        "p",
                        {},
                        link("function", made.name, "Link to this function"),
                        ", ",
                        link("family", made.family.name, "its family"),
                    ),
                ).childNodes,
            );
    });
    return item;
}

function functionSection(list) {
    const made = functionLists.get(list);
    return section(
        "functions",
        count(made.length, "function"),
        el(
            "p",
            { class: "told" },
            "Names stand without ",
            el("code", {}, `${catalogue.prefix}_`),
            "; open one for its prototype.",
        ),
        made.map(functionItem),
    );
}

function ownerLink({ kind, object }) {
    return kind === "program" ? el("a", { href: "#functions" }, "the program") : link(kind, object);
}

function functionPage(name) {
    const made = functions.get(name);
    return (
        made && {
            title: name,
            content: [
                heading("Function", el("code", {}, name)),
                facts([
                    ["Of", [made.kind.replace("_", " "), " ", ownerLink(made)]],
                    ["Family", link("family", made.family.name)],
                    ["Header", el("code", {}, "pd.h")],
                ]),
                functionBody(made),
            ],
        }
    );
}

function familyPage(name) {
    const family = families.get(name);
    return (
        family && {
            title: name,
            content: [
                heading("Family of functions", el("code", {}, name)),
                el("p", {}, prose(family.functions[0].family.brief)),
                facts([
                    ["One for each", objectText(family.over)],
                    ["Functions", `${family.functions.length}`],
                ]),
                section(
                    "functions",
                    count(family.functions.length, "function"),
                    family.functions.map(functionItem),
                ),
            ],
        }
    );
}

function functionsPage() {
    return {
        title: "Functions",
        content: [
            heading("Library", "Families of functions"),
            el("p", {}, `${count(functions.size, "function")} in ${families.size} families.`),
            dataTable(
                "Families",
                ["Family", "One for each", "Functions"],
                [...families.values()].map((family) => [
                    link("family", family.name),
                    objectText(family.over),
                    `${family.functions.length}`,
                ]),
            ),
            functionSection("program/"),
        ],
    };
}
