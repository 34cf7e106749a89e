// The page of a table.

function resourceLink(name) {
    const resource = resources.get(name);
    return [link(resource.kind, name), " ", resource.handle];
}

function tableFacts(table) {
    return facts([
        ["Handle", handleText(table.handle)],
        ["Group", link("group", table.group, groups.get(table.group).title)],
        ["Image", !isKeyless(table) && `${count(table.bytes, "byte")}, ${count(table.bits, "bit")} valid`],
        [
            "Entries",
            isKeyless(table)
                ? "none: the default action always runs"
                : table.profile
                  ? ["point at members or groups of ", link("profile", table.profile)]
                  : [
                        hasTernary(table) && "ranked by priority; ",
                        table.ttl_on_add && "take a time to live; ",
                        table.idle_time ? "age" : "do not age",
                    ],
        ],
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
    const legend = ["exact", "ternary", "lpm"].filter((match) =>
        table.key.some((row) => row.match === match),
    );
    return section(
        "key",
        "Key",
        keyStrip(table),
        el(
            "p",
            { class: "legend" },
            legend.map((match) => badge(matchTexts[match], match)),
            badge("hatched: 0 by width", "spare"),
            badge("mask fixed", "fixed"),
            badge("mask from the caller", "given"),
        ),
        dataTable(
            `Key of ${table.name}`,
            [
                "",
                "Field",
                "Display",
                "Bits",
                "Match",
                "Byte",
                "Type",
                "Format",
                "Bits in text",
                ...(moved ? ["In record"] : []),
            ],
            layoutOf(table.key).map((row, i) => [
                `${i + 1}`,
                link("field", row.field),
                el("code", {}, row.display),
                `${row.width}`,
                [badge(matchTexts[row.match], row.match), row.partition_index && " partition word"],
                `${row.offset}`,
                el("code", {}, recordType(row)),
                row.format === "none" ? "" : row.format,
                textMask(row),
                ...(moved ? [`${place.get(row.field)}`] : []),
            ]),
        ),
    );
}

function parameterList(action) {
    if (!action.parameters.length) return el("p", { class: "told" }, "No parameters.");
    return [
        actionStrip(action),
        dataTable(
            `Parameters of ${action.name}`,
            ["", "Parameter", "Bits", "Type", "Format", ""],
            action.parameters.map((row, i) => [
                `${i + 1}`,
                el("code", {}, row.parameter),
                `${row.width}`,
                el("code", {}, row.type),
                row.format === "none" ? "" : row.format,
                row.index_of && [
                    "cell of ",
                    link(resources.get(row.index_of).kind, row.index_of),
                    !row.in_image && "; 0 in the image",
                ],
            ]),
        ),
    ];
}

const bindingRoles = (binding, table) => [
    binding.entry && !isKeyless(table) && badge("entries"),
    " ",
    binding.default && badge("default"),
];

function actionsSection(table) {
    return section(
        "actions",
        `${table.profile ? "Actions of the profile's members" : "Actions"}`,
        table.actions.map((binding) =>
            el(
                "article",
                { class: "card" },
                el("h3", {}, link("action", binding.action), " ", bindingRoles(binding, table)),
                el("p", { class: "told" }, "Handle ", handleText(binding.handle)),
                parameterList(actions.get(binding.action)),
            ),
        ),
    );
}

const labelTexts = {
    always: "always told",
    flag: "told as set or clear",
    number: "a number",
    v4addr: "an IPv4 address",
    v6addr: "an IPv6 address",
    mac: "a MAC address",
};

function labelSection(table) {
    return (
        table.labels.length > 0 &&
        section(
            "labels",
            "Labels",
            el("p", {}, "How the key of an entry is told in words; what it does not match on is left out."),
            dataTable(
                `Labels of ${table.name}`,
                ["Label", "Field", "Form", "Names"],
                table.labels.map((row) => [
                    row.text.trim(),
                    separated([row.field, row.second].filter(Boolean).map((name) => link("field", name))),
                    labelTexts[row.kind],
                    row.names.map(({ value, text }) =>
                        el("div", {}, el("code", {}, value), " ", text.trim()),
                    ),
                ]),
            ),
        )
    );
}

function exampleSection(table) {
    return section(
        "example",
        "Example",
        el("p", {}, "A program in C, with the library and any driver linked:"),
        codeBlock(cExample(table), "C example"),
        el("p", {}, "The same in ", el("code", {}, "tessel-shell"), ":"),
        codeBlock(shellExample(table), "shell line"),
    );
}

function tablePage(name) {
    const table = tables.get(name);
    return (
        table && {
            title: name,
            content: [
                heading("Table", name, badge(matchTexts[table.match], table.match)),
                el("p", { class: "brief" }, table.brief),
                tableFacts(table),
                !isKeyless(table) &&
                    el("p", {}, el("a", { href: `#decode/${name}` }, "Decode an image of this table")),
                el(
                    "nav",
                    { class: "on-page", "aria-label": "On this page" },
                    [
                        !isKeyless(table) && "key",
                        "actions",
                        table.labels.length > 0 && "labels",
                        "example",
                        "functions",
                    ]
                        .filter(Boolean)
                        .map((part) => el("a", { href: `#table/${name}/${part}` }, part)),
                ),
                !isKeyless(table) && keySection(table),
                actionsSection(table),
                labelSection(table),
                exampleSection(table),
                functionSection(`table/${name}`),
            ],
        }
    );
}

function tableList(list, caption) {
    return dataTable(
        caption,
        ["Table", "Handle", "Match", "Purpose"],
        list.map((table) => [
            link("table", table.name),
            el("code", {}, table.handle),
            badge(matchTexts[table.match], table.match),
            table.brief,
        ]),
    );
}
