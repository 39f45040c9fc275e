# The recipes for package managers name the version and the options of this project.

cmake_minimum_required(VERSION 3.25)

file(READ "${SOURCE_FOLDER}/packaging/vcpkg/ports/arvmui/vcpkg.json" manifest)
string(JSON version GET "${manifest}" version)
if(NOT version STREQUAL VERSION)
    message(SEND_ERROR "The vcpkg port is for version ${version}, not ${VERSION}")
endif()
file(READ "${SOURCE_FOLDER}/packaging/conan/conanfile.py" recipe)
if(NOT recipe MATCHES "\n    version = \"${VERSION}\"\n")
    message(SEND_ERROR "The Conan recipe is not for version ${VERSION}")
endif()

file(READ "${SOURCE_FOLDER}/packaging/vcpkg/ports/arvmui/portfile.cmake" port)
file(READ "${SOURCE_FOLDER}/CMakeLists.txt" project)
string(REGEX MATCHALL "ARVMUI_(BUILD_[A-Z]+|INSTALL)" options "${port}${recipe}")
foreach(option IN LISTS options)
    if(NOT project MATCHES "option\\(${option} ")
        message(SEND_ERROR "A recipe sets ${option}, which does not exist")
    endif()
endforeach()
