# vl_find_qgis(): the desktop GIS whose plugin is built where its headers are. Sets VL_QGIS_FOUND, and the target vl_qgis for
# its libraries, which live in Qt 5.
option(VLCLIENTUI_QGIS "Build the plugin for QGIS where QGIS and Qt 5 are found" ON)

function(vl_find_qgis)
  set(VL_QGIS_FOUND FALSE PARENT_SCOPE)
  if(NOT VLCLIENTUI_QGIS OR NOT 5 IN_LIST VLCLIENTUI_QT)
    return()
  endif()
  find_path(VL_QGIS_HEADERS qgsrasterdataprovider.h PATH_SUFFIXES qgis)
  find_library(VL_QGIS_CORE qgis_core)
  find_library(VL_QGIS_GUI qgis_gui)
  find_package(Qt5 ${vl_oldest_qt5} QUIET COMPONENTS Widgets Xml Network Sql Svg PrintSupport Concurrent)
  if(NOT VL_QGIS_HEADERS OR NOT VL_QGIS_CORE OR NOT VL_QGIS_GUI OR NOT Qt5_FOUND)
    message(STATUS "QGIS (package libqgis-dev) is not there: no plugin for it")
    return()
  endif()
  add_library(vl_qgis INTERFACE)
  target_include_directories(vl_qgis SYSTEM INTERFACE "${VL_QGIS_HEADERS}")
  target_link_libraries(vl_qgis INTERFACE "${VL_QGIS_CORE}" "${VL_QGIS_GUI}"
    Qt5::Widgets Qt5::Xml Qt5::Network Qt5::Sql Qt5::Svg Qt5::PrintSupport Qt5::Concurrent)
  set(VL_QGIS_FOUND TRUE PARENT_SCOPE)
endfunction()
