# Builds the SDK a second time, from a copy of the sources in another folder, and compares its files and
# its packages with those of the build folder byte by byte.

cmake_minimum_required(VERSION 3.25)

set(source "${SCRATCH_FOLDER}/source")
set(build "${SCRATCH_FOLDER}/build")

file(REMOVE_RECURSE "${SCRATCH_FOLDER}")
file(MAKE_DIRECTORY "${source}")
foreach(name IN ITEMS CHANGELOG.md CMakeLists.txt LICENSE README.md bindings cmake docs include samples scripts src
    templates tools translations)
    file(COPY "${SOURCE_FOLDER}/${name}" DESTINATION "${source}")
endforeach()

load_cache("${BUILD_FOLDER}" READ_WITH_PREFIX BUILT_
    CMAKE_BUILD_TYPE CMAKE_C_FLAGS_RELEASE CMAKE_CXX_FLAGS_RELEASE CMAKE_GENERATOR CMAKE_TOOLCHAIN_FILE)
get_filename_component(toolchain "${BUILT_CMAKE_TOOLCHAIN_FILE}" NAME)

execute_process(
    COMMAND "${CMAKE_COMMAND}" -S "${source}" -B "${build}" -G "${BUILT_CMAKE_GENERATOR}"
        "--toolchain" "${source}/cmake/${toolchain}"
        -D "CMAKE_BUILD_TYPE=${BUILT_CMAKE_BUILD_TYPE}"
        -D "CMAKE_C_FLAGS_RELEASE=${BUILT_CMAKE_C_FLAGS_RELEASE}"
        -D "CMAKE_CXX_FLAGS_RELEASE=${BUILT_CMAKE_CXX_FLAGS_RELEASE}"
        -D ARVMUI_BUILD_TESTS=OFF
        -D ARVMUI_BUILD_SAMPLES=OFF
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${build}" --parallel 2 COMMAND_ERROR_IS_FATAL ANY)

file(GLOB_RECURSE files RELATIVE "${build}/bin" "${build}/bin/*")
if(NOT "arvmui64.dll" IN_LIST files)
    message(FATAL_ERROR "The second build made no arvmui64.dll")
endif()
foreach(file IN LISTS files)
    execute_process(
        COMMAND "${CMAKE_COMMAND}" -E compare_files "${build}/bin/${file}" "${BUILD_FOLDER}/bin/${file}"
        RESULT_VARIABLE difference)
    if(difference)
        message(SEND_ERROR "${file} differs between two builds")
    else()
        message(STATUS "${file} is the same")
    endif()
endforeach()

foreach(folder IN ITEMS "${BUILD_FOLDER}" "${build}")
    execute_process(COMMAND "${CPACK}" --config "${folder}/CPackConfig.cmake" -B "${folder}/reproducible packages"
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endforeach()
file(GLOB packages RELATIVE "${build}/reproducible packages" "${build}/reproducible packages/*.zip"
    "${build}/reproducible packages/*.msi")
list(LENGTH packages count)
if(NOT count EQUAL 2)
    message(SEND_ERROR "These packages were made, not a ZIP file and one for the installer: ${packages}")
endif()
foreach(package IN LISTS packages)
    file(SHA256 "${BUILD_FOLDER}/reproducible packages/${package}" first)
    file(SHA256 "${build}/reproducible packages/${package}" second)
    if(NOT first STREQUAL second)
        message(SEND_ERROR "${package} differs between two builds")
    endif()
endforeach()
