# The windows are built for Qt 6, for Qt 5, or for both side by side. Hosts that live in Qt 5 load the library whose name
# ends so; both kinds of windows never meet in one process.

foreach(version IN LISTS VLCLIENTUI_QT)
  if(NOT version MATCHES "^[56]$")
    message(FATAL_ERROR "VLCLIENTUI_QT names Qt ${version}; 5 and 6 are known")
  endif()
endforeach()
if(VLCLIENTUI_BUILD_ADAPTERS AND NOT 6 IN_LIST VLCLIENTUI_QT)
  if(VLCLIENTUI_BUILD_HOSTS OR VLCLIENTUI_BUILD_TESTS OR VLCLIENTUI_BUILD_BENCHMARKS)
    message(FATAL_ERROR "Hosts, tests and benchmarks need Qt 6: switch VLCLIENTUI_BUILD_HOSTS, VLCLIENTUI_BUILD_TESTS "
      "and VLCLIENTUI_BUILD_BENCHMARKS off, or name 6 in VLCLIENTUI_QT")
  endif()
endif()

set(vl_oldest_qt5 5.15)
set(vl_oldest_qt6 6.4)

# vl_find_qt(<component>...): of each version that windows are built for.
macro(vl_find_qt)
  foreach(version IN LISTS VLCLIENTUI_QT)
    find_package(Qt${version} ${vl_oldest_qt${version}} REQUIRED COMPONENTS ${ARGN})
  endforeach()
endmacro()

# vl_names_for_qt(<version>): vl_qt_ending for targets and folders, vl_qt_library for the name of a shared library,
# vl_qt_prefix for the names of tests.
macro(vl_names_for_qt version)
  if(${version} EQUAL 6)
    set(vl_qt_ending "")
    set(vl_qt_library "")
    set(vl_qt_prefix "")
  else()
    set(vl_qt_ending _qt${version})
    set(vl_qt_library Qt${version})
    set(vl_qt_prefix Qt${version}.)
  endif()
endmacro()
