// What the settings dialog stores, and what it says when that fails in the real registry.
#include "resources/process_state.h"
#include "settings_dialog_fixture.h"
#include "support/box_window.h"

#include <sddl.h>

namespace
{

using namespace arvmui_test;

const wchar_t* const kGerman = L"Deutsch";
const wchar_t* const kFrench = L"Fran\u00e7ais";

class SettingsDialogSaving : public SettingsDialog
{
protected:
    // Answers the box over the dialog and tells its text.
    static std::wstring AnswerBox(const OpenSettings& settings)
    {
        const HWND box = WaitForOwnedDialog(settings.Window());
        if (!box) return L"<no box>";
        const BoxContents contents = ReadBox(box);
        EXPECT_EQ(contents.caption, L"Error");
        EXPECT_TRUE(PressButton(box, contents.buttons.begin()->first));
        return contents.text;
    }
};

// The key of the list, with access rights that leave reading only, for as long as the object lives.
class ReadOnlyProductKey
{
public:
    explicit ReadOnlyProductKey(HKEY root = HKEY_CURRENT_USER)
    {
        ::RegCreateKeyExW(root, kProductKey, 0, nullptr, 0, KEY_READ | WRITE_DAC, nullptr, &key_, nullptr);
        SetRights(L"D:P(A;;KR;;;WD)");
    }
    ~ReadOnlyProductKey()
    {
        SetRights(L"D:P(A;;KA;;;WD)");
        ::RegCloseKey(key_);
    }
    ReadOnlyProductKey(const ReadOnlyProductKey&) = delete;
    ReadOnlyProductKey& operator=(const ReadOnlyProductKey&) = delete;

private:
    void SetRights(const wchar_t* rights) const
    {
        PSECURITY_DESCRIPTOR descriptor = nullptr;
        ASSERT_TRUE(
            ::ConvertStringSecurityDescriptorToSecurityDescriptorW(rights, SDDL_REVISION_1, &descriptor, nullptr));
        EXPECT_EQ(::RegSetKeySecurity(key_, DACL_SECURITY_INFORMATION, descriptor), ERROR_SUCCESS);
        ::LocalFree(descriptor);
    }

    HKEY key_ = nullptr;
};

// ---- Storing -----------------------------------------------------------------------------------------

TEST_F(SettingsDialogSaving, WritesTextOfThePlainType)
{
    StoreText(HKEY_CURRENT_USER, kProductKey, kListValue, L"de-DE", REG_EXPAND_SZ);
    OpenSettings settings;
    ASSERT_TRUE(settings.Add({1, 4}));
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());

    wchar_t text[64] = {};
    DWORD type = 0;
    DWORD bytes = sizeof(text);
    EXPECT_EQ(::RegGetValueW(HKEY_CURRENT_USER, kProductKey, kListValue, RRF_RT_ANY, &type, text, &bytes), 0);
    EXPECT_EQ(type, DWORD{REG_SZ});
    EXPECT_STREQ(text, L"de-DE,fr-FR,system");
}

TEST_F(SettingsDialogSaving, CreatesTheKey)
{
    OpenSettings settings;
    ASSERT_TRUE(settings.Add({3}));
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"ja-JP");
}

TEST_F(SettingsDialogSaving, EmptyListRemovesTheValueAndNothingElse)
{
    StoreText(HKEY_CURRENT_USER, kProductKey, L"Other", L"other");
    Store(L"de-DE");
    OpenSettings settings;
    settings.Select({0});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), kNoValue);
    EXPECT_EQ(StoredText(HKEY_CURRENT_USER, kProductKey, L"Other"), L"other");
}

TEST_F(SettingsDialogSaving, EmptyListWithoutStoredValueSucceeds)
{
    OpenSettings settings;
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_APPLY));
    EXPECT_EQ(Stored(), kNoValue);
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), kNoValue);
}

TEST_F(SettingsDialogSaving, ApplyStoresAndStaysOpen)
{
    Store(L"de-DE");
    OpenSettings settings;
    ASSERT_TRUE(settings.Add({1}));
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_APPLY));
    EXPECT_EQ(Stored(), L"de-DE,fr-FR");
    ASSERT_TRUE(::IsWindowVisible(settings.Window()));
    EXPECT_EQ(settings.Chosen(), (Names{kGerman, kFrench}));

    settings.Select({0});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_APPLY));
    EXPECT_EQ(Stored(), L"fr-FR");
    settings.Select({0});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_APPLY));
    EXPECT_EQ(Stored(), kNoValue);
    ASSERT_TRUE(settings.Add({0}));
    ASSERT_TRUE(settings.Click(IDCANCEL));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), kNoValue);
}

