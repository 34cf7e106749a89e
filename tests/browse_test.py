#!/usr/bin/python3
"""Uses the reference page as a reader does, in headless Chromium, and holds what it shows against the library.

    tests/browse_test.py BUILD CC

Without Debian's chromium, chromium-driver and python3-selenium it is skipped (77); scripts/browse installs them first.
"""
import ipaddress, json, os, random, re, shutil, subprocess, sys, tempfile
from pathlib import Path

try:
    from selenium import webdriver
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
    from selenium.webdriver.support.wait import WebDriverWait
    assert shutil.which("chromium") and shutil.which("chromedriver")
except (ImportError, AssertionError):
    print("browse_test: NO chromium, chromium-driver AND python3-selenium HERE: the page IS NOT TESTED", file=sys.stderr)
    sys.exit(77)

ROOT, BUILD, CC = Path(__file__).resolve().parent.parent, Path(sys.argv[1]).resolve(), sys.argv[2]
REFERENCE = BUILD / "generated/reference"
PAGE = (REFERENCE / "index.html").as_uri()
CATALOGUE = json.loads((REFERENCE / "catalogue.json").read_text())
SEED = 20
failures = []


def expect(what, seen, wanted):
    if seen != wanted:
        failures.append(f"{what}: {seen!r} instead of {wanted!r}")


def eventually(browser, what, see, wanted):
    """For what the page does when it comes to it."""
    try:
        WebDriverWait(browser, 10).until(lambda _: see() == wanted)
    except Exception:
        expect(what, see(), wanted)


def start():
    options = webdriver.ChromeOptions()
    for word in ("--headless=new", "--disable-gpu", "--disable-dev-shm-usage", "--window-size=1300,900"):
        options.add_argument(word)
    if os.geteuid() == 0:
        options.add_argument("--no-sandbox")
    options.binary_location = shutil.which("chromium")
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    return webdriver.Chrome(options=options, service=webdriver.chrome.service.Service(shutil.which("chromedriver")))


def element(browser, selector):
    return browser.find_element(By.CSS_SELECTOR, selector)


def address(browser):
    return browser.execute_script("return decodeURIComponent(location.hash)")


def open_page(browser, address=""):
    browser.get("about:blank")
    browser.get(PAGE + address)


def shell(lines, *options, **variables):
    done = subprocess.run([BUILD / "bin/tessel-shell", *options, "-"], input="\n".join(lines) + "\n", capture_output=True,
                          text=True, env={**os.environ, **variables})
    expect("what the shell complains of", done.stderr, "")
    return done.stdout


# ---- Looking things up -------------------------------------------------------------------------------------------

def queries(browser):
    open_page(browser)
    box = element(browser, "#query")
    for line in (ROOT / "tests/browse_queries.txt").read_text().splitlines():
        if line.startswith("#"):
            continue
        query, wanted = line.split("=>")
        box.send_keys(Keys.CONTROL, "a")
        box.send_keys(query.strip())
        first = browser.execute_script("return document.querySelector('#answers a')?.getAttribute('href')")
        expect(f"'{query.strip()}'", browser.execute_script("return decodeURIComponent(arguments[0])", first), "#" + wanted.strip())


def keyboard(browser):
    open_page(browser)
    element(browser, "body").send_keys("/")
    box = browser.switch_to.active_element
    expect("what / goes to", box.get_attribute("id"), "query")
    box.send_keys("ipv4Host", Keys.ARROW_DOWN, Keys.ARROW_UP, Keys.ENTER)
    expect("Enter", address(browser), "#table/ipv4Host")
    eventually(browser, "what has the focus", lambda: browser.switch_to.active_element.tag_name, "h1")
    box.send_keys(Keys.ESCAPE)
    expect("Esc", box.get_attribute("value"), "")


def facets(browser):
    open_page(browser, "#find?q=&match=ternary&ageing=yes&group=l2&group=static_nat")
    shown = browser.execute_script("return [...document.querySelectorAll('#answers .name')].map((item) => item.textContent)")
    expect("facets", shown, [table["name"] for table in CATALOGUE["tables"] if table["match"] == "ternary" and
                             table["idle_time"] and table["group"] in ("l2", "static_nat")])
    element(browser, ".filters summary").click()
    element(browser, "input[name=ageing][value=yes]").click()
    expect("facets after a click", len(browser.find_elements(By.CSS_SELECTOR, "#answers a")), sum(
        table["match"] == "ternary" and table["group"] in ("l2", "static_nat") for table in CATALOGUE["tables"]))


