# Copies the DLL and its own texts, for arvmui_copy_runtime:
#   cmake -D LIBRARY=<arvmui64.dll> -D DESTINATION=<folder> -D LOCALES=<tag,...> -P copy_runtime_files.cmake

cmake_minimum_required(VERSION 3.25)

cmake_path(GET LIBRARY PARENT_PATH source)
cmake_path(COMPARE "${source}" EQUAL "${DESTINATION}" is_there_already)
if(is_there_already)
    return()
endif()
file(COPY_FILE "${LIBRARY}" "${DESTINATION}/arvmui64.dll" ONLY_IF_DIFFERENT)

if(LOCALES)
    string(REPLACE "," ";" locales "${LOCALES}")
    list(APPEND locales en)
    list(REMOVE_DUPLICATES locales)
else()
    file(GLOB locales RELATIVE "${source}/resource" "${source}/resource/*")
endif()
foreach(locale IN LISTS locales)
    set(file "resource/${locale}/arvmuiUI.DLL")
    if(EXISTS "${source}/${file}")
        file(MAKE_DIRECTORY "${DESTINATION}/resource/${locale}")
        file(COPY_FILE "${source}/${file}" "${DESTINATION}/${file}" ONLY_IF_DIFFERENT)
    elseif(LOCALES)
        message(FATAL_ERROR "arvmui_copy_runtime: the library has no texts in \"${locale}\"; see ${source}/resource")
    endif()
endforeach()
