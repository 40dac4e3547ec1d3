# One function configures every target of the project; the others only say what kind of target it is.

function(vl_configure_target target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    POSITION_INDEPENDENT_CODE ON
    VERIFY_INTERFACE_HEADER_SETS ON)
  if(VLCLIENTUI_EXPORTS STREQUAL "public")
    set_target_properties(${target} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  endif()
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
  # GCC 12 reports overlaps in its own string code at -O3 that are none.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  if(VLCLIENTUI_UNITY)
    vl_compile_together(${target})
  endif()
  if(VLCLIENTUI_SANITIZERS)
    target_compile_options(${target} PRIVATE
      -fsanitize=${VLCLIENTUI_SANITIZERS} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(${target} PRIVATE -fsanitize=${VLCLIENTUI_SANITIZERS})
  endif()
endfunction()

# Sources of the target that stand in CompiledAlone.txt share names with others, and stay by themselves.
file(STRINGS "${CMAKE_CURRENT_LIST_DIR}/CompiledAlone.txt" VL_COMPILED_ALONE REGEX "^[^#]")
set_property(DIRECTORY "${PROJECT_SOURCE_DIR}" APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
  "${CMAKE_CURRENT_LIST_DIR}/CompiledAlone.txt")
function(vl_compile_together target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  # A source that another one includes is no header.
  target_compile_options(${target} PRIVATE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-subobject-linkage>)
  # What stands at the top of one test is shadowed by none of another.
  if(CMAKE_CURRENT_SOURCE_DIR MATCHES "^${PROJECT_SOURCE_DIR}/tests/")
    target_compile_options(${target} PRIVATE -Wno-shadow)
  endif()
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS sources)
    cmake_path(ABSOLUTE_PATH source NORMALIZE OUTPUT_VARIABLE path)
    cmake_path(RELATIVE_PATH path BASE_DIRECTORY "${PROJECT_SOURCE_DIR}")
    if(path IN_LIST VL_COMPILED_ALONE)
      set_source_files_properties("${source}" PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
  endforeach()
endfunction()

# vl_configure_shared_library(<target>)
# Where only what is public is shown, the link sorts out what templates of others leave behind.
function(vl_configure_shared_library target)
  vl_configure_target(${target})
  set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 0)
  if(VLCLIENTUI_EXPORTS STREQUAL "public")
    target_link_options(${target} PRIVATE LINKER:--no-undefined
      "LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${PROJECT_SOURCE_DIR}/cmake/exports.map")
  endif()
endfunction()

# vl_headers(<target> [HEADERS ...] [PUBLIC_HEADERS ...])
# PUBLIC_HEADERS are what hosts include: they, and no others, are installed. All compile alone.
function(vl_headers target)
  cmake_parse_arguments(arg "" "" "HEADERS;PUBLIC_HEADERS" ${ARGN})
  target_sources(${target} PUBLIC
    FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}/src" FILES ${arg_HEADERS} ${arg_PUBLIC_HEADERS})
  file(RELATIVE_PATH folder "${PROJECT_SOURCE_DIR}/src" "${CMAKE_CURRENT_SOURCE_DIR}")
  list(TRANSFORM arg_PUBLIC_HEADERS PREPEND "${folder}/")
  # A folder that is built for two versions of Qt names its headers twice.
  get_property(known GLOBAL PROPERTY VL_PUBLIC_HEADERS)
  list(APPEND known ${arg_PUBLIC_HEADERS})
  list(REMOVE_DUPLICATES known)
  set_property(GLOBAL PROPERTY VL_PUBLIC_HEADERS ${known})
endfunction()

# vl_module(<name> KIND OBJECT|STATIC|SHARED SOURCES ... [HEADERS ...] [PUBLIC_HEADERS ...] [LINKS ...]
#           [PRIVATE_LINKS ...])
# A folder of src/: its headers are included as <name>/<Header>.h. A room of a module is named <module>_<room>, and
# its headers are included as <module>/<room>/<Header>.h.
function(vl_module name)
  cmake_parse_arguments(arg "" "KIND" "SOURCES;HEADERS;PUBLIC_HEADERS;LINKS;PRIVATE_LINKS" ${ARGN})
  set(target vl_${name})
  add_library(${target} ${arg_KIND} ${arg_SOURCES})
  vl_headers(${target} HEADERS ${arg_HEADERS} PUBLIC_HEADERS ${arg_PUBLIC_HEADERS})
  target_link_libraries(${target} PUBLIC ${arg_LINKS} PRIVATE ${arg_PRIVATE_LINKS})
  vl_configure_target(${target})
endfunction()

# vl_executable(<name> SOURCES ... [LINKS ...])
function(vl_executable name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LINKS})
  vl_configure_target(${name})
endfunction()

# vl_test(<name> SOURCES ... [LINKS ...] [PROPERTIES ...] [PREFIX <text>] [APART <regular expression>])
# One executable per module; each suite is known to ctest by its own name, after the prefix, and runs in one process. The
# cases of suites that match APART are known by their own names and have a process each.
function(vl_test name)
  cmake_parse_arguments(arg "" "PREFIX;APART" "SOURCES;LINKS;PROPERTIES" ${ARGN})
  vl_test_program(${name} SOURCES ${arg_SOURCES} LINKS ${arg_LINKS})
  vl_discover_tests(${name})
endfunction()

# vl_test_program(<name> SOURCES ... [LINKS ...]): one that ctest hears nothing of by itself.
function(vl_test_program name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
  vl_executable(${name} SOURCES ${arg_SOURCES}
    LINKS ${arg_LINKS} vl_test_folders vl_test_whole_run GTest::gtest_main GTest::gmock)
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
endfunction()

# Reads arg_PREFIX, arg_APART and arg_PROPERTIES of vl_test.
function(vl_discover_tests name)
  if(VLCLIENTUI_TESTS_APART)
    set(arg_APART ".")
  endif()
  set(discovered "${CMAKE_CURRENT_BINARY_DIR}/${name}_discovered.cmake")
  add_custom_command(TARGET ${name} POST_BUILD
    COMMAND "${CMAKE_COMMAND}" -D "PROGRAM=$<TARGET_FILE:${name}>" -D "OUTPUT=${discovered}" -D "PREFIX=${arg_PREFIX}"
      -D "APART=${arg_APART}" -P "${PROJECT_SOURCE_DIR}/cmake/DiscoverTests.cmake"
    BYPRODUCTS "${discovered}" VERBATIM)
  list(JOIN arg_PROPERTIES " " properties)
  set(included "${CMAKE_CURRENT_BINARY_DIR}/${name}_tests.cmake")
  file(CONFIGURE OUTPUT "${included}" @ONLY CONTENT [[
if(EXISTS "@discovered@")
  include("@discovered@")
  set_tests_properties(${vl_discovered} PROPERTIES TIMEOUT 900
    ENVIRONMENT "LC_ALL=C.UTF-8;TZ=UTC;QT_QPA_PLATFORM=offscreen" @properties@)
else()
  add_test(@name@_NOT_BUILT @name@_NOT_BUILT)
endif()
]])
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${included}")
endfunction()
