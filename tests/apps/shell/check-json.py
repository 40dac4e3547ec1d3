#!/usr/bin/python3
"""Holds what vlhost prints with --json against definitions/vlhost.schema.json: every command that has it, whichever
way it ends.

Usage: check-json.py <vlhost> <schema>
"""

import http.server
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import threading

import jsonschema

GEOID = "ImageService://127.0.0.1/World/EGM96_Geoid"
RUN = f"vlrun 1\nopen export {GEOID}\nread uiTxtCols\nclose\n"
CAPABILITIES = """<WCS_Capabilities version="1.0.0" xmlns="http://www.opengis.net/wcs"
  xmlns:gml="http://www.opengis.net/gml"><Service><name>one</name><label>One scene</label></Service>
  <ContentMetadata><CoverageOfferingBrief><name>Scene</name><label>Scene 2021</label>
  <lonLatEnvelope srsName="urn:ogc:def:crs:OGC:1.3:CRS84"><gml:pos>8.37 46.43</gml:pos><gml:pos>8.67 46.64</gml:pos>
  </lonLatEnvelope></CoverageOfferingBrief></ContentMetadata></WCS_Capabilities>"""
DESCRIPTION = """<CoverageDescription version="1.0.0" xmlns="http://www.opengis.net/wcs"
  xmlns:gml="http://www.opengis.net/gml"><CoverageOffering><name>Scene</name><label>Scene 2021</label>
  <lonLatEnvelope srsName="urn:ogc:def:crs:OGC:1.3:CRS84"><gml:pos>8.37 46.43</gml:pos><gml:pos>8.67 46.64</gml:pos>
  </lonLatEnvelope><domainSet><spatialDomain>
  <gml:Envelope srsName="EPSG:32632"><gml:pos>452000 5142960</gml:pos><gml:pos>475040 5166000</gml:pos></gml:Envelope>
  <gml:RectifiedGrid dimension="2"><gml:limits><gml:GridEnvelope><gml:low>0 0</gml:low><gml:high>767 767</gml:high>
  </gml:GridEnvelope></gml:limits><gml:origin><gml:pos>452000 5166000</gml:pos></gml:origin>
  <gml:offsetVector>30 0</gml:offsetVector><gml:offsetVector>0 -30</gml:offsetVector></gml:RectifiedGrid>
  </spatialDomain></domainSet><supportedCRSs><requestResponseCRSs>EPSG:32632</requestResponseCRSs></supportedCRSs>
  <supportedFormats nativeFormat="GeoTIFF"><formats>GeoTIFF</formats></supportedFormats>
  </CoverageOffering></CoverageDescription>"""
NOWHERE = "http://127.0.0.1:9/wcs"


def calls(folder, server):
    """What is printed, by the part of the schema that describes it, with the exit code."""
    small = ["export", GEOID, "--cols", "36", "--rows", "18", "--json", "-o", f"{folder}/a.Tif"]
    yield "services", ["services", "--json"], 0
    yield "services", ["services", "--json", f"{folder}/empty"], 0
    yield "plan", [*small, "--dry-run"], 0
    yield "written", [*small, "--save-job", f"{folder}/a.VLJob"], 0
    yield "jobs", ["export", "--json", "--job", f"{folder}/a.VLJob", "--log", f"{folder}/log"], 0
    yield "jobs", ["export", "--json", "--job", f"{folder}/a.VLJob", "--log", f"{folder}/log", "--resume"], 0
    yield "jobs", ["export", "--json", "--keep-going", "--job", f"{folder}/a.VLJob", f"{folder}/no.VLJob"], 3
    yield "jobs", ["export", "--json", "--job", f"{folder}/gone.VLJob", f"{folder}/a.VLJob"], 1
    yield "jobs", ["export", "--json", "--dry-run", "--job", f"{folder}/a.VLJob"], 0
    yield "document", ["metadata", GEOID, "--json"], 0
    yield "document", ["metadata", GEOID, "--json", "--service"], 0
    yield "document", ["metadata", GEOID, "--json", "--level", "Basic"], 0
    yield "document", ["properties", GEOID, "--json"], 0
    yield "document", ["properties", GEOID, "--json", "--set", "NoData=7"], 0
    yield "run", ["run", f"{folder}/a.vlrun", "--json"], 0
    yield "run", ["run", f"{folder}/fails.vlrun", "--json"], 1
    yield "run", ["run", f"{folder}/no.vlrun", "--json"], 3
    yield "connections", ["connections", "list", "--json"], 0
    yield "added", ["connections", "add", "one", server, "--json"], 0
    yield "added", ["connections", "add", "ann", NOWHERE, "--user", "ann", "--keep", "session", "--json"], 0
    yield "added", ["connections", "add", "ann", NOWHERE, "--token-parameter", "k", "--keep", "session", "--replace",
                    "--json"], 0
    yield "connections", ["connections", "list", "--json"], 0
    yield "trial", ["connections", "try", "one", "--json"], 0
    yield "trial", ["connections", "try", "ann", "--json"], 1
    yield "removed", ["connections", "remove", "ann", "--json"], 0


