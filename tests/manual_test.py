#!/usr/bin/env python3
"""Runs what the manual shows, and compares what it shows of the output.

    tests/manual_test.py [--renew] BUILD [FILE...]

An indented block that begins with a command of the shell is carried out, and the lines below each command must be what
it prints, but for indentation and empty lines. A block without any output only has to run. One that begins with a
program that is there without building (see PROGRAMS) is given to sh, in a folder that looks like the root of the tree,
and must succeed. Whatever needs context has a comment in front, which the reader does not see:

    <!-- shell goes on             the session of the block before goes on
    COMMAND                        carried out first
    -->
    <!-- shell after FILE -->      the commands stand in this file, in this order
    <!-- output goes on            the whole block is what the commands here print; without any, what the block before
    COMMAND                        printed
    -->
    <!-- output wrapped -->        the same, but lines are broken for reading
    <!-- not run: REASON -->       nothing is tried

--renew writes into the files what is printed.
"""
import re, subprocess, sys, tempfile, textwrap
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PROGRAMS = re.compile(r"(TESSEL_TAP=\S+ )?(gcc|time|tessel-shell|examples/\w+)\s[^[]*$|\(cat ")
BLOCK = re.compile(r"^(?:<!-- ((?:shell|output|not run)\b[^>]*?)-->\n\n?)?((?:(?:    .*)?\n)*    .*\n)", re.M)
failures = 0


def fail(place, message):
    global failures
    failures += 1
    print(f"{place}: {message}", file=sys.stderr)


def commands_of(text):
    """Commands, each with the lines that continue it, without comments and empty lines."""
    lines = re.findall(r"(?:.*\\\n)*.*\n", text.rstrip("\n") + "\n")
    return [line.rstrip("\n") for line in lines if line.strip() and not line.lstrip().startswith("#")]


class Shell:
    def __init__(self, program):
        self.program = program
        self.words = set(re.findall(r"^  (\w+)", self.run(["help"])[0], re.M))

    def run(self, commands):
        """What each command prints, what it complains of included."""
        script = "".join(f"{command}\necho @@\n" for command in commands)
        done = subprocess.run([self.program, "--keep-going", "-"], input=script, capture_output=True, text=True,
                              cwd=ROOT)
        printed = done.stdout.split("@@\n")[:len(commands)]
        first_lines = [1]
        for command in commands:
            first_lines.append(first_lines[-1] + command.count("\n") + 2)
        for line, rest in re.findall(r"^<stdin>:(\d+):(.*\n)", done.stderr, re.M):
            at = max(i for i, first in enumerate(first_lines) if first <= int(line))
            printed[at] += "FILE:LINE:" + rest
        return printed

    def is_command(self, line):
        word = re.match(r"(\w+)(?: \S|$)(?!\w*:)", line)
        return bool(word) and word[1] in self.words and not re.match(r"entry \w+:", line)


def plain(text, wrapped=False):
    text = re.sub(r"^\S+?:\d+:(?=\d+: )", "FILE:LINE:", text, flags=re.M)
    lines = [line.rstrip() for line in text.splitlines() if line.strip()]
    return "".join(text.split()) if wrapped else textwrap.dedent("\n".join(lines))


def parts_of(shell, block):
    """The block as pairs of a command and what is shown below it."""
    parts = []
    for line in re.findall(r"(?:.*\\\n)*.*\n", block):
        if shell.is_command(line):
            parts.append([line.rstrip("\n"), ""])
        elif parts and not line.startswith("#"):
            parts[-1][1] += line
    return parts


def expect(place, what, shown, printed, wrapped=False):
    if plain(shown, wrapped) != plain(printed, wrapped):
        fail(place, f"{what}\n shown:\n{textwrap.indent(shown, '    ')} printed:\n{textwrap.indent(printed, '    ')}")
        return False
    return True


def run_sh(build, place, block):
    with tempfile.TemporaryDirectory() as folder:
        for entry in ROOT.iterdir():
            if entry.name != "build":
                (Path(folder) / entry.name).symlink_to(entry)
        script = f"PATH={build}/bin:$PATH; set -e\n" + block.replace("build/native", "build").replace("/tmp/", "./")
        (Path(folder) / "build").symlink_to(build)
        done = subprocess.run(["bash", "-c", script], cwd=folder, capture_output=True, text=True)
        if done.returncode:
            fail(place, f"exit status {done.returncode}: {done.stderr}")


def check_file(shell, build, file, renew):
    text, session, last = file.read_text(), [], ""
    renewed, tried = text, 0
    for found in BLOCK.finditer(text):
        begin = found.end() - len(found[2].lstrip("\n"))
        place = f"{file.relative_to(ROOT)}:{text.count(chr(10), 0, begin) + 1}"
        block = textwrap.dedent(found[2]).lstrip("\n")
        mark, _, hidden = (found[1] or "").partition("\n")
        hidden, wrapped = commands_of(hidden), "wrapped" in mark
        source = re.search(r"after (\S+)", mark)
        if PROGRAMS.match(block) and not mark:
            run_sh(build, place, block)
        elif mark.startswith("output"):
            session = (session if "goes on" in mark else []) + hidden
            printed = "".join(shell.run(session)[-len(hidden):]) if hidden else last
            if not expect(place, "the output", block, printed, wrapped) and renew:
                renewed = renewed.replace(found[2], textwrap.indent(plain(printed), "    ") + "\n")
        elif mark.startswith("shell") or (not mark and shell.is_command(commands_of(block)[0])):
            parts = parts_of(shell, block)
            shows = any(shown.strip() for _, shown in parts)
            if source:
                session = commands_of((ROOT / source[1]).read_text())
            else:
                session = (session if "goes on" in mark else []) + hidden + [command for command, _ in parts]
            printed, at = shell.run(session), -1 if source else len(session) - len(parts) - 1
            last, new_block = "".join(printed[at + 1:]), found[2]
            for command, complaint in zip(hidden, printed[at + 1 - len(hidden):]):
                if "FILE:LINE:" in complaint:
                    fail(place, f"{command}: {complaint}")
            for command, shown in parts:
                alike = [i for i in range(at + 1, len(session)) if session[i].split() == command.split()]
                if not alike:
                    fail(place, f"not in {source[1]}: {command}")
                    break
                at = alike[0]
                if "FILE:LINE:" in printed[at] and not shown:
                    fail(place, f"{command}: {printed[at]}")
                elif shows and not expect(place, command, shown, printed[at]) and renew and shown:
                    new = textwrap.indent(plain(printed[at]), re.match(r" *", shown)[0]) + "\n"
                    new_block = new_block.replace(textwrap.indent(shown, "    "), textwrap.indent(new, "    "))
            renewed = renewed.replace(found[2], new_block)
        else:
            continue
        tried += 1
    if renewed != text:
        file.write_text(renewed)
    return tried


def main():
    words = [word for word in sys.argv[1:] if word != "--renew"]
    if not words or words[0].startswith("-"):
        sys.exit(__doc__)
    build = Path(words[0]).resolve()
    files = [Path(word).resolve() for word in words[1:]] or \
        [ROOT / "README.md", *sorted(ROOT.glob("docs/*.md")), ROOT / "examples/README.md"]
    shell = Shell(build / "bin/tessel-shell")
    tried = {file.name if file.parent == ROOT else str(file.relative_to(ROOT)):
             check_file(shell, build, file, len(words) + 1 < len(sys.argv)) for file in files}
    print(", ".join(f"{name}: {count}" for name, count in tried.items()), "blocks tried")
    sys.exit(failures > 0 or not all(tried[name] for name in ("README.md", "docs/shell.md") if name in tried))


main()
