# An overlay port that builds the tree it lies in:
#
#   vcpkg install shared --overlay-ports=packaging/vcpkg
#
# In a registry, SOURCE_PATH comes from vcpkg_from_git() with the tag of the version instead.

get_filename_component(SOURCE_PATH "${CURRENT_PORT_DIR}/../.." ABSOLUTE)

vcpkg_cmake_configure(
  SOURCE_PATH "${SOURCE_PATH}"
  OPTIONS
    -DSHARED_BUILD_TESTS=OFF
    -DSHARED_BUILD_EXAMPLES=OFF)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME Shared CONFIG_PATH lib/cmake/Shared)
vcpkg_fixup_pkgconfig()
vcpkg_copy_pdbs()

file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE"
                        "${SOURCE_PATH}/tools/codepages/licences/unicode-icu-data-V3.txt"
                        "${SOURCE_PATH}/Symbols/LICENCE-hershey.txt")
file(INSTALL "${CMAKE_CURRENT_LIST_DIR}/usage" DESTINATION "${CURRENT_PACKAGES_DIR}/share/${PORT}")
