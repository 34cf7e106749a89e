// Making elements. Texts become text nodes, so nothing of the data is ever taken for markup.

function fillElement(element, attributes, children) {
    for (const [name, value] of Object.entries(attributes ?? {})) {
        if (name.startsWith("on")) element.addEventListener(name.slice(2), value);
        else if (value !== false && value !== undefined && value !== null)
            element.setAttribute(name, value === true ? "" : value);
    }
    element.append(
        ...children
            .flat(Infinity)
            .filter((child) => child !== undefined && child !== null && child !== false),
    );
    return element;
}

// el("a", {href: "#x"}, "text", element, [more])
function el(tag, attributes, ...children) {
    return fillElement(document.createElement(tag), attributes, children);
}

function svg(tag, attributes, ...children) {
    return fillElement(document.createElementNS("http://www.w3.org/2000/svg", tag), attributes, children);
}

// What stands in backquotes becomes code.
function prose(text) {
    return text.split("`").map((part, i) => (i % 2 ? el("code", {}, part) : part));
}

function link(kind, name, text) {
    return el("a", { href: hrefOf(kind, name) }, text ?? el("code", {}, name));
}

function badge(text, kind) {
    return el("span", { class: `badge ${kind ?? ""}` }, text);
}

function dataTable(caption, heads, rows) {
    return el(
        "div",
        { class: "scroll", tabindex: 0, role: "region", "aria-label": caption },
        el(
            "table",
            {},
            el(
                "thead",
                {},
                el(
                    "tr",
                    {},
                    heads.map((head) => el("th", { scope: "col" }, head)),
                ),
            ),
            el(
                "tbody",
                {},
                rows.map((row) =>
                    el(
                        "tr",
                        {},
                        row.map((cell) => el("td", {}, cell)),
                    ),
                ),
            ),
        ),
    );
}

// A file has no clipboard of its own in some browsers; then a selection is copied.
async function copyText(text) {
    try {
        await navigator.clipboard.writeText(text);
        return;
    } catch {
        const area = el("textarea", { class: "offscreen" });
        area.value = text;
        document.body.append(area);
        area.select();
        document.execCommand("copy");
        area.remove();
    }
}

function copyButton(text, what) {
    const button = el("button", { type: "button", class: "copy", "aria-label": `Copy ${what}` }, "Copy");
    button.addEventListener("click", async () => {
        await copyText(text);
        button.textContent = "Copied";
        document.getElementById("status").textContent = `${what} copied`;
        setTimeout(() => {
            button.textContent = "Copy";
        }, 1500);
    });
    return button;
}

function codeBlock(text, what) {
    return el(
        "div",
        { class: "code" },
        el("pre", { tabindex: 0 }, el("code", {}, text)),
        copyButton(text, what),
    );
}

function section(id, title, ...children) {
    return el(
        "section",
        { id, "aria-labelledby": `${id}-title` },
        el("h2", { id: `${id}-title` }, title),
        children,
    );
}
