// Images: how a record's values lie in the bytes that reach the chip, and back.

const bytesOf = (width) => Math.ceil(width / 8);
const allOnes = (width) => (1n << BigInt(width)) - 1n;

// Each field or parameter with its place.
function layoutOf(rows) {
    let offset = 0;
    return rows.map((row) => {
        const placed = { ...row, name: row.display ?? row.parameter, offset, bytes: bytesOf(row.width) };
        offset += placed.bytes;
        return placed;
    });
}

// The digits of an image, which may stand in groups; throws a text that says what is wrong.
function imageDigits(text, bytes, what) {
    const digits = text
        .replace(/^0x/i, "")
        .replace(/[\s:_-]/g, "")
        .toLowerCase();
    if (/[^0-9a-f]/.test(digits))
        throw Error(`The ${what} holds something that is no hex digit: ${digits.match(/[^0-9a-f]/)[0]}`);
    if (digits.length !== 2 * bytes) {
        const has = count(digits.length, "digit");
        throw Error(`The ${what} has ${has}; it takes ${2 * bytes}, for ${count(bytes, "byte")}`);
    }
    return digits;
}

function valueAt(digits, { offset, bytes }) {
    return BigInt(`0x${digits.slice(2 * offset, 2 * (offset + bytes))}`);
}

// The length that the lowest set bit of a mask tells.
function prefixLength(mask, width) {
    for (let zeros = 0; zeros < width; ++zeros) if ((mask >> BigInt(zeros)) & 1n) return width - zeros;
    return 0;
}

// The fields of a key: {name, row, value, mask or length}. Without a mask all bits count. The partition word
// holds what stands in no image.
function decodeKey(table, value, mask, partition) {
    const size = table.bytes;
    const digits = imageDigits(value, size, "value image");
    const maskDigits = mask ? imageDigits(mask, size, "mask image") : "";
    return layoutOf(table.key).map((row) => {
        const field = { name: row.name, row };
        field.value = row.partition_index ? BigInt(partition ?? 0) & 0xffffn : valueAt(digits, row);
        const bits = maskDigits ? valueAt(maskDigits, row) : allOnes(row.width);
        if (row.match === "ternary") field.mask = bits;
        else if (row.match === "lpm") field.length = prefixLength(bits, row.width);
        return field;
    });
}

// An index that only the resource record holds has no value here.
function decodeAction(action, data) {
    const digits = imageDigits(data, action.bytes, "action image");
    return layoutOf(action.parameters).map((row) => ({
        name: row.name,
        row,
        value: row.in_image ? valueAt(digits, row) : undefined,
    }));
}

// What the mask image can hold of a field at most, by byte: only a ternary key is cut off at the width of its
// fields.
function maskBytes(table, row) {
    const first = hasTernary(table) && row.width % 8 ? (1 << (row.width % 8)) - 1 : 0xff;
    return Array.from({ length: row.bytes }, (_, i) => (row.partition_index ? 0 : i === 0 ? first : 0xff));
}

// ---- As people write values -------------------------------------------------------------------------------

const hexText = (value) => `0x${value.toString(16)}`;

function v6Text(value) {
    const words = Array.from({ length: 8 }, (_, i) => (value >> BigInt(112 - 16 * i)) & 0xffffn);
    const text = words.map((word) => word.toString(16)).join(":");
    const zeros = [...text.matchAll(/(?:^|:)0(?::0)+(?=:|$)/g)].sort((a, b) => b[0].length - a[0].length)[0];
    if (!zeros) return text;
    const before = text.slice(0, zeros.index),
        after = text.slice(zeros.index + zeros[0].length);
    return `${before}::${after.replace(/^:/, "")}`;
}

function v4Text(value) {
    return [24n, 16n, 8n, 0n].map((shift) => (value >> shift) & 0xffn).join(".");
}

function valueText(value, { format, width }) {
    if (width === 128) return v6Text(value);
    if (format === "v4addr" && value < 1n << 32n) return v4Text(value);
    return format === "mac" ? `0x${value.toString(16).padStart(6, "0")}` : value.toString();
}

// As the shell takes a field: value, value&mask, value/length.
function matchText({ value, mask, length, row }) {
    if (mask === 0n) return "any";
    const text = valueText(value, row);
    if (length !== undefined) return `${text}/${length}`;
    return mask === undefined || mask === allOnes(row.width)
        ? text
        : `${text}&${row.format === "none" || row.format === "dec" ? hexText(mask) : valueText(mask, row)}`;
}
