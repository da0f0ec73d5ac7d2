# Builds the examples against the installed libraries: copy this folder, then
#
#   cmake -S examples -B build && cmake --build build && build/first_tree
#
# Where the libraries are installed somewhere else than the system's own: -DCMAKE_PREFIX_PATH=PREFIX

cmake_minimum_required(VERSION 3.20)
project(KyInventoryTreeExamples CXX)

find_package(KyInventoryTree 1.0 REQUIRED COMPONENTS InventoryTree OPTIONAL_COMPONENTS InventoryKit InventoryHost)
set(libraries Ky::InventoryTree $<TARGET_NAME_IF_EXISTS:Ky::InventoryKit> $<TARGET_NAME_IF_EXISTS:Ky::InventoryHost>)

# Each file here is a program; each folder is one, too.
file(GLOB files CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
foreach(file IN LISTS files)
  cmake_path(GET file STEM name)
  file(STRINGS ${file} kit REGEX "#include .inventorykit/" LIMIT_COUNT 1)
  if(kit AND NOT TARGET Ky::InventoryKit)
    message(STATUS "${name} is left out: libKyInventoryKit is not installed")
    continue()
  endif()
  add_executable(${name} ${file})
  target_link_libraries(${name} PRIVATE ${libraries})
endforeach()
file(GLOB mains CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*/main.cpp)
foreach(main IN LISTS mains)
  cmake_path(GET main PARENT_PATH folder)
  cmake_path(GET folder FILENAME name)
  file(GLOB files CONFIGURE_DEPENDS ${folder}/*.cpp)
  add_executable(${name} ${files})
  target_link_libraries(${name} PRIVATE ${libraries})
endforeach()
