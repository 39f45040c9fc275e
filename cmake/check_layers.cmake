# Fails when a file of the library includes what its level does not allow.
#
#   cmake -D ARVMUI_ROOT=<source tree> -P check_layers.cmake
#
# A file may include its own header and headers of lower levels; inside levels 0 and 1 also files
# named before it. A door, through which a lower level calls upward, includes nothing but arvmui.h.
# Samples and tools use the public header only.

cmake_minimum_required(VERSION 3.25)

set(LEVELS 0 1 2 3 4 5 6 7)
set(ORDERED_LEVELS 0 1)

# A name without extension stands for header and source.
set(LEVEL_0
    arvmui.h
    resources/process_state
    resources/resource_ids.h
    ui/error_dialog.h
    ui/language_dialog.h)
set(LEVEL_1
    foundation/handles.h
    foundation/heap
    foundation/plain_characters.h
    foundation/text
    foundation/text_calls.h
    foundation/paths.h
    foundation/growable_text
    foundation/code_page
    foundation/diagnostic_log
    foundation/system_functions.h
    text/character_decoder
    text/plain_run.h)
set(LEVEL_2
    locale/language_tag
    locale/locale_list
    locale/registry_store
    resources/windows_folder
    resources/resource_path
    cmdline/tokens
    cmdline/argument_escape
    text/encoding_names
    text/text_reader
    ui/locale_display
    ui/host_icon
    ui/placeholder_format
    installer/action_names.h
    installer/font_watch
    installer/installer_library
    installer/name_list
    installer/table_suffix)
set(LEVEL_3
    foundation/process_info
    foundation/rundll_launcher
    cmdline/file_hints
    locale/library_identity
    locale/locale_search
    text/profile_reader
    installer/changed_properties
    installer/package_locales)
set(LEVEL_4
    locale/locale_query
    locale/installed_locales
    resources/resource_files
    resources/resource_loading
    resources/locale_record
    cmdline/uilocale_option
    text/profile_strings
    text/text_file
    installer/package_translation
    installer/session_tables)
set(LEVEL_5
    ui/message_format
    ui/message_box
    ui/error_dialog.cpp
    ui/language_dialog.cpp
    ui/preferred_locales
    ui/arvmui.rc)
set(LEVEL_6
    ui/settings_dialog
    installer/set_locale
    installer/local_package
    installer/font_resetter
    installer/dialog_font)
set(LEVEL_7
    resources/attach.cpp)

set(DOORS ui/error_dialog.h ui/language_dialog.h)
set(PUBLIC_HEADER_USERS samples tools bench)
# What they may include all the same: a step that can be timed only by itself.
set(INTERNAL_HEADER_USES "bench/decoder_bench.cpp:text/character_decoder.h")

set(violations "")

macro(report file text)
    string(APPEND violations "\n  ${file}: ${text}")
endmacro()

# Level of a file and its place inside the level; empty when no level lists it.
function(find_place file level_result index_result)
    string(REGEX REPLACE "\\.(h|cpp)$" "" stem "${file}")
    foreach(name IN ITEMS "${file}" "${stem}")
        foreach(level IN LISTS LEVELS)
            list(FIND LEVEL_${level} "${name}" index)
            if(NOT index EQUAL -1)
                set(${level_result} ${level} PARENT_SCOPE)
                set(${index_result} ${index} PARENT_SCOPE)
                return()
            endif()
        endforeach()
    endforeach()
    set(${level_result} "" PARENT_SCOPE)
endfunction()

# What a file includes, as "quoted:name" and "angled:name".
function(read_includes path result)
    set(includes "")
    file(STRINGS "${path}" lines REGEX "^[ \t]*#[ \t]*include")
    foreach(line IN LISTS lines)
        if(line MATCHES "include[ \t]*\"([^\"]*)\"")
            list(APPEND includes "quoted:${CMAKE_MATCH_1}")
        elseif(line MATCHES "include[ \t]*<([^>]*)>")
            list(APPEND includes "angled:${CMAKE_MATCH_1}")
        else()
            list(APPEND includes "unreadable:${line}")
        endif()
    endforeach()
    set(${result} ${includes} PARENT_SCOPE)
