# The header-only libraries of the tools: arvmui_header_libraries brings the include folder of CLI11 and
# nlohmann/json, as Debian's packages libcli11-dev and nlohmann-json3-dev or a package manager for
# Visual Studio install them.

include_guard(GLOBAL)

# The packages lie in /usr/include, which as a whole must not get on the path of a cross compiler; so
# the folders that are needed are linked into one of the build's own.
function(_arvmui_find_headers header folder variable)
    find_path(${variable} "${header}"
        PATHS /usr/include
        NO_CMAKE_FIND_ROOT_PATH
        DOC "Include folder that holds ${header}")
    if(NOT ${variable})
        message(FATAL_ERROR
            "${header} was not found. Install libcli11-dev and nlohmann-json3-dev (or set ${variable}), "
            "or configure with -DARVMUI_BUILD_TOOLS=OFF.")
    endif()
    file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/header_libraries")
    if(NOT EXISTS "${PROJECT_BINARY_DIR}/header_libraries/${folder}")
        file(CREATE_LINK "${${variable}}/${folder}" "${PROJECT_BINARY_DIR}/header_libraries/${folder}"
            COPY_ON_ERROR SYMBOLIC)
    endif()
endfunction()

_arvmui_find_headers(CLI/CLI.hpp CLI ARVMUI_CLI11_INCLUDE_DIR)
_arvmui_find_headers(nlohmann/json.hpp nlohmann ARVMUI_JSON_INCLUDE_DIR)

add_library(arvmui_header_libraries INTERFACE)
target_include_directories(arvmui_header_libraries SYSTEM INTERFACE "${PROJECT_BINARY_DIR}/header_libraries")
