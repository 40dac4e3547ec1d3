"""Runs inside QGIS: each check of checks.py and the files beside it in turn, and ends QGIS. Names in VLQGIS_ONLY, parted by
blanks, leave the others out."""

import os
import sys
import traceback

# A failure outside of the checks would leave QGIS waiting for a person.
try:
    sys.path.insert(0, os.environ["VLQGIS_SCRIPTS"])
    import checks
    import troubles
    import waits
    import windows
    from qgis.utils import iface
    from results import Results

    iface.mainWindow().resize(1500, 900)
    results = Results()
    results.run([checks, windows, troubles, waits])
    results.close()
except BaseException:
    traceback.print_exc()
    os._exit(1)
os._exit(0)
