#!/usr/bin/python3
"""Holds what vlhost prints with --json against definitions/vlhost.schema.json.

Usage: check-json.py <vlhost> <schema>
"""

import json
import pathlib
import subprocess
import sys
import tempfile

import jsonschema

GEOID = "ImageService://127.0.0.1/World/EGM96_Geoid"
RUN = f"vlrun 1\nopen export {GEOID}\nread uiTxtCols\nclose\n"


def calls(folder):
    """What is printed, by the part of the schema that describes it, with the exit code."""
    small = ["export", GEOID, "--cols", "36", "--rows", "18", "--json", "-o", f"{folder}/a.Tif"]
    yield "services", ["services", "--json"], 0
    yield "plan", [*small, "--dry-run"], 0
    yield "written", [*small, "--save-job", f"{folder}/a.VLJob"], 0
    yield "jobs", ["export", "--json", "--keep-going", "--job", f"{folder}/a.VLJob", f"{folder}/no.VLJob"], 3
    yield "jobs", ["export", "--json", "--dry-run", "--job", f"{folder}/a.VLJob"], 0
    yield "document", ["metadata", GEOID, "--json"], 0
    yield "document", ["properties", GEOID, "--json"], 0
    yield "run", ["run", f"{folder}/a.vlrun", "--json"], 0
    yield "connections", ["connections", "list", "--json"], 0
    yield "trial", ["connections", "try", "none", "--json"], 1


def main():
    program, schema_file = sys.argv[1:]
    schema = json.loads(pathlib.Path(schema_file).read_text(encoding="utf-8"))
    jsonschema.Draft7Validator.check_schema(schema)
    failures = 0
    with tempfile.TemporaryDirectory() as folder:
        pathlib.Path(folder, "a.vlrun").write_text(RUN, encoding="utf-8")
        environment = {"HOME": folder, "PATH": "/usr/bin:/bin", "LC_ALL": "C.UTF-8"}
        for part, words, code in calls(folder):
            ran = subprocess.run([program, *words], capture_output=True, text=True, env=environment, check=False)
            problem = None if ran.returncode == code else f"ends with {ran.returncode}: {ran.stderr}"
            # A connection that is unknown is told of on standard error alone.
            if problem is None and ran.stdout:
                try:
                    if "--dry-run" in words and "bytesToWrite" not in ran.stdout:
                        raise ValueError("the plan is missing")
                    jsonschema.validate(json.loads(ran.stdout), {**schema, "$ref": f"#/definitions/{part}"})
                except (ValueError, jsonschema.ValidationError) as failure:
                    problem = str(failure)
            if problem or "\033" in ran.stdout + ran.stderr or "\r" in ran.stderr:
                print(f"FAILED: vlhost {' '.join(words)}: {problem or 'colors or progress where nobody watches'}")
                failures += 1
    return 1 if failures else 0


sys.exit(main())
