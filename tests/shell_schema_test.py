#!/usr/bin/env python3
"""Holds all JSON of the transcripts against the schema of the shell; each of its forms is among them.

usage: shell_schema_test.py SCHEMA TRANSCRIPT...

Without python3-jsonschema it is skipped (77), unless the variable CI is "true".
"""
import json
import os
import sys
from pathlib import Path

try:
    import jsonschema
except ImportError:
    print("shell_schema_test: NO python3-jsonschema HERE: the shell's JSON IS NOT CHECKED", file=sys.stderr)
    sys.exit(1 if os.environ.get("CI") == "true" else 77)

schema = json.loads(Path(sys.argv[1]).read_text())
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
forms = {form["title"]: jsonschema.Draft202012Validator(form) for form in schema["anyOf"]}
seen, bad = set(), 0
for name in sys.argv[2:]:
    for number, line in enumerate(Path(name).read_bytes().decode(errors="replace").splitlines(), 1):
        text = line[2:] if line.startswith("! {") else line
        if not text.startswith('{"'):
            continue
        document = json.loads(text)
        for error in validator.iter_errors(document):
            bad += 1
            print(f"{name}:{number}: {error.message}", file=sys.stderr)
        seen |= {title for title, form in forms.items() if form.is_valid(document)}
for title in forms.keys() - seen:
    print(f"{sys.argv[1]}: no transcript has {title}", file=sys.stderr)
sys.exit(1 if bad or forms.keys() - seen else 0)
