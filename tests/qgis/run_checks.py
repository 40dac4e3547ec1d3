"""Runs inside QGIS: each check of checks.py and troubles.py in turn. Writes a line for each, "passed <name>" or "failed <name>: <why>",
and ends QGIS. Names in VLQGIS_ONLY, parted by blanks, leave the others out."""

import os
import sys
import traceback

# A failure outside of the checks would leave QGIS waiting for a person.
try:
    sys.path.insert(0, os.environ["VLQGIS_SCRIPTS"])
    results = open(os.path.join(os.environ["VLQGIS_FOLDER"], "results.txt"), "w", buffering=1, encoding="utf-8")

    import checks
    import troubles
    from qgis.utils import iface

    import person

    iface.mainWindow().resize(1500, 900)
    only = os.environ.get("VLQGIS_ONLY", "").split()
    for name, check in [*vars(checks).items(), *vars(troubles).items()]:
        if not name.startswith("check_") or (only and name[6:] not in only):
            continue
        try:
            check()
            results.write(f"passed {name[6:]}\n")
        except BaseException as problem:
            person.picture("failed-" + name[6:])
            where = traceback.extract_tb(problem.__traceback__)[-1]
            lines = [str(problem), f"{where.filename}:{where.lineno}"] + traceback.format_exc().splitlines()[-6:]
            results.write(f"failed {name[6:]}: " + " | ".join(lines) + "\n")
    results.write("ended\n")
    results.flush()
except BaseException:
    traceback.print_exc()
    os._exit(1)
os._exit(0)
