# A program linked by hand: as pkg-config says, and with the import library for Visual Studio.

include("${CMAKE_CURRENT_LIST_DIR}/package_test.cmake")

set(consumer "${CMAKE_CURRENT_LIST_DIR}/consumer")
configure_and_build("${consumer}" "${SCRATCH}/build" -D LANGUAGES=C)
file(COPY "${SCRATCH}/build/programs/resource" "${PREFIX}/bin/arvmui64.dll" DESTINATION "${SCRATCH}")

run(COMMAND "${CMAKE_COMMAND}" -E env "PKG_CONFIG_PATH=${PREFIX}/lib/pkgconfig"
    "${PKG_CONFIG}" --cflags --libs arvmui OUTPUT flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(COMMAND "${C_COMPILER}" "${consumer}/linked.c" -o linked_by_pkg_config.exe ${flags})
expect_output("Grüße\n" "${SCRATCH}/linked_by_pkg_config.exe" /uilocale:de)

run(COMMAND "${C_COMPILER}" "${consumer}/linked.c" -o linked_with_lib.exe
    "-I${PREFIX}/include" "${PREFIX}/lib/arvmui64.lib")
expect_output("Grüße\n" "${SCRATCH}/linked_with_lib.exe" /uilocale:de)