endfunction()

function(project_path name result)
    set(path "${ARVMUI_ROOT}/src/${name}")
    if(name STREQUAL "arvmui.h")
        set(path "${ARVMUI_ROOT}/include/arvmui.h")
    endif()
    set(${result} "${path}" PARENT_SCOPE)
endfunction()

macro(check_file file)
    find_place("${file}" level index)
    project_path("${file}" path)
    string(REGEX REPLACE "\\.[a-z]+$" "" stem "${file}")
    if(level STREQUAL "")
        report("${file}" "has no level; add it to cmake/check_layers.cmake")
    else()
        read_includes("${path}" includes)
        foreach(include IN LISTS includes)
            string(REGEX MATCH "^([a-z]+):(.*)$" matched "${include}")
            set(kind "${CMAKE_MATCH_1}")
            set(name "${CMAKE_MATCH_2}")
            project_path("${name}" included)
            find_place("${name}" included_level included_index)

            if("${file}" IN_LIST DOORS AND NOT include STREQUAL "quoted:arvmui.h")
                report("${file}" "is a door and includes ${name}; a door includes nothing but arvmui.h")
            elseif(kind STREQUAL "unreadable")
                report("${file}" "has an include that cannot be checked: ${name}")
            elseif(kind STREQUAL "angled")
                if(EXISTS "${included}")
                    report("${file}" "includes ${name} of this project in angle brackets")
                endif()
            elseif(NOT EXISTS "${included}")
                report("${file}" "includes ${name}, which is not a path below src")
            elseif(included_level STREQUAL "")
                report("${file}" "includes ${name}, which has no level")
            elseif(NOT name STREQUAL "${stem}.h" AND NOT included_level LESS level)
                if(NOT included_level EQUAL level)
                    report("${file}" "is of level ${level} and includes ${name} of level ${included_level}")
                elseif(NOT level IN_LIST ORDERED_LEVELS)
                    report("${file}" "includes ${name} of its own level ${level}")
                elseif(NOT included_index LESS index)
                    report("${file}" "includes ${name}, which is not named before it in level ${level}")
                endif()
            endif()
        endforeach()
    endif()
endmacro()

if(NOT EXISTS "${ARVMUI_ROOT}/include/arvmui.h")
    message(FATAL_ERROR "ARVMUI_ROOT (${ARVMUI_ROOT}) is not the source tree")
endif()

file(GLOB_RECURSE files RELATIVE "${ARVMUI_ROOT}/src"
    "${ARVMUI_ROOT}/src/*.h" "${ARVMUI_ROOT}/src/*.cpp" "${ARVMUI_ROOT}/src/*.c" "${ARVMUI_ROOT}/src/*.rc")
foreach(file IN LISTS files ITEMS arvmui.h)
    check_file("${file}")
endforeach()

foreach(folder IN LISTS PUBLIC_HEADER_USERS)
    file(GLOB_RECURSE users RELATIVE "${ARVMUI_ROOT}"
        "${ARVMUI_ROOT}/${folder}/*.h" "${ARVMUI_ROOT}/${folder}/*.cpp" "${ARVMUI_ROOT}/${folder}/*.c")
    foreach(file IN LISTS users)
        read_includes("${ARVMUI_ROOT}/${file}" includes)
        foreach(include IN LISTS includes)
            string(REGEX REPLACE "^[a-z]+:" "" name "${include}")
            if("${file}:${name}" IN_LIST INTERNAL_HEADER_USES)
                continue()
            endif()
            if(EXISTS "${ARVMUI_ROOT}/src/${name}" OR name MATCHES "(^|/)src/")
                report("${file}" "includes the internal header ${name}")
            endif()
        endforeach()
    endforeach()
endforeach()

if(violations)
    message(FATAL_ERROR "Includes against the levels:${violations}")
endif()
