// The explanation against the library itself: whatever the list, the hints, the registry and the
// folders are, both choose the same file.
#include "explanation.h"
#include "library_api.h"
#include "support/resource_image.h"
#include "support/scratch_registry.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <cwchar>
#include <random>

using arvmui_test::LoadedModule;
using arvmui_test::ScratchRegistry;
using arvmui_test::StoreText;
using arvmui_test::TemporaryFolder;
using arvmui_test::WriteResourceImage;

namespace
{

namespace fs = std::filesystem;

constexpr int kConfigurations = 10000;

constexpr std::array kFolders = {L"de", L"de-DE", L"de-CH", L"en", L"en-US", L"fr", L"ja", L"zh-CN", L"x_y", L"pt-BR"};
constexpr std::array kItems = {L"de", L"de-CH", L"de-AT-x", L"en", L"en-US", L"en_GB.UTF-8", L"fr-CA", L"ja", L"xx",
    L"user", L"system", L"uilang", L"kiv", L"msie", L"ask", L"0x0407", L"1041", L"0x0804", L"99999", L"x:y", L"..",
    L".", L" pt-BR ", L""};

class Explanations : public testing::Test
{
protected:
    Explanations() : module_(folder_.Path() / L"sample.dll") { registry_.ReplaceRoot(HKEY_CURRENT_USER); }

    template <typename Values>
    auto Pick(const Values& values)
    {
        return values[random_() % std::size(values)];
    }

    std::wstring RandomList()
    {
        std::wstring list;
        for (unsigned count = random_() % 5; count > 0; --count)
            list += (list.empty() ? L"" : L",") + std::wstring(Pick(kItems));
        return list;
    }

    fs::path FileIn(const fs::path& locale) const { return folder_.Path() / L"resource" / locale / L"sampleUI.DLL"; }

    // Some folders with the file, some without, some with a file that is no library.
    void ArrangeFolders()
    {
        std::error_code ignored;
        fs::remove_all(folder_.Path() / L"resource", ignored);
        for (const wchar_t* name : kFolders)
        {
            const unsigned kind = random_() % 6;
            if (kind == 0) fs::create_directories(FileIn(name).parent_path());
            if (kind == 1) WriteBroken(name);
            if (kind == 2) WriteResourceImage(FileIn(name), {{1, name}});
        }
        const fs::path besideModule = folder_.Path() / L"sampleUI.DLL";
        fs::remove(besideModule, ignored);
        if (random_() % 4 == 0) WriteResourceImage(besideModule, {{1, L"x"}});
    }

    void WriteBroken(const wchar_t* name)
    {
        fs::create_directories(FileIn(name).parent_path());
        const HANDLE file = ::CreateFileW(
            FileIn(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        ::CloseHandle(file);
    }

    void SetHint(LocaleHintSlot slot, const std::wstring& text)
    {
        // The library's own record: what attach found in a real process.
        auto* const descriptor = const_cast<LibraryDescriptor*>(Library().ARVMUI_GetDescriptor());
        std::wmemcpy(descriptor->LocaleHintTable[slot], text.c_str(), text.size() + 1);
    }

    void ArrangeHints()
    {
        SetHint(HINT_COMMAND_LINE, random_() % 2 == 0 ? RandomList() : L"");
        SetHint(HINT_SETTINGS_FILE, random_() % 2 == 0 ? RandomList() : L"\t");
        SetHint(HINT_BROWSER, random_() % 2 == 0 ? RandomList() : L"\t");
        // Never empty: nobody is there to answer.
        SetHint(HINT_ASKED, random_() % 2 == 0 ? std::wstring(L"\t") : std::wstring(Pick(kFolders)));
        const std::wstring stored = RandomList();
        StoreText(HKEY_CURRENT_USER, L"SOFTWARE\\Pelkor\\MUI", L"UILocale", stored);
    }

    // The path that the library loads, or nothing.
    std::wstring LoadedByLibrary(const wchar_t* list)
    {
        HMODULE loaded = nullptr;
        if (!Library().ARVMUI_LoadResourceLibraryW(module_.Get(), nullptr, list, &loaded)) return {};
        wchar_t path[MAX_PATH] = L"";
        ::GetModuleFileNameW(loaded, path, MAX_PATH);
        ::FreeLibrary(loaded);
        return fs::path(path).lexically_normal().wstring();
    }

    TemporaryFolder folder_;
    LoadedModule module_;
    ScratchRegistry registry_;
    std::mt19937 random_{20240611};
};

}  // namespace

TEST_F(Explanations, AgreeWithTheLibrary)
{
    BOOL previous = FALSE;
    const auto setPopup = reinterpret_cast<decltype(&::ARVMUI_SetMessagePopup)>(
        reinterpret_cast<void*>(::GetProcAddress(Library().ARVMUI_GetDescriptor()->module, "ARVMUI_SetMessagePopup")));
    setPopup(FALSE, &previous);
    for (int i = 0; i < kConfigurations; ++i)
    {
        if (i % 20 == 0) ArrangeFolders();
        ArrangeHints();
        const std::wstring text = RandomList();
        const bool isOwn = random_() % 3 == 0;
        const std::optional<std::wstring> list = isOwn ? std::nullopt : std::optional(text);
        const Explanation explanation = Explain(module_.Get(), std::nullopt, list, L"");
        const Candidate* const chosen = explanation.Chosen();
        const std::wstring expected = LoadedByLibrary(isOwn ? nullptr : text.c_str());
        const std::wstring found = chosen ? fs::path(chosen->path).lexically_normal().wstring() : L"";
        ASSERT_EQ(::CompareStringOrdinal(found.c_str(), -1, expected.c_str(), -1, TRUE), CSTR_EQUAL)
            << "configuration " << i << ", list \"" << fs::path(text).string() << '"';
    }
    setPopup(previous, nullptr);
}

TEST_F(Explanations, CandidatesNameTheirItem)
{
    WriteResourceImage(FileIn(L"fr"), {{1, L"fr-FR"}});
    const Explanation explanation = Explain(module_.Get(), std::nullopt, L"fr-CA,de", L"");
    ASSERT_GE(explanation.candidates.size(), 4u);
    EXPECT_EQ(explanation.candidates[0].state, CandidateState::kNoFolder);
    EXPECT_EQ(explanation.candidates[1].locale, L"fr");
    EXPECT_EQ(explanation.candidates[1].item, L"fr-CA");
    EXPECT_EQ(explanation.candidates[1].state, CandidateState::kChosen);
    EXPECT_EQ(explanation.candidates[2].item, L"de");
    EXPECT_EQ(explanation.candidates[2].state, CandidateState::kNotTried);
    EXPECT_EQ(explanation.candidates[3].item, L"");
}

TEST_F(Explanations, TellAFileThatDoesNotLoadFromOneThatIsMissing)
{
    WriteBroken(L"de");
    fs::create_directories(FileIn(L"fr").parent_path());
    const Explanation explanation = Explain(module_.Get(), std::nullopt, L"de,fr", L"");
    EXPECT_EQ(explanation.candidates[0].state, CandidateState::kNotLoadable);
    EXPECT_NE(explanation.candidates[0].error, 0u);
    EXPECT_EQ(explanation.candidates[1].state, CandidateState::kNoFile);
}
