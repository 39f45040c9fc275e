# Linked with the objects, not the DLL, so that any module can play the library.
arvmui_add_test_program(installer_host_program SOURCES installer_host_program.cpp)
target_link_libraries(installer_host_program PRIVATE arvmui_objects)
set(installer_host_test_OPTIONS DEPENDS installer_host_program)
