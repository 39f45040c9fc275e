#[=======================================================================[.rst:
ArvmuiCopyRuntime
-----------------

Lays the DLL and its own texts beside a program that uses them, where the
program finds the DLL and the DLL finds its texts::

  <folder of the program>/arvmui64.dll
  <folder of the program>/resource/<locale>/arvmuiUI.DLL

.. code-block:: cmake

  arvmui_copy_runtime(<target> [LOCALES <tag>...])

``<target>``
  The program, or a DLL of its own. They are copied each time it is linked.

``LOCALES``
  The languages of which the library's own texts are wanted; English comes with
  them, as the last resort. Without this, all languages are copied.
#]=======================================================================]

include_guard(GLOBAL)

function(arvmui_copy_runtime target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LOCALES")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "arvmui_copy_runtime(${target}): unknown argument(s): ${arg_UNPARSED_ARGUMENTS}")
    endif()
    if(NOT TARGET "${target}")
        message(FATAL_ERROR "arvmui_copy_runtime(${target}): there is no such target")
    endif()
    # A list would become several arguments.
    string(JOIN "," locales ${arg_LOCALES})
    add_custom_command(TARGET "${target}" POST_BUILD
        COMMAND "${CMAKE_COMMAND}"
            -D "LIBRARY=$<TARGET_FILE:arvmui::arvmui>"
            -D "DESTINATION=$<TARGET_FILE_DIR:${target}>"
            -D "LOCALES=${locales}"
            -P "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/copy_runtime_files.cmake"
        COMMENT "Copying arvmui64.dll and its texts beside ${target}"
        VERBATIM)
endfunction()
