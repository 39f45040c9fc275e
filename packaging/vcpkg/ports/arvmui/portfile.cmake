# An overlay port: it builds the source tree in which it lies.
get_filename_component(SOURCE_PATH "${CMAKE_CURRENT_LIST_DIR}/../../../.." ABSOLUTE)

vcpkg_check_linkage(ONLY_DYNAMIC_LIBRARY)

# One DLL with a C interface and the C runtime inside serves debug builds too.
set(VCPKG_BUILD_TYPE release)

vcpkg_check_features(OUT_FEATURE_OPTIONS FEATURE_OPTIONS
    FEATURES
        tools ARVMUI_BUILD_TOOLS
)

vcpkg_cmake_configure(
    SOURCE_PATH "${SOURCE_PATH}"
    OPTIONS
        ${FEATURE_OPTIONS}
        -DARVMUI_BUILD_TESTS=OFF
        -DARVMUI_BUILD_SAMPLES=OFF
        -DARVMUI_INSTALL=ON
)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(CONFIG_PATH lib/cmake/arvmui)
vcpkg_fixup_pkgconfig()
vcpkg_copy_pdbs()
if("tools" IN_LIST FEATURES)
    # It loads arvmui64.dll, which vcpkg copies beside it, from its own folder.
    vcpkg_copy_tools(TOOL_NAMES muitool AUTO_CLEAN)
endif()

file(INSTALL "${CMAKE_CURRENT_LIST_DIR}/usage" DESTINATION "${CURRENT_PACKAGES_DIR}/share/${PORT}")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE")
