# Says that there is no QGIS to run the plugin in; a failure where it was asked for.
set(reason "no plugin for QGIS, which wants Qt 5 in VLCLIENTUI_QT and the packages qgis, libqgis-dev, python3-qgis, xvfb")
if("$ENV{VLCLIENTUI_WITH_QGIS}" STREQUAL "1")
  message(FATAL_ERROR "VLCLIENTUI_WITH_QGIS=1, and yet ${reason}")
endif()
# As the summary of the tests reads it.
message("tests/qgis: Skipped\n${reason}")
