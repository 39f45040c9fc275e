# Run by CPack: makes an installer package of the installed files with wixl. Identifiers are derived from
# names, so the next version's components are those of this one, and from the content where two packages
# must not be taken for one.

cmake_minimum_required(VERSION 3.25)

# Its own, not to be used for anything else.
set(namespace "7d3f1c52-0a0e-5c4b-9a55-2f0b6f1f7c11")
function(identifier_of name result)
    string(UUID uuid NAMESPACE "${namespace}" NAME "${name}" TYPE SHA1 UPPER)
    set(${result} "${uuid}" PARENT_SCOPE)
endfunction()

# The elements for one folder and all below it; adds its components to the global property.
function(describe_folder folder indent result)
    set(elements "")
    file(GLOB names RELATIVE "${folder}" LIST_DIRECTORIES true "${folder}/*")
    foreach(name IN LISTS names)
        file(RELATIVE_PATH path "${root}" "${folder}/${name}")
        string(SHA1 key "${path}")
        if(IS_DIRECTORY "${folder}/${name}")
            describe_folder("${folder}/${name}" "${indent}  " inner)
            string(APPEND elements
                "${indent}<Directory Id=\"D_${key}\" Name=\"${name}\">\n${inner}${indent}</Directory>\n")
        else()
            identifier_of("component ${path}" guid)
            string(APPEND elements
                "${indent}<Component Id=\"C_${key}\" Guid=\"${guid}\" Win64=\"yes\">"
                "<File Id=\"F_${key}\" Name=\"${name}\" Source=\"${path}\" KeyPath=\"yes\"/></Component>\n")
            set_property(GLOBAL APPEND PROPERTY components "C_${key}")
            file(SHA256 "${folder}/${name}" hash)
            set_property(GLOBAL APPEND_STRING PROPERTY content "${path} ${hash}\n")
        endif()
    endforeach()
    set(${result} "${elements}" PARENT_SCOPE)
endfunction()

set(root "${CPACK_TEMPORARY_DIRECTORY}")
describe_folder("${root}" "          " files)
get_property(components GLOBAL PROPERTY components)
get_property(content GLOBAL PROPERTY content)
list(TRANSFORM components REPLACE "(.+)" "<ComponentRef Id=\"\\1\"/>")
list(JOIN components "\n      " references)
identifier_of("product ${CPACK_PACKAGE_VERSION}" product_code)
identifier_of("upgrade" upgrade_code)
identifier_of("package ${content}" package_code)
identifier_of("component find_package" registry_guid)

set(package "${CPACK_PACKAGE_DIRECTORY}/${CPACK_PACKAGE_FILE_NAME}.msi")
set(source "${CPACK_TOPLEVEL_DIRECTORY}/sdk.wxs")
file(WRITE "${source}" "<?xml version=\"1.0\" encoding=\"utf-8\"?>
<Wix xmlns=\"http://schemas.microsoft.com/wix/2006/wi\">
  <Product Id=\"${product_code}\" Name=\"ARVMUI SDK\" Language=\"1033\" Version=\"${CPACK_PACKAGE_VERSION}\"
      Manufacturer=\"${CPACK_PACKAGE_VENDOR}\" UpgradeCode=\"${upgrade_code}\">
    <Package InstallerVersion=\"405\" Compressed=\"yes\" InstallScope=\"perMachine\"/>
    <MajorUpgrade DowngradeErrorMessage=\"A newer version of the ARVMUI SDK is installed.\"/>
    <Media Id=\"1\" Cabinet=\"sdk.cab\" EmbedCab=\"yes\"/>
    <Directory Id=\"TARGETDIR\" Name=\"SourceDir\">
      <Directory Id=\"ProgramFiles64Folder\">
        <Directory Id=\"INSTALLDIR\" Name=\"ARVMUI SDK\">
${files}          <Component Id=\"C_find_package\" Guid=\"${registry_guid}\" Win64=\"yes\">
            <RegistryValue Root=\"HKLM\" Key=\"Software\\Kitware\\CMake\\Packages\\arvmui\" Name=\"ARVMUI SDK\"
                Type=\"string\" Value=\"[INSTALLDIR]lib\\cmake\\arvmui\" KeyPath=\"yes\"/>
          </Component>
        </Directory>
      </Directory>
    </Directory>
    <Feature Id=\"Complete\" Level=\"1\">
      ${references}
      <ComponentRef Id=\"C_find_package\"/>
    </Feature>
  </Product>
</Wix>
")

# The cabinet holds the dates of the files; wixl writes the time and a package code of its own into the
# summary. All are replaced.
function(run)
    execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${root}" OUTPUT_VARIABLE output
        COMMAND_ERROR_IS_FATAL ANY)
    set(output "${output}" PARENT_SCOPE)
endfunction()
run(find . -exec touch --date=2000-01-01T00:00:00Z "{}" +)
run("${CPACK_ARVMUI_WIXL}" -a x64 -o "${package}" "${source}")
run("${CPACK_ARVMUI_MSIINFO}" export "${package}" _SummaryInformation)
set(dates "2000/01/01 00:00:00")
string(REGEX REPLACE "\n9\t[^\r\n]*" "\n9\t{${package_code}}" output "${output}")
string(REGEX REPLACE "\n12\t[^\r\n]*" "\n12\t${dates}" output "${output}")
string(REGEX REPLACE "\n13\t[^\r\n]*" "\n13\t${dates}" output "${output}")
file(WRITE "${CPACK_TOPLEVEL_DIRECTORY}/summary.idt" "${output}")
run("${CPACK_ARVMUI_MSIBUILD}" "${package}" -i "${CPACK_TOPLEVEL_DIRECTORY}/summary.idt")
set(CPACK_EXTERNAL_BUILT_PACKAGES "${package}")
