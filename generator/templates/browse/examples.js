// An entry of each table as a program in C and as commands of the shell, with the same values in both.

// What fits the width and looks like what it is.
function exampleValue(row, place) {
    if (row.width === 128) return 0x20010db8000000000000000000000000n + BigInt(place);
    if (row.format === "v4addr" || row.match === "lpm") return 0x0a140000n;
    if (row.format === "mac") return place % 2 ? 0x005301n : 0x00005en;
    return BigInt(place + 1) & allOnes(row.width) || 1n;
}

const exampleLength = (row) => (row.width === 128 ? 32 : 16);

function exampleBinding(table) {
    const able = table.actions.filter(({ entry }) => isKeyless(table) || entry || table.profile);
    return able.find(({ action }) => actions.get(action).parameters.length) ?? able[0];
}

// ---- C ----------------------------------------------------------------------------------------------------

function cValue(value, width) {
    if (width !== 128) return value > 9n ? hexText(value) : `${value}`;
    const bytes = value.toString(16).padStart(32, "0").match(/../g);
    return `{${bytes.map((byte) => `0x${byte}`).join(", ")}}`;
}

function keyMembers(table) {
    return table.record_order.flatMap((name) => {
        const place = table.key.findIndex(({ field }) => field === name),
            row = table.key[place];
        const members = [`.${name} = ${cValue(exampleValue(row, place), row.width)}`];
        if (row.match === "ternary") members.push(`.${row.twin} = ${cValue(allOnes(row.width), row.width)}`);
        if (row.match === "lpm") members.push(`.${row.twin} = ${exampleLength(row)}`);
        return members;
    });
}

function cRecord(type, name, members) {
    return `    ${type} ${name} = {\n${members.map((member) => `        ${member},\n`).join("")}    };\n`;
}

function actionRecord(action) {
    if (!action.parameters.length) return "";
    return cRecord(
        actionWords.get(action.name).action_type,
        "parameters",
        action.parameters.map((row, i) => `.${row.member} = ${cValue(exampleValue(row, i), row.width)}`),
    );
}

// How each argument of the functions that the examples call is given.
const cArguments = {
    sess: "session",
    dev_tgt: "all_pipes",
    match_spec: "&key",
    priority: "10",
    action_spec: "&parameters",
    add_ttl: "300",
    add_meter: "&meter",
    default_meter: "&meter",
    new_entry_hdl: "&entry",
    default_entry_hdl: "&entry",
    target: "member",
    new_mbr: "&member",
};

function cCall(made) {
    return `${made.name}(${detailsOf(made)
        .arguments.map(({ id }) => cArguments[id])
        .join(", ")})`;
}

function madeBy(list, family, wanted = () => true) {
    return functionLists.get(list).find((made) => made.family.name === family && wanted(made.scope));
}

function cCalls(table, { action }) {
    const runs = (scope) => scope.action === action;
    if (table.profile) {
        const add = madeBy(`profile/${table.profile}`, "{prefix}_{profile}_add_member_with_{action}", runs);
        const refer = madeBy(
            `table/${table.name}`,
            "{prefix}_{table}_add_entry{suffix}",
            ({ target }) => target === "mbr",
        );
        return [cCall(add), cCall(refer)];
    }
    const family = isKeyless(table)
        ? "{prefix}_{table}_set_default_action_{action}"
        : "{prefix}_{table}_table_add_with_{action}";
    return [cCall(madeBy(`table/${table.name}`, family, runs))];
}

function cExample(table) {
    const binding = exampleBinding(table),
        calls = cCalls(table, binding),
        prefix = catalogue.prefix;
    const words = objectWords.table.find((row) => row.table === table.name);
    const meter = calls.some((call) => call.includes("&meter"));
    return (
        `#include <stdio.h>\n\n#include "pd.h"\n\nint main(void)\n{\n` +
        "    const pd_sess_hdl session = 1;\n" +
        "    const pd_dev_target all_pipes = {.device_id = 0, .pipe_id = 0xffff};\n" +
        (isKeyless(table) ? "" : cRecord(words.key_type, "key", keyMembers(table))) +
        actionRecord(actions.get(binding.action)) +
        (meter
            ? cRecord("pd_meter_spec", "meter", [
                  ".committed_rate = 1000",
                  ".committed_burst = 100",
                  ".peak_rate = 2000",
                  ".peak_burst = 200",
                  ".requested_meter_type = PD_METER_TYPE_COLOR_UNAWARE",
              ])
            : "") +
        (table.profile ? "    pd_mbr_hdl member = 0;\n" : "") +
        `    pd_entry_hdl entry = 0;\n    pd_status status;\n\n    ${prefix}_init();\n` +
        calls.map((call) => `    status = ${call};\n`).join(`    if (status == PD_STATUS_SUCCESS)\n    `) +
        `    printf("status %u, entry %u\\n", (unsigned)status, (unsigned)entry);\n` +
        `    return ${prefix}_cleanup() != PD_STATUS_SUCCESS;\n}\n`
    );
}

// ---- The shell --------------------------------------------------------------------------------------------

function shellKey(table) {
    return table.key
        .map((row, place) => {
            const value = valueText(exampleValue(row, place), row);
            return `${row.display}=${value}${row.match === "lpm" ? `/${exampleLength(row)}` : ""}`;
        })
        .concat(hasTernary(table) ? ["priority=10"] : [])
        .join(" ");
}

function shellAction(table, { action }) {
    const words = actions
        .get(action)
        .parameters.map((row, i) => `${row.parameter}=${valueText(exampleValue(row, i), row)}`);
    return [action, ...words].join(" ");
}

function shellExample(table) {
    const binding = exampleBinding(table),
        run = shellAction(table, binding);
    const meter = table.meter ? " meter=1000,100,2000,200,unaware" : "";
    if (table.profile)
        return `member add ${table.profile} one : ${run}\nadd ${table.name} ${shellKey(table)} : member one`;
    if (isKeyless(table)) return `default ${table.name} : ${run}${meter}`;
    return `add ${table.name} ${shellKey(table)} : ${run}${table.ttl_on_add ? " ttl=300" : ""}${meter}`;
}
