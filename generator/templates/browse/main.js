// The address, the search box with its answers, the keyboard and the colours.

const routes = {
    "": homePage,
    table: tablePage,
    action: actionPage,
    profile: profilePage,
    group: groupPage,
    field: fieldPage,
    family: familyPage,
    function: functionPage,
    functions: functionsPage,
    actions: actionsPage,
    fields: fieldsPage,
    picture: picturePage,
    decode: decodePage,
    find: homePage,
    ...Object.fromEntries(Object.keys(resourceKinds).map((kind) => [kind, resourcePage])),
};

const box = document.getElementById("query"),
    list = document.getElementById("answers"),
    page = document.getElementById("page");
const chosen = Object.fromEntries(Object.keys(facets).map((name) => [name, new Set()]));
const shownAnswers = 160; // all tables, when nothing is asked
let answers = [],
    active = -1,
    focusesHeading = false;

// ---- The address ------------------------------------------------------------------------------------------

function readAddress(hash) {
    const [path, query] = hash.slice(1).split(/\?(.*)/s);
    const [kind, name = "", part = ""] = path.split("/");
    let decoded = name;
    try {
        decoded = decodeURIComponent(name);
    } catch {
        decoded = "";
    }
    return { kind, name: decoded, part, query: new URLSearchParams(query ?? "") };
}

// Without leaving the page.
function replaceAddress(hash) {
    history.replaceState(null, "", hash);
}

function missingPage({ kind, name }) {
    return {
        title: "Not found",
        content: [
            heading("Not found", name || kind),
            el("p", {}, "Nothing has this name; the search box finds what is like it."),
        ],
    };
}

function showPage(hash) {
    const address = readAddress(hash);
    const made =
        (Object.hasOwn(routes, address.kind) && routes[address.kind](address.name, address.query)) ||
        missingPage(address);
    document.title = `${made.title} - ${catalogue.program}`;
    page.replaceChildren(...el("div", {}, made.content).childNodes);
    for (const item of document.querySelectorAll("nav.main a"))
        item.toggleAttribute("aria-current", item.getAttribute("href") === `#${address.kind}`);
    if (address.kind === "find") readSearch(address.query);
    else document.body.classList.remove("searching");
    if (focusesHeading) page.querySelector("h1").focus({ preventScroll: true });
    focusesHeading = false;
    const place = page.querySelector(`[id="${CSS.escape(address.part || address.name)}"]`);
    if (place) place.scrollIntoView();
    else window.scrollTo(0, 0);
}

// ---- The answers ------------------------------------------------------------------------------------------

// The words of the query, marked in a name.
function marked(name, words) {
    const lower = name.toLowerCase();
    const found = words
        .map((word) => [lower.indexOf(word), word.length])
        .filter(([at]) => at >= 0)
        .sort((a, b) => b[1] - a[1])[0];
    if (!found) return name;
    const [at, length] = found;
    return [name.slice(0, at), el("mark", {}, name.slice(at, at + length)), name.slice(at + length)];
}

function shownName({ kind, name, told }) {
    return kind === "group" ? told : kind === "function" ? (withoutPrefix(name)[0] ?? name) : name;
}

function answerItem(found, i, words) {
    return el(
        "a",
        {
            href: found.href,
            role: "option",
            id: `answer-${i}`,
            tabindex: -1,
            "aria-selected": "false",
            onclick: chooseAnswer,
        },
        el("span", { class: `badge kind-${found.kind}` }, found.kind.replace("_", " ")),
        " ",
        el("span", { class: "name" }, marked(shownName(found), words)),
        found.told && found.kind !== "group" && el("span", { class: "told" }, found.told.replaceAll("`", "")),
    );
}

function showAnswers() {
    const words = box.value.toLowerCase().split(/\s+/).filter(Boolean);
    answers = search(box.value, chosen);
    active = words.length && answers.length ? 0 : -1;
    list.replaceChildren(...answers.slice(0, shownAnswers).map((found, i) => answerItem(found, i, words)));
    const more = answers.length - shownAnswers;
    document.getElementById("count").textContent =
        count(answers.length, words.length ? "answer" : "table") +
        (more > 0 ? `, the first ${shownAnswers} shown` : "");
    document.getElementById("search-link").href = searchLink();
    markActive();
}

function markActive() {
    [...list.children].forEach((item, i) => item.setAttribute("aria-selected", `${i === active}`));
    if (active < 0) box.removeAttribute("aria-activedescendant");
    else box.setAttribute("aria-activedescendant", `answer-${active}`);
}

function move(step) {
    const last = list.childElementCount - 1;
    if (last < 0) return;
    active = active < 0 ? (step > 0 ? 0 : last) : Math.max(0, Math.min(last, active + step));
    markActive();
    list.children[active].scrollIntoView({ block: "nearest" });
}

