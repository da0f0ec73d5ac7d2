# What `cmake --install` puts where, in the components runtime, development, tools, documents and debug. Nothing that is installed knows where it was built or where it stands: the whole prefix
# may be moved.

set(KY_CMAKE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/KyInventoryTree)

# Found through the place of the program or library that needs them.
file(RELATIVE_PATH KY_BIN_TO_LIB /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
file(RELATIVE_PATH KY_PKGCONFIG_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)

# ky_install_library(<target> <alias> <library>... <public folder>): the library, its headers, its CMake target
# Ky::<alias> and <target>.pc, which names the libraries of ours that it needs.
function(ky_install_library target alias links include)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${alias} INSTALL_RPATH "$ORIGIN")
  install(TARGETS ${target} EXPORT KyInventoryTreeTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  ky_install_debug_information(${target})
  install(DIRECTORY ${include}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
    FILES_MATCHING PATTERN "*.h" PATTERN "*.inc")
  set(KY_PC_REQUIRES "")
  foreach(link IN LISTS links)
    string(REPLACE "Ky::" "Ky" link ${link})
    list(APPEND KY_PC_REQUIRES ${link})
  endforeach()
  list(JOIN KY_PC_REQUIRES " " KY_PC_REQUIRES)
  set(KY_PC_NAME ${target})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/library.pc.in ${PROJECT_BINARY_DIR}/pkgconfig/${target}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/pkgconfig/${target}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)
endfunction()

# ky_install_debug_information(<target>): the file with its debug information, where debuggers look for it: in .debug beside
# it. Only `cmake --install BUILD --component debug` installs it.
function(ky_install_debug_information target)
  if(NOT KY_DEBUG_INFORMATION)
    return()
  endif()
  get_target_property(type ${target} TYPE)
  set(folder ${CMAKE_INSTALL_LIBDIR})
  if(type STREQUAL EXECUTABLE)
    set(folder ${CMAKE_INSTALL_BINDIR})
  endif()
  install(FILES $<TARGET_FILE:${target}>.debug DESTINATION ${folder}/.debug COMPONENT debug EXCLUDE_FROM_ALL)
endfunction()

# ky_install_package(): what find_package(KyInventoryTree) needs.
function(ky_install_package)
  include(CMakePackageConfigHelpers)
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/KyInventoryTreeConfig.cmake.in
    ${PROJECT_BINARY_DIR}/KyInventoryTreeConfig.cmake INSTALL_DESTINATION ${KY_CMAKE_FOLDER})
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/KyInventoryTreeConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
  install(EXPORT KyInventoryTreeTargets NAMESPACE Ky:: DESTINATION ${KY_CMAKE_FOLDER} COMPONENT development)
  install(FILES ${PROJECT_BINARY_DIR}/KyInventoryTreeConfig.cmake ${PROJECT_BINARY_DIR}/KyInventoryTreeConfigVersion.cmake
    DESTINATION ${KY_CMAKE_FOLDER} COMPONENT development)
endfunction()

# ky_install_tool(): the program with its manual and its completions.
function(ky_install_tool)
  set_target_properties(kyinventory PROPERTIES INSTALL_RPATH "$ORIGIN/${KY_BIN_TO_LIB}")
  install(TARGETS kyinventory RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
  ky_install_debug_information(kyinventory)
  install(DIRECTORY ${PROJECT_BINARY_DIR}/docs/man1/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
  set(completions ${PROJECT_BINARY_DIR}/docs/completions)
  install(FILES ${completions}/kyinventory DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    COMPONENT tools)
  install(FILES ${completions}/_kyinventory DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT tools)
  install(FILES ${completions}/kyinventory.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
    COMPONENT tools)
endfunction()

# ky_install_documents(): pages and examples.
function(ky_install_documents)
  install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${PROJECT_SOURCE_DIR}/CONTRIBUTING.md
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documents)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT documents
    PATTERN site EXCLUDE)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documents
    FILES_MATCHING PATTERN "*.cpp" PATTERN "*.h" PATTERN "*.expected" PATTERN "README.md")
  install(FILES ${PROJECT_SOURCE_DIR}/cmake/examples.cmake RENAME CMakeLists.txt
    DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT documents)
  # The machine of the tutorial.
  install(FILES ${PROJECT_SOURCE_DIR}/host/tests/data/small-machine.xml DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples
    COMPONENT documents)
endfunction()
