// What the library finds beside itself, and where it does not look at all.
#include "process/attach/attach_fixture.h"
#include "process/attach/private_installation.h"

#include <arvmui.h>
#include <gtest/gtest.h>

#include <cstdio>

namespace
{

using arvmui_test::Arrangement;
using arvmui_test::ChildProcess;
using arvmui_test::ChildSettings;
using arvmui_test::FolderOf;
using arvmui_test::LoaderSettings;
using arvmui_test::PrivateInstallation;
using arvmui_test::Report;
using arvmui_test::RunLoader;
using arvmui_test::ScratchRegistry;

Arrangement For(const PrivateInstallation& installation, const wchar_t* commandLine)
{
    Arrangement arrangement;
    arrangement.library = installation.Library();
    arrangement.commandLine = commandLine;
    return arrangement;
}

TEST(ResourceFallback, TriesTheListOfAllLanguagesOnce)
{
    const ScratchRegistry registry;
    for (const wchar_t* const locale : {L"de", L"es", L"fr", L"ja"})
    {
        const PrivateInstallation installation;
        installation.AddLocale(locale, locale);
        const Report report = RunLoader(registry, For(installation, L"loader.exe /uilocale:xx"));
        EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), locale);
        EXPECT_EQ(report.Text("commandLineHint"), L"xx");
        EXPECT_EQ(report.Text("published"), L"xx");
        EXPECT_EQ(report.Number("popups"), 1u);
    }
}

TEST(ResourceFallback, TriesThemInOrder)
{
    const ScratchRegistry registry;
    const PrivateInstallation installation;
    installation.AddLocale(L"ja", L"ja");
    installation.AddLocale(L"fr", L"fr");
    const Report report = RunLoader(registry, For(installation, L"loader.exe /uilocale:xx"));
    EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), L"fr");
}

struct SystemLanguageCase
{
    LANGID user;
    LANGID system;
    LANGID userUI;
    LANGID systemUI;
    const wchar_t* folder;
};

TEST(ResourceFallback, TriesTheSystemsLanguagesFirst)
{
    const ScratchRegistry registry;
    const PrivateInstallation installation;
    for (const wchar_t* const locale : {L"de", L"it", L"ko", L"pl", L"ru"}) installation.AddLocale(L"ja", locale);
    const SystemLanguageCase rows[] = {{0x0410, 0x0412, 0x0415, 0x0419, L"it"}, {0x041E, 0x0412, 0x0415, 0x0419, L"ko"},
        {0x041E, 0x041E, 0x0415, 0x0419, L"pl"}, {0x041E, 0x041E, 0x041E, 0x0419, L"ru"},
        {0x041E, 0x041E, 0x041E, 0x041E, L"de"}};
    for (const SystemLanguageCase& row : rows)
    {
        Arrangement arrangement = For(installation, L"loader.exe /uilocale:xx");
        arrangement.userLanguage = row.user;
        arrangement.systemLanguage = row.system;
        arrangement.userUILanguage = row.userUI;
        arrangement.systemUILanguage = row.systemUI;
        EXPECT_EQ(FolderOf(RunLoader(registry, arrangement).Text("resourceLibrary")), row.folder);
    }
}

TEST(ResourceFallback, FindsALibraryBesideTheModule)
{
    const ScratchRegistry registry;
    const PrivateInstallation installation;
    installation.AddLocale(L"de", L"kept for later");
    installation.Add(L"resource/fr/arvmuiUI.DLL", L"arvmuiUI.DLL");
    const Report report = RunLoader(registry, For(installation, L"loader.exe /uilocale:xx"));
    EXPECT_EQ(report.Text("locale"), L"fr-FR");
}

TEST(ResourceFallback, FindsALibraryInAnEnglishFolderBesideTheResourceFolder)
{
    const ScratchRegistry registry;
    const PrivateInstallation installation;
    installation.AddLocale(L"de", L"kept for later");
    installation.Add(L"resource/fr/arvmuiUI.DLL", L"en/arvmuiUI.DLL");
    const Report report = RunLoader(registry, For(installation, L"loader.exe /uilocale:xx"));
    EXPECT_EQ(report.Text("locale"), L"fr-FR");
}

TEST(NoResourceLibrary, LeavesTheDefaultsAndNoPopups)
{
    const ScratchRegistry registry;
    const PrivateInstallation installation;
    const Report report = RunLoader(registry, For(installation, L"loader.exe /uilocale:de x"));
    EXPECT_EQ(report.Text("resourceLibrary"), L"");
    EXPECT_EQ(report.Text("locale"), L"en-US");
    EXPECT_EQ(report.Number("language"), 1033u);
    EXPECT_EQ(report.Number("popups"), 0u);
    EXPECT_EQ(report.Number("windows"), 0u);
    EXPECT_EQ(report.Text("commandLine"), L"loader.exe x");
}

