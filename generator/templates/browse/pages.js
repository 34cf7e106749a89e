// The pages of actions, profiles, resources, fields and groups, and the first one.

function actionPage(name) {
    const action = actions.get(name);
    const serving = [...profiles.values()].filter((profile) =>
        profile.actions.some((row) => row.action === name),
    );
    return (
        action && {
            title: name,
            content: [
                heading("Action", name),
                facts([
                    ["Number", `${action.number}`],
                    ["Image", `${count(action.bytes, "byte")}, ${count(action.bits, "bit")} valid`],
                    [
                        "Of members in",
                        serving.length > 0 &&
                            separated(serving.map((profile) => link("profile", profile.name))),
                    ],
                ]),
                action.bytes > 0 &&
                    el("p", {}, el("a", { href: `#decode/${name}` }, "Decode an image of this action")),
                section("parameters", "Parameters", parameterList(action)),
                section(
                    "users",
                    `Used by ${count(action.uses.length, "table")}`,
                    dataTable(
                        `Tables with ${name}`,
                        ["Table", "Handle there", "As", "Purpose"],
                        action.uses.map(({ table, binding }) => [
                            link("table", table.name),
                            handleText(binding.handle),
                            bindingRoles(binding, table),
                            table.brief,
                        ]),
                    ),
                ),
                functionSection(`action/${name}`),
            ],
        }
    );
}

function profilePage(name) {
    const profile = profiles.get(name);
    return (
        profile && {
            title: name,
            content: [
                heading("Action profile", name),
                facts([
                    ["Serves", link("table", profile.table)],
                    ["Action data table", handleText(profile.action_table)],
                    ["Selector", handleText(profile.selector)],
                ]),
                section(
                    "actions",
                    "Actions of members",
                    dataTable(
                        `Actions of ${name}`,
                        ["Action", "Handle", "Parameters"],
                        profile.actions.map(({ action, handle }) => [
                            link("action", action),
                            handleText(handle),
                            actions
                                .get(action)
                                .parameters.map((row) => `${row.parameter} (${row.width})`)
                                .join(", "),
                        ]),
                    ),
                ),
                functionSection(`profile/${name}`),
            ],
        }
    );
}

function resourcePage(name) {
    const resource = resources.get(name);
    const direct = ["counter", "meter"].includes(resource?.kind) && resource.table;
    return (
        resource && {
            title: name,
            content: [
                heading(resourceKinds[resource.kind].text, name),
                facts([
                    ["Handle", handleText(resource.handle)],
                    [
                        "Cells",
                        resource.table !== undefined &&
                            (direct ? ["one for each entry of ", link("table", direct)] : "by index"),
                    ],
                    ["Input", resource.input],
                    ["Algorithm", resource.algorithm],
                ]),
                resource.fields &&
                    dataTable(
                        `Fields of ${name}`,
                        ["Field", "Offset", "Bytes"],
                        resource.fields.map((row) => [
                            el("code", {}, row.field),
                            `${row.offset}`,
                            `${row.bytes}`,
                        ]),
                    ),
                resource.tables.length > 0 &&
                    section("users", "Used by", tableList(resource.tables, `Tables with ${name}`)),
                functionSection(`${resource.kind}/${name}`),
            ],
        }
    );
}

function fieldPage(name) {
    const field = fields.get(name);
    return (
        field && {
            title: name,
            content: [
                heading("Key field", name),
                section(
                    "users",
                    `In the keys of ${count(field.uses.length, "table")}`,
                    dataTable(
                        `Tables with ${name}`,
                        ["Table", "Display", "Bits", "Match", "Format", "Bits in text"],
                        field.uses.map(({ table, field: row }) => [
                            link("table", table.name),
                            el("code", {}, row.display),
                            `${row.width}`,
                            badge(matchTexts[row.match], row.match),
                            row.format === "none" ? "" : row.format,
                            textMask(row),
                        ]),
                    ),
                ),
            ],
        }
    );
}

function groupPage(name) {
    const group = groups.get(name);
    return (
        group && {
            title: group.title,
            content: [
                heading("Group of tables", group.title),
                facts([
                    ["Header", el("code", {}, `pd_${name}.h`)],
                    ["Tables", `${group.tables.length}`],
                ]),
                tableList(group.tables, group.title),
            ],
        }
    );
}

function homePage() {
    const numbers = [
        [tables.size, "tables", "#find?q="],
        [actions.size, "actions", "#actions"],
        [fields.size, "key fields", "#fields"],
        [resources.size, "resources", "#picture"],
        [functions.size, "functions", "#functions"],
    ];
    return {
        title: "Reference",
        content: [
            heading("Reference", catalogue.program),
            el(
                "p",
                { class: "brief" },
                "Every table, action, field, resource and function of the program. Press ",
                el("kbd", {}, "/"),
                " and type a name, a part of one, or a handle in hex or decimal.",
            ),
            el(
                "p",
                { class: "numbers" },
                numbers.map(([number, text, href]) =>
                    el("a", { href }, el("strong", {}, number.toLocaleString("en")), ` ${text}`),
                ),
            ),
            [...groups.values()].map((group) =>
                section(
                    `group-${group.name}`,
                    link("group", group.name, group.title),
                    el(
                        "ul",
                        { class: "tables" },
                        group.tables.map((table) =>
                            el(
                                "li",
                                {},
                                link("table", table.name),
                                " ",
                                badge(matchTexts[table.match], table.match),
                                el("span", { class: "told" }, table.brief),
                            ),
                        ),
                    ),
                ),
            ),
        ],
    };
}

function actionsPage() {
    return {
        title: "Actions",
        content: [
            heading("Reference", "Actions"),
            dataTable(
                "Actions",
                ["Number", "Action", "Parameters", "Tables"],
                catalogue.actions.map((action) => [
                    `${action.number}`,
                    link("action", action.name),
                    action.parameters.map((row) => `${row.parameter} (${row.width})`).join(", "),
                    `${action.uses.length}`,
                ]),
            ),
        ],
    };
}

function fieldsPage() {
    return {
        title: "Key fields",
        content: [
            heading("Reference", "Key fields"),
            dataTable(
                "Key fields",
                ["Field", "Display", "Tables"],
                [...fields.values()]
                    .sort((a, b) => (a.name < b.name ? -1 : 1))
                    .map(({ name, display, uses }) => [
                        link("field", name),
                        el("code", {}, display),
                        `${uses.length}`,
                    ]),
            ),
        ],
    };
}
