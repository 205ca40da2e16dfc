# The tools that the build runs, where it is for another machine than the one that builds: built by
# that machine's own compiler, and then named as everywhere else.
include(ExternalProject)

set(folder ${CMAKE_BINARY_DIR}/building-machine)
ExternalProject_Add(building_machine_tools
  SOURCE_DIR ${PROJECT_SOURCE_DIR}/tools
  BINARY_DIR ${folder}
  CMAKE_ARGS
    -DCMAKE_BUILD_TYPE=Release
    -DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}
  BUILD_ALWAYS ON
  BUILD_BYPRODUCTS ${folder}/bin/inline_image ${folder}/bin/font_sheet
  INSTALL_COMMAND "")
foreach(name inline_image font_sheet)
  add_executable(${name} IMPORTED GLOBAL)
  set_target_properties(${name} PROPERTIES IMPORTED_LOCATION ${folder}/bin/${name})
  add_dependencies(${name} building_machine_tools)
endforeach()
