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

# ky_add_test(<name> SOURCES <file>... [LINK <library>...]): one test program, each of its tests known to ctest. With a
# sanitizer, ctest knows the program as a whole: starting one takes as long as many a test, two thousand times.
function(ky_add_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${arg_LINK} gtest_main ky_options)
  # Test code is compiled once and run once: optimising it takes longer than it saves, five times longer with sanitizers.
  target_compile_options(${name} PRIVATE -O0)
  set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF)
  target_compile_definitions(${name} PRIVATE KY_SOURCE_DIR="${PROJECT_SOURCE_DIR}" KY_BINARY_DIR="${PROJECT_BINARY_DIR}")
  if(KY_SANITIZE)
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
  else()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60)
  endif()
endfunction()
