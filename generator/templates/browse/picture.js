// What the groups of tables share: profiles and resources, as lines; actions and key fields, as a grid.

const chip = 15,
    boxWidth = 330,
    rightAt = 620,
    pictureWidth = 860;

// Tables that hang together with a resource or profile, by the place of their chip.
function groupBoxes() {
    let y = 10;
    return [...groups.values()].map((group) => {
        const perRow = Math.floor((boxWidth - 16) / (chip + 4)),
            rows = Math.ceil(group.tables.length / perRow);
        const box = { group, y, height: 26 + rows * (chip + 12), places: new Map() };
        group.tables.forEach((table, i) =>
            box.places.set(table.name, {
                x: 8 + (i % perRow) * (chip + 4),
                y: y + 24 + Math.floor(i / perRow) * (chip + 12),
            }),
        );
        y += box.height + 12;
        return box;
    });
}

function sharedThings() {
    return [
        ...catalogue.profiles.map(({ name, table }) => ({
            kind: "profile",
            name,
            users: [tables.get(table)],
        })),
        ...[...resources.values()].map(({ kind, name, tables: users, table }) => ({
            kind,
            name,
            users,
            how: table === "" ? "by index" : "direct",
        })),
    ];
}

// The order that keeps lines from crossing: by the middle of the users.
function middle({ users }, places) {
    return users.reduce((sum, { name }) => sum + places.get(name).y, 0) / users.length;
}

function chipOf(table, { x, y }) {
    return svg(
        "a",
        {
            href: hrefOf("table", table.name),
            class: `chip ${table.match}`,
            "data-table": table.name,
            "aria-label": `${table.name}, ${matchTexts[table.match]}`,
        },
        svg("title", {}, `${table.name}: ${table.brief}`),
        svg("rect", { x, y, width: chip, height: chip, rx: 3 }),
    );
}

function groupFrame({ group, y, height }) {
    return svg(
        "g",
        { class: "group-box" },
        svg("rect", { x: 2, y, width: boxWidth, height, rx: 6 }),
        svg("a", { href: hrefOf("group", group.name) }, svg("text", { x: 10, y: y + 16 }, group.title)),
    );
}

// Below the row of its table out of the box, then over to the other side.
function lineTo(table, place, y, how) {
    const start = `M${place.x + chip / 2},${place.y + chip}`;
    const lane = place.y + chip + 6,
        edge = boxWidth + 2,
        mid = (edge + rightAt) / 2;
    return svg("path", {
        class: `line ${how === "by index" ? "dashed" : ""}`,
        "data-table": table.name,
        d: `${start} V${lane} H${edge} C${mid},${lane} ${mid},${y} ${rightAt - 5},${y}`,
    });
}

function thingNode(thing, y, places) {
    const node = svg(
        "g",
        { class: `thing ${thing.kind}` },
        thing.users.map((table) => lineTo(table, places.get(table.name), y, thing.how)),
        svg(
            "a",
            { href: hrefOf(thing.kind, thing.name) },
            svg("circle", { cx: rightAt, cy: y, r: 5 }),
            svg("text", { x: rightAt + 12, y, "dominant-baseline": "central" }, thing.name),
        ),
    );
    for (const [event, on] of [
        ["mouseenter", true],
        ["focusin", true],
        ["mouseleave", false],
        ["focusout", false],
    ])
        node.addEventListener(event, () =>
            node.closest("svg").classList.toggle("pointing", node.classList.toggle("pointed", on)),
        );
    return node;
}

// Pointing at a table shows its lines.
function pointAtTables(drawing) {
    const show = (event, on) => {
        const table = event.target.closest(".chip")?.dataset.table;
        if (!table) return;
        drawing.classList.toggle("pointing", on);
        for (const line of drawing.querySelectorAll(`.line[data-table="${table}"]`))
            line.parentNode.classList.toggle("pointed", on);
    };
    for (const [event, on] of [
        ["mouseover", true],
        ["focusin", true],
        ["mouseout", false],
        ["focusout", false],
    ])
        drawing.addEventListener(event, (told) => show(told, on));
}

