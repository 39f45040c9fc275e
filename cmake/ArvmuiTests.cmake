# Functions with which the folders under tests/ list their programs. All programs lie in tests/bin of
# the build folder, beside a copy of the DLL and its resource libraries.
#
#   arvmui_add_unit_test(name SOURCES file... [options])     GoogleTest + the library's objects
#   arvmui_add_api_test(name SOURCES file... [options])      GoogleTest + the DLL
#   arvmui_add_build_test(name SOURCES file... [options])    GoogleTest alone, for tests that look at files
#   arvmui_add_test_program(name SOURCES file... [options])  a host program for tests to start; no GoogleTest
#
# Options:
#   LIBRARIES library...  further libraries
#   LABELS label...       further ctest labels ("window" for tests that show one: there is one keyboard and one
#                         foreground, so these never run at the same time)
#   TIMEOUT seconds       for one ctest entry; 120 by default
#   RESOURCE_LOCK name... tests holding the same name never run at the same time
#   SEPARATE_TESTS        one ctest entry for each TEST, for tests that change their process for good. Usually the
#                         whole program is one entry: starting a program takes longer than most tests.
#   DEPENDS target...     what has to be built before, such as programs the test starts
#   OPTIMIZED             the tests themselves compute much; usually their code is not optimized, which makes
#                         building them twice as fast
#   WMAIN                 the program's entry is wmain
#   WIN32                 a window program without a console

set(ARVMUI_TEST_BIN_DIR "${PROJECT_BINARY_DIR}/tests/bin")

# Copies, because bin/ is what gets shipped and a test may change what lies beside it.
add_custom_target(arvmui_test_files ALL
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${ARVMUI_TEST_BIN_DIR}"
    COMMAND "${CMAKE_COMMAND}" -E copy_if_different "$<TARGET_FILE:arvmui>" "${ARVMUI_TEST_BIN_DIR}"
    COMMENT "Copying the DLL and its resource libraries for the tests")

# GoogleTest's headers take longer to compile than most tests, so they are compiled once for all. The
# other compiler warns about each definition in which a test and the headers differ.
if(NOT MSVC)
    file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/test_headers.cpp" CONTENT "")
    add_library(arvmui_test_headers OBJECT "${CMAKE_CURRENT_BINARY_DIR}/test_headers.cpp")
    target_link_libraries(arvmui_test_headers PRIVATE arvmui_options GTest::gmock GTest::gtest)
    target_compile_options(arvmui_test_headers PRIVATE -O0)
    target_precompile_headers(arvmui_test_headers PRIVATE
        <gmock/gmock.h> <gtest/gtest.h> <windows.h> <filesystem> <functional> <string> <vector>)
endif()

# The resource libraries defined in a folder and below.
function(_arvmui_collect_modules folder result)
    set(modules "")
    get_property(targets DIRECTORY "${folder}" PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target IN LISTS targets)
        get_target_property(type ${target} TYPE)
        if(type STREQUAL "MODULE_LIBRARY")
            list(APPEND modules ${target})
        endif()
    endforeach()
    get_property(subfolders DIRECTORY "${folder}" PROPERTY SUBDIRECTORIES)
    foreach(subfolder IN LISTS subfolders)
        _arvmui_collect_modules("${subfolder}" below)
        list(APPEND modules ${below})
    endforeach()
    set(${result} ${modules} PARENT_SCOPE)
endfunction()

_arvmui_collect_modules("${PROJECT_SOURCE_DIR}/translations" ARVMUI_TRANSLATIONS)
foreach(library IN LISTS ARVMUI_TRANSLATIONS)
    set(folder "${ARVMUI_TEST_BIN_DIR}/resource/$<PATH:GET_FILENAME,$<TARGET_FILE_DIR:${library}>>")
    add_custom_command(TARGET arvmui_test_files POST_BUILD
        COMMAND "${CMAKE_COMMAND}" -E make_directory "${folder}"
        COMMAND "${CMAKE_COMMAND}" -E copy_if_different "$<TARGET_FILE:${library}>" "${folder}")
    add_dependencies(arvmui_test_files ${library})
