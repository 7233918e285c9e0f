# Configures, builds and runs one of the consumer projects:
#
#   cmake -D KIND=find_package|pkg_config|add_subdirectory -D SOURCE_DIR=... -D WORK_DIR=... -D PREFIX=...
#         -D SHARED=ON|OFF [-D COMPILER=...] [-D FLAGS=...] [-D TOOLCHAIN=...] [-D EMULATOR=...] -P RunConsumer.cmake

set(build "${WORK_DIR}/${KIND}")
file(REMOVE_RECURSE "${build}")

set(options -G Ninja -D CMAKE_BUILD_TYPE=Debug "-DCMAKE_CXX_FLAGS=${FLAGS}" -D CMAKE_CXX_FLAGS_DEBUG=-O0
            -D BUILD_SHARED_LIBS=${SHARED})
if(TOOLCHAIN)
  list(APPEND options "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}")
else()
  list(APPEND options "-DCMAKE_CXX_COMPILER=${COMPILER}")
endif()
if(KIND STREQUAL "add_subdirectory")
  get_filename_component(root "${SOURCE_DIR}/../.." ABSOLUTE)
  list(APPEND options "-DSHARED_SOURCE_DIR=${root}" -D BUILD_SHARED_LIBS=OFF -D CMAKE_CXX_STANDARD=23)
elseif(KIND STREQUAL "find_package")
  # Named directly: a cross build looks for packages in the folders of its target only.
  file(GLOB_RECURSE config "${PREFIX}/*/SharedConfig.cmake")
  get_filename_component(folder "${config}" DIRECTORY)
  # A header that includes what is not installed shows only here.
  file(GLOB_RECURSE headers RELATIVE "${PREFIX}/include" "${PREFIX}/include/*.h")
  # The adapters need the libraries that they adapt to.
  list(FILTER headers EXCLUDE REGEX "/(BoostGeometry|DoubleDoubleEigen|EigenMaps)\\.h$")
  list(TRANSFORM headers REPLACE "(.+)" "#include \"\\1\"\n")
  list(JOIN headers "" includes)
  file(WRITE "${build}/all_headers.cpp" "${includes}")
  list(APPEND options "-DShared_DIR=${folder}" "-DALL_HEADERS=${build}/all_headers.cpp")
else()
  file(GLOB_RECURSE module "${PREFIX}/*/shared.pc")
  get_filename_component(folder "${module}" DIRECTORY)
  set(ENV{PKG_CONFIG_PATH} "${folder}")
  if(NOT SHARED)
    list(APPEND options -D SHARED_PKG_CONFIG_KIND=--static)
  endif()
endif()

execute_process(COMMAND "${CMAKE_COMMAND}" -S "${SOURCE_DIR}/${KIND}" -B "${build}" ${options}
                COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${build}" COMMAND_ERROR_IS_FATAL ANY)

if(EMULATOR)
  # The installed folder alone must be enough: it holds the compiler's libraries too.
  string(REPLACE "/" "\\" folder "Z:${PREFIX}/bin")
  set(ENV{WINEPATH} "${folder}")
  execute_process(COMMAND "${EMULATOR}" "${build}/consumer.exe" COMMAND_ERROR_IS_FATAL ANY)
else()
  execute_process(COMMAND "${build}/consumer" COMMAND_ERROR_IS_FATAL ANY)
endif()

if(KIND STREQUAL "find_package" AND SHARED AND NOT EMULATOR)
  # As on systems where /lib leads to /usr/lib: the library is loaded from behind a link, and what is beside the link
  # is not what is beside the library.
  set(root "${WORK_DIR}/linked")
  file(REMOVE_RECURSE "${root}")
  file(COPY "${PREFIX}/" DESTINATION "${root}/usr")
  file(GLOB_RECURSE libraries RELATIVE "${root}/usr" "${root}/usr/*/libshared.so")
  list(GET libraries 0 library)
  cmake_path(GET library PARENT_PATH folder)
  string(REGEX REPLACE "/.*" "" top "${folder}")
  file(CREATE_LINK "usr/${top}" "${root}/${top}" SYMBOLIC)
  set(ENV{LD_LIBRARY_PATH} "${root}/${folder}")
  execute_process(COMMAND "${build}/consumer" COMMAND_ERROR_IS_FATAL ANY)
endif()

if(KIND STREQUAL "add_subdirectory")
  # A part of another project builds the library and nothing else.
  execute_process(COMMAND ninja -C "${build}" -t targets all OUTPUT_VARIABLE targets
                  COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]*(gtest|_tests|_bench|Fuzz|examples/|install)[^\n]*" strangers "${targets}")
  if(strangers)
    list(JOIN strangers "\n  " strangers)
    message(FATAL_ERROR "Built besides the library:\n  ${strangers}")
  endif()
endif()
