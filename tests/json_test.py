#!/usr/bin/python3
"""Holds the reference's JSON files against their schemas: every file has one, and every member of a file is told of.

    tests/json_test.py GENERATED

Without python3-jsonschema it is skipped (77), unless the variable CI is "true".
"""
import json, os, sys
from pathlib import Path

try:
    import jsonschema
except ImportError:
    print("json_test: NO python3-jsonschema HERE: the JSON files ARE NOT CHECKED", file=sys.stderr)
    sys.exit(1 if os.environ.get("CI") == "true" else 77)

reference = Path(sys.argv[1]) / "reference"
failures = 0
for name in ("catalogue", "functions"):
    schema = json.loads((reference / f"{name}.schema.json").read_text())
    jsonschema.Draft202012Validator.check_schema(schema)
    file = json.loads((reference / f"{name}.json").read_text())
    for error in list(jsonschema.Draft202012Validator(schema).iter_errors(file))[:10]:
        failures += 1
        print(f"{name}.json: {'/'.join(map(str, error.absolute_path))}: {error.message}", file=sys.stderr)
sys.exit(failures > 0)
