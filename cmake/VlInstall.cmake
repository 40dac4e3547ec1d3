# What "cmake --install" lays down, in components: the shared libraries, what hosts are built with (public headers, a
# package for find_package, files for pkg-config), the programs, the module of Python, the plugin for QGIS, and the data
# that all need at run time.

include(CMakePackageConfigHelpers)

set(vl_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/VLClientUI")
set(vl_header_dir "${CMAKE_INSTALL_INCLUDEDIR}/vlclientui")
set(vl_data_dir "${CMAKE_INSTALL_DATADIR}/vlclientui")

file(RELATIVE_PATH vl_lib_from_bin "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
file(RELATIVE_PATH vl_prefix_from_pc "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")

# vl_install_pc(<name> <library> <requires line> <description>)
function(vl_install_pc vl_pc_name vl_pc_library vl_pc_requires vl_pc_description)
  configure_file("${PROJECT_SOURCE_DIR}/cmake/vlclientui.pc.in" "${PROJECT_BINARY_DIR}/${vl_pc_name}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${vl_pc_name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
    COMPONENT development)
endfunction()

set(vl_libraries VLClientUI)
vl_install_pc(vlclientui VLClientUI "" "Windows for network raster services, without a window system")
foreach(version IN LISTS VLCLIENTUI_QT)
  vl_names_for_qt(${version})
  list(APPEND vl_libraries VLClientUIHost${vl_qt_library})
  string(TOLOWER "vlclientui-host${vl_qt_library}" name)
  vl_install_pc(${name} VLClientUIHost${vl_qt_library} "Requires: vlclientui = ${PROJECT_VERSION}\n"
    "Windows for network raster services, with adapters for Qt ${version} and GDAL")
endforeach()
set_target_properties(${vl_libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")

install(TARGETS ${vl_libraries} EXPORT VLClientUITargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT libraries NAMELINK_COMPONENT development
  FILE_SET HEADERS DESTINATION "${vl_header_dir}" COMPONENT development)
# The modules that the libraries are joined from bring their public headers along.
get_property(vl_public_headers GLOBAL PROPERTY VL_PUBLIC_HEADERS)
foreach(header IN LISTS vl_public_headers)
  get_filename_component(folder "${header}" DIRECTORY)
  install(FILES "${PROJECT_SOURCE_DIR}/src/${header}" DESTINATION "${vl_header_dir}/${folder}" COMPONENT development)
endforeach()
install(EXPORT VLClientUITargets NAMESPACE VLClientUI:: DESTINATION "${vl_package_dir}" COMPONENT development)

configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/VLClientUIConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/VLClientUIConfig.cmake" INSTALL_DESTINATION "${vl_package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VLClientUIConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/VLClientUIConfig.cmake" "${PROJECT_BINARY_DIR}/VLClientUIConfigVersion.cmake"
  DESTINATION "${vl_package_dir}" COMPONENT development)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT development)

if(VLCLIENTUI_BUILD_HOSTS)
  set_target_properties(vlviewer vlhost PROPERTIES INSTALL_RPATH "$ORIGIN/${vl_lib_from_bin}")
  install(TARGETS vlviewer vlhost RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT programs)
  install(FILES "${PROJECT_BINARY_DIR}/man/vlviewer.1" "${PROJECT_BINARY_DIR}/man/vlhost.1"
    DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT programs)
  install(FILES
    "${PROJECT_SOURCE_DIR}/apps/vlhost/completion/vlhost"
    "${PROJECT_SOURCE_DIR}/apps/viewer/completion/vlviewer"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT programs)
endif()

if(VLCLIENTUI_BUILD_HOSTS AND VLCLIENTUI_BUILD_PYTHON)
  set(VLCLIENTUI_PYTHON_DIR "lib/python3/dist-packages" CACHE STRING "Where the module of Python goes, below the prefix")
  file(RELATIVE_PATH vl_lib_from_python "/${VLCLIENTUI_PYTHON_DIR}/vlclientui" "/${CMAKE_INSTALL_LIBDIR}")
  # In a wheel the libraries stand inside the package.
  get_property(vl_python_extensions GLOBAL PROPERTY VL_PYTHON_EXTENSIONS)
  set_target_properties(${vl_python_extensions} PROPERTIES INSTALL_RPATH "$ORIGIN/${vl_lib_from_python};$ORIGIN/${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS ${vl_python_extensions} LIBRARY DESTINATION "${VLCLIENTUI_PYTHON_DIR}/vlclientui"
    COMPONENT python)
  get_property(vl_python_files GLOBAL PROPERTY VL_PYTHON_FILES)
  install(FILES ${vl_python_files} DESTINATION "${VLCLIENTUI_PYTHON_DIR}/vlclientui" COMPONENT python)
endif()

install(DIRECTORY "${PROJECT_SOURCE_DIR}/definitions" "${PROJECT_SOURCE_DIR}/help" DESTINATION "${vl_data_dir}"
  COMPONENT data
  PATTERN README.md EXCLUDE)
install(DIRECTORY "${VL_SAMPLES_DIR}" DESTINATION "${vl_data_dir}/samples"
  COMPONENT data
  PATTERN ".version" EXCLUDE)
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT data)
