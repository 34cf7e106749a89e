// The page that tells the fields of an image: of a table's key or of an action's data.

// NAME=VALUE pairs of a line such as the tap's trace prints, and of plain hex, which is the value.
function readImageText(text) {
    const read = {};
    for (const [, name, value] of text.matchAll(/(\w+)=([^\s,{}()]+)/g))
        if (!(name in read)) read[name] = value;
    if (read.data === "-")
        // an action without parameters
        delete read.data;
    const names = text.match(/[A-Za-z_]\w*/g) ?? [];
    read.table = names.find((name) => tables.has(name) && !isKeyless(tables.get(name)));
    read.action = names.find((name) => actions.has(name));
    const bare = text.trim().match(/^(?:0x)?[0-9a-fA-F\s:_-]+$/);
    if (bare) read.value = bare[0];
    return read;
}

// What the address holds: the object and the images.
function decodeLink(of, images) {
    const query = Object.entries(images)
        .filter(([, value]) => value)
        .map(([name, value]) => `${name}=${encodeURIComponent(value)}`);
    return `#decode/${of}${query.length ? `?${query.join("&")}` : ""}`;
}

function macNote(decoded, i) {
    const [upper, lower] = [decoded[i], decoded[i + 1]];
    if (upper.row.format !== "mac" || lower?.row.format !== "mac") return "";
    const digits = [upper, lower].map(({ value }) => value.toString(16).padStart(6, "0")).join("");
    return ` (${digits.match(/../g).join(":")} with the next)`;
}

function keyResult(table, { value, mask, partition }) {
    const decoded = decodeKey(table, value, mask, partition);
    const images = {
        value: imageDigits(value, table.bytes, "value image"),
        mask: mask && imageDigits(mask, table.bytes, "mask image"),
    };
    const words = decoded.map((field) => `${field.name}=${matchText(field)}`).join(" ");
    return [
        keyStrip(table, images),
        dataTable(
            `Fields of ${table.name}`,
            ["", "Field", "Value", "Hex", "Bits that count"],
            decoded.map((field, i) => [
                `${i + 1}`,
                link("field", field.row.field, el("code", {}, field.name)),
                [el("output", {}, matchText(field)), macNote(decoded, i)],
                el("code", {}, hexText(field.value)),
                field.length !== undefined
                    ? `the first ${field.length}`
                    : field.mask === undefined
                      ? "all"
                      : el("code", {}, hexText(field.mask)),
            ]),
        ),
        el("p", {}, "As the shell's key:"),
        codeBlock(`${words}${hasTernary(table) ? " priority=10" : ""}`, "key"),
    ];
}

function actionResult(action, { data, value }) {
    const image = data || value;
    const decoded = decodeAction(action, image);
    return [
        actionStrip(action, imageDigits(image, action.bytes, "action image")),
        dataTable(
            `Parameters of ${action.name}`,
            ["", "Parameter", "Value", "Hex"],
            decoded.map(({ name, row, value: own }, i) => [
                `${i + 1}`,
                el("code", {}, name),
                own === undefined ? "goes with the resource" : el("output", {}, valueText(own, row)),
                own === undefined ? "" : el("code", {}, hexText(own)),
            ]),
        ),
    ];
}

// Where no table is named: those whose image has this length.
function candidates(images) {
    const image = (images.data || images.value).replace(/^0x/i, "").replace(/[\s:_-]/g, "");
    const bytes = count(image.length / 2, "byte");
    const rows = images.data ? catalogue.actions : catalogue.tables.filter((table) => !isKeyless(table));
    const fitting = rows.filter((row) => 2 * row.bytes === image.length);
    const found = count(fitting.length, images.data ? "action" : "table");
    const choice = ({ name }) => el("li", {}, el("a", { href: decodeLink(name, images) }, name));
    return [
        el(
            "p",
            {},
            fitting.length ? `${found} with ${bytes}; which is it?` : `Nothing has an image of ${bytes}.`,
        ),
        el("ul", { class: "choices" }, fitting.map(choice)),
    ];
}

