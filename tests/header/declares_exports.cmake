# The public header declares each export, and nothing that is not exported.

cmake_minimum_required(VERSION 3.25)

file(STRINGS "${DEFINITION_FILE}" exports REGEX "^[ \t]+ARVMUI_")
list(TRANSFORM exports STRIP)
list(SORT exports)

file(READ "${HEADER}" text)
# Entry points for other programs are declared as callbacks.
string(REGEX MATCHALL "ARVMUI_CALL(BACK)?[ \t\r\n]+ARVMUI_[A-Za-z0-9_]+[ \t\r\n]*\\(" declared "${text}")
list(TRANSFORM declared REPLACE "^ARVMUI_CALL(BACK)?[ \t\r\n]+" "")
list(TRANSFORM declared REPLACE "[ \t\r\n]*\\($" "")
list(SORT declared)

if(NOT exports)
    message(FATAL_ERROR "${DEFINITION_FILE} lists no exports")
endif()
if(NOT exports STREQUAL declared)
    set(undeclared ${exports})
    list(REMOVE_ITEM undeclared ${declared})
    set(unexported ${declared})
    list(REMOVE_ITEM unexported ${exports})
    message(FATAL_ERROR "Exported and not declared: ${undeclared}\nDeclared and not exported: ${unexported}")
endif()
