# Runs after CPack has packed: ZIP files hold the dates at which files were made, which differ with each
# build and which CPack cannot leave out.

find_program(ARVMUI_STRIP_NONDETERMINISM strip-nondeterminism)
if(NOT ARVMUI_STRIP_NONDETERMINISM)
    message(STATUS "The ZIP file holds the dates of this build: strip-nondeterminism is missing")
    return()
endif()
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    if(package MATCHES "\\.zip$")
        execute_process(
            COMMAND "${ARVMUI_STRIP_NONDETERMINISM}" --timestamp 946684800 "${package}"
            COMMAND_ERROR_IS_FATAL ANY)
    endif()
endforeach()
