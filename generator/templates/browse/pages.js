// The pages: each makes {title, content} for the name behind its word in the address.


function heading(kind, name, ...beside) {
    return el("header", { class: "head" }, el("p", { class: "kind" }, kind), el("h1", { tabindex: -1 }, name, " ", beside));
}

function facts(rows) {
    return el("dl", { class: "facts" }, rows.filter(([, value]) => value)
        .map(([name, value]) => el("div", {}, el("dt", {}, name), el("dd", {}, value))));
}

const separated = (items) => items.flatMap((item, i) => (i ? [", ", item] : [item]));

// ---- Functions ---------------------------------------------------------------------------------------------------

function argumentTable(details) {
    return dataTable(`Arguments of ${details.name}`, ["Argument", "", "What it is"], details.arguments.map((argument) => [
        el("code", {}, declared(argument.type, argument.name)), argument.direction,
        [prose(argument.text), argument.unit && `; unit: ${argument.unit}`]]));
}

const objectTexts = {
    binding: "action of a table", field: "key field of a table", reference: "kind of target of an indirect table",
    member: "action of a profile", program: "program",
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
    const item = el("details", { class: "function", id: made.name },
        el("summary", {}, el("code", {}, withoutPrefix(made.name)[0] ?? made.name), " ",
            el("span", { class: "told" }, prose(fill(made.family.brief, made.scope)))));
    item.addEventListener("toggle", () => {
        if (item.open && item.childElementCount === 1)
            item.append(...el("div", {}, functionBody(made), el("p", {}, link("function", made.name, "Link to this function"), ", ",
                link("family", made.family.name, "its family"))).childNodes);
    });
    return item;
}

function functionSection(list) {
    const made = functionLists.get(list);
    return section("functions", count(made.length, "function"),
        el("p", { class: "told" }, "Names stand without ", el("code", {}, `${catalogue.prefix}_`), "; open one for its prototype."),
        made.map(functionItem));
}

function ownerLink({ kind, object }) {
    return kind === "program" ? el("a", { href: "#functions" }, "the program") : link(kind, object);
}

function functionPage(name) {
    const made = functions.get(name);
    return made && {
        title: name,
        content: [heading("Function", el("code", {}, name)),
            facts([["Of", [made.kind.replace("_", " "), " ", ownerLink(made)]],
                ["Family", link("family", made.family.name)],
                ["Header", el("code", {}, "pd.h")]]),
            functionBody(made)],
    };
}

function familyPage(name) {
    const family = families.get(name);
    return family && {
        title: name,
        content: [heading("Family of functions", el("code", {}, name)),
            el("p", {}, prose(family.functions[0].family.brief)),
            facts([["One for each", objectText(family.over)], ["Functions", `${family.functions.length}`]]),
            section("functions", count(family.functions.length, "function"),
                family.functions.map(functionItem))],
    };
}

function functionsPage() {
    return {
        title: "Functions",
        content: [heading("Library", "Families of functions"),
            el("p", {}, `${count(functions.size, "function")} in ${count(families.size, "family").replace("familys", "families")}.`),
            dataTable("Families", ["Family", "One for each", "Functions"], [...families.values()].map((family) => [
                link("family", family.name), objectText(family.over), `${family.functions.length}`])),
            functionSection("program/")],
    };
}

// ---- Tables ------------------------------------------------------------------------------------------------------

function resourceLink(name) {
    const resource = resources.get(name);
    return [link(resource.kind, name), " ", resource.handle];
}

function tableFacts(table) {
    return facts([
        ["Handle", handleText(table.handle)],
        ["Group", link("group", table.group, groups.get(table.group).title)],
        ["Image", !isKeyless(table) && `${count(table.bytes, "byte")}, ${count(table.bits, "bit")} valid`],
        ["Entries", isKeyless(table) ? "none: the default action always runs"
            : table.profile ? ["point at members or groups of ", link("profile", table.profile)]
                : [hasTernary(table) && "ranked by priority; ", table.ttl_on_add && "take a time to live; ",
                    table.idle_time ? "age" : "do not age"]],
        ["Direct counter", table.counter && resourceLink(table.counter)],
        ["Direct meter", table.meter && resourceLink(table.meter)],
        ["By index", table.indexed_resource && resourceLink(table.indexed_resource)],
    ]);
}

const fullMask = ({ mask: [high, low] }) => (BigInt(high) << 64n) | BigInt(low);

function textMask(row) {
    return fullMask(row) === allOnes(row.width) ? "" : el("code", {}, hexText(fullMask(row)));
}

function recordType(row) {
    return row.type + (row.width === 128 ? "[16]" : "");
}