endforeach()

function(_arvmui_add_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "WMAIN;WIN32;SEPARATE_TESTS;OPTIMIZED" "TIMEOUT"
        "SOURCES;LIBRARIES;LABELS;RESOURCE_LOCK;DEPENDS")
    if(arg_UNPARSED_ARGUMENTS OR NOT arg_SOURCES)
        message(FATAL_ERROR "${name}: SOURCES missing or unknown arguments: ${arg_UNPARSED_ARGUMENTS}")
    endif()
    add_executable(${name} ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "$<1:${ARVMUI_TEST_BIN_DIR}>")
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} arvmui_options)
    add_dependencies(${name} arvmui_test_files ${arg_DEPENDS})
    if(arg_WIN32)
        set_target_properties(${name} PROPERTIES WIN32_EXECUTABLE ON)
    endif()
    if(arg_WMAIN AND NOT MSVC)
        target_link_options(${name} PRIVATE -municode)
    endif()
endfunction()

function(_arvmui_add_googletest name kind)
    cmake_parse_arguments(PARSE_ARGV 2 arg "WMAIN;WIN32;SEPARATE_TESTS;OPTIMIZED" "TIMEOUT"
        "SOURCES;LIBRARIES;LABELS;RESOURCE_LOCK;DEPENDS")
    if(TARGET arvmui_test_support)
        target_link_libraries(${name} PRIVATE arvmui_test_support)
    endif()
    target_link_libraries(${name} PRIVATE GTest::gmock_main GTest::gmock GTest::gtest)
    if(TARGET arvmui_test_headers AND NOT arg_OPTIMIZED)
        # Headers that were compiled without optimization serve only what is compiled without it.
        target_compile_options(${name} PRIVATE "$<$<COMPILE_LANGUAGE:CXX>:-O0>")
        target_precompile_headers(${name} REUSE_FROM arvmui_test_headers)
    endif()

    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    if("window" IN_LIST arg_LABELS)
        list(APPEND arg_RESOURCE_LOCK foreground)
    endif()
    if(NOT arg_SEPARATE_TESTS)
        add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY "${ARVMUI_TEST_BIN_DIR}")
        set_tests_properties(${name} PROPERTIES
            TIMEOUT ${arg_TIMEOUT}
            LABELS "${kind};${arg_LABELS}"
            RESOURCE_LOCK "${arg_RESOURCE_LOCK}")
        return()
    endif()

    # At test time, so that building needs no Wine.
    gtest_discover_tests(${name}
        TEST_PREFIX "${name}."
        TEST_LIST ${name}_TESTS
        NO_PRETTY_VALUES
        WORKING_DIRECTORY "${ARVMUI_TEST_BIN_DIR}"
        DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT ${arg_TIMEOUT})
    # gtest_discover_tests cuts a property with several values apart, so these are set behind it.
    set(script "${CMAKE_CURRENT_BINARY_DIR}/${name}_properties.cmake")
    file(WRITE "${script}"
        "foreach(test IN LISTS ${name}_TESTS)\n"
        "  set_tests_properties(\"\${test}\" PROPERTIES\n"
        "    LABELS \"${kind};${arg_LABELS}\"\n"
        "    RESOURCE_LOCK \"${arg_RESOURCE_LOCK}\")\n"
        "endforeach()\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${script}")
endfunction()

function(arvmui_add_unit_test name)
    _arvmui_add_program(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE arvmui_objects)
    _arvmui_add_googletest(${name} unit ${ARGN})
endfunction()

function(arvmui_add_api_test name)
    _arvmui_add_program(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE arvmui)
    _arvmui_add_googletest(${name} api ${ARGN})
endfunction()

function(arvmui_add_build_test name)
    _arvmui_add_program(${name} ${ARGN})
    _arvmui_add_googletest(${name} build ${ARGN})
endfunction()

function(arvmui_add_test_program name)
    _arvmui_add_program(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE arvmui)
endfunction()
