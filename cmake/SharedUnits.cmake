# Helpers that list what a folder of the library, the tests or the benchmarks holds.

# shared_units(<folder> HEADERS a.h ... SOURCES a.cpp ...): adds the files of shared/<folder> to the library.
# Headers are installed under the path by which they are included. A header for the library's own use is listed
# among the sources.
function(shared_units folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;SOURCES")
  list(TRANSFORM arg_HEADERS PREPEND "${PROJECT_SOURCE_DIR}/shared/${folder}/")
  list(TRANSFORM arg_SOURCES PREPEND "${PROJECT_SOURCE_DIR}/shared/${folder}/")
  target_sources(Shared PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}"
                 FILES ${arg_HEADERS})
  target_sources(Shared PRIVATE ${arg_SOURCES})
endfunction()

# shared_avx2_units(<folder> a.cpp ...): adds sources of shared/<folder> that are compiled for AVX2 and run only where
# HasAvx2() is true. They define functions of internal linkage and the exported entry points alone: an inline function
# of a header compiled there could be the copy that the linker keeps for the whole library.
function(shared_avx2_units folder)
  list(TRANSFORM ARGN PREPEND "${PROJECT_SOURCE_DIR}/shared/${folder}/" OUTPUT_VARIABLE sources)
  target_sources(Shared PRIVATE ${sources})
  if(MSVC)
    set(options /arch:AVX2)
  else()
    set(options -mavx2)
    if(WIN32)
      # GCC aligns the stack to 16 bytes on this target and still moves 32-byte values by aligned instructions.
      list(APPEND options -Wa,-muse-unaligned-vector-move)
    endif()
  endif()
  set_source_files_properties(${sources} TARGET_DIRECTORY Shared PROPERTIES COMPILE_OPTIONS "${options}")
endfunction()

# shared_test_settings(<target>): how tests are compiled and what they link. Optimising test code takes longer than
# running it as it is; the library keeps its level.
function(shared_test_settings target)
  shared_compile_settings(${target})
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${target} PRIVATE Shared::Shared Shared_gtest)
  if(NOT MSVC)
    target_compile_options(${target} PRIVATE -O0)
  endif()
  target_compile_definitions(${target} PRIVATE
    SHARED_TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data"
    SHARED_EXAMPLE_DATA_DIR="${PROJECT_SOURCE_DIR}/examples/data")
endfunction()

# shared_test(<folder> <source> ...): the test program <folder>_tests from files of tests/<folder>. ctest runs each of
# its suites as the test <folder>.<Suite>; they are listed when ctest starts, by what TestSuites.cmake says.
function(shared_test folder)
  list(TRANSFORM ARGN PREPEND "${PROJECT_SOURCE_DIR}/tests/${folder}/" OUTPUT_VARIABLE sources)
  set(program "${folder}_tests")
  add_executable(${program} ${sources})
  shared_test_settings(${program})
  target_precompile_headers(${program} REUSE_FROM Shared_test_headers)
  set(suites "${CMAKE_CURRENT_BINARY_DIR}/${program}_suites.cmake")
  file(CONFIGURE OUTPUT "${suites}" @ONLY CONTENT [[
set(SHARED_TEST_FOLDER "@folder@")
include("@CMAKE_CURRENT_BINARY_DIR@/@program@${CTEST_CONFIGURATION_TYPE}.cmake" OPTIONAL)
include("@CMAKE_CURRENT_BINARY_DIR@/@program@.cmake" OPTIONAL)
include("@PROJECT_SOURCE_DIR@/cmake/TestSuites.cmake")
]])
  get_property(is_multi_config GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
  file(GENERATE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/${program}$<${is_multi_config}:$<CONFIG>>.cmake"
       CONTENT "set(SHARED_TEST_COMMAND \"$<JOIN:${CMAKE_CROSSCOMPILING_EMULATOR};$<TARGET_FILE:${program}>,;>\")\n")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${suites}")
endfunction()

# shared_fuzz(<Name>): a fuzz target from fuzz/<Name>.cpp with seeds in fuzz/corpus/<Name>/.
# With SHARED_BUILD_FUZZ it becomes a libFuzzer program. Otherwise it becomes a program that runs the seeds and
# the empty input once, as a test of every build.
function(shared_fuzz name)
  set(seeds "${PROJECT_SOURCE_DIR}/fuzz/corpus/${name}")
  if(NOT IS_DIRECTORY "${seeds}")
    message(FATAL_ERROR "${name} has no seeds: add at least one file to fuzz/corpus/${name}/")
  endif()
  add_executable(${name} "${PROJECT_SOURCE_DIR}/fuzz/${name}.cpp")
  shared_compile_settings(${name})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE Shared::Shared)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
  if(SHARED_BUILD_FUZZ)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  else()
    target_link_libraries(${name} PRIVATE Shared_replay)
    add_test(NAME Replay.${name} COMMAND ${name} "${seeds}")
    set_tests_properties(Replay.${name} PROPERTIES TIMEOUT 600)
  endif()
endfunction()

# shared_bench(<folder> <source> ... [PEERS <library> ...]): the program <folder>_bench from files of
# bench/<folder>. PEERS are linked to it; the library itself never sees them. Without sources nothing is made.
# On Windows the peers must be header-only; a file of stand-ins takes the place of the others.
function(shared_bench folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "PEERS")
  set(sources ${arg_UNPARSED_ARGUMENTS})
  if(NOT sources)
    return()
  endif()
  list(TRANSFORM sources PREPEND "${PROJECT_SOURCE_DIR}/bench/${folder}/")
  set(program "${folder}_bench")
  add_executable(${program} ${sources})
  shared_compile_settings(${program})
  target_include_directories(${program} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${program} PRIVATE Shared::Shared Shared_benchmark ${arg_PEERS})
  target_compile_definitions(${program} PRIVATE
    SHARED_TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data"
    SHARED_EXAMPLE_DATA_DIR="${PROJECT_SOURCE_DIR}/examples/data")
  set_target_properties(${program} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
endfunction()
