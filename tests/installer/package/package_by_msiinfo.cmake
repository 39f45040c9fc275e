# Translates packages with the DLL and reads them with a program that has nothing to do with the
# installer that wrote them:
#
#   cmake -D "EMULATOR=..." -D MAKER=... -D LIBRARY=... -D MSIINFO=... -D SCRATCH_FOLDER=... -P ...
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${SCRATCH_FOLDER}")
file(MAKE_DIRECTORY "${SCRATCH_FOLDER}")

function(windows_path path result)
    string(REPLACE "/" "\\" text "Z:${path}")
    set(${result} "${text}" PARENT_SCOPE)
endfunction()

function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGV}: ${result}\n${output}")
    endif()
endfunction()

# The helper's command line takes backslashes doubled.
function(translate package locale)
    windows_path("${LIBRARY}" library)
    windows_path("${package}" path)
    string(REPLACE "\\" "\\\\" path "${path}")
    run(${EMULATOR} rundll32.exe "${library},ARVMUI_RUNDLL32_TranslateLocalPackage" ${locale} "${path}" NOTRANSFORM)
endfunction()

function(expect_equal what found expected)
    if(NOT found STREQUAL expected)
        message(SEND_ERROR "${what}\nfound:\n${found}\nexpected:\n${expected}")
    endif()
endfunction()

# The rows of a table in their order, without the three lines that describe the table.
function(expect_rows package table expected)
    execute_process(COMMAND "${MSIINFO}" export "${package}" ${table} OUTPUT_VARIABLE output RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(SEND_ERROR "${package}: ${table} cannot be read")
        return()
    endif()
    string(REPLACE "\r\n" "\n" output "${output}")
    string(REGEX REPLACE "^[^\n]*\n[^\n]*\n[^\n]*\n(.*)$" "\\1" output "${output}")
    expect_equal("${package}: ${table}" "${output}" "${expected}")
endfunction()

function(expect_tables package)
    execute_process(COMMAND "${MSIINFO}" tables "${package}" OUTPUT_VARIABLE output)
    string(REGEX MATCHALL "[^\r\n]+" tables "${output}")
    list(FILTER tables EXCLUDE REGEX "^_(SummaryInformation|ForceCodepage)$")
    list(SORT tables)
    set(expected AdminExecuteSequence AdminUISequence ArvDialogMapping Binary Component Directory Feature
        FeatureComponents InstallExecuteSequence InstallUISequence Menu Property Two_Words UIText Unlocalized
        Unlocalized_it _Validation)
    list(SORT expected)
    expect_equal("${package}: tables" "${tables}" "${expected}")
endfunction()

function(expect_code_page package expected)
    execute_process(COMMAND "${MSIINFO}" export "${package}" _ForceCodepage OUTPUT_VARIABLE output)
    string(STRIP "${output}" output)
    expect_equal("${package}: code page" "${output}" "${expected}\t_ForceCodepage")
endfunction()

set(original "${SCRATCH_FOLDER}/original.msi")
windows_path("${original}" path)
run(${EMULATOR} "${MAKER}" "${path}")

function(check locale code_page greeting suffix)
    set(package "${SCRATCH_FOLDER}/${locale}.msi")
    file(COPY_FILE "${original}" "${package}")
    translate("${package}" ${locale})
    expect_tables("${package}")
    expect_code_page("${package}" ${code_page})
    expect_rows("${package}" UIText "Both\t${greeting}\nBase\tBase table\nEmptied\t\nFilled\t${greeting}2\nExtra\t${greeting}3\n")
    expect_rows("${package}" Menu
        "File\tOpen\t11\t${greeting}\nFile\tClose\t2\tClose\nEdit\tOpen\t3\t\nView\tOpen\t\t${greeting}4\n")
    expect_rows("${package}" Two_Words "Key\t${greeting}5\n")
    expect_rows("${package}" ArvDialogMapping "Welcome_Dialog\tBack\n")
    execute_process(COMMAND "${MSIINFO}" extract "${package}" Binary.Extra OUTPUT_VARIABLE stream)
    expect_equal("${package}: stream" "${stream}" "stream ${suffix}")
endfunction()

check(de 1252 "Grüß Gott" de)
check(fr 1252 "Été" fr)
check(ja 932 "こんにちは" ja)
check(zh-CN 936 "你好" zh_CN)

set(english "${SCRATCH_FOLDER}/en.msi")
file(COPY_FILE "${original}" "${english}")
translate("${english}" en)
expect_tables("${english}")
expect_code_page("${english}" 1252)
expect_rows("${english}" UIText "Both\tBoth tables\nBase\tBase table\nEmptied\tText\nFilled\t\n")

set(unchanged "${SCRATCH_FOLDER}/es.msi")
file(COPY_FILE "${original}" "${unchanged}")
translate("${unchanged}" es)
file(SHA256 "${original}" before)
file(SHA256 "${unchanged}" after)
expect_equal("a package without the locale" "${after}" "${before}")