TEST_F(SettingsDialogSaving, TextMayBeLongerThanWhatIsReadAgain)
{
    for (const wchar_t c : {L'a', L'b', L'c', L'd', L'e'})
        Install(std::wstring(1, c), std::wstring(63, c), static_cast<LANGID>(0x0500 + c), {c}, {c});
    OpenSettings settings;
    const HWND add = settings.OpenAdd();
    const Names offered = ListItems(add, ARVMUI_CONTROL_AVAILABLE_LIST);
    Positions positions;
    std::wstring expected;
    for (size_t i = 0; i < offered.size(); ++i)
    {
        if (offered[i].size() != 1) continue;
        positions.push_back(static_cast<int>(i));
        expected += (expected.empty() ? L"" : L",") + std::wstring(63, offered[i][0]);
    }
    ASSERT_EQ(positions.size(), size_t{5});
    SelectItems(add, ARVMUI_CONTROL_AVAILABLE_LIST, positions);
    ASSERT_TRUE(ClickButton(add, IDOK));
    ASSERT_TRUE(WaitUntilGone(add, settings.Window()));
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), expected);
}

// ---- Failing -----------------------------------------------------------------------------------------

struct Failure
{
    const char* name;
    DWORD scope;
    int button;
    bool removes;
};

void PrintTo(const Failure& failure, std::ostream* output)
{
    *output << failure.name;
}

class SettingsDialogFailure : public SettingsDialogSaving, public testing::WithParamInterface<Failure>
{
protected:
    HKEY Root() const { return GetParam().scope == kMachineScope ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }
    static void Change(const OpenSettings& settings)
    {
        settings.Select(GetParam().removes ? Positions{0, 1} : Positions{0});
        ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    }
};

TEST_P(SettingsDialogFailure, IsReportedAndEndsTheDialogWithNothingLost)
{
    Store(L"de-DE,fr-FR", Root());
    const ReadOnlyProductKey readOnly(Root());
    OpenSettings settings(GetParam().scope);
    Change(settings);
    settings.Press(GetParam().button);
    const HWND box = WaitForOwnedDialog(settings.Window());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(settings.Chosen(), GetParam().removes ? Names{} : Names{kFrench});
    const std::wstring code = std::to_wstring(ERROR_ACCESS_DENIED);
    EXPECT_EQ(AnswerBox(settings), (GetParam().removes ? L"907:" : L"906:") + code);
    ASSERT_TRUE(settings.Ends());
    EXPECT_FALSE(settings.Result());
    EXPECT_EQ(Stored(Root()), L"de-DE,fr-FR");
}

TEST_P(SettingsDialogFailure, EndsTheDialogSilentlyWhilePopupsAreOff)
{
    Store(L"de-DE,fr-FR", Root());
    const ReadOnlyProductKey readOnly(Root());
    arvmui::Descriptor().showMessagePopup = FALSE;
    OpenSettings settings(GetParam().scope);
    Change(settings);
    settings.Press(GetParam().button);
    ASSERT_TRUE(settings.Ends());
    EXPECT_FALSE(settings.Result());
    EXPECT_EQ(Stored(Root()), L"de-DE,fr-FR");
}

INSTANTIATE_TEST_SUITE_P(Kinds, SettingsDialogFailure,
    testing::Values(Failure{"WriteByOk", kUserScope, IDOK, false},
        Failure{"WriteByApply", kUserScope, ARVMUI_CONTROL_APPLY, false},
        Failure{"RemovalByOk", kUserScope, IDOK, true},
        Failure{"RemovalByApply", kUserScope, ARVMUI_CONTROL_APPLY, true},
        Failure{"MachineWriteByOk", kMachineScope, IDOK, false},
        Failure{"MachineRemovalByApply", kMachineScope, ARVMUI_CONTROL_APPLY, true}),
    [](const auto& failure) { return std::string(failure.param.name); });

// A key that goes with the session takes no lasting key below it.
TEST_F(SettingsDialogSaving, KeyThatCannotBeCreatedIsReported)
{
    HKEY parent = nullptr;
    ASSERT_EQ(::RegCreateKeyExW(
                  HKEY_CURRENT_USER, L"SOFTWARE", 0, nullptr, REG_OPTION_VOLATILE, KEY_READ, nullptr, &parent, nullptr),
        ERROR_SUCCESS);
    ::RegCloseKey(parent);
    const std::wstring code = std::to_wstring(ERROR_CHILD_MUST_BE_VOLATILE);
    {
        OpenSettings settings;
        settings.Press(IDOK);
        EXPECT_EQ(AnswerBox(settings), L"907:" + code);
        EXPECT_FALSE(settings.Result());
    }
    OpenSettings settings;
    ASSERT_TRUE(settings.Add({0}));
    settings.Press(IDOK);
    EXPECT_EQ(AnswerBox(settings), L"906:" + code);
    EXPECT_FALSE(settings.Result());
}

TEST_F(SettingsDialogSaving, ListIsReadFromAKeyWithoutWriteAccess)
{
    Store(L"fr-FR");
    const ReadOnlyProductKey readOnly;
    OpenSettings settings;
    EXPECT_EQ(settings.Chosen(), Names{kFrench});
    ASSERT_TRUE(settings.Click(IDCANCEL));
    EXPECT_TRUE(settings.Result());
}

}  // namespace
