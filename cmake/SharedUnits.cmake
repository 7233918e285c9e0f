# Helpers that list what a folder of the library, the tests or the benchmarks holds.

# shared_units(<folder> HEADERS a.h ... SOURCES a.cpp ...): adds the files of shared/<folder> to the library.
# Headers are installed under the path by which they are included.
function(shared_units folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;SOURCES")
  list(TRANSFORM arg_HEADERS PREPEND "${PROJECT_SOURCE_DIR}/shared/${folder}/")
  list(TRANSFORM arg_SOURCES PREPEND "${PROJECT_SOURCE_DIR}/shared/${folder}/")
  target_sources(Shared PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}"
                 FILES ${arg_HEADERS})
  target_sources(Shared PRIVATE ${arg_SOURCES})
endfunction()

# shared_test(<folder> <source> ...): the test program <folder>_tests from files of tests/<folder>.
function(shared_test folder)
  list(TRANSFORM ARGN PREPEND "${PROJECT_SOURCE_DIR}/tests/${folder}/" OUTPUT_VARIABLE sources)
  set(program "${folder}_tests")
  add_executable(${program} ${sources})
  shared_compile_settings(${program})
  target_include_directories(${program} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${program} PRIVATE Shared::Shared Shared_gtest)
  target_compile_definitions(${program} PRIVATE
    SHARED_TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data"
    SHARED_EXAMPLE_DATA_DIR="${PROJECT_SOURCE_DIR}/examples/data")
  gtest_discover_tests(${program} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 120)
endfunction()
