#include "installer/package/helper_process.h"

#include "support/temporary_folder.h"

#include <cwchar>
#include <optional>

namespace arvmui_test
{

std::filesystem::path LibraryPath()
{
    return TestProgramFolder() / L"arvmui64.dll";
}

ChildSettings HelperSettings(
    const std::filesystem::path& library, const std::wstring& entryPoint, const std::wstring& arguments)
{
    wchar_t system[MAX_PATH] = {};
    ::GetSystemDirectoryW(system, MAX_PATH);
    wchar_t shortPath[MAX_PATH] = {};
    ::GetShortPathNameW(library.c_str(), shortPath, MAX_PATH);
    ChildSettings settings;
    settings.application = std::wstring(system) + L"\\rundll32.exe";
    settings.commandLine = L"rundll32 " + std::wstring(shortPath) + L"," + entryPoint + L" " + arguments;
    return settings;
}

std::wstring EscapedArgument(const std::wstring& text)
{
    std::wstring escaped = L"\"";
    for (const wchar_t character : text)
    {
        if (character == L'\\')
            escaped += L"\\\\";
        else if (character >= L' ' && character < 0x7F && character != L'"')
            escaped += character;
        else
        {
            wchar_t code[7] = {};
            std::swprintf(code, std::size(code), L"\\u%04X", static_cast<unsigned>(character));
            escaped += code;
        }
    }
    return escaped + L"\"";
}

bool RunTranslation(const std::wstring& arguments, const std::filesystem::path& temporaryFolder)
{
    ChildSettings settings = HelperSettings(LibraryPath(), L"ARVMUI_RUNDLL32_TranslateLocalPackage", arguments);
    if (!temporaryFolder.empty())
        settings.environment = {{L"TMP", temporaryFolder.wstring()}, {L"TEMP", temporaryFolder.wstring()}};
    return ChildProcess(settings).Wait() == std::optional<DWORD>(0);
}

bool RunTranslation(const std::wstring& locale, const std::filesystem::path& package, const std::wstring& mode,
    const std::filesystem::path& temporaryFolder)
{
    return RunTranslation(
        EscapedArgument(locale) + L" " + EscapedArgument(package.wstring()) + L" " + EscapedArgument(mode),
        temporaryFolder);
}

}  // namespace arvmui_test
