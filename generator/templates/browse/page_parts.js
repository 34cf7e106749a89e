// A page makes {title, content} for the name behind its word in the address. What pages have in common.

function heading(kind, name, ...beside) {
    return el(
        "header",
        { class: "head" },
        el("p", { class: "kind" }, kind),
        el("h1", { tabindex: -1 }, name, " ", beside),
    );
}

function facts(rows) {
    return el(
        "dl",
        { class: "facts" },
        rows
            .filter(([, value]) => value)
            .map(([name, value]) => el("div", {}, el("dt", {}, name), el("dd", {}, value))),
    );
}

const separated = (items) => items.flatMap((item, i) => (i ? [", ", item] : [item]));
