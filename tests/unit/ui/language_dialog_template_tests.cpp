// The template of the language dialog, as it lies in the built DLL, and the window that Windows makes of it.
// Sizes and positions are in dialog units.
#include "support/dialog_controls.h"
#include "support/temporary_folder.h"
#include "unit/ui/language_dialog_fixture.h"

#include <array>
#include <cstring>
#include <map>
#include <ostream>

namespace
{

using arvmui_test::DialogRequest;
using arvmui_test::LanguageDialogTest;
using arvmui_test::MakeEntry;
using arvmui_test::OpenDialog;

constexpr int kPrompt = 201;
constexpr int kList = 202;

using Box = std::array<short, 4>;  // left, top, width, height

struct ControlTemplate
{
    DWORD style;
    Box box;
    WORD windowClass;
    std::wstring text;
};

struct DialogTemplate
{
    DWORD style;
    Box box;
    std::wstring caption;
    WORD fontSize;
    std::wstring fontName;
    std::vector<DWORD> order;  // identifiers of the controls
    std::map<DWORD, ControlTemplate> controls;
};

// Reads a template in its extended form from the start.
class TemplateReader
{
public:
    explicit TemplateReader(const BYTE* bytes) : begin_(bytes), next_(bytes) {}

    template <typename Type>
    Type Read()
    {
        Type value;
        std::memcpy(&value, next_, sizeof(value));
        next_ += sizeof(value);
        return value;
    }

    // A text, or a number behind a mark.
    std::wstring ReadText(WORD* number)
    {
        std::wstring text;
        WORD unit = Read<WORD>();
        if (unit == 0xFFFF)
        {
            unit = Read<WORD>();
            if (number) *number = unit;
            return text;
        }
        for (; unit != 0; unit = Read<WORD>()) text += static_cast<wchar_t>(unit);
        return text;
    }

    Box ReadBox()
    {
        Box box;
        for (short& value : box) value = Read<short>();
        return box;
    }

    void Align() { next_ += (4 - (next_ - begin_) % 4) % 4; }

private:
    const BYTE* begin_;
    const BYTE* next_;
};

ControlTemplate ReadControl(TemplateReader& reader, DWORD& identifier)
{
    ControlTemplate control = {};
    reader.Align();
    reader.Read<DWORD>();  // help
    reader.Read<DWORD>();  // extended style
    control.style = reader.Read<DWORD>();
    control.box = reader.ReadBox();
    identifier = reader.Read<DWORD>();
    reader.ReadText(&control.windowClass);
    control.text = reader.ReadText(nullptr);
    reader.Read<WORD>();  // further data: none
    return control;
}

DialogTemplate ReadTemplate(const void* bytes)
{
    DialogTemplate dialog = {};
    TemplateReader reader(static_cast<const BYTE*>(bytes));
    EXPECT_EQ(reader.Read<DWORD>(), 0xFFFF0001) << "not an extended template";
    reader.Read<DWORD>();  // help
    reader.Read<DWORD>();  // extended style
    dialog.style = reader.Read<DWORD>();
    const WORD count = reader.Read<WORD>();
    dialog.box = reader.ReadBox();
    reader.ReadText(nullptr);  // menu
    reader.ReadText(nullptr);  // class
    dialog.caption = reader.ReadText(nullptr);
    dialog.fontSize = reader.Read<WORD>();
    reader.Read<DWORD>();  // weight, italic, character set
    dialog.fontName = reader.ReadText(nullptr);
    for (WORD i = 0; i < count; ++i)
    {
        DWORD identifier = 0;
        const ControlTemplate control = ReadControl(reader, identifier);
        dialog.order.push_back(identifier);
        dialog.controls[identifier] = control;
    }
    return dialog;
}

class LanguageDialogTemplate : public testing::Test
{
protected:
    LanguageDialogTemplate()
        : library_(::LoadLibraryExW(
            (arvmui_test::TestProgramFolder() / L"arvmui64.dll").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE))
    {
    }
    ~LanguageDialogTemplate() override { ::FreeLibrary(library_); }

    void SetUp() override
    {
        const HRSRC place = ::FindResourceW(library_, MAKEINTRESOURCEW(200), RT_DIALOG);
        ASSERT_NE(place, nullptr);
        dialog_ = ReadTemplate(::LockResource(::LoadResource(library_, place)));
    }

