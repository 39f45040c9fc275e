# "cpack" in the build folder packs the SDK: a ZIP file and, where wixl and msibuild are, an installer
# package. The same files give the same packages, byte by byte.

set(CPACK_PACKAGE_NAME "arvmui")
set(CPACK_PACKAGE_VENDOR "ARVMUI")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_FILE_NAME "arvmui-${PROJECT_VERSION}-win64")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)
set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/package_without_dates.cmake")
set(CPACK_GENERATOR ZIP)

find_program(ARVMUI_WIXL wixl)
find_program(ARVMUI_MSIBUILD msibuild)
find_program(ARVMUI_MSIINFO msiinfo)
if(ARVMUI_WIXL AND ARVMUI_MSIBUILD AND ARVMUI_MSIINFO)
    list(APPEND CPACK_GENERATOR External)
    set(CPACK_EXTERNAL_ENABLE_STAGING ON)
    set(CPACK_EXTERNAL_PACKAGE_SCRIPT "${CMAKE_CURRENT_LIST_DIR}/package_msi.cmake")
    set(CPACK_ARVMUI_WIXL "${ARVMUI_WIXL}")
    set(CPACK_ARVMUI_MSIBUILD "${ARVMUI_MSIBUILD}")
    set(CPACK_ARVMUI_MSIINFO "${ARVMUI_MSIINFO}")
else()
    message(STATUS "The SDK's installer package is not built: wixl or msitools is missing")
endif()

include(CPack)
