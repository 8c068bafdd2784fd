#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Compares output of plfinfo with its schema, and the schema with changed output that it must refuse.

    schema.py SCHEMA DOCUMENT LINES
"""
import copy
import json
import sys

import jsonschema

LEAST_GRAPHS = 50


def strict(schema):
    """The schema without the keys that later versions may add."""
    if isinstance(schema, list):
        return [strict(part) for part in schema]
    if not isinstance(schema, dict):
        return schema
    changed = {key: strict(part) for key, part in schema.items()}
    if isinstance(changed.get("properties"), dict):
        changed.setdefault("additionalProperties", False)
    return changed


def places(value):
    """Each value in a document: what holds it, and its key there."""
    keys = value.keys() if isinstance(value, dict) else range(len(value)) if isinstance(value, list) else ()
    for key in list(keys):
        yield value, key
        yield from places(value[key])


def fail(message):
    sys.exit(message)


def check_refusals(validator, line):
    """Without any of its keys, or with a value of another type, a line is not what the schema says."""
    optional = {"fileBase64"}
    for number, (_, name) in enumerate(places(line)):
        for change in "removed", "changed":
            changed = copy.deepcopy(line)
            holder, key = list(places(changed))[number]
            if change == "changed":
                holder[key] = {"none": 0.5}
            elif isinstance(holder, dict) and key not in optional and holder is not changed.get("commands"):
                del holder[key]
            else:
                continue
            if validator.is_valid(changed):
                fail(f"the schema takes a line with {name} {change}")


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        schema = json.load(file)
    kind = jsonschema.Draft202012Validator
    kind.check_schema(schema)
    published, exact = kind(schema), kind(strict(schema))

    with open(sys.argv[2], encoding="utf-8") as file:
        document = json.load(file)
    with open(sys.argv[3], encoding="utf-8") as file:
        lines = [json.loads(line) for line in file]
    for printed in [document, *lines]:
        for validator in published, exact:
            validator.validate(printed)

    graphs = document["graphs"]
    if [{**graph, "version": 1} for graph in graphs] != lines:
        fail("the lines differ from the document")
    if len(graphs) < LEAST_GRAPHS:
        fail(f"only {len(graphs)} graphs")
    for key in "error", "fileBase64", "damage", "texts", "extent":
        if not any(graph.get(key) for graph in graphs):
            fail(f"no graph has '{key}'")

    full = max((line for line in lines if line.get("damage") and line.get("texts") and line.get("extent")),
               key=lambda line: -len(line["texts"]))
    failed = next(line for line in lines if "fileBase64" in line and "error" in line)
    for line in full, failed:
        check_refusals(published, line)
        if not published.is_valid({**line, "added": 1}):
            fail("the schema refuses what a later release may add")
    for wrong in ({}, [], {"version": 1}, {"version": 2, "graphs": []}, {"graphs": []}, {**full, "error": "both"},
                  {**document, "version": 2}):
        if published.is_valid(wrong):
            fail(f"the schema takes {json.dumps(wrong)[:80]}")


main()