class OneCoverage(http.server.BaseHTTPRequestHandler):
    """A coverage service that tells of one."""

    def do_GET(self):
        body = (DESCRIPTION if "DescribeCoverage" in self.path else CAPABILITIES).encode()
        self.send_response(200)
        self.send_header("Content-Type", "text/xml")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


def serve():
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), OneCoverage)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return f"http://127.0.0.1:{server.server_address[1]}/wcs"


def problem_of(ran, code, words, schema):
    if ran.returncode != code:
        return f"ends with {ran.returncode}: {ran.stderr}"
    if "\033" in ran.stdout + ran.stderr or "\r" in ran.stderr:
        return "colors or progress where nobody watches"
    try:
        if "--dry-run" in words and "bytesToWrite" not in ran.stdout:
            return "the plan is missing"
        jsonschema.validate(json.loads(ran.stdout), schema)
    except (ValueError, jsonschema.ValidationError) as failure:
        return str(failure)
    return None


def fill(folder):
    run_files = {"a": RUN, "fails": RUN + "read noSuchControl\n"}
    for name, text in run_files.items():
        pathlib.Path(folder, f"{name}.vlrun").write_text(text, encoding="utf-8")
    job = (
        "<VLJob Version='1'><Service Reference='ImageService://127.0.0.1/Gone'/>"
        "<Extent Left='-10' Bottom='35' Right='30' Top='60'/><Grid Columns='4' Rows='2'/>"
        "<Format Name='Tiff'/><File Path='gone.tif'/></VLJob>"
    )
    pathlib.Path(folder, "gone.VLJob").write_text(job, encoding="utf-8")
    pathlib.Path(folder, "empty").mkdir()


def untried(program, schema, tried, commands):
    """Commands that tell of --json, and parts of the schema, that nothing above has looked at."""
    told = subprocess.run([program, "--help"], capture_output=True, text=True, check=True).stdout
    for command in set(re.findall(r"^  vlhost ([a-z]+)", told, re.MULTILINE)) - commands:
        own = subprocess.run([program, command, "--help"], capture_output=True, text=True, check=True).stdout
        if "--json" in own:
            yield f"vlhost {command} --json"
    yield from set(schema["definitions"]) - tried


def main():
    program, schema_file = sys.argv[1:]
    schema = json.loads(pathlib.Path(schema_file).read_text(encoding="utf-8"))
    jsonschema.Draft7Validator.check_schema(schema)
    failures = []
    parts, commands = set(), set()
    with tempfile.TemporaryDirectory() as folder:
        fill(folder)
        environment = {"HOME": folder, "PATH": "/usr/bin:/bin", "LC_ALL": "C.UTF-8"}
        for part, words, code in calls(folder, serve()):
            parts.add(part)
            commands.add(words[0])
            ran = subprocess.run([program, *words], capture_output=True, text=True, env=environment, check=False)
            problem = problem_of(ran, code, words, {**schema, "$ref": f"#/definitions/{part}"})
            if problem:
                failures.append(f"vlhost {' '.join(words)}: {problem}")
    failures += [f"{each} is not tried" for each in untried(program, schema, parts, commands)]
    for failure in failures:
        print(f"FAILED: {failure}")
    return 1 if failures else 0


sys.exit(main())