def links(browser):
    """Follows every link of every page, and opens whatever the search finds. The address stays: a browser slows down who
    changes it often."""
    open_page(browser)
    browser.set_script_timeout(300)
    broken, number = browser.execute_script("""
        const broken = [], seen = new Set(), page = document.getElementById("page");
        const open = reference.search("e").concat(reference.search("a"), reference.search("")).map(({ href }) => href);
        open.push("#", ...[...document.querySelectorAll("a[href]")].map((item) => item.getAttribute("href")));
        while (open.length) {
            const href = open.pop();
            if (seen.has(href) || href === "#page")
                continue;
            seen.add(href);
            reference.showPage(href);
            const part = href.split("/")[2];
            if (page.querySelector(".kind").textContent === "Not found" || (part && !document.getElementById(part)))
                broken.push(href);
            open.push(...[...page.querySelectorAll("a[href]")].map((item) => item.getAttribute("href")));
        }
        return [broken, seen.size];""")
    expect("broken links", broken, [])
    expect("pages are reached", number > len(CATALOGUE["tables"]) + len(CATALOGUE["actions"]) + 7811, True)


# ---- What is told ------------------------------------------------------------------------------------------------

def functions(browser):
    told = {row["name"]: row for row in json.loads((REFERENCE / "functions.json").read_text())["functions"]}
    made = {row["name"]: row for row in browser.execute_script("return reference.functions()")}
    for row in made.values():
        for argument in row["arguments"]:
            del argument["id"]
    expect("functions", sorted(made), sorted(told))
    wrong = [name for name in told if made.get(name) != told[name]]
    expect("functions told otherwise than in functions.json", wrong[:5], [])


def number(text):
    """Of a value as the shell's JSON has it."""
    if isinstance(text, int):
        return text
    return int(text.replace(":", ""), 16) if re.fullmatch(r"(\w\w:){5}\w\w", text) else int(ipaddress.ip_address(text))


def compare(what, told, shown):
    """What the shell tells of an image, and the page's fields. Two halves of a MAC address are one for the shell."""
    fields = iter(shown)
    for name, form in told.items():
        form = form if isinstance(form, dict) else {"value": form}
        field = next(fields)
        if field["name"] != name:
            lower = next(fields)
            for word in ("value", "mask"):
                if field.get(word) is not None:
                    field[word] = f"{(int(field[word]) << 24) + int(lower[word])}"
        for word in ("value", "mask"):
            if word in form and field.get(word) is not None:
                expect(f"{what}: {word} of {name}", int(field[word]), number(form[word]))
        expect(f"{what}: length of {name}", field.get("length"), form.get("prefix_length"))


def decoder(browser):
    """Random images against the library's own reading of them."""
    chance = random.Random(SEED)
    digits = lambda size: chance.randbytes(size).hex()
    asked = []
    for table in CATALOGUE["tables"]:
        size = table["bytes"]
        masks = [digits(size), digits(size), "00" * size] if size else []
        if table["match"] == "lpm":  # the last bit that counts, wherever it is
            masks += [f"{1 << bit:0{2 * size}x}" for bit in range(8 * size)]
        asked += [("decodeKey", table["name"], [digits(size), mask, chance.randrange(1 << 16)]) for mask in masks]
    for action in CATALOGUE["actions"]:
        asked += [("decodeAction", action["name"], [digits(action["bytes"])])] * (action["bytes"] > 0)
    lines = [f"decode match {name} {rest[0]} {rest[1]} partition={rest[2]}" if call == "decodeKey" else
             f"decode action {name} {rest[0]}" for call, name, rest in asked]
    partitioned = {table["name"] for table in CATALOGUE["tables"] for row in table["key"] if row["partition_index"]}
    lines = [line if line.split()[2] in partitioned else re.sub(" partition=.*", "", line) for line in lines]
    told = [json.loads(line) for line in shell(lines, "--json").splitlines()]
    shown = browser.execute_script("""
        return arguments[0].map(([call, name, rest]) =>
            reference[call](reference[call === "decodeKey" ? "tables" : "actions"].get(name), ...rest)
                .map(({ name, value, mask, length }) => ({ name, value: value?.toString(), mask: mask?.toString(), length })));""",
        asked)
    for (_, name, rest), answer, fields in zip(asked, told, shown):
        compare(f"seed {SEED}, {name} {rest}", answer.get("key") or answer.get("parameters"), fields)


