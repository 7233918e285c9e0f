# Read by ctest when it starts: adds a test for each suite of the GoogleTest program SHARED_TEST_COMMAND (behind what
# runs it), named SHARED_TEST_FOLDER.<Suite>. A process a suite and not one a test: under sanitizers and under Wine the
# start of a process costs more than most tests.
#
# The program is asked for its suites, once after every change of it. The limit is generous, because the first program
# under Wine may have to wait until a Windows has been set up. A program that does not answer becomes one test that
# runs all of it, so that its fault is seen and nothing else is kept from running.

list(GET SHARED_TEST_COMMAND -1 program)
set(list_file "${program}.list")
set(timeout 600)

if(NOT EXISTS "${program}")
  add_test("${SHARED_TEST_FOLDER}.isBuilt" "${program}")
  return()
endif()
if(NOT EXISTS "${list_file}" OR "${program}" IS_NEWER_THAN "${list_file}")
  execute_process(COMMAND ${SHARED_TEST_COMMAND} --gtest_list_tests
                  OUTPUT_FILE "${list_file}.new" ERROR_QUIET RESULT_VARIABLE status TIMEOUT ${timeout})
  if(status EQUAL 0)
    file(RENAME "${list_file}.new" "${list_file}")
  else()
    file(REMOVE "${list_file}")
  endif()
endif()

set(suites "")
if(EXISTS "${list_file}")
  # A suite stands alone on its line, its tests below it; typed suites have a comment behind.
  file(STRINGS "${list_file}" suites REGEX "^[A-Za-z0-9_/]+\\.( *#.*)?$")
endif()
foreach(line IN LISTS suites)
  string(REGEX REPLACE "\\..*" "" suite "${line}")
  set(name "${SHARED_TEST_FOLDER}.${suite}")
  add_test("${name}" ${SHARED_TEST_COMMAND} "--gtest_filter=${suite}.*" --gtest_brief=1)
  set_tests_properties("${name}" PROPERTIES TIMEOUT ${timeout})
endforeach()
if(NOT suites)
  add_test("${SHARED_TEST_FOLDER}.all" ${SHARED_TEST_COMMAND})
  set_tests_properties("${SHARED_TEST_FOLDER}.all" PROPERTIES TIMEOUT ${timeout})
endif()
