# What every target of this project has in common.

include(GNUInstallDirs)
include(cmake/KyInstall.cmake)

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

# Linked by our own targets, never by a consumer's.
add_library(ky_warnings INTERFACE)
target_compile_features(ky_warnings INTERFACE cxx_std_17)
target_compile_options(ky_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${KY_WERROR}>:-Werror>)
add_library(ky_options INTERFACE)
target_link_libraries(ky_options INTERFACE ky_warnings)
if(KY_SANITIZE)
  target_compile_options(ky_options INTERFACE -fsanitize=${KY_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(ky_options INTERFACE -fsanitize=${KY_SANITIZE})
endif()

# ky_make_unloadable(<target>): keeps GNU's "unique" symbols out of a library's code. The loader never lets go of a
# library that has one, and any inline function of the standard library may bring one along.
function(ky_make_unloadable target)
  target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
endfunction()

# ky_bind_inside(<target>): calls of a library's own functions are bound, and may be inlined, when it is built; nobody puts
# functions of another program in their place. Blocks go back by the plain operator delete, to which the sized one of the
# standard library would only hand them on.
function(ky_bind_inside target)
  target_compile_options(${target} PRIVATE -fno-semantic-interposition -fno-sized-deallocation)
endfunction()

# ky_keep_debug_information(<target> [-g1]): compiles a target that is installed so that debuggers know it, when
# KY_DEBUG_INFORMATION asks for it, and so that nothing in it knows the folder where it was built. -g1: functions and lines,
# without variables and types; for code whose compilation would take much longer otherwise.
function(ky_keep_debug_information target)
  target_compile_options(${target} PRIVATE -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)
  if(KY_DEBUG_INFORMATION)
    target_compile_options(${target} PRIVATE -g ${ARGN} -fdebug-prefix-map=${PROJECT_SOURCE_DIR}=.)
  endif()
endfunction()

# ky_split_debug_information(<target>): moves the debug information of a linked target to FILE.debug beside it, where the
# debugger looks; installed by the component "debug" alone.
function(ky_split_debug_information target)
  if(NOT KY_DEBUG_INFORMATION)
    return()
  endif()
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:${target}> $<TARGET_FILE:${target}>.debug
    COMMAND ${CMAKE_OBJCOPY} --strip-debug --add-gnu-debuglink=$<TARGET_FILE:${target}>.debug $<TARGET_FILE:${target}>
    VERBATIM)
endfunction()

# ky_add_shared_library(<target> <alias> SOURCES <file>... [LINK <library>...] [INCLUDE <public folder>])
# One shared library of the house: versioned, hidden by default, nothing left undefined, and soon loaded. What it refers
# to inside itself is bound when it is built, apart from the objects in replaceable-objects.txt; and code and constants
# share their pages, which makes two mappings of a file instead of four.
function(ky_add_shared_library target alias)
  cmake_parse_arguments(arg "" "INCLUDE" "SOURCES;LINK" ${ARGN})
  add_library(${target} SHARED ${arg_SOURCES})
  add_library(Ky::${alias} ALIAS ${target})
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${arg_INCLUDE}>
    PRIVATE ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/src)
  target_compile_features(${target} PUBLIC cxx_std_17)
  ky_make_unloadable(${target})
  ky_bind_inside(${target})
  ky_keep_debug_information(${target})
  ky_split_debug_information(${target})
  target_link_options(${target} PRIVATE -Wl,-z,noseparate-code
    -Wl,--dynamic-list=${PROJECT_SOURCE_DIR}/cmake/replaceable-objects.txt
    -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/hidden-symbols.txt)
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/replaceable-objects.txt
    ${PROJECT_SOURCE_DIR}/cmake/hidden-symbols.txt)
  target_link_libraries(${target} PUBLIC ${arg_LINK} PRIVATE $<BUILD_INTERFACE:ky_options>)
  if(NOT KY_SANITIZE)
    target_link_options(${target} PRIVATE -Wl,--no-undefined)
  endif()
  set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    CXX_EXTENSIONS OFF CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  ky_install_library(${target} ${alias} "${arg_LINK}" ${arg_INCLUDE})
endfunction()
