// The explanation against the library itself: whatever the list, the hints, the registry and the
// folders are, both choose the same file.
#include "explanation.h"
#include "library_api.h"
#include "locale_choices.h"
#include "support/resource_image.h"
#include "support/scratch_registry.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cwchar>

using arvmui_test::LoadedModule;
using arvmui_test::ScratchRegistry;
using arvmui_test::StoreText;
using arvmui_test::TemporaryFolder;
using arvmui_test::WriteResourceImage;

namespace
{

namespace fs = std::filesystem;

constexpr int kConfigurations = 10000;

class Explanations : public testing::Test
{
protected:
    Explanations() : module_(folder_.Path() / L"sample.dll") { registry_.ReplaceRoot(HKEY_CURRENT_USER); }

    fs::path FileIn(const fs::path& locale) const { return folder_.Path() / L"resource" / locale / L"sampleUI.DLL"; }

    void SetHint(LocaleHintSlot slot, const std::wstring& text)
    {
        // The library's own record: what attach found in a real process.
        auto* const descriptor = const_cast<LibraryDescriptor*>(Library().ARVMUI_GetDescriptor());
        std::wmemcpy(descriptor->LocaleHintTable[slot], text.c_str(), text.size() + 1);
    }

    void ArrangeHints()
    {
        SetHint(HINT_COMMAND_LINE, choices_.Number(2) == 0 ? choices_.List(true) : L"");
        SetHint(HINT_SETTINGS_FILE, choices_.Number(2) == 0 ? choices_.List(true) : L"\t");
        SetHint(HINT_BROWSER, choices_.Number(2) == 0 ? choices_.List(true) : L"\t");
        // Never empty: nobody is there to answer.
        SetHint(
            HINT_ASKED, choices_.Number(2) == 0 ? std::wstring(L"\t") : std::wstring(choices_.Pick(kChoiceFolders)));
        StoreText(HKEY_CURRENT_USER, L"SOFTWARE\\Pelkor\\MUI", L"UILocale", choices_.List(true));
    }

    TemporaryFolder folder_;
    LoadedModule module_;
    ScratchRegistry registry_;
    LocaleChoices choices_{20240611};
};

}  // namespace

TEST_F(Explanations, AgreeWithTheLibrary)
{
    Library().ARVMUI_SetMessagePopup(FALSE, nullptr);  // nobody is there to read what it would tell
    for (int i = 0; i < kConfigurations; ++i)
    {
        if (i % 20 == 0) choices_.ArrangeFolders(folder_.Path(), L"sampleUI.DLL");
        ArrangeHints();
        const std::wstring text = choices_.List(true);
        const bool isOwn = choices_.Number(3) == 0;
        const std::optional<std::wstring> list = isOwn ? std::nullopt : std::optional(text);
        const Explanation explanation = Explain(module_.Get(), std::nullopt, list, L"");
        const Candidate* const chosen = explanation.Chosen();
        const std::wstring expected = LoadedByLibrary(module_.Get(), isOwn ? nullptr : text.c_str());
        const std::wstring found = chosen ? fs::path(chosen->path).lexically_normal().wstring() : L"";
        ASSERT_EQ(::CompareStringOrdinal(found.c_str(), -1, expected.c_str(), -1, TRUE), CSTR_EQUAL)
            << "configuration " << i << ", list \"" << fs::path(text).string() << '"';
    }
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
    fs::create_directories(FileIn(L"de").parent_path());
    LocaleChoices::WriteEmptyFile(FileIn(L"de"));
    fs::create_directories(FileIn(L"fr").parent_path());
    const Explanation explanation = Explain(module_.Get(), std::nullopt, L"de,fr", L"");
    EXPECT_EQ(explanation.candidates[0].state, CandidateState::kNotLoadable);
    EXPECT_NE(explanation.candidates[0].error, 0u);
    EXPECT_EQ(explanation.candidates[1].state, CandidateState::kNoFile);
}
