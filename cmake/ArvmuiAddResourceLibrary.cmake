#[=======================================================================[.rst:
ArvmuiAddResourceLibrary
------------------------

Builds the resource libraries from which ARVMUI takes a module's translated
strings and dialogs: one DLL per locale that holds resources only, at the place
where the library looks for it::

  <folder of the module>/resource/<locale>/<first six characters of the module's name>UI.DLL

``find_package(arvmui)`` defines it. Without the package a project includes this
file (with MinGW it needs ``resource_library.ld`` beside it, and nothing else).

.. code-block:: cmake

  arvmui_add_resource_library(<target>
    MODULE <file name | target>
    LOCALE <tag>
    SCRIPT <file.rc>
    [FILE_NAME <name>]
    [DESTINATION <folder>]
    [INCLUDE_DIRECTORIES <folder>...]
    [DEPENDS <file>...])

``<target>``
  Name of the CMake target to create.

``MODULE``
  The program or DLL whose texts these are: a file name such as
  ``editor64.exe``, or a CMake target defined before the call. With a target its
  ``OUTPUT_NAME`` counts (no generator expressions), and building the module
  then builds the resource library too.

``LOCALE``
  Name of the locale's folder: ``de``, ``pt-BR``. One call per locale.

``SCRIPT``
  Resource script in UTF-8, relative to the calling directory. It should begin
  with ``LANGUAGE LANG_NEUTRAL, SUBLANG_NEUTRAL``: the folder says which language
  the file speaks, so the resources must be found whatever language Windows
  would prefer. Strings 1 (locale tag) and 2 (language identifier, ``0x0407``)
  tell ARVMUI which language that is. Texts belong into plain ``"..."``, never
  into ``L"..."``, which windres cannot read as UTF-8.

``FILE_NAME``
  File name of the library, for modules that pass one to
  ``ARVMUI_LoadResourceLibraryW`` instead of leaving it to the rule above.

``DESTINATION``
  Folder of the module; the default is the ``RUNTIME_OUTPUT_DIRECTORY`` of the
  target or, when the module is none, ``CMAKE_RUNTIME_OUTPUT_DIRECTORY``, or the
  current binary directory when that is not set. With a multi-configuration
  generator the configuration's name is appended as CMake does for the module
  itself, unless the folder is given with a generator expression.

``INCLUDE_DIRECTORIES``
  Folders searched by ``#include`` in the script.

``DEPENDS``
  Files that the script includes. Not every generator finds them by itself, so
  a shared script or header that is not named here may not cause a rebuild.

The resulting file has no code, no entry point and no imports, and is the same
byte for byte whenever it is built from the same script.
#]=======================================================================]

include_guard(GLOBAL)

# File name without its folder and its last extension: the name rule cuts at the
# last dot, so "my.editor.exe" counts as "my.editor".
function(_arvmui_module_base_name module result)
    if(TARGET "${module}")
        get_target_property(name "${module}" OUTPUT_NAME)
        if(NOT name)
            set(name "${module}")
        endif()
        get_target_property(prefix "${module}" PREFIX)
        if(prefix)
            string(PREPEND name "${prefix}")
        endif()
    else()
        get_filename_component(name "${module}" NAME_WLE)
    endif()
    set(${result} "${name}" PARENT_SCOPE)
endfunction()