function keySection(table) {
    const place = new Map(table.record_order.map((name, i) => [name, i + 1]));
    const moved = table.record_order.some((name, i) => table.key[i].field !== name);
    const legend = ["exact", "ternary", "lpm"].filter((match) => table.key.some((row) => row.match === match));
    return section("key", "Key",
        keyStrip(table),
        el("p", { class: "legend" }, legend.map((match) => badge(matchTexts[match], match)),
            badge("hatched: 0 by width", "spare"), badge("mask fixed", "fixed"), badge("mask from the caller", "given")),
        dataTable(`Key of ${table.name}`,
            ["", "Field", "Display", "Bits", "Match", "Byte", "Type", "Format", "Bits in text", ...(moved ? ["In record"] : [])],
            layoutOf(table.key).map((row, i) => [
                `${i + 1}`, link("field", row.field), el("code", {}, row.display), `${row.width}`,
                [badge(matchTexts[row.match], row.match), row.partition_index && " partition word"], `${row.offset}`,
                el("code", {}, recordType(row)), row.format === "none" ? "" : row.format, textMask(row),
                ...(moved ? [`${place.get(row.field)}`] : [])])));
}

function parameterList(action) {
    if (!action.parameters.length)
        return el("p", { class: "told" }, "No parameters.");
    return [actionStrip(action), dataTable(`Parameters of ${action.name}`, ["", "Parameter", "Bits", "Type", "Format", ""],
        action.parameters.map((row, i) => [`${i + 1}`, el("code", {}, row.parameter), `${row.width}`, el("code", {}, row.type),
            row.format === "none" ? "" : row.format,
            row.index_of && ["cell of ", link(resources.get(row.index_of).kind, row.index_of), !row.in_image && "; 0 in the image"]]))];
}

const bindingRoles = (binding, table) => [binding.entry && !isKeyless(table) && badge("entries"), " ",
    binding.default && badge("default")];

function actionsSection(table) {
    return section("actions", `${table.profile ? "Actions of the profile's members" : "Actions"}`,
        table.actions.map((binding) => el("article", { class: "card" },
            el("h3", {}, link("action", binding.action), " ", bindingRoles(binding, table)),
            el("p", { class: "told" }, "Handle ", handleText(binding.handle)),
            parameterList(actions.get(binding.action)))));
}

const labelTexts = {
    always: "always told", flag: "told as set or clear", number: "a number", v4addr: "an IPv4 address", v6addr: "an IPv6 address",
    mac: "a MAC address",
};

function labelSection(table) {
    return table.labels.length > 0 && section("labels", "Labels",
        el("p", {}, "How the key of an entry is told in words, item by item; what an entry does not match on is left out."),
        dataTable(`Labels of ${table.name}`, ["Label", "Field", "Form", "Names"], table.labels.map((row) => [
            row.text.trim(), separated([row.field, row.second].filter(Boolean).map((name) => link("field", name))),
            labelTexts[row.kind], row.names.map(({ value, text }) => el("div", {}, el("code", {}, value), " ", text.trim()))])));
}

function exampleSection(table) {
    return section("example", "Example",
        el("p", {}, "A program in C, with the library and any driver linked:"), codeBlock(cExample(table), "C example"),
        el("p", {}, "The same in ", el("code", {}, "tessel-shell"), ":"), codeBlock(shellExample(table), "shell line"));
}

function tablePage(name) {
    const table = tables.get(name);
    return table && {
        title: name,
        content: [heading("Table", name, badge(matchTexts[table.match], table.match)),
            el("p", { class: "brief" }, table.brief), tableFacts(table),
            !isKeyless(table) && el("p", {}, el("a", { href: `#decode/${name}` }, "Decode an image of this table")),
            el("nav", { class: "on-page", "aria-label": "On this page" },
                [!isKeyless(table) && "key", "actions", table.labels.length > 0 && "labels", "example", "functions"].filter(Boolean)
                    .map((part) => el("a", { href: `#table/${name}/${part}` }, part))),
            !isKeyless(table) && keySection(table), actionsSection(table), labelSection(table), exampleSection(table),
            functionSection(`table/${name}`)],
    };
}

function tableList(list, caption) {
    return dataTable(caption, ["Table", "Handle", "Match", "Purpose"], list.map((table) => [
        link("table", table.name), el("code", {}, table.handle), badge(matchTexts[table.match], table.match), table.brief]));
}

// ---- The others --------------------------------------------------------------------------------------------------

