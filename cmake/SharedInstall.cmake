# What is installed: the library, its headers under the path by which they are included, a CMake package, a
# pkg-config file, and the archives that CPack makes of them. Nothing that is installed holds an absolute path, so
# that the installed folder can be moved.

include(CMakePackageConfigHelpers)

set(SHARED_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/Shared")
# Data files: where the library looks for them, on Windows beside the DLL.
if(WIN32)
  set(SHARED_INSTALL_DATADIR "${CMAKE_INSTALL_BINDIR}")
else()
  set(SHARED_INSTALL_DATADIR "${CMAKE_INSTALL_DATADIR}/shared")
endif()

# shared_install_library(): library and headers, and the targets file that describes them. Two components: what programs
# run with, and what they are compiled with.
function(shared_install_library)
  install(TARGETS Shared EXPORT SharedTargets
          RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime
          LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT development
          ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
          FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT development)
  install(EXPORT SharedTargets NAMESPACE Shared:: DESTINATION "${SHARED_INSTALL_CMAKEDIR}" COMPONENT development)
  install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
          "${PROJECT_SOURCE_DIR}/tools/codepages/licences/unicode-icu-data-V3.txt"
          DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documents)
  install(FILES "${PROJECT_SOURCE_DIR}/shared/color/Colors.ini" DESTINATION "${SHARED_INSTALL_DATADIR}"
          COMPONENT runtime)
  install(FILES "${PROJECT_SOURCE_DIR}/Symbols/LICENCE-hershey.txt" "${PROJECT_SOURCE_DIR}/Symbols/Markers.sym"
                "${PROJECT_SOURCE_DIR}/Symbols/Stroke.sym"
          DESTINATION "${SHARED_INSTALL_DATADIR}/Symbols" COMPONENT runtime)
  # How debuggers show the library's values.
  install(FILES "${PROJECT_SOURCE_DIR}/tools/debuggers/shared_gdb.py"
                "${PROJECT_SOURCE_DIR}/tools/debuggers/Shared.natvis"
          DESTINATION "${CMAKE_INSTALL_DATADIR}/shared/debuggers" COMPONENT development)
endfunction()

# shared_static_dependencies(): what a user of the archive must link besides it, in the words of CMake packages
# (SHARED_STATIC_FIND) and of pkg-config (SHARED_PC_REQUIRES, SHARED_PC_LIBS). A shared library brings its own.
function(shared_static_dependencies)
  set(find "")
  set(requires "")
  set(libraries -lstdc++ -lm)
  get_target_property(linked Shared LINK_LIBRARIES)
  if(BUILD_SHARED_LIBS)
    set(linked "")
    set(libraries "")
  endif()
  foreach(library IN LISTS linked)
    if(library MATCHES "^::@|BUILD_INTERFACE")
      continue() # marks of the folder that linked it, and what only building needs
    elseif(library MATCHES "^ICU::(.+)")
      string(APPEND find "find_dependency(ICU COMPONENTS ${CMAKE_MATCH_1})\n")
      list(APPEND requires "icu-${CMAKE_MATCH_1}")
    elseif(library STREQUAL "Threads::Threads")
      string(APPEND find "find_dependency(Threads)\n")
      list(APPEND libraries -pthread)
    elseif(library MATCHES "OpenMP::")
      string(APPEND find "find_dependency(OpenMP)\n")
      list(APPEND libraries -fopenmp)
    elseif(library MATCHES "^[a-z0-9_]+$")
      list(APPEND libraries "-l${library}")
    else()
      message(FATAL_ERROR "shared_static_dependencies() does not know what ${library} is")
    endif()
  endforeach()
  string(JOIN " " requires ${requires})
  string(JOIN " " libraries ${libraries})
  set(SHARED_STATIC_FIND "${find}" PARENT_SCOPE)
  set(SHARED_PC_REQUIRES "${requires}" PARENT_SCOPE)
  set(SHARED_PC_LIBS "${libraries}" PARENT_SCOPE)
endfunction()

# shared_install_package_config(): find_package(Shared) and its version check.
function(shared_install_package_config)
  configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/SharedConfig.cmake.in" "${PROJECT_BINARY_DIR}/SharedConfig.cmake"
    INSTALL_DESTINATION "${SHARED_INSTALL_CMAKEDIR}"
    PATH_VARS SHARED_INSTALL_DATADIR
    NO_SET_AND_CHECK_MACRO)
  # Until version 1.0 a change of the second number may break users.
  write_basic_package_version_file("${PROJECT_BINARY_DIR}/SharedConfigVersion.cmake"
                                   COMPATIBILITY SameMinorVersion)
  install(FILES "${PROJECT_BINARY_DIR}/SharedConfig.cmake"
                "${PROJECT_BINARY_DIR}/SharedConfigVersion.cmake"
          DESTINATION "${SHARED_INSTALL_CMAKEDIR}" COMPONENT development)
