# GoogleTest from Debian's sources, so that it exists for both word sizes, and the one helper for our tests.

set(KY_GTEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest's source folder (Debian: package googletest)")
if(NOT EXISTS ${KY_GTEST_SOURCE}/CMakeLists.txt)
  message(FATAL_ERROR "GoogleTest's sources are not in ${KY_GTEST_SOURCE}: run scripts/install-deps.sh")
endif()
set(INSTALL_GTEST OFF)
add_subdirectory(${KY_GTEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
foreach(library gtest gtest_main)
  target_compile_options(${library} PRIVATE -O0)
endforeach()
if(KY_SANITIZE STREQUAL "thread")    # it must see every lock; the others need not look into GoogleTest
  target_compile_options(gtest PRIVATE -fsanitize=thread)
endif()
include(GoogleTest)

# Where sources are compiled together, names of one are none of the next one's business.
add_library(ky_joined INTERFACE)
target_compile_options(ky_joined INTERFACE -Wno-shadow $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)

# ky_tests_from_outside(): the test programs of this folder from here on test what other files hold: a library, the tool.
# Their own code is compiled without sanitizers and in the same way in every build of a word size, so that a compiler
# cache compiles it once for all of them.
macro(ky_tests_from_outside)
  set(KY_TESTS_FROM_OUTSIDE ON)
  foreach(build DEBUG RELEASE RELWITHDEBINFO)
    set(CMAKE_CXX_FLAGS_${build} "")
  endforeach()
endmacro()

# ky_add_test(<name> SOURCES <file>... [LINK <library>...]): one test program, each of its tests known to ctest. With a
# sanitizer, ctest knows the program as a whole: starting one takes as long as many a test, two thousand times.
function(ky_add_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${arg_LINK} gtest_main)
  if(KY_TESTS_FROM_OUTSIDE AND NOT KY_SANITIZE STREQUAL "thread")
    target_link_libraries(${name} PRIVATE ky_warnings)
    target_link_options(${name} PRIVATE $<TARGET_PROPERTY:ky_options,INTERFACE_LINK_OPTIONS>)
  else()
    target_link_libraries(${name} PRIVATE ky_options)
  endif()
  # Test code is compiled once and run once: optimising it takes longer than it saves, five times longer with sanitizers.
  target_compile_options(${name} PRIVATE -O0)
  set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF)
  # Headers that take longer than the sources themselves are read less often. Not so for what is tested: where sources are
  # compiled together, a call may find another one's function; nor for tests from outside, which the cache has.
  if(KY_JOIN_SOURCES AND NOT KY_TESTS_FROM_OUTSIDE)
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
    target_link_libraries(${name} PRIVATE ky_joined)
  endif()
  # Known to those alone who ask: the others are the same in every clone, for a compiler cache.
  foreach(source IN LISTS arg_SOURCES)
    get_filename_component(file ${source} ABSOLUTE)
    file(RELATIVE_PATH place ${PROJECT_SOURCE_DIR} ${file})
    if(place MATCHES "(^|/)src/")
      set_property(SOURCE ${source} PROPERTY SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
    file(STRINGS ${file} uses REGEX KY_SOURCE_DIR LIMIT_COUNT 1)
    if(uses)
      set_property(SOURCE ${source} APPEND PROPERTY COMPILE_DEFINITIONS KY_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    endif()
  endforeach()
  if(KY_SANITIZE)
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
  else()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60)
  endif()
endfunction()
