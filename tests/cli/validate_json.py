#!/usr/bin/env python3
"""Checks lines of JSON against a schema.

Usage: validate_json.py SCHEMA FILE
Exits with 0 when FILE holds at least one line and each is valid; otherwise says what is wrong and exits with 1.
"""
import json
import sys

import jsonschema


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        schema = json.load(file)
    jsonschema.Draft7Validator.check_schema(schema)
    validator = jsonschema.Draft7Validator(schema)
    with open(sys.argv[2], encoding="utf-8", errors="strict") as file:
        lines = file.read().splitlines()
    wrong = [] if lines else ["no line"]
    for line in lines:
        wrong += [f"{error.json_path}: {error.message}" for error in validator.iter_errors(json.loads(line))]
    print("\n".join(wrong))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