// Also when the address stays the same.
function chooseAnswer() {
    document.body.classList.remove("searching");
}

function startSearching() {
    document.body.classList.add("searching");
    box.setAttribute("aria-expanded", "true");
}

function endSearching() {
    document.body.classList.remove("searching");
    box.setAttribute("aria-expanded", "false");
}

function searchLink() {
    const query = new URLSearchParams({ q: box.value });
    for (const [name, values] of Object.entries(chosen))
        for (const value of values) query.append(name, value);
    return `#find?${query}`;
}

function readSearch(query) {
    box.value = query.get("q") ?? "";
    for (const [name, values] of Object.entries(chosen)) {
        values.clear();
        for (const value of query.getAll(name)) values.add(value);
    }
    showFacets();
    showAnswers();
    startSearching();
}

// ---- Facets -----------------------------------------------------------------------------------------------

function facetValue(name, value, number) {
    const box_ = el("input", { type: "checkbox", name, value, checked: chosen[name].has(value) });
    box_.addEventListener("change", () => {
        chosen[name][box_.checked ? "add" : "delete"](value);
        showFacetState();
        showAnswers();
    });
    return el(
        "label",
        {},
        box_,
        " ",
        facets[name].text(value),
        " ",
        el("span", { class: "told" }, `${number}`),
    );
}

function showFacets() {
    document.getElementById("facets").replaceChildren(
        ...Object.entries(facets).map(([name, facet]) => {
            const numberOf = (value) =>
                catalogue.tables.filter((table) => facet.of(table).includes(value)).length;
            return el(
                "fieldset",
                {},
                el("legend", {}, facet.title),
                facet.values.map((value) => facetValue(name, value, numberOf(value))),
            );
        }),
    );
    showFacetState();
}

function showFacetState() {
    const number = Object.values(chosen).reduce((sum, values) => sum + values.size, 0);
    document.getElementById("facet-count").textContent = number ? `(${number})` : "";
}

// ---- Keyboard and colours ---------------------------------------------------------------------------------

const isTyping = (element) => element.matches("input, textarea, select");

document.addEventListener("keydown", (event) => {
    if (event.key !== "/" || isTyping(event.target) || event.ctrlKey || event.metaKey || event.altKey) return;
    event.preventDefault();
    box.focus();
    box.select();
});

const boxKeys = {
    ArrowDown: () => move(1),
    ArrowUp: () => move(-1),
    PageDown: () => move(10),
    PageUp: () => move(-10),
    Enter: () => {
        if (!list.children[active]) return;
        focusesHeading = true;
        list.children[active].click();
        endSearching();
        box.blur();
    },
    Escape: () => {
        if (box.value) {
            box.value = "";
            showAnswers();
        } else {
            endSearching();
            box.blur();
        }
    },
};

box.addEventListener("keydown", (event) => {
    if (!Object.hasOwn(boxKeys, event.key)) return;
    event.preventDefault();
    boxKeys[event.key]();
});
box.addEventListener("input", () => {
    startSearching();
    showAnswers();
});
box.addEventListener("focus", startSearching);
document.getElementById("close").addEventListener("click", endSearching);

// The head is as high as its lines.
function measureHead() {
    document.documentElement.style.setProperty("--top", `${document.querySelector(".top").offsetHeight}px`);
}

measureHead();
new ResizeObserver(measureHead).observe(document.querySelector(".top"));

// What is stored may be refused to a file; then the choice lasts as long as the page.
function stored(theme) {
    try {
        if (theme) localStorage.setItem("theme", theme);
        return localStorage.getItem("theme");
    } catch {
        return null;
    }
}

function isDark() {
    return (
        (document.documentElement.dataset.theme ??
            (matchMedia("(prefers-color-scheme: dark)").matches ? "dark" : "light")) === "dark"
    );
}

function showTheme() {
    document.getElementById("theme").textContent = isDark() ? "Light" : "Dark";
}

document.getElementById("theme").addEventListener("click", () => {
    document.documentElement.dataset.theme = isDark() ? "light" : "dark";
    stored(document.documentElement.dataset.theme);
    showTheme();
});
if (stored()) document.documentElement.dataset.theme = stored();
showTheme();
matchMedia("(prefers-color-scheme: dark)").addEventListener("change", showTheme);

window.addEventListener("hashchange", () => showPage(location.hash));
showFacets();
showAnswers();
showPage(location.hash);

// For who looks into the page from outside.
window.reference = {
    search,
    showPage,
    cExample,
    shellExample,
    decodeKey,
    decodeAction,
    layoutOf,
    maskBytes,
    tables,
    actions,
    functions: () => [...functions.values()].map(detailsOf),
};