endfunction()

# shared_install_pkg_config(): shared.pc, whose prefix is found from the place of the file itself.
function(shared_install_pkg_config)
  set(pkgconfigdir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
             BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}/${pkgconfigdir}" OUTPUT_VARIABLE prefix)
  set(SHARED_PC_PREFIX "\${pcfiledir}/${prefix}")
  string(REGEX REPLACE "/$" "" SHARED_PC_PREFIX "${SHARED_PC_PREFIX}")
  set(SHARED_PC_CFLAGS "")
  if(NOT BUILD_SHARED_LIBS)
    set(SHARED_PC_CFLAGS " -DSHARED_STATIC")
  endif()
  configure_file("${PROJECT_SOURCE_DIR}/cmake/shared.pc.in" "${PROJECT_BINARY_DIR}/shared.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/shared.pc" DESTINATION "${pkgconfigdir}" COMPONENT development)
endfunction()

# shared_install_runtime_dlls(): a program on a Windows machine without the compiler needs its libraries beside it.
function(shared_install_runtime_dlls)
  set(dlls libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
  get_target_property(libraries Shared LINK_LIBRARIES)
  if(libraries MATCHES "OpenMP::OpenMP")
    list(APPEND dlls libgomp-1.dll)
  endif()
  foreach(dll IN LISTS dlls)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${dll}"
                    OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    if(NOT IS_ABSOLUTE "${file}")
      message(FATAL_ERROR "The compiler does not know where its ${dll} is")
    endif()
    install(PROGRAMS "${file}" DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
  endforeach()
endfunction()

# shared_pack_debian(): two packages as Debian has them, libshared<version of the interface> and libshared-dev. They
# belong below /usr, in the folders of the architecture (tools/package.sh configures so). What each needs is found by
# looking at what the library links.
macro(shared_pack_debian)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_COMPONENTS_GROUPING IGNORE)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
  set(runtime "libshared${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}")
  set(about "Shared is the ground of scientific mapping and graphing programs: wide text
and code pages, text files of any encoding, archives of objects, undoable
commands, vectors and matrices, and polygons with boolean operations.")
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime})
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
  # Loaded by programs that ask for fonts, so that no look at what is linked finds them.
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "libfontconfig1, libfreetype6, libfribidi0, libharfbuzz0b")
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/packaging/debian/triggers")
  set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "${about}\nThis package holds the library that programs run with.")
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libshared-dev)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime} (= ${PROJECT_VERSION})")
  set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
      "${about}\nThis package holds what programs that use it are compiled with.")

  # Every package has these two; the list of changes is compressed without a time, so that builds are the same.
  set(folder "${PROJECT_BINARY_DIR}/debian")
  file(MAKE_DIRECTORY "${folder}")
  execute_process(COMMAND gzip -9nc "${PROJECT_SOURCE_DIR}/packaging/debian/changelog"
                  OUTPUT_FILE "${folder}/changelog.gz" COMMAND_ERROR_IS_FATAL ANY)
  foreach(component IN ITEMS runtime development)
    string(TOUPPER ${component} name)
    install(FILES "${PROJECT_SOURCE_DIR}/packaging/debian/copyright" "${folder}/changelog.gz"
            DESTINATION "share/doc/${CPACK_DEBIAN_${name}_PACKAGE_NAME}" COMPONENT ${component})
  endforeach()
  set(CPACK_COMPONENTS_ALL runtime development)
endmacro()

# shared_pack(): the archives.
macro(shared_pack)
  set(CPACK_PACKAGE_NAME shared)
  set(CPACK_PACKAGE_VENDOR "The Shared authors")
  set(CPACK_PACKAGE_CONTACT "The Shared authors <shared@shared.invalid>")
  set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
  set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
  string(TOLOWER "${CMAKE_SYSTEM_NAME}-x86_64" CPACK_SYSTEM_NAME)
  set(CPACK_STRIP_FILES ON)
  if(WIN32)
    set(CPACK_GENERATOR ZIP)
  elseif(SHARED_PACK_DEBIAN)
    set(CPACK_GENERATOR DEB)
    shared_pack_debian()
  else()
    set(CPACK_GENERATOR TGZ)
  endif()
  include(CPack)
endmacro()

shared_install_library()
shared_static_dependencies()
shared_install_package_config()
shared_install_pkg_config()
if(MINGW)
  shared_install_runtime_dlls()
endif()
if(PROJECT_IS_TOP_LEVEL)
  shared_pack()
endif()