function actionPage(name) {
    const action = actions.get(name);
    const serving = [...profiles.values()].filter((profile) => profile.actions.some((row) => row.action === name));
    return action && {
        title: name,
        content: [heading("Action", name),
            facts([["Number", `${action.number}`],
                ["Image", `${count(action.bytes, "byte")}, ${count(action.bits, "bit")} valid`],
                ["Of members in", serving.length > 0 && separated(serving.map((profile) => link("profile", profile.name)))]]),
            action.bytes > 0 && el("p", {}, el("a", { href: `#decode/${name}` }, "Decode an image of this action")),
            section("parameters", "Parameters", parameterList(action)),
            section("users", `Used by ${count(action.uses.length, "table")}`,
                dataTable(`Tables with ${name}`, ["Table", "Handle there", "As", "Purpose"], action.uses.map(({ table, binding }) => [
                    link("table", table.name), handleText(binding.handle), bindingRoles(binding, table), table.brief]))),
            functionSection(`action/${name}`)],
    };
}

function profilePage(name) {
    const profile = profiles.get(name);
    return profile && {
        title: name,
        content: [heading("Action profile", name),
            facts([["Serves", link("table", profile.table)], ["Action data table", handleText(profile.action_table)],
                ["Selector", handleText(profile.selector)]]),
            section("actions", "Actions of members", dataTable(`Actions of ${name}`, ["Action", "Handle", "Parameters"],
                profile.actions.map(({ action, handle }) => [link("action", action), handleText(handle),
                    actions.get(action).parameters.map((row) => `${row.parameter} (${row.width})`).join(", ")]))),
            functionSection(`profile/${name}`)],
    };
}

function resourcePage(name) {
    const resource = resources.get(name);
    const direct = ["counter", "meter"].includes(resource?.kind) && resource.table;
    return resource && {
        title: name,
        content: [heading(resourceKinds[resource.kind].text, name),
            facts([["Handle", handleText(resource.handle)],
                ["Cells", resource.table !== undefined && (direct ? ["one for each entry of ", link("table", direct)] : "by index")],
                ["Input", resource.input], ["Algorithm", resource.algorithm]]),
            resource.fields && dataTable(`Fields of ${name}`, ["Field", "Offset", "Bytes"],
                resource.fields.map((row) => [el("code", {}, row.field), `${row.offset}`, `${row.bytes}`])),
            resource.tables.length > 0 && section("users", "Used by", tableList(resource.tables, `Tables with ${name}`)),
            functionSection(`${resource.kind}/${name}`)],
    };
}

function fieldPage(name) {
    const field = fields.get(name);
    return field && {
        title: name,
        content: [heading("Key field", name),
            section("users", `In the keys of ${count(field.uses.length, "table")}`,
                dataTable(`Tables with ${name}`, ["Table", "Display", "Bits", "Match", "Format", "Bits in text"],
                    field.uses.map(({ table, field: row }) => [link("table", table.name), el("code", {}, row.display), `${row.width}`,
                        badge(matchTexts[row.match], row.match), row.format === "none" ? "" : row.format, textMask(row)])))],
    };
}

function groupPage(name) {
    const group = groups.get(name);
    return group && {
        title: group.title,
        content: [heading("Group of tables", group.title),
            facts([["Header", el("code", {}, `pd_${name}.h`)], ["Tables", `${group.tables.length}`]]),
            tableList(group.tables, group.title)],
    };
}

function homePage() {
    const numbers = [[tables.size, "tables", "#find?q="], [actions.size, "actions", "#actions"], [fields.size, "key fields", "#fields"],
        [resources.size, "resources", "#picture"], [functions.size, "functions", "#functions"]];
    return {
        title: "Reference",
        content: [heading("Reference", catalogue.program),
            el("p", { class: "brief" }, "Every table, action, field, resource and function of the program. Press ", el("kbd", {}, "/"),
                " and type a name, a part of one, or a handle in hex or decimal."),
            el("p", { class: "numbers" }, numbers.map(([number, text, href]) =>
                el("a", { href }, el("strong", {}, number.toLocaleString("en")), ` ${text}`))),
            [...groups.values()].map((group) => section(`group-${group.name}`, link("group", group.name, group.title),
                el("ul", { class: "tables" }, group.tables.map((table) => el("li", {}, link("table", table.name), " ",
                    badge(matchTexts[table.match], table.match), el("span", { class: "told" }, table.brief))))))],
    };
}

function actionsPage() {
    return {
        title: "Actions",
        content: [heading("Reference", "Actions"), dataTable("Actions", ["Number", "Action", "Parameters", "Tables"],
            catalogue.actions.map((action) => [`${action.number}`, link("action", action.name),
                action.parameters.map((row) => `${row.parameter} (${row.width})`).join(", "), `${action.uses.length}`]))],
    };
}

function fieldsPage() {
    return {
        title: "Key fields",
        content: [heading("Reference", "Key fields"), dataTable("Key fields", ["Field", "Display", "Tables"],
            [...fields.values()].sort((a, b) => (a.name < b.name ? -1 : 1)).map(({ name, display, uses }) => [
                link("field", name), el("code", {}, display), `${uses.length}`]))],
    };
}