function(arvmui_add_resource_library target)
    cmake_parse_arguments(PARSE_ARGV 1 arg ""
        "MODULE;LOCALE;SCRIPT;FILE_NAME;DESTINATION"
        "INCLUDE_DIRECTORIES;DEPENDS")

    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR
            "arvmui_add_resource_library(${target}): unknown argument(s): ${arg_UNPARSED_ARGUMENTS}")
    endif()
    foreach(required IN ITEMS MODULE LOCALE SCRIPT)
        if(NOT arg_${required})
            message(FATAL_ERROR "arvmui_add_resource_library(${target}): ${required} is missing")
        endif()
    endforeach()
    if(arg_LOCALE MATCHES "[][\"/:<>|\\\\*?]" OR arg_LOCALE MATCHES "^\\.\\.?$")
        message(FATAL_ERROR
            "arvmui_add_resource_library(${target}): \"${arg_LOCALE}\" cannot be a locale's folder name")
    endif()

    if(arg_FILE_NAME)
        set(file_name "${arg_FILE_NAME}")
    else()
        _arvmui_module_base_name("${arg_MODULE}" base)
        string(SUBSTRING "${base}" 0 6 stem)
        set(file_name "${stem}UI.DLL")
    endif()
    get_filename_component(output_name "${file_name}" NAME_WLE)
    get_filename_component(suffix "${file_name}" LAST_EXT)

    if(arg_DESTINATION MATCHES "^\\$<")
        set(destination "${arg_DESTINATION}")
    elseif(arg_DESTINATION)
        get_filename_component(destination "${arg_DESTINATION}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")
    elseif(CMAKE_RUNTIME_OUTPUT_DIRECTORY)
        set(destination "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
    else()
        set(destination "${CMAKE_CURRENT_BINARY_DIR}")
    endif()
    if(NOT arg_DESTINATION AND TARGET "${arg_MODULE}")
        get_target_property(own_destination "${arg_MODULE}" RUNTIME_OUTPUT_DIRECTORY)
        if(own_destination)
            set(destination "${own_destination}")
        endif()
    endif()
    get_property(multi_config GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
    if(multi_config AND NOT destination MATCHES "\\$<")
        string(APPEND destination "/$<CONFIG>")
    endif()
    set(folder "${destination}/resource/${arg_LOCALE}")

    get_filename_component(script "${arg_SCRIPT}" ABSOLUTE)
    add_library(${target} MODULE "${script}")
    if(arg_DEPENDS)
        set(dependencies "")
        foreach(file IN LISTS arg_DEPENDS)
            get_filename_component(file "${file}" ABSOLUTE)
            list(APPEND dependencies "${file}")
        endforeach()
        set_property(SOURCE "${script}" APPEND PROPERTY OBJECT_DEPENDS "${dependencies}")
    endif()
    if(arg_INCLUDE_DIRECTORIES)
        target_include_directories(${target} PRIVATE ${arg_INCLUDE_DIRECTORIES})
    endif()

    # A target of nothing but resources has no language of its own.
    get_property(languages GLOBAL PROPERTY ENABLED_LANGUAGES)
    list(FILTER languages INCLUDE REGEX "^(C|CXX)$")
    list(GET languages 0 linker_language)
    set_target_properties(${target} PROPERTIES
        LINKER_LANGUAGE ${linker_language}
        PREFIX ""
        OUTPUT_NAME "${output_name}"
        SUFFIX "${suffix}"
        LIBRARY_OUTPUT_DIRECTORY "${folder}"
        ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}")

    # On the source: of a target's own options only -D and -I reach a resource compiler.
    set(utf8 "$<IF:$<BOOL:${MSVC}>,/c65001,--codepage=65001>")
    get_source_file_property(options "${script}" COMPILE_OPTIONS)
    if(NOT utf8 IN_LIST options)
        set_property(SOURCE "${script}" APPEND PROPERTY COMPILE_OPTIONS "${utf8}")
    endif()
    if(MSVC)
        target_link_options(${target} PRIVATE
            /NOENTRY /NODEFAULTLIB /MANIFEST:NO /INCREMENTAL:NO /DEBUG:NONE /Brepro)
    else()
        set(layout "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/resource_library.ld")
        set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${layout}")
        # The image base is fixed because the linker would derive one from the output's path.
        target_link_options(${target} PRIVATE
            -nostdlib -nostartfiles "-Wl,-T,${layout}" -Wl,--entry,0 -Wl,--image-base,0x180000000
            -Wl,--no-insert-timestamp -s)
    endif()

    if(TARGET "${arg_MODULE}")
        add_dependencies("${arg_MODULE}" ${target})
    endif()
endfunction()