function resourcePicture() {
    const boxes = groupBoxes(),
        places = new Map(boxes.flatMap((box) => [...box.places]));
    const things = sharedThings()
        .filter(({ users }) => users.length)
        .sort((a, b) => middle(a, places) - middle(b, places));
    const last = boxes.at(-1),
        height = last.y + last.height + 10,
        step = height / (things.length + 1);
    const drawing = svg(
        "svg",
        {
            viewBox: `0 0 ${pictureWidth} ${height}`,
            class: "picture",
            role: "group",
            "aria-label":
                "Groups of tables on the left, profiles and resources on the right, lines between them",
        },
        boxes.map(groupFrame),
        things.map((thing, i) => thingNode(thing, step * (i + 1), places)),
        catalogue.tables.map((table) => chipOf(table, places.get(table.name))),
    );
    pointAtTables(drawing);
    return el("div", { class: "scroll" }, drawing);
}

function unattached() {
    const rows = Object.entries(resourceKinds).map(([kind, { text }]) => [
        `${text}s`,
        [...resources.values()].filter((row) => row.kind === kind && !row.tables.length),
    ]);
    return facts(
        rows.map(([text, list]) => [
            `Without a table: ${text}`,
            list.length > 0 && separated(list.map(({ name }) => link(list[0].kind, name))),
        ]),
    );
}

// ---- What two groups both have ----------------------------------------------------------------------------

function namesIn(group, of) {
    return new Set(group.tables.flatMap(of));
}

function sharedBy(first, second, of) {
    const names = namesIn(second, of);
    return [...namesIn(first, of)].filter((name) => names.has(name)).sort();
}

const actionNames = (table) => table.actions.map(({ action }) => action);
const fieldNames = (table) => table.key.map(({ field }) => field);

function gridCell(first, second, kind, most) {
    const shared = sharedBy(first, second, kind === "action" ? actionNames : fieldNames);
    if (!shared.length) return el("td", { class: "none" }, "·");
    const strength = Math.round(8 + (34 * shared.length) / most);
    const what = `${count(shared.length, kind)} in ${first.title} and ${second.title}`;
    return el(
        "td",
        {},
        el(
            "button",
            {
                type: "button",
                class: `shared ${kind}`,
                style: `--strength: ${strength}%`,
                "aria-label": what,
                title: `${what}: ${shared.join(", ")}`,
                onclick: () => tellShared(what, kind, shared),
            },
            `${shared.length}`,
        ),
    );
}

function mostShared(list, of) {
    return Math.max(
        ...list.flatMap((row, i) => list.slice(0, i).map((column) => sharedBy(row, column, of).length)),
    );
}

function tellShared(what, kind, shared) {
    document
        .getElementById("shared")
        .replaceChildren(el("h3", {}, what), el("p", {}, separated(shared.map((name) => link(kind, name)))));
}

function sharedGrid() {
    const list = [...groups.values()];
    const most = { action: mostShared(list, actionNames), field: mostShared(list, fieldNames) };
    const cell = (row, i, column, j) =>
        i === j
            ? el("td", { class: "self" })
            : gridCell(row, column, j > i ? "action" : "field", j > i ? most.action : most.field);
    return el(
        "div",
        { class: "scroll", tabindex: 0, role: "region", "aria-label": "What two groups share" },
        el(
            "table",
            { class: "grid" },
            el(
                "thead",
                {},
                el(
                    "tr",
                    {},
                    el("td", {}),
                    list.map((group) =>
                        el("th", { scope: "col" }, el("span", {}, link("group", group.name, group.title))),
                    ),
                ),
            ),
            el(
                "tbody",
                {},
                list.map((row, i) =>
                    el(
                        "tr",
                        {},
                        el("th", { scope: "row" }, link("group", row.name, row.title)),
                        list.map((column, j) => cell(row, i, column, j)),
                    ),
                ),
            ),
        ),
    );
}

function picturePage() {
    return {
        title: "Picture",
        content: [
            heading("Picture", "What the groups share"),
            section(
                "resources",
                "Profiles and resources",
                el(
                    "p",
                    {},
                    "A square is a table. Lines lead to the profile and the resources that belong to it: solid for a " +
                        "cell or member of each entry, dashed where an action's parameter is the index. Point at " +
                        "anything to see its lines alone.",
                ),
                el(
                    "p",
                    { class: "legend" },
                    Object.entries(matchTexts).map(([match, text]) => badge(text, match)),
                ),
                resourcePicture(),
                unattached(),
            ),
            section(
                "common",
                "Actions and key fields",
                el(
                    "p",
                    {},
                    "Above the diagonal: how many actions two groups both have; below it: key fields. Press a " +
                        "number to see which.",
                ),
                sharedGrid(),
                el(
                    "div",
                    { id: "shared", class: "card", "aria-live": "polite" },
                    el("p", { class: "told" }, "Nothing chosen yet."),
                ),
            ),
        ],
    };
}
