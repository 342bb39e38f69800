#!/usr/bin/python3
"""Validates documents against a JSON Schema: validate_schemas.py SCHEMA

Reads a JSON array of strings, each a JSON document, and prints an array of results in the same order: null for a valid
document, else the reason. Fails if the schema itself is invalid.

Home-made around python3-jsonschema: its own command reads each document from a file, and does not check a schema's
titles, descriptions, examples and defaults.
"""
import json
import sys

try:
    from jsonschema import Draft202012Validator
    from jsonschema.exceptions import best_match
except ImportError:
    sys.exit("jsonschema is missing: install the package python3-jsonschema")


def places(schema, name):
    """The subschemas that an editor shows, with their names. Conditions and pure references show nothing."""
    yield name, schema
    for keyword in ("properties", "$defs"):
        for key, inner in schema.get(keyword, {}).items():
            yield from places(inner, f"{name}/{keyword}/{key}")
    for keyword in ("items", "additionalProperties"):
        inner = schema.get(keyword)
        if inner and list(inner) != ["$ref"]:
            yield from places(inner, f"{name}/{keyword}")


def faults(schema):
    Draft202012Validator.check_schema(schema)
    for name, place in places(schema, "#"):
        for keyword in ("title", "description"):
            if not place.get(keyword):
                yield f"{name} has no {keyword}"
        validator = Draft202012Validator({"$defs": schema.get("$defs", {}), **place})
        samples = place.get("examples", []) + ([place["default"]] if "default" in place else [])
        for sample in samples:
            for error in validator.iter_errors(sample):
                yield f"{name} refuses its own example: {error.message}"


def verdict(validator, text):
    error = best_match(validator.iter_errors(json.loads(text)))
    return error and f"{error.json_path}: {error.message}"


with open(sys.argv[1], encoding="utf-8") as file:
    wanted = json.load(file)
wrong = list(faults(wanted))
if wrong:
    sys.exit("\n".join(wrong))
judge = Draft202012Validator(wanted)
json.dump([verdict(judge, text) for text in json.load(sys.stdin)], sys.stdout)