// The key, and the action's data where a line has both.
function entryResult(table, images) {
    const action = actions.get(images.action);
    return [
        keyResult(table, images),
        action && images.data && [el("h2", {}, link("action", action.name)), actionResult(action, images)],
    ];
}

function decodeResult(of, images) {
    const table = tables.get(of),
        action = actions.get(of);
    if (!images.value && !images.data)
        return [table && !isKeyless(table) ? keyStrip(table) : action?.bytes ? actionStrip(action) : ""];
    try {
        if (table && images.value) return entryResult(table, images);
        return action ? actionResult(action, images) : candidates(images);
    } catch (error) {
        return [el("p", { class: "error", role: "alert" }, error.message)];
    }
}

const numberText = (text) => (/^(0x[0-9a-f]+|\d+)$/i.test(text ?? "") ? text : "");

// What of a line is shown: a trace of an entry has a key and an action.
function chooseParts({ table, action, value, mask, partition, data }, chosen, chosenFirst) {
    const of = (chosenFirst && chosen) || (value && table) || chosen || action || "";
    if (actions.has(of)) return { of, images: { data: data ?? value } };
    return {
        of,
        images: {
            value,
            mask,
            partition: partition === "0" ? "" : numberText(partition),
            action: data && action,
            data,
        },
    };
}

const knownName = (name) => (tables.has(name) || actions.has(name) ? name : "");

function imagesOf(query) {
    const images = Object.fromEntries(
        ["value", "mask", "partition", "action", "data"].map((word) => [word, query.get(word) ?? ""]),
    );
    return { ...images, partition: numberText(images.partition) };
}

function imageChooser(of) {
    const known = [
        ...catalogue.tables.filter((table) => !isKeyless(table)),
        ...catalogue.actions.filter((action) => action.bytes),
    ];
    const attributes = { id: "decode-of", list: "decode-names", autocomplete: "off", spellcheck: "false" };
    return [
        el("input", { ...attributes, value: of }),
        el(
            "datalist",
            { id: "decode-names" },
            known.map((row) => el("option", { value: row.name })),
        ),
    ];
}

function imageArea(images) {
    const placeholder =
        "value=050a100000 mask=fffff00000, data=00000007, plain hex, or a line of the tap's trace";
    const words = Object.entries(images).filter(([, text]) => text);
    return el(
        "textarea",
        { id: "decode-text", rows: 3, spellcheck: "false", placeholder },
        words.map(([word, text]) => `${word}=${text}`).join(" "),
    );
}

// Shows what stands in the form and makes it the address.
function decodeForm(chooser, area, chosenFirst) {
    const { of, images } = chooseParts(readImageText(area.value), knownName(chooser.value), chosenFirst);
    replaceAddress(decodeLink(of, images));
    if (of && !chosenFirst) chooser.value = of;
    const decoded = el("div", {}, decodeResult(of, images));
    document.getElementById("decoded").replaceChildren(...decoded.childNodes);
}

function decodePage(name, query) {
    const of = knownName(name),
        images = imagesOf(query);
    const [chooser, names] = imageChooser(of),
        area = imageArea(images);
    area.addEventListener("input", () => decodeForm(chooser, area, false));
    chooser.addEventListener("input", () => decodeForm(chooser, area, true));
    const form = [
        el("label", { for: "decode-of" }, "Table or action"),
        chooser,
        names,
        el("label", { for: "decode-text" }, "Image"),
        area,
    ];
    return {
        title: of ? `Decode ${of}` : "Decoder",
        content: [
            heading("Decoder", "Fields of an image"),
            el("div", { class: "form" }, form),
            of && el("p", {}, link(tables.has(of) ? "table" : "action", of)),
            el("div", { id: "decoded", "aria-live": "polite" }, decodeResult(of, images)),
        ],
    };
}
