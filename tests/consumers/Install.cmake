# Installs a build into one folder, moves the result to another and looks for paths of this machine in it:
#
#   cmake -D BUILD_DIR=... -D SOURCE_DIR=... -D PREFIX=... -P Install.cmake
#
# Whoever uses PREFIX afterwards proves that the installed folder can be moved.

set(first "${PREFIX}-first")
file(REMOVE_RECURSE "${first}" "${PREFIX}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${first}"
                COMMAND_ERROR_IS_FATAL ANY)
file(RENAME "${first}" "${PREFIX}")

file(GLOB_RECURSE files LIST_DIRECTORIES false "${PREFIX}/*")
set(checked 0)
foreach(file IN LISTS files)
  if(file MATCHES "\\.(so[.0-9]*|a|dll|exe)$")
    continue()
  endif()
  file(READ "${file}" text)
  foreach(path IN ITEMS "${SOURCE_DIR}" "${BUILD_DIR}" "${PREFIX}" /usr/include /usr/lib /usr/local /tmp/ /home/)
    string(FIND "${text}" "${path}" position)
    if(NOT position EQUAL -1)
      message(SEND_ERROR "${file} holds the path ${path}")
    endif()
  endforeach()
  math(EXPR checked "${checked} + 1")
endforeach()
message(STATUS "${checked} files looked at")
if(checked LESS 5)
  message(FATAL_ERROR "Too little was installed")
endif()
