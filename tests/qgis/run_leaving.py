"""Runs inside a QGIS that has the installed plugin: the checks of leaving.py, and then ends QGIS by its menu as a person
does, with a layer in the project and a recording under way."""

import os
import sys
import traceback

try:
    sys.path.insert(0, os.environ["VLQGIS_SCRIPTS"])
    import leaving
    from PyQt5.QtCore import QTimer
    from qgis.core import QgsProject
    from qgis.utils import iface
    from results import Results

    results = Results()
    results.run([leaving])
    results.close()
    # Nothing but the recording waits to be saved.
    QgsProject.instance().setDirty(False)
    saving = leaving.save_recording_at_the_end()
    QTimer.singleShot(0, iface.actionExit().trigger)
except BaseException:
    traceback.print_exc()
    os._exit(1)
