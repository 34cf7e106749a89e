// An image as a strip of bits, to scale. A field takes whole bytes; what its width leaves over is hatched.

const stripRow = 34,
    stripGap = 8,
    stripLeft = 54;

function byteUnit(bytes) {
    return Math.max(18, Math.min(48, Math.floor(800 / Math.max(bytes, 1))));
}

function stripText(x, y, text, attributes) {
    return svg(
        "text",
        { x, y, "text-anchor": "middle", "dominant-baseline": "central", ...attributes },
        text,
    );
}

// Its name where there is room, else its number in the list, beside the bits where these are too few.
function fieldLabel(row, number, x, y, spare, width) {
    const own = width - spare,
        wide = (text) => text.length * 7.5 + 4;
    const [text, left, room] =
        wide(row.name) <= own
            ? [row.name, spare, own]
            : wide(`${number}`) <= own
              ? [number, spare, own]
              : [row.width ? number : "0", 0, width];
    return stripText(x + left + room / 2, y + stripRow / 2, `${text}`, {
        class: room === own ? "" : "beside",
    });
}

function fieldBlock(row, number, x, y, unit, title) {
    const width = row.bytes * unit,
        spare = ((row.bytes * 8 - row.width) * unit) / 8;
    return svg(
        "g",
        { class: `field ${row.match ?? "parameter"}` },
        svg("title", {}, title),
        svg("rect", { class: "spare", x, y, width, height: stripRow }),
        svg("rect", { class: "bits", x: x + spare, y, width: width - spare, height: stripRow }),
        svg("rect", { class: "frame", x, y, width, height: stripRow }),
        fieldLabel(row, number, x, y, spare, width),
    );
}

function byteCells(bytes, x, y, unit, kind) {
    return bytes.map((byte, i) =>
        svg(
            "g",
            { class: `byte ${kind}` },
            svg("rect", { x: x + i * unit, y, width: unit, height: stripRow - 8 }),
            stripText(x + (i + 0.5) * unit, y + (stripRow - 8) / 2, byte.toString(16).padStart(2, "0")),
        ),
    );
}

const rowName = (y, text) =>
    svg("text", { class: "row-name", x: 0, y, "dominant-baseline": "central" }, text);

function offsets(bytes, unit) {
    return Array.from({ length: bytes }, (_, i) =>
        stripText(stripLeft + (i + 0.5) * unit, 8, `${i}`, { class: "offset" }),
    );
}

function strip(title, bytes, unit, height, children) {
    const width = stripLeft + bytes * unit + 2;
    return el(
        "div",
        { class: "scroll strip", tabindex: 0, role: "region", "aria-label": title },
        svg(
            "svg",
            { width, height, viewBox: `0 0 ${width} ${height}`, role: "img", "aria-label": title },
            children,
        ),
    );
}

const bytesIn = (digits) => (digits.match(/../g) ?? []).map((pair) => parseInt(pair, 16));

// How a mask byte came about, for the colour: the caller's, by mask or prefix length, or fixed by the rule.
const maskKind = (row) => (row.partition_index || row.match === "exact" ? "fixed" : "given");

// `images` holds digits of a value and mask that are shown; without, the mask row has the most it can hold.
function keyStrip(table, images) {
    const layout = layoutOf(table.key),
        partition = layout.find((row) => row.partition_index);
    const unit = byteUnit(table.bytes),
        top = 20;
    const parts = [offsets(table.bytes, unit), rowName(top + stripRow / 2, "value")];
    layout.forEach((row, i) => {
        const x = stripLeft + row.offset * unit;
        const told = `${row.name}: ${count(row.width, "bit")} in ${count(row.bytes, "byte")}, ${row.match}`;
        const shown = row.partition_index ? { ...row, width: 0 } : row;
        parts.push(fieldBlock(shown, i + 1, x, top, unit, row.partition_index ? `${told}: 0 here` : told));
    });
    let y = top + stripRow + stripGap;
    if (images) {
        parts.push(byteCells(bytesIn(images.value), stripLeft, y, unit, "given"));
        y += stripRow;
    }
    parts.push(rowName(y + (stripRow - 8) / 2, "mask"));
    for (const row of layout) {
        const own = images?.mask
            ? bytesIn(images.mask).slice(row.offset, row.offset + row.bytes)
            : maskBytes(table, row);
        parts.push(byteCells(own, stripLeft + row.offset * unit, y, unit, maskKind(row)));
    }
    y += stripRow;
    if (partition) {
        y += stripGap;
        parts.push(
            rowName(y + stripRow / 2, "word"),
            svg(
                "g",
                { class: "field word" },
                svg("rect", { class: "spare", x: stripLeft, y, width: 2 * unit, height: stripRow }),
            ),
            fieldBlock(
                partition,
                layout.indexOf(partition) + 1,
                stripLeft + 2 * unit,
                y,
                unit,
                `partition word, 32 bits: ${partition.name} in its low ${partition.width}`,
            ),
        );
        y += stripRow + stripGap;
    }
    return strip(`Key image of ${table.name}`, Math.max(table.bytes, partition ? 4 : 0), unit, y, parts);
}

function actionStrip(action, digits) {
    const unit = byteUnit(action.bytes),
        top = 20;
    const parts = [offsets(action.bytes, unit), rowName(top + stripRow / 2, "data")];
    layoutOf(action.parameters).forEach((row, i) => {
        const told = `${row.name}: ${count(row.width, "bit")} in ${count(row.bytes, "byte")}`;
        parts.push(
            fieldBlock(
                row.in_image ? row : { ...row, width: 0 },
                i + 1,
                stripLeft + row.offset * unit,
                top,
                unit,
                row.in_image ? told : `${told}, 0: the index goes with the resource`,
            ),
        );
    });
    if (digits) parts.push(byteCells(bytesIn(digits), stripLeft, top + stripRow + stripGap, unit, "given"));
    return strip(
        `Action image of ${action.name}`,
        action.bytes,
        unit,
        top + stripRow + (digits ? 48 : stripGap),
        parts,
    );
}
