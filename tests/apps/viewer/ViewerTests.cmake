# The viewer's windows.
find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
vl_test(viewer_test
  SOURCES
    ../support/QtTestMain.cpp
    viewer/EveryWindowFixture.cpp
    viewer/window/Accessibility_test.cpp
    viewer/window/Appearance_test.cpp
    viewer/window/EveryWindow_test.cpp
    viewer/window/Keyboard_test.cpp
    viewer/FileManager.h
    viewer/colors/ColorsDraft_test.cpp
    viewer/colors/ColorsWindow_test.cpp
    viewer/list/Picker_test.cpp
    viewer/list/ServiceListModel_test.cpp
    viewer/list/ServiceList_test.cpp
    viewer/map/Footprints_test.cpp
    viewer/map/MapRectangle_test.cpp
    viewer/map/MapCopies_test.cpp
    viewer/map/MapInSystems_test.cpp
    viewer/map/MapTroubles_test.cpp
    viewer/map/MapView_test.cpp
    viewer/map/PickedImage_test.cpp
    viewer/map/PlaceText_test.cpp
    viewer/tools/FirstServices_test.cpp
    viewer/tools/MapTools_test.cpp
    viewer/tools/ViewHistory_test.cpp
    viewer/values/ValuesPane_test.cpp
    viewer/values/ValuesText_test.cpp
    viewer/network/RecentServers_test.cpp
    viewer/waiting/DoneBeside_test.cpp
    viewer/waiting/ProgressWindow_test.cpp
    viewer/tour/StepRunner_test.cpp
    viewer/window/SilenceLog_test.cpp
    viewer/window/StandingTime_test.cpp
    viewer/docks/ViewerDocks_test.cpp
    viewer/export/ViewerExport_test.cpp
    viewer/docks/ViewerMetadata_test.cpp
    viewer/network/ViewerNetwork_test.cpp
    viewer/project/ProjectDocument_test.cpp
    viewer/project/SessionFile_test.cpp
    viewer/project/UnsavedProject_test.cpp
    viewer/project/ViewerProject_test.cpp
    viewer/docks/ViewerProperties_test.cpp
    viewer/export/ViewerRemoteExport_test.cpp
    viewer/network/ViewerStac_test.cpp
    viewer/window/ViewerWindow_test.cpp
    viewer/waiting/WaitWindow_test.cpp
  LINKS vl_viewer vl_test_servers GDAL::GDAL
  PROPERTIES COST 20)
set_target_properties(viewer_test PROPERTIES AUTOMOC ON)
add_dependencies(viewer_test vl_samples vl_server_files)

# A viewer that tests kill.
vl_executable(changing_viewer SOURCES viewer/project/ChangingViewer.cpp LINKS vl_viewer)
vl_test(session_kill_test
  SOURCES viewer/project/SessionKill_test.cpp
  LINKS vl_viewer
  PROPERTIES COST 80)
target_compile_definitions(session_kill_test PRIVATE VL_CHANGING_VIEWER="$<TARGET_FILE:changing_viewer>")
add_dependencies(session_kill_test changing_viewer vl_samples)

# A program of its own: where connections are kept is fixed when they are first asked for.
vl_test(connections_window_test
  SOURCES
    ../support/QtTestMain.cpp
    viewer/network/ConnectionDraft_test.cpp
    viewer/network/ConnectionsWindow_test.cpp
    viewer/network/SlowDesktop_test.cpp
  LINKS vl_viewer vl_test_servers
  PROPERTIES COST 10)
set_target_properties(connections_window_test PROPERTIES AUTOMOC ON)
add_dependencies(connections_window_test vl_samples vl_server_files)

# A program of its own: the density of the screen is fixed when the application is made.
vl_test(density_test
  SOURCES viewer/map/Density_test.cpp
  LINKS vl_viewer)
set_target_properties(density_test PROPERTIES AUTOMOC ON)
target_compile_definitions(density_test PRIVATE VL_SAMPLES_DIR="${VL_SAMPLES_DIR}")
add_dependencies(density_test vl_samples)

# So is a platform that drags.
vl_test(dragging_test
  SOURCES
    viewer/list/DraggedServices_test.cpp
  LINKS vl_viewer)
set_target_properties(dragging_test PROPERTIES AUTOMOC ON)
target_compile_definitions(dragging_test PRIVATE VL_SAMPLES_DIR="${VL_SAMPLES_DIR}")
add_dependencies(dragging_test vl_samples)

# A program of its own is what makes an export again that was made by hand.
vl_test(recorded_export_test
  SOURCES
    ../support/QtTestMain.cpp
    viewer/export/RecordedExport_test.cpp
  LINKS vl_viewer)
set_target_properties(recorded_export_test PROPERTIES AUTOMOC ON)
target_compile_definitions(recorded_export_test PRIVATE VL_VLHOST="$<TARGET_FILE:vlhost>")
add_dependencies(recorded_export_test vlhost vl_samples)

# The size of the screen is fixed as well: that for which the programs are made, and the least on which nothing is cut off.
foreach(screen "small;1024;700" "least;900;600")
  list(GET screen 0 name)
  list(GET screen 1 width)
  list(GET screen 2 height)
  vl_test(${name}_screen_test
    SOURCES
      viewer/EveryWindowFixture.cpp
      viewer/window/SmallScreen_test.cpp
    LINKS vl_viewer)
  set_target_properties(${name}_screen_test PROPERTIES AUTOMOC ON)
  set(description "${CMAKE_CURRENT_BINARY_DIR}/${name}_screen.json")
  configure_file(viewer/window/SmallScreen.json.in "${description}" @ONLY)
  target_compile_definitions(${name}_screen_test PRIVATE ScreenTest=OnAScreenOf${width}By${height}
    VL_SMALL_SCREEN="${description}" VL_SMALL_WIDTH=${width}
    VL_SMALL_HEIGHT=${height} VL_SAMPLES_DIR="${VL_SAMPLES_DIR}")
  add_dependencies(${name}_screen_test vl_samples)
endforeach()

# Everything that is saved, by processes that are killed, and on disks that fail.
vl_test(saving_test
  SOURCES
    saving/FailingDisks_test.cpp
    saving/KilledSavers_test.cpp
    saving/SavingFixture.cpp
    ../client/ChildProcess.cpp
    ../client/RasterFixture.cpp
    ../client/ServiceFixture.cpp
  LINKS vl_failing_disk vl_viewer GDAL::GDAL
  PROPERTIES COST 20)
