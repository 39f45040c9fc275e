# Builds the API reference from the source tree and from a copy of it in another folder. Fails on every
# warning, on whatever has no comment in the header for C, on an export that the reference lacks, and
# where the two differ.

cmake_minimum_required(VERSION 3.25)
include("${SOURCE_FOLDER}/docs/configure_api_reference.cmake")

function(build_reference root name)  # further arguments: options of the configuration
    set(folder "${SCRATCH_FOLDER}/${name}/api")
    file(MAKE_DIRECTORY "${folder}")
    arvmui_configure_api_reference(
        ROOT "${root}" FOLDER "${folder}" VERSION 1.2.3 DOXYFILE "${SCRATCH_FOLDER}/${name}/Doxyfile"
        STRICT ${ARGN})
    execute_process(COMMAND "${DOXYGEN}" "${SCRATCH_FOLDER}/${name}/Doxyfile" RESULT_VARIABLE result)
    if(result)
        message(FATAL_ERROR "Doxygen found something to complain about in ${root}")
    endif()
endfunction()

file(REMOVE_RECURSE "${SCRATCH_FOLDER}")
build_reference("${SOURCE_FOLDER}" c_only C_ONLY)
build_reference("${SOURCE_FOLDER}" here)

set(copy "${SCRATCH_FOLDER}/a folder elsewhere")
foreach(folder IN ITEMS docs include)
    file(COPY "${SOURCE_FOLDER}/${folder}" DESTINATION "${copy}")
endforeach()
build_reference("${copy}" elsewhere)

# The reference is complete.
file(STRINGS "${SOURCE_FOLDER}/src/arvmui.def" exports REGEX "^ +ARVMUI_")
list(TRANSFORM exports REPLACE "^ +(ARVMUI_[A-Za-z0-9_]+).*" "\\1")
list(LENGTH exports export_count)
if(export_count EQUAL 0)
    message(FATAL_ERROR "No exports were found in src/arvmui.def")
endif()
file(READ "${SCRATCH_FOLDER}/here/api.tag" tags)
foreach(export IN LISTS exports)
    string(FIND "${tags}" "<name>${export}</name>" position)
    if(position EQUAL -1)
        message(SEND_ERROR "${export} is missing in the reference")
    endif()
endforeach()

# It tells nothing about the machine that built it.
file(GLOB_RECURSE pages RELATIVE "${SCRATCH_FOLDER}/here/api" "${SCRATCH_FOLDER}/here/api/*")
file(GLOB_RECURSE other_pages RELATIVE "${SCRATCH_FOLDER}/elsewhere/api" "${SCRATCH_FOLDER}/elsewhere/api/*")
if(NOT pages STREQUAL other_pages)
    message(SEND_ERROR "Two builds have other files:\n${pages}\n${other_pages}")
endif()
foreach(page IN LISTS pages)
    execute_process(
        COMMAND "${CMAKE_COMMAND}" -E compare_files
            "${SCRATCH_FOLDER}/here/api/${page}" "${SCRATCH_FOLDER}/elsewhere/api/${page}"
        RESULT_VARIABLE difference)
    if(difference)
        message(SEND_ERROR "${page} differs between two builds")
    endif()
endforeach()
file(STRINGS "${SCRATCH_FOLDER}/here/api/index.html" dates REGEX "Generated on")
if(dates)
    message(SEND_ERROR "The pages hold the date of the build: ${dates}")
endif()
list(LENGTH pages page_count)
message(STATUS "${export_count} exports, ${page_count} files")
