# Provides GTest::gtest_main and GTest::gmock: a package of the target where there is one, else the sources.
# Without either it warns and provides nothing: the DLL itself can still be built.

include(GoogleTest)

set(ARVMUI_GOOGLETEST_SOURCE_DIR "/usr/src/googletest" CACHE PATH "Sources of GoogleTest, where no package is found")

find_package(GTest CONFIG QUIET)
if(NOT GTest_FOUND)
    if(NOT EXISTS "${ARVMUI_GOOGLETEST_SOURCE_DIR}/CMakeLists.txt")
        message(WARNING
            "No tests will be built. GoogleTest was found neither as a package (one with the static C runtime; set CMAKE_PREFIX_PATH "
            "or a package manager's CMAKE_TOOLCHAIN_FILE) nor as sources in ARVMUI_GOOGLETEST_SOURCE_DIR "
            "(${ARVMUI_GOOGLETEST_SOURCE_DIR}). With ARVMUI_BUILD_TESTS=OFF it is not needed.")
        return()
    endif()
    set(INSTALL_GTEST OFF)
    set(gtest_force_shared_crt OFF CACHE BOOL "" FORCE)
    add_subdirectory("${ARVMUI_GOOGLETEST_SOURCE_DIR}" "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
    if(NOT TARGET GTest::gmock)
        add_library(GTest::gmock ALIAS gmock)
    endif()
    if(NOT TARGET GTest::gmock_main)
        add_library(GTest::gmock_main ALIAS gmock_main)
    endif()
endif()
