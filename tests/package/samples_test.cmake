# The samples as they are installed, built as a project of their own.

include("${CMAKE_CURRENT_LIST_DIR}/package_test.cmake")

configure_and_build("${PREFIX}/share/arvmui/samples" "${SCRATCH}/build")
run(COMMAND ${EMULATOR} "${SCRATCH}/build/bin/hello.exe" /uilocale:fr OUTPUT output)
if(NOT output MATCHES "Bonjour")
    message(SEND_ERROR "hello.exe /uilocale:fr says\n${output}")
endif()
foreach(file IN ITEMS phrasebook.exe arvmui64.dll resource/ja/phraseUI.DLL resource/ja/arvmuiUI.DLL)
    expect_file("${SCRATCH}/build/bin/${file}")
endforeach()
