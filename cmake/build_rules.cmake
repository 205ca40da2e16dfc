# The rules every target is built by: warnings, hardening, sanitizers, and how libraries and
# tests are declared.

add_library(zeph_warnings INTERFACE)
target_compile_options(zeph_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

# Tests mostly wait; what they measure is in the libraries. GCC 12 warns of its own std::string
# where exceptions are on.
add_library(zeph_test_rules INTERFACE)
target_link_libraries(zeph_test_rules INTERFACE zeph_warnings)
target_compile_options(zeph_test_rules INTERFACE
  $<$<CONFIG:Release>:-O1>
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict;-Wno-array-bounds;-Wno-stringop-overflow;-Wno-stringop-overread>)

# What holds for the program and its libraries, not for tests and tools.
add_library(zeph_program_rules INTERFACE)
target_link_libraries(zeph_program_rules INTERFACE zeph_warnings)
target_compile_options(zeph_program_rules INTERFACE
  $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti>
  -fstack-protector-strong -fvisibility=hidden -ffunction-sections -fdata-sections)
target_compile_definitions(zeph_program_rules INTERFACE
  $<$<CONFIG:Release>:_FORTIFY_SOURCE=2>)

if(ZEPH_SANITIZE)
  # The check of virtual tables opens files, and takes none left for a broken object.
  add_compile_options(-fsanitize=${ZEPH_SANITIZE} -fno-sanitize-recover=all -fno-sanitize=vptr
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZEPH_SANITIZE})
endif()

# The counters live in the file all the time, for processes that are killed or become another program.
if(ZEPH_COVERAGE)
  add_compile_options(-fprofile-instr-generate -fcoverage-mapping
    "SHELL:-mllvm -runtime-counter-relocation")
  add_link_options(-fprofile-instr-generate)
endif()

# zeph_library(NAME SOURCES... ): a static library of the program, included by paths from source/.
function(zeph_library name)
  add_library(${name} STATIC ${ARGN})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/source)
  target_link_libraries(${name} PRIVATE zeph_program_rules)
endfunction()

# The large headers of nearly every test, compiled once. Sources still include what they use.
function(zeph_test_headers)
  file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/test_headers.cpp "int main() {}\n")
  add_executable(zeph_test_headers ${CMAKE_CURRENT_BINARY_DIR}/test_headers.cpp)
  target_link_libraries(zeph_test_headers PRIVATE zeph_test_rules GTest::gtest)
  target_precompile_headers(zeph_test_headers PRIVATE
    <gtest/gtest.h> <algorithm> <chrono> <filesystem> <fstream> <functional> <random> <string>
    <thread> <vector>)
endfunction()

# zeph_test(NAME SOURCES... LIBRARIES...): a GoogleTest program, each of its tests a ctest test.
# Tests run from the source folder. LABELS go to ctest, TIMEOUT is in seconds.
function(zeph_test name)
  cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 600)
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/source ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE zeph_test_rules ${arg_LIBRARIES} zeph_test_main)
  target_precompile_headers(${name} REUSE_FROM zeph_test_headers)
  gtest_discover_tests(${name}
    TEST_PREFIX ${name}.
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${arg_LABELS}")
endfunction()
