# The site: docs/ and the READMEs with the reference of the public headers, made by doxygen.
# Included behind all modules, since they tell which headers are public. Target vl_site makes it.

file(GLOB_RECURSE vl_site_pages RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/docs/*.md" "${PROJECT_SOURCE_DIR}/src/README.md" "${PROJECT_SOURCE_DIR}/src/*/README.md"
  "${PROJECT_SOURCE_DIR}/apps/README.md" "${PROJECT_SOURCE_DIR}/apps/*/README.md"
  "${PROJECT_SOURCE_DIR}/tests/*/README.md" "${PROJECT_SOURCE_DIR}/definitions/README.md"
  "${PROJECT_SOURCE_DIR}/samples/README.md" "${PROJECT_SOURCE_DIR}/benchmarks/README.md"
  "${PROJECT_SOURCE_DIR}/fuzz/README.md" "${PROJECT_SOURCE_DIR}/examples/README.md" "${PROJECT_SOURCE_DIR}/debian/README.md")
list(FILTER vl_site_pages EXCLUDE REGEX "^docs/images/")
list(APPEND vl_site_pages README.md CHANGELOG.md CONTRIBUTING.md)
get_property(vl_site_headers GLOBAL PROPERTY VL_PUBLIC_HEADERS)
list(TRANSFORM vl_site_headers PREPEND "src/")
set(VL_SITE_INPUT ${vl_site_headers} ${vl_site_pages})
list(TRANSFORM VL_SITE_INPUT PREPEND "\\\n  \"${PROJECT_SOURCE_DIR}/")
list(TRANSFORM VL_SITE_INPUT APPEND "\"")
list(JOIN VL_SITE_INPUT " " VL_SITE_INPUT)
set(VL_SITE_FOLDER "${PROJECT_BINARY_DIR}/site")
configure_file("${PROJECT_SOURCE_DIR}/docs/Doxyfile.in" "${VL_SITE_FOLDER}/Doxyfile" @ONLY)

find_program(VL_DOXYGEN doxygen)
find_program(VL_PYTHON3 python3)
set(vl_make_site "${CMAKE_COMMAND}" -D "DOXYGEN=${VL_DOXYGEN}" -D "PYTHON=${VL_PYTHON3}"
  -D "SOURCE_DIR=${PROJECT_SOURCE_DIR}" -D "FOLDER=${VL_SITE_FOLDER}"
  -D "MAN=${PROJECT_BINARY_DIR}/man" -P "${PROJECT_SOURCE_DIR}/cmake/MakeSite.cmake")
add_custom_target(vl_site COMMAND ${vl_make_site} VERBATIM)