TEST(NoResourceLibrary, StillHandsItsListOn)
{
    const ScratchRegistry registry;
    const PrivateInstallation installation;
    const Report report = RunLoader(registry, For(installation, L"loader.exe /uilocale:de"));
    EXPECT_EQ(report.Text("commandLineHint"), L"de");
    EXPECT_EQ(report.Text("published"), L"de");
}

// Everything a process writes for its debugger until it ends.
std::vector<std::string> DebuggerTexts(const ChildSettings& settings)
{
    ChildSettings debugged = settings;
    debugged.flags |= DEBUG_ONLY_THIS_PROCESS;
    const ChildProcess child(debugged);

    std::vector<std::string> texts;
    DEBUG_EVENT event = {};
    bool ended = !child.Started();
    while (!ended && ::WaitForDebugEvent(&event, 30000))
    {
        DWORD status = DBG_EXCEPTION_NOT_HANDLED;
        switch (event.dwDebugEventCode)
        {
            case OUTPUT_DEBUG_STRING_EVENT:
            {
                const OUTPUT_DEBUG_STRING_INFO& info = event.u.DebugString;
                std::vector<char> text(info.nDebugStringLength + size_t{2});
                ::ReadProcessMemory(
                    child.Process(), info.lpDebugStringData, text.data(), info.nDebugStringLength, nullptr);
                if (!info.fUnicode) texts.emplace_back(text.data());
                status = DBG_CONTINUE;
                break;
            }
            case EXCEPTION_DEBUG_EVENT:
                if (event.u.Exception.ExceptionRecord.ExceptionCode == static_cast<DWORD>(EXCEPTION_BREAKPOINT))
                    status = DBG_CONTINUE;
                break;
            case CREATE_PROCESS_DEBUG_EVENT: ::CloseHandle(event.u.CreateProcessInfo.hFile); break;
            case LOAD_DLL_DEBUG_EVENT: ::CloseHandle(event.u.LoadDll.hFile); break;
            case EXIT_PROCESS_DEBUG_EVENT: ended = true; break;
            default: break;
        }
        ::ContinueDebugEvent(event.dwProcessId, event.dwThreadId, status);
    }
    return texts;
}

bool IsDiagnosticLine(const std::string& text)
{
    return text.rfind("QEL_ARVMUI@", 0) == 0;
}

TEST(NoResourceLibrary, IsToldToTheDebugger)
{
    const ScratchRegistry registry;
    const PrivateInstallation installation;
    std::vector<std::string> lines;
    for (const std::string& text :
        DebuggerTexts(LoaderSettings(registry, For(installation, L"loader.exe /uilocale:de"))))
    {
        if (IsDiagnosticLine(text)) lines.push_back(text);
    }
    ASSERT_EQ(lines.size(), 1u);

    unsigned thread = 0;
    char module[32] = {};
    unsigned long error = 0;
    char end = '\0';
    EXPECT_EQ(std::sscanf(lines[0].c_str(),
                  "QEL_ARVMUI@%u: DllMain(%16[0-9A-F],DLL_PROCESS_ATTACH): Failed to load ARVMUIUI.DLL: %lu%c", &thread,
                  module, &error, &end),
        4)
        << lines[0];
    EXPECT_NE(thread, 0u);
    EXPECT_EQ(std::string(module).size(), 16u);
    EXPECT_EQ(error, 126u);
    EXPECT_EQ(end, '\r');
    EXPECT_EQ(lines[0].substr(lines[0].size() - 2), "\r\n");
}

TEST(ResourceLibraryFound, IsNotWorthALineToTheDebugger)
{
    const ScratchRegistry registry;
    Arrangement arrangement;
    arrangement.commandLine = L"loader.exe /uilocale:de";
    for (const std::string& text : DebuggerTexts(LoaderSettings(registry, arrangement)))
        EXPECT_FALSE(IsDiagnosticLine(text)) << text;
}

TEST(ModuleFolder, MayHoldPercentSigns)
{
    const ScratchRegistry registry;
    for (const wchar_t* const folder : {L"100%s off", L"%", L"%n%s%d%%", L"a%sb\\resource\\%s"})
    {
        const PrivateInstallation installation(folder);
        installation.AddLocale(L"de", L"de");
        installation.AddLocale(L"ja", L"ja");
        const Report report = RunLoader(registry, For(installation, L"loader.exe /uilocale:ja"));
        EXPECT_EQ(report.Text("locale"), L"ja-JP") << testing::PrintToString(folder);
    }
}

