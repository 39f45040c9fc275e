# arvmui_configure_api_reference(ROOT <source tree> FOLDER <for the pages> VERSION <version>
#                                DOXYFILE <file to write> [INPUT <variable>] [STRICT] [C_ONLY])
#
# Writes the Doxyfile for the headers of a source tree; the variable receives what it reads. With STRICT
# Doxygen fails where it has something to complain about. C_ONLY leaves the layer for C++ out, and lets
# Doxygen complain about all that has no comment: in C++ a constructor need not have one.
# A function of its own because a test configures the reference, too.

set(_ARVMUI_DOXYFILE_TEMPLATE "${CMAKE_CURRENT_LIST_DIR}/Doxyfile.in")

function(arvmui_configure_api_reference)
    cmake_parse_arguments(PARSE_ARGV 0 arg "STRICT;C_ONLY" "ROOT;FOLDER;VERSION;DOXYFILE;INPUT" "")

    set(input "${arg_ROOT}/docs/api_main_page.dox" "${arg_ROOT}/include/arvmui.h")
    set(ARVMUI_API_UNDOCUMENTED_IS_WRONG YES)
    if(NOT arg_C_ONLY)
        list(APPEND input "${arg_ROOT}/include/arvmui.hpp")
        set(ARVMUI_API_UNDOCUMENTED_IS_WRONG NO)
    endif()
    set(ARVMUI_API_WARNINGS_ARE NO)
    if(arg_STRICT)
        set(ARVMUI_API_WARNINGS_ARE FAIL_ON_WARNINGS)
    endif()

    set(ARVMUI_API_VERSION "${arg_VERSION}")
    set(ARVMUI_API_ROOT "${arg_ROOT}")
    set(ARVMUI_API_FOLDER "${arg_FOLDER}")
    list(JOIN input "\" \"" ARVMUI_API_INPUT)
    configure_file("${_ARVMUI_DOXYFILE_TEMPLATE}" "${arg_DOXYFILE}" @ONLY)

    if(arg_INPUT)
        set(${arg_INPUT} ${input} PARENT_SCOPE)
    endif()
endfunction()
