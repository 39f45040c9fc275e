# A project outside the tree, in C alone and in C and C++: finds the package, links, builds its own resource
# libraries and runs; and a program of it that loads the DLL itself.

include("${CMAKE_CURRENT_LIST_DIR}/package_test.cmake")

file(COPY "${CMAKE_CURRENT_LIST_DIR}/consumer" DESTINATION "${SCRATCH}")
foreach(languages IN ITEMS "C" "C CXX")
    string(MAKE_C_IDENTIFIER "${languages}" name)
    set(build "${SCRATCH}/build ${name}")
    string(REPLACE " " "\\;" list "${languages}")
    configure_and_build("${SCRATCH}/consumer" "${build}" -D "LANGUAGES=${list}")

    file(GLOB programs "${build}/programs/*.exe")
    list(LENGTH programs count)
    if(NOT count EQUAL 2 AND NOT (count EQUAL 4 AND languages MATCHES "CXX"))
        message(SEND_ERROR "${languages}: ${programs} were built")
    endif()
    foreach(program IN LISTS programs)
        expect_output("Grüße\n" "${program}" /uilocale:de)
        expect_output("Greetings\n" "${program}" /uilocale:en)
    endforeach()

    # The library's own texts: what was asked for, and English.
    file(GLOB locales RELATIVE "${build}/programs/resource" "${build}/programs/resource/*/arvmuiUI.DLL")
    if(NOT locales STREQUAL "de/arvmuiUI.DLL;en/arvmuiUI.DLL")
        message(SEND_ERROR "The library's texts beside the program: ${locales}")
    endif()
endforeach()
