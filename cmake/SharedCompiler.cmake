# Compiler settings shared by the library, its tests, benchmarks and examples.

find_program(CCACHE_PROGRAM ccache)
if(PROJECT_IS_TOP_LEVEL AND CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13
   AND NOT SHARED_WARNINGS_AS_ERRORS)
  # GCC 12 at -O3, which the presets do not use, takes the copy of a short literal in front of a std::string for one
  # that overlaps (its bug 105651).
  set(SHARED_FALSE_WARNINGS -Wno-restrict)
endif()

# shared_compile_settings(<target>): language level, visibility, warnings and exact floating point.
function(shared_compile_settings target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /permissive- /utf-8 /fp:precise
                           $<$<BOOL:${SHARED_WARNINGS_AS_ERRORS}>:/WX>)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                           -ffp-contract=off ${SHARED_FALSE_WARNINGS}
                           $<$<BOOL:${SHARED_WARNINGS_AS_ERRORS}>:-Werror>)
  endif()
  if(MINGW)
    # Of the copies of an inline function the linker keeps any, but GCC lets a caller here rely on the registers that
    # its own copy leaves alone.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-ipa-ra>)
  endif()
  if(WIN32)
    target_compile_definitions(${target} PRIVATE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN)
  endif()
endfunction()

# shared_host_headers(<target> <folder>): lets a cross build see one folder of the host's header-only libraries,
# through a folder that holds nothing else, so that no other host header can slip in.
function(shared_host_headers target folder)
  set(link_folder "${PROJECT_BINARY_DIR}/${folder}-include")
  file(MAKE_DIRECTORY "${link_folder}")
  file(CREATE_LINK "/usr/include/${folder}" "${link_folder}/${folder}" SYMBOLIC)
  target_include_directories(${target} SYSTEM INTERFACE "${link_folder}")
endfunction()

# shared_header_only(<target> <folder> <package>): a header-only library of the host as an interface target.
function(shared_header_only target folder package)
  if(TARGET ${target})
    return()
  endif()
  add_library(${target} INTERFACE)
  find_path(SHARED_${folder}_INCLUDE_DIR ${folder} HINTS /usr/include NO_CMAKE_FIND_ROOT_PATH)
  if(NOT SHARED_${folder}_INCLUDE_DIR)
    message(FATAL_ERROR "${folder} is missing: install ${package} or set SHARED_${folder}_INCLUDE_DIR")
  endif()
  if(CMAKE_CROSSCOMPILING)
    shared_host_headers(${target} ${folder})
  else()
    target_include_directories(${target} SYSTEM INTERFACE "${SHARED_${folder}_INCLUDE_DIR}")
  endif()
endfunction()

# Boost is used header-only.
function(shared_find_boost)
  if(TARGET Shared_boost)
    return()
  endif()
  add_library(Shared_boost INTERFACE)
  if(CMAKE_CROSSCOMPILING AND EXISTS /usr/include/boost)
    shared_host_headers(Shared_boost boost)
  else()
    find_package(Boost 1.81 REQUIRED)
    target_include_directories(Shared_boost SYSTEM INTERFACE ${Boost_INCLUDE_DIRS})
  endif()
endfunction()

# CLI11 is header-only, too.
function(shared_find_cli11)
  if(TARGET Shared_cli11)
    return()
  endif()
  add_library(Shared_cli11 INTERFACE)
  if(CMAKE_CROSSCOMPILING AND EXISTS /usr/include/CLI)
    shared_host_headers(Shared_cli11 CLI)
  else()
    find_package(CLI11 REQUIRED)
    target_link_libraries(Shared_cli11 INTERFACE CLI11::CLI11)
  endif()
endfunction()
