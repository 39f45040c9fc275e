# What "cmake --install" and the packages hold: the SDK.
#
#   bin/          arvmui64.dll and its texts in resource/<locale>/, the tools
#   lib/          import libraries, the CMake package, the pkg-config file, debug symbols
#   include/      arvmui.h, arvmui.hpp
#   share/arvmui/ documentation, templates, bindings and samples, as they lie in the source tree

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# Debian's host layout (lib/x86_64-linux-gnu) means nothing on Windows.
set(CMAKE_INSTALL_LIBDIR lib)
set(ARVMUI_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/arvmui")
set(ARVMUI_INSTALL_SHAREDIR "${CMAKE_INSTALL_DATADIR}/arvmui")

install(TARGETS arvmui
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
foreach(locale IN LISTS ARVMUI_LOCALES)
    install(FILES "$<TARGET_FILE:arvmui_texts_${locale}>" DESTINATION "${CMAKE_INSTALL_BINDIR}/resource/${locale}")
endforeach()
if(TARGET muitool)
    install(TARGETS muitool RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
if(TARGET arvmui_msvc_import_library)
    install(FILES "${ARVMUI_MSVC_IMPORT_LIBRARY}" DESTINATION "${CMAKE_INSTALL_LIBDIR}")
endif()
if(MSVC)
    install(FILES "$<TARGET_PDB_FILE:arvmui>" DESTINATION "${CMAKE_INSTALL_LIBDIR}/debug" OPTIONAL)
elseif(ARVMUI_DEBUG_SYMBOLS)
    install(FILES "${ARVMUI_DEBUG_SYMBOLS}" DESTINATION "${CMAKE_INSTALL_LIBDIR}/debug")
endif()

install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")

configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/arvmuiConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/package/arvmuiConfig.cmake"
    INSTALL_DESTINATION "${ARVMUI_INSTALL_CMAKEDIR}"
    PATH_VARS CMAKE_INSTALL_BINDIR CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_INCLUDEDIR)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/package/arvmuiConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
configure_file("${CMAKE_CURRENT_LIST_DIR}/arvmui.pc.in" "${PROJECT_BINARY_DIR}/package/arvmui.pc" @ONLY)
install(FILES
    "${PROJECT_BINARY_DIR}/package/arvmuiConfig.cmake"
    "${PROJECT_BINARY_DIR}/package/arvmuiConfigVersion.cmake"
    "${CMAKE_CURRENT_LIST_DIR}/ArvmuiAddResourceLibrary.cmake"
    "${CMAKE_CURRENT_LIST_DIR}/ArvmuiCopyRuntime.cmake"
    "${CMAKE_CURRENT_LIST_DIR}/copy_runtime_files.cmake"
    "${CMAKE_CURRENT_LIST_DIR}/resource_library.ld"
    DESTINATION "${ARVMUI_INSTALL_CMAKEDIR}")
install(FILES "${PROJECT_BINARY_DIR}/package/arvmui.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

install(DIRECTORY
    "${PROJECT_SOURCE_DIR}/templates"
    "${PROJECT_SOURCE_DIR}/bindings"
    "${PROJECT_SOURCE_DIR}/samples"
    DESTINATION "${ARVMUI_INSTALL_SHAREDIR}"
    USE_SOURCE_PERMISSIONS)
install(FILES
    "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
    "${PROJECT_SOURCE_DIR}/LICENSE"
    DESTINATION "${ARVMUI_INSTALL_SHAREDIR}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs" DESTINATION "${ARVMUI_INSTALL_SHAREDIR}"
    FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.svg")
if(TARGET arvmui_docs)
    install(DIRECTORY "${PROJECT_BINARY_DIR}/docs/api" DESTINATION "${ARVMUI_INSTALL_SHAREDIR}/docs")
endif()
