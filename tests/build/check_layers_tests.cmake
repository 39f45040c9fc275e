# Shows that cmake/check_layers.cmake accepts a good tree and refuses each kind of bad include.

cmake_minimum_required(VERSION 3.25)

# A small tree that is in order.
function(write_good_tree)
    file(REMOVE_RECURSE "${SCRATCH_FOLDER}")
    file(WRITE "${SCRATCH_FOLDER}/include/arvmui.h" "#include <windows.h>\n")
    file(WRITE "${SCRATCH_FOLDER}/src/resources/process_state.h" "#include \"arvmui.h\"\n")
    file(WRITE "${SCRATCH_FOLDER}/src/foundation/heap.h" "#include \"resources/process_state.h\"\n")
    file(WRITE "${SCRATCH_FOLDER}/src/foundation/heap.cpp" "#include \"foundation/heap.h\"\n#include <windows.h>\n")
    file(WRITE "${SCRATCH_FOLDER}/src/foundation/text.h" "#include \"foundation/heap.h\"\n")
    file(WRITE "${SCRATCH_FOLDER}/src/locale/language_tag.h" "#include \"foundation/text.h\"\n")
    file(WRITE "${SCRATCH_FOLDER}/src/locale/locale_list.h" "\n")
    file(WRITE "${SCRATCH_FOLDER}/src/locale/locale_search.h" "#include \"ui/error_dialog.h\"\n")
    file(WRITE "${SCRATCH_FOLDER}/src/ui/error_dialog.h" "#include \"arvmui.h\"\n")
    file(WRITE "${SCRATCH_FOLDER}/src/ui/error_dialog.cpp"
        "#include \"ui/error_dialog.h\"\n#include \"locale/locale_search.h\"\n")
    file(WRITE "${SCRATCH_FOLDER}/samples/hello/main.cpp" "#include \"arvmui.h\"\n")
endfunction()

function(check_tree expectation)
    execute_process(
        COMMAND "${CMAKE_COMMAND}" -D "ARVMUI_ROOT=${SCRATCH_FOLDER}" -P "${ARVMUI_ROOT}/cmake/check_layers.cmake"
        RESULT_VARIABLE result
        ERROR_VARIABLE output)
    string(REGEX REPLACE "[ \n]+" " " output "${output}")
    if(expectation STREQUAL "accepted")
        if(NOT result EQUAL 0)
            message(SEND_ERROR "A good tree was refused: ${output}")
        endif()
    elseif(result EQUAL 0)
        message(SEND_ERROR "Not noticed: ${expectation}")
    else()
        string(FIND "${output}" "${expectation}" position)
        if(position EQUAL -1)
            message(SEND_ERROR "Expected: ${expectation}\nFound: ${output}")
        endif()
    endif()
endfunction()

function(expect_refused file line message)
    write_good_tree()
    file(APPEND "${SCRATCH_FOLDER}/${file}" "${line}\n")
    check_tree("${message}")
endfunction()

write_good_tree()
check_tree(accepted)

expect_refused(src/foundation/text.h "#include \"locale/locale_search.h\""
    "foundation/text.h: is of level 1 and includes locale/locale_search.h of level 3")
expect_refused(src/locale/language_tag.h "#include \"locale/locale_list.h\""
    "locale/language_tag.h: includes locale/locale_list.h of its own level 2")
expect_refused(src/foundation/heap.cpp "  #  include \"foundation/text.h\""
    "foundation/heap.cpp: includes foundation/text.h, which is not named before it in level 1")
expect_refused(src/foundation/unheard_of.h ""
    "foundation/unheard_of.h: has no level")
expect_refused(src/foundation/text.h "#include \"heap.h\""
    "foundation/text.h: includes heap.h, which is not a path below src")
expect_refused(src/foundation/text.h "#include <foundation/heap.h>"
    "foundation/text.h: includes foundation/heap.h of this project in angle brackets")
expect_refused(src/foundation/text.h "#include HEADER"
    "foundation/text.h: has an include that cannot be checked")
expect_refused(src/ui/error_dialog.h "#include \"resources/process_state.h\""
    "ui/error_dialog.h: is a door and includes resources/process_state.h")
expect_refused(src/ui/error_dialog.h "#include <string_view>"
    "ui/error_dialog.h: is a door and includes string_view")
expect_refused(include/arvmui.h "#include \"resources/process_state.h\""
    "arvmui.h: includes resources/process_state.h, which is not named before it in level 0")
expect_refused(samples/hello/main.cpp "#include \"foundation/heap.h\""
    "samples/hello/main.cpp: includes the internal header foundation/heap.h")