TEST(ModuleFolder, MayHoldOtherScripts)
{
    const ScratchRegistry registry;
    const PrivateInstallation installation(L"\x65E5\x672C \x00E9");
    installation.AddLocale(L"fr", L"fr");
    EXPECT_EQ(RunLoader(registry, For(installation, L"loader.exe /uilocale:fr")).Text("locale"), L"fr-FR");
}

// The installer's places are looked for in the folder that the variable "windir" names.
class InsideInstaller : public testing::Test
{
protected:
    Arrangement In(const PrivateInstallation& installation) const
    {
        Arrangement arrangement = For(installation, L"msiexec.exe /uilocale:de x");
        arrangement.variables = {{L"windir", installation.Root().wstring()}};
        return arrangement;
    }

    static void ExpectStoppedEarly(const Report& report)
    {
        EXPECT_EQ(report.Text("resourceLibrary"), L"");
        EXPECT_EQ(report.Number("popups"), 0u);
        EXPECT_EQ(report.Text("published"), L"(none)");
        EXPECT_EQ(report.Number("hasMapping"), 0u);
        EXPECT_EQ(report.Text("commandLineHint"), L"de");
        EXPECT_EQ(report.Text("commandLine"), L"msiexec.exe x");
        EXPECT_NE(report.Number("threadSlot"), TLS_OUT_OF_INDEXES);
        EXPECT_NE(report.Text("keyboardLanguages"), L"");
    }

    static void ExpectUsual(const Report& report)
    {
        EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), L"de");
        EXPECT_EQ(report.Text("published"), L"de");
        EXPECT_EQ(report.Number("popups"), 1u);
    }

    ScratchRegistry registry_;
};

TEST_F(InsideInstaller, ItsProgramInTheSystemFolderStopsAttach)
{
    const PrivateInstallation installation;
    installation.AddLocale(L"de", L"de");
    Arrangement arrangement = In(installation);
    arrangement.program = installation.Add(L"attach_loader.exe", L"SYSTEM32\\MsiExec.exe");
    ExpectStoppedEarly(RunLoader(registry_, arrangement));
}

TEST_F(InsideInstaller, ItsCacheFolderStopsAttachInAnyProgram)
{
    const PrivateInstallation installation(L"Installer");
    installation.AddLocale(L"de", L"de");
    ExpectStoppedEarly(RunLoader(registry_, In(installation)));
}

TEST_F(InsideInstaller, AFolderBelowItsCacheFolderStopsAttachToo)
{
    const PrivateInstallation installation(L"INSTALLER\\{1234}");
    installation.AddLocale(L"de", L"de");
    ExpectStoppedEarly(RunLoader(registry_, In(installation)));
}

TEST_F(InsideInstaller, AProgramOfItsNameElsewhereIsAnyProgram)
{
    const PrivateInstallation installation;
    installation.AddLocale(L"de", L"de");
    Arrangement arrangement = In(installation);
    arrangement.program = installation.Add(L"attach_loader.exe", L"other\\msiexec.exe");
    ExpectUsual(RunLoader(registry_, arrangement));
}

TEST_F(InsideInstaller, AnotherProgramInTheSystemFolderIsAnyProgram)
{
    const PrivateInstallation installation;
    installation.AddLocale(L"de", L"de");
    Arrangement arrangement = In(installation);
    arrangement.program = installation.Add(L"attach_loader.exe", L"SYSTEM32\\other.exe");
    ExpectUsual(RunLoader(registry_, arrangement));
}

TEST_F(InsideInstaller, AFolderThatOnlyBeginsLikeItsCacheFolderIsAnyFolder)
{
    const PrivateInstallation installation(L"InstallerX");
    installation.AddLocale(L"de", L"de");
    ExpectUsual(RunLoader(registry_, In(installation)));
}

TEST_F(InsideInstaller, TheParentsRecordIsNotRead)
{
    const std::wstring name = L"ARVMUI_" + std::to_wstring(::GetCurrentProcessId()) + L".IPC";
    const HANDLE section =
        ::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(LocaleRecord), name.c_str());
    LocaleRecord* const record = static_cast<LocaleRecord*>(::MapViewOfFile(section, FILE_MAP_WRITE, 0, 0, 0));
    ASSERT_NE(record, nullptr);
    record->size = sizeof(LocaleRecord);
    ::lstrcpyW(record->locales, L"fr");

    const PrivateInstallation installation(L"Installer");
    installation.AddLocale(L"de", L"de");
    Arrangement arrangement = In(installation);
    arrangement.commandLine = L"msiexec.exe x";
    EXPECT_EQ(RunLoader(registry_, arrangement).Text("commandLineHint"), L"");
    ::UnmapViewOfFile(record);
    ::CloseHandle(section);
}

}  // namespace
