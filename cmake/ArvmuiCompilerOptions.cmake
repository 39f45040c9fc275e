# Compiler and linker options of everything in this tree.
#
#   arvmui_options          warnings as errors, C++20, the way <windows.h> is read
#   arvmui_library_options  on top of it: what the DLL's code does without

# Multi-configuration generators would add a folder for each configuration; every preset has exactly
# one, so bin/ is the same everywhere.
set(ARVMUI_BIN_DIR "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "$<1:${ARVMUI_BIN_DIR}>")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "$<1:${PROJECT_BINARY_DIR}/lib>")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

# The C runtime is linked in: nothing but the system's own DLLs has to be present where programs run.
set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")

add_library(arvmui_options INTERFACE)
target_compile_definitions(arvmui_options INTERFACE
    UNICODE _UNICODE NOMINMAX STRICT WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601 WINVER=0x0601)

add_library(arvmui_library_options INTERFACE)
target_link_libraries(arvmui_library_options INTERFACE arvmui_options)

if(MSVC)
    # CMake turns exceptions on for all C++, and the compiler complains about an option that takes it
    # back; so arvmui_options does it, except for targets with the property ARVMUI_WITHOUT_EXCEPTIONS.
    string(REPLACE "/EHsc" "" CMAKE_CXX_FLAGS "${CMAKE_CXX_FLAGS}")
    target_compile_options(arvmui_options INTERFACE
        "$<$<AND:$<COMPILE_LANGUAGE:CXX>,$<NOT:$<BOOL:$<TARGET_PROPERTY:ARVMUI_WITHOUT_EXCEPTIONS>>>>:/EHsc>")
    add_compile_options(
        "$<$<COMPILE_LANGUAGE:C,CXX>:/utf-8>"
        "$<$<COMPILE_LANGUAGE:CXX>:/Zc:__cplusplus>")
    # One build must equal the next, so no time stamps.
    add_compile_options("$<$<COMPILE_LANGUAGE:C,CXX>:/Brepro>")
    add_link_options(/Brepro /DYNAMICBASE /NXCOMPAT /HIGHENTROPYVA)

    target_compile_options(arvmui_options INTERFACE
        "$<$<COMPILE_LANGUAGE:C,CXX>:/W4;/WX>"
        "$<$<COMPILE_LANGUAGE:CXX>:/permissive->")
    target_compile_definitions(arvmui_options INTERFACE _CRT_SECURE_NO_WARNINGS)
    target_compile_options(arvmui_library_options INTERFACE
        "$<$<COMPILE_LANGUAGE:CXX>:/GR-;/Zc:threadSafeInit-;/Gy;/Gw>"
        # Without exceptions "noexcept" says what is true anyway, which the compiler finds odd.
        "$<$<COMPILE_LANGUAGE:CXX>:/wd4577>")
    target_compile_definitions(arvmui_library_options INTERFACE _HAS_EXCEPTIONS=0)
    target_link_options(arvmui_library_options INTERFACE
        /MANIFEST:NO "$<$<CONFIG:Release>:/OPT:REF;/OPT:ICF;/INCREMENTAL:NO>")
    if(ARVMUI_RUNTIME_CHECKS)
        add_compile_options("$<$<COMPILE_LANGUAGE:C,CXX>:/GS;/sdl>")
    endif()
else()
    # Paths in assertions and debug information are relative, so that where the tree lies does not show. The
    # last match counts, and the build folder may lie in the tree.
    add_compile_options(
        "$<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>"
        "$<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>")
    add_link_options(
        -static
        -Wl,--no-insert-timestamp
        -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va
        # Except for targets with the property ARVMUI_SEPARATE_SYMBOLS, which are stripped afterwards.
        "$<$<AND:$<CONFIG:Release>,$<NOT:$<BOOL:$<TARGET_PROPERTY:ARVMUI_SEPARATE_SYMBOLS>>>>:-s>")

    target_compile_options(arvmui_options INTERFACE
        "$<$<COMPILE_LANGUAGE:C,CXX>:-Wall;-Wextra;-Wconversion;-Wshadow;-Werror>")
    target_compile_options(arvmui_library_options INTERFACE
        "$<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions;-fno-rtti;-fno-threadsafe-statics;-ffunction-sections;-fdata-sections>")
    target_link_options(arvmui_library_options INTERFACE -Wl,--gc-sections)
    if(ARVMUI_RUNTIME_CHECKS)
        # Traps, because there is no runtime library for the messages on this target.
        add_compile_options(
            "$<$<COMPILE_LANGUAGE:C,CXX>:-fsanitize=undefined;-fsanitize-undefined-trap-on-error;-fstack-protector-strong>"
            "$<$<COMPILE_LANGUAGE:CXX>:-fno-sanitize=vptr;-D_GLIBCXX_ASSERTIONS>")
        add_link_options(-fstack-protector-strong)
    endif()
endif()