def decoder_page(browser):
    open_page(browser, "#decode")
    element(browser, "#decode-text").send_keys(
        "pipe_mgr_mat_ent_add(sess=0, table=0x100003d ipv4ShortMaskLpm, match={value=050a100000 mask=fffff00000 "
        "partition=0}, action=0x200000ae setNextHop, spec={data=00000007})")
    values = lambda: [item.text for item in browser.find_elements(By.CSS_SELECTOR, "#decoded output")]
    expect("a pasted line", values(), ["5", "10.16.0.0/12", "7"])
    expect("its address", address(browser),
           "#decode/ipv4ShortMaskLpm?value=050a100000&mask=fffff00000&action=setNextHop&data=00000007")
    browser.refresh()
    expect("the same by its address", values(), ["5", "10.16.0.0/12", "7"])
    open_page(browser, "#decode/setPhase0?data=006b00070000")
    expect("an action's image", values(), ["107", "7", "0", "0"])
    open_page(browser, "#decode/ipv4Host?value=0a1")
    expect("a short image", element(browser, "#decoded").text, "The value image has 3 digits; it takes 10, for 5 bytes")


# ---- Examples ----------------------------------------------------------------------------------------------------

def driver_calls(trace):
    return [re.sub(r"sess=\d+", "sess", line.strip()) for line in trace.splitlines() if line.strip().startswith("pipe_mgr_")]


def examples(browser):
    """Every program compiles and succeeds, and reaches the driver as the shell's lines do."""
    names = [table["name"] for table in CATALOGUE["tables"]]
    programs, lines = browser.execute_script("""
        const tables = arguments[0].map((name) => reference.tables.get(name));
        return [tables.map((table) => reference.cExample(table)), tables.map((table) => reference.shellExample(table))];""", names)
    source = "".join(program.replace("int main(void)", f"static int example_{i}(void)") for i, program in enumerate(programs))
    source += "int main(void)\n{\n" + "".join(f"    example_{i}();\n" for i in range(len(names))) + "    return 0;\n}\n"
    with tempfile.TemporaryDirectory() as folder:
        file, program = Path(folder) / "examples.c", Path(folder) / "examples"
        file.write_text(source)
        subprocess.run([CC, "-std=c11", "-Wall", "-Wextra", "-Wpedantic", "-Werror", file, "-o", program,
                        f"-I{ROOT}/bf_tessel_switch_nat_static/include", f"-I{BUILD}/generated/include", f"-L{BUILD}/lib",
                        f"-Wl,-rpath,{BUILD}/lib", "-lts_bf_pd_nat_static", "-ltessel_model"], check=True)
        done = subprocess.run([program], capture_output=True, text=True, check=True, env={
            **os.environ, "TESSEL_TAP": "trace", "LD_PRELOAD": str(BUILD / "lib/libtessel_tap.so")})
        printed = [line for line in done.stdout.splitlines() if line.startswith("status ")]
        for name, line in zip(names, printed, strict=True):
            expect(f"example of {name}", line.split(",")[0], "status 0")
        trace = Path(folder) / "trace"
        shell(lines, "--keep-going", TESSEL_TAP=f"trace:{trace}")
        calls = driver_calls(done.stdout + done.stderr)
        expect("driver calls of the shell's lines", driver_calls(trace.read_text()), calls)
    expect("driver calls", len(calls) >= len(names), True)
    masks = browser.execute_script("""
        return [...reference.tables.values()].filter(({ match }) => match === "exact" || match === "ternary").map((table) => [
            table.name, reference.layoutOf(table.key).flatMap((row) => reference.maskBytes(table, row))]);""")
    added = dict(re.findall(r"table=0x\w+ (\w+), match={value=\w+ mask=(\w+)", "\n".join(calls)))
    expect("the masks that the strips show", {name: bytes(mask).hex() for name, mask in masks},
           {name: added[name] for name, _ in masks})


# ---- Looks -------------------------------------------------------------------------------------------------------

def looks(browser):
    open_page(browser, "#table/trapToCpu")
    element(browser, "#example .copy").click()
    eventually(browser, "copying", lambda: element(browser, "#status").get_attribute("textContent"), "C example copied")
    before = browser.execute_script("return getComputedStyle(document.body).backgroundColor")
    element(browser, "#theme").click()
    after = browser.execute_script("return getComputedStyle(document.body).backgroundColor")
    expect("the colours change", before != after, True)
    browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                            {"width": 360, "height": 740, "deviceScaleFactor": 1, "mobile": True})
    for place in ("", "#table/trapToCpu", "#action/setNextHop", "#picture", "#decode", "#functions",
                  "#function/p4_pd_tessel_switch_ipv4Host_table_add_with_setNextHop", "#find?q=nat"):
        open_page(browser, place)
        width = browser.execute_script("return document.documentElement.scrollWidth")
        expect(f"the width of '{place}' on a telephone", width, 360)


def main():
    browser = start()
    try:
        for part in (queries, keyboard, facets, links, functions, decoder, decoder_page, examples, looks):
            part(browser)
            for entry in browser.get_log("browser"):
                failures.append(f"{part.__name__}: the console says: {entry['message']}")
    finally:
        browser.quit()
    print("\n".join(failures[:40]), file=sys.stderr)
    sys.exit(bool(failures))


main()
