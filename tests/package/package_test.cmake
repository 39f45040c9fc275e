# What the tests of the installed package share. Each is run with
#   BUILD, PREFIX, SCRATCH    build folder, where the package was installed, a folder for the test's own use
#   EMULATOR                  what runs Windows programs; empty on Windows
# and the compilers of the build: C_COMPILER, CXX_COMPILER, RC_COMPILER, GENERATOR.

cmake_minimum_required(VERSION 3.25)

function(run)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "OUTPUT" "COMMAND")
    execute_process(COMMAND ${arg_COMMAND} WORKING_DIRECTORY "${SCRATCH}"
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        list(JOIN arg_COMMAND " " command)
        message(FATAL_ERROR "${command}: ${result}\n${output}${errors}")
    endif()
    if(arg_OUTPUT)
        string(REPLACE "\r\n" "\n" output "${output}")
        set(${arg_OUTPUT} "${output}" PARENT_SCOPE)
    endif()
endfunction()

# As a customer calls it: without this project's toolchain file.
function(configure_and_build source build)
    run(COMMAND "${CMAKE_COMMAND}" -S "${source}" -B "${build}" -G "${GENERATOR}"
        -D CMAKE_BUILD_TYPE=Release -D CMAKE_SYSTEM_NAME=Windows
        -D "CMAKE_C_COMPILER=${C_COMPILER}" -D "CMAKE_CXX_COMPILER=${CXX_COMPILER}"
        -D "CMAKE_RC_COMPILER=${RC_COMPILER}" -D "CMAKE_PREFIX_PATH=${PREFIX}" ${ARGN})
    run(COMMAND "${CMAKE_COMMAND}" --build "${build}" --parallel 2)
endfunction()

# A program's output on a command line must be what is expected.
function(expect_output expected)
    run(COMMAND ${EMULATOR} ${ARGN} OUTPUT output)
    if(NOT output STREQUAL expected)
        list(JOIN ARGN " " command)
        message(SEND_ERROR "${command} says\n${output}instead of\n${expected}")
    endif()
endfunction()

function(expect_file path)
    if(NOT EXISTS "${path}")
        message(SEND_ERROR "${path} is missing")
    endif()
endfunction()

file(REMOVE_RECURSE "${SCRATCH}")
file(MAKE_DIRECTORY "${SCRATCH}")
