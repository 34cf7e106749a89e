#!/usr/bin/python3
"""Holds the reference's JSON files against their schemas, which tell of every member, and the page against its bounds.

    tests/reference_test.py GENERATED

Without python3-jsonschema it is skipped (77), unless the variable CI is "true".
"""
import json, os, re, sys
from pathlib import Path

try:
    import jsonschema
except ImportError:
    print("reference_test: NO python3-jsonschema HERE: the reference IS NOT CHECKED", file=sys.stderr)
    sys.exit(1 if os.environ.get("CI") == "true" else 77)

reference = Path(sys.argv[1]) / "reference"
failures = []
for name in ("catalogue", "functions"):
    schema = json.loads((reference / f"{name}.schema.json").read_text())
    jsonschema.Draft202012Validator.check_schema(schema)
    file = json.loads((reference / f"{name}.json").read_text())
    failures += [f"{name}.json: {'/'.join(map(str, error.absolute_path))}: {error.message}"
                 for error in jsonschema.Draft202012Validator(schema).iter_errors(file)]
page = (reference / "index.html").read_text()
if len(page) > 2_000_000:
    failures.append(f"index.html has {len(page)} bytes")
failures += [f"index.html asks the network: {found}"
             for found in re.findall(r'(?:src|href)="?(?:\w+:)?//[^"]*|@import|fetch\(|XMLHttpRequest', page)]
print("\n".join(failures[:20]), file=sys.stderr)
sys.exit(bool(failures))