    DialogTemplate dialog_;

private:
    HMODULE library_;
};

TEST_F(LanguageDialogTemplate, IsACentredModalDialogWithSystemMenu)
{
    constexpr DWORD kWanted = DS_MODALFRAME | DS_CENTER | WS_CAPTION | WS_SYSMENU | DS_SETFONT;
    EXPECT_EQ(dialog_.style & kWanted, kWanted);
    EXPECT_EQ(dialog_.style & (WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX | WS_CHILD), DWORD{0});
    EXPECT_EQ(dialog_.box[2], 186);
    EXPECT_EQ(dialog_.box[3], 70);
    EXPECT_EQ(dialog_.caption, L"Installer Language");
    EXPECT_EQ(dialog_.fontSize, 8);
    EXPECT_EQ(dialog_.fontName, L"MS Shell Dlg");
}

TEST_F(LanguageDialogTemplate, HasFourControlsInTheirOrder)
{
    EXPECT_EQ(dialog_.order, (std::vector<DWORD>{kPrompt, kList, IDOK, IDCANCEL}));
}

struct ControlCase
{
    const char* name;
    DWORD id;
    WORD windowClass;
    DWORD style;      // bits that are set ...
    DWORD styleMask;  // ... among these
    Box box;
    const wchar_t* text;
};

void PrintTo(const ControlCase& value, std::ostream* output)
{
    *output << value.name;
}

constexpr WORD kButtonClass = 0x0080;
constexpr WORD kStaticClass = 0x0082;
constexpr WORD kComboClass = 0x0085;
constexpr DWORD kComboKind = CBS_SIMPLE | CBS_DROPDOWN | CBS_DROPDOWNLIST;

class TemplateControl : public LanguageDialogTemplate, public testing::WithParamInterface<ControlCase>
{
};

TEST_P(TemplateControl, IsAsDesigned)
{
    const ControlCase& expected = GetParam();
    const ControlTemplate& control = dialog_.controls[expected.id];
    EXPECT_EQ(control.windowClass, expected.windowClass);
    EXPECT_EQ(control.style & expected.styleMask, expected.style);
    EXPECT_EQ(control.box, expected.box);
    EXPECT_EQ(control.text, expected.text);
    EXPECT_NE(control.style & WS_VISIBLE, DWORD{0});
    EXPECT_EQ(control.style & WS_DISABLED, DWORD{0});
}

INSTANTIATE_TEST_SUITE_P(Controls, TemplateControl,
    testing::Values(ControlCase{"Prompt", kPrompt, kStaticClass, SS_LEFT, SS_TYPEMASK | WS_TABSTOP, {7, 7, 172, 18},
                        L"Which language would you like to use during this operation?"},
        ControlCase{"List", kList, kComboClass, CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP,
            kComboKind | CBS_SORT | WS_VSCROLL | WS_TABSTOP, {7, 28, 172, 100}, L""},
        ControlCase{
            "Ok", IDOK, kButtonClass, BS_DEFPUSHBUTTON | WS_TABSTOP, BS_TYPEMASK | WS_TABSTOP, {69, 49, 50, 14}, L"OK"},
        ControlCase{"Cancel", IDCANCEL, kButtonClass, BS_PUSHBUTTON | WS_TABSTOP, BS_TYPEMASK | WS_TABSTOP,
            {129, 49, 50, 14}, L"Cancel"}),
    [](const testing::TestParamInfo<ControlCase>& parameter) { return std::string(parameter.param.name); });

// ---- The window ------------------------------------------------------------------------------------------------

TEST_F(LanguageDialogTest, IsAsLargeAsItsTemplate)
{
    const OpenDialog dialog(DialogRequest{{MakeEntry(0x0409, L"en-US")}});
    ASSERT_NE(dialog.Window(), nullptr);
    RECT expected = {0, 0, 186, 70};
    ASSERT_TRUE(::MapDialogRect(dialog.Window(), &expected));
    RECT client = {};
    ::GetClientRect(dialog.Window(), &client);
    EXPECT_EQ(client.right, expected.right);
    EXPECT_EQ(client.bottom, expected.bottom);
}

TEST_F(LanguageDialogTest, ListDropsDownWithinItsHeight)
{
    const OpenDialog dialog(DialogRequest{{MakeEntry(0x0409, L"en-US")}});
    ASSERT_NE(dialog.Window(), nullptr);
    RECT expected = {0, 0, 172, 100};
    ASSERT_TRUE(::MapDialogRect(dialog.Window(), &expected));
    RECT dropped = {};
    ::SendMessageW(dialog.List(), CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&dropped));
    EXPECT_EQ(dropped.right - dropped.left, expected.right);
    EXPECT_LE(dropped.bottom - dropped.top, expected.bottom);
    EXPECT_GT(dropped.bottom - dropped.top, expected.bottom / 2);
}

}  // namespace
