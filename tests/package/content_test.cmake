# The packages hold what is installed, and what is installed is complete.

include("${CMAKE_CURRENT_LIST_DIR}/package_test.cmake")

foreach(file IN ITEMS
    bin/arvmui64.dll bin/muitool.exe bin/resource/en/arvmuiUI.DLL bin/resource/zh-TW/arvmuiUI.DLL
    include/arvmui.h include/arvmui.hpp
    lib/libarvmui64.dll.a lib/arvmui64.lib lib/debug/arvmui64.dll.debug lib/pkgconfig/arvmui.pc
    lib/cmake/arvmui/arvmuiConfig.cmake lib/cmake/arvmui/arvmuiConfigVersion.cmake
    share/arvmui/templates/moduleUI.rc share/arvmui/samples/hello/hello.cpp share/arvmui/LICENSE
    share/arvmui/bindings/csharp share/arvmui/bindings/python
    share/arvmui/docs/tutorial.md share/arvmui/docs/api/index.html)
    expect_file("${PREFIX}/${file}")
endforeach()

# The debugger finds the functions of the DLL in the symbols.
run(COMMAND "${NM}" "${PREFIX}/lib/debug/arvmui64.dll.debug" OUTPUT symbols)
if(NOT symbols MATCHES "ARVMUI_LoadResourceLibraryW")
    message(SEND_ERROR "The symbols do not name ARVMUI_LoadResourceLibraryW")
endif()

function(list_files folder result)
    file(GLOB_RECURSE files RELATIVE "${folder}" "${folder}/*")
    list(SORT files)
    set(${result} "${files}" PARENT_SCOPE)
endfunction()

function(expect_installed_files package files)
    set(missing ${installed})
    list(REMOVE_ITEM missing ${files})
    list(REMOVE_ITEM files ${installed})
    if(missing OR files)
        message(SEND_ERROR "The ${package} lacks \"${missing}\" and has \"${files}\" too many")
    endif()
endfunction()

run(COMMAND "${CPACK}" --config "${BUILD}/CPackConfig.cmake" -B "${SCRATCH}")
file(GLOB archive "${SCRATCH}/arvmui-*-win64.zip")
file(ARCHIVE_EXTRACT INPUT "${archive}" DESTINATION "${SCRATCH}/unpacked")
file(GLOB unpacked "${SCRATCH}/unpacked/*")
list_files("${PREFIX}" installed)
list_files("${unpacked}" in_archive)
expect_installed_files("ZIP file" "${in_archive}")

# Installed by the installer, without a question, and removed.
file(GLOB package "${SCRATCH}/arvmui-*-win64.msi")
set(target "${SCRATCH}/installed by the package")
set(drive "")
if(EMULATOR)
    set(drive "Z:")
endif()
string(REPLACE "/" "\\" package_name "${drive}${package}")
string(REPLACE "/" "\\" target_name "${drive}${target}")
run(COMMAND ${EMULATOR} msiexec /i "${package_name}" /qn "INSTALLDIR=${target_name}")
list_files("${target}" from_package)
expect_installed_files("installer package" "${from_package}")
# Wine does not look up where the files were installed to.
run(COMMAND ${EMULATOR} msiexec /x "${package_name}" /qn "INSTALLDIR=${target_name}")
list_files("${target}" left)
if(left)
    message(SEND_ERROR "The installer package leaves \"${left}\"")
endif()
