// Whether the package's dialogs hold together: their controls, where these lead, and what they show.

#include "installer/sample_package/sample_package.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cwctype>
#include <set>

using namespace arvmui_test;

namespace
{

constexpr int kEnabled = 2;

struct Area
{
    int left;
    int top;
    int right;
    int bottom;

    bool Overlaps(const Area& other) const
    {
        return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
    }
};

int Number(const PackageRow& row, const wchar_t* column)
{
    return std::stoi(row.at(column));
}

Area AreaOf(const PackageRow& control)
{
    const int x = Number(control, L"X");
    const int y = Number(control, L"Y");
    return {x, y, x + Number(control, L"Width"), y + Number(control, L"Height")};
}

std::wstring Key(const std::wstring& first, const std::wstring& second)
{
    return first + kKeySeparator + second;
}

std::vector<PackageRow> ControlsOf(const std::wstring& dialog)
{
    std::vector<PackageRow> controls;
    for (const PackageRow& row : Sample().Table(L"Control").rows)
    {
        if (row.at(L"Dialog_") == dialog) controls.push_back(row);
    }
    return controls;
}

std::vector<std::wstring> EventsOf(const PackageRow& control)
{
    std::vector<std::wstring> events;
    for (const PackageRow& row : Sample().Table(L"ControlEvent").rows)
    {
        if (row.at(L"Dialog_") == control.at(L"Dialog_") && row.at(L"Control_") == control.at(L"Control"))
            events.push_back(row.at(L"Event"));
    }
    return events;
}

// Whether conditions show or enable the control, so that it takes turns with others.
bool IsConditional(const PackageRow& control)
{
    for (const PackageRow& row : Sample().Table(L"ControlCondition").rows)
    {
        if (row.at(L"Dialog_") == control.at(L"Dialog_") && row.at(L"Control_") == control.at(L"Control")) return true;
    }
    return false;
}

bool CanBePressed(const PackageRow& control)
{
    return control.at(L"Type") == L"PushButton"
           && ((Number(control, L"Attributes") & kEnabled) != 0 || IsConditional(control));
}

// What the installer shows for "[Name]" is the property's value.
std::wstring Shown(const std::wstring& text, const PackageLocale& locale)
{
    if (text.size() < 3 || text.front() != L'[' || text.back() != L']') return text;
    return Sample().Property(text.substr(1, text.size() - 2), locale);
}

wchar_t AccessKey(const std::wstring& text)
{
    const size_t place = text.find(L'&');
    return place != std::wstring::npos && place + 1 < text.size() ? static_cast<wchar_t>(std::towupper(text[place + 1]))
                                                                  : L'\0';
}

// The labels of a dialog that may have an access key.
std::vector<std::wstring> LabelsOf(const std::wstring& dialog, const PackageLocale& locale)
{
    const PackageTable controls = Sample().Localized(L"Control", locale);
    const PackageTable choices = Sample().Localized(L"RadioButton", locale);
    std::vector<std::wstring> labels;
    for (const PackageRow& control : controls.rows)
    {
        if (control.at(L"Dialog_") != dialog) continue;
        if (control.at(L"Type") == L"PushButton") labels.push_back(Shown(control.at(L"Text"), locale));
        for (const PackageRow& choice : choices.rows)
        {
            if (control.at(L"Type") == L"RadioButtonGroup" && choice.at(L"Property") == control.at(L"Property"))
                labels.push_back(choice.at(L"Text"));
        }
    }
    return labels;
}

// The names in "[...]" of a text.
std::set<std::wstring> PropertiesIn(const std::wstring& text)
{
    std::set<std::wstring> names;
    for (size_t begin = text.find(L'['); begin != std::wstring::npos; begin = text.find(L'[', begin + 1))
        names.insert(text.substr(begin + 1, text.find(L']', begin) - begin - 1));
    return names;
}

template <typename Check>
void ForEachControl(const Check& check)
{
    for (const PackageRow& control : Sample().Table(L"Control").rows)
    {
        SCOPED_TRACE(Narrow(control.at(L"Dialog_") + L"." + control.at(L"Control")));
        check(control);
    }
}

template <typename Check>
void ForEachEvent(const wchar_t* event, const Check& check)
{
    for (const PackageRow& row : Sample().Table(L"ControlEvent").rows)
    {
        if (row.at(L"Event") == event) check(row.at(L"Argument"));
    }
}

}  // namespace

TEST(SamplePackageDialogs, FirstDefaultAndCancelControlAreTheirOwn)
{
    for (const PackageRow& dialog : Sample().Table(L"Dialog").rows)
    {
        for (const wchar_t* column : {L"Control_First", L"Control_Default", L"Control_Cancel"})
        {
            if (dialog.at(column).empty()) continue;
            EXPECT_NE(Sample().Table(L"Control").FindRow(Key(dialog.at(L"Dialog"), dialog.at(column))), nullptr)
                << Narrow(dialog.at(L"Dialog") + L"." + dialog.at(column));
        }
    }
}

TEST(SamplePackageDialogs, TabKeyLeadsToEveryButtonAndBack)
{
    for (const PackageRow& dialog : Sample().Table(L"Dialog").rows)
    {
        SCOPED_TRACE(Narrow(dialog.at(L"Dialog")));
        std::set<std::wstring> reached;
        std::wstring next = dialog.at(L"Control_First");
        while (reached.insert(next).second)
            next = Sample().Row(L"Control", Key(dialog.at(L"Dialog"), next)).at(L"Control_Next");
        EXPECT_EQ(next, dialog.at(L"Control_First"));

        for (const PackageRow& control : ControlsOf(dialog.at(L"Dialog")))
        {
            if (control.at(L"Type") == L"PushButton" || control.at(L"Type") == L"RadioButtonGroup")
            {
                EXPECT_TRUE(reached.contains(control.at(L"Control"))) << Narrow(control.at(L"Control"));
            }
        }
    }
}

TEST(SamplePackageDialogs, ControlsLieInsideTheirDialogs)
{
    ForEachControl(
        [](const PackageRow& control)
        {
            const PackageRow& dialog = Sample().Row(L"Dialog", control.at(L"Dialog_"));
            const Area place = AreaOf(control);
            EXPECT_LE(place.right, Number(dialog, L"Width"));
            EXPECT_LE(place.bottom, Number(dialog, L"Height"));
        });
}

TEST(SamplePackageDialogs, ControlsThatShowTogetherDoNotOverlap)
{
    // The error dialog's buttons are moved into place by the installer.
    const auto mayLieBelow = [](const PackageRow& control)
    {
        return control.at(L"Control") == L"Background" || control.at(L"Type") == L"RadioButtonGroup"
               || control.at(L"Dialog_") == L"ErrorDlg" || IsConditional(control);
    };
    for (const PackageRow& dialog : Sample().Table(L"Dialog").rows)
    {
        const std::vector<PackageRow> controls = ControlsOf(dialog.at(L"Dialog"));
        for (size_t i = 0; i < controls.size(); ++i)
        {
            for (size_t k = 0; k < i; ++k)
            {
                if (mayLieBelow(controls[i]) || mayLieBelow(controls[k])) continue;
                EXPECT_FALSE(AreaOf(controls[i]).Overlaps(AreaOf(controls[k]))) << Narrow(
                    dialog.at(L"Dialog") + L": " + controls[i].at(L"Control") + L", " + controls[k].at(L"Control"));
            }
        }
    }
}

TEST(SamplePackageDialogs, ControlsThatTakeTurnsHaveOnePlace)
{
    std::set<std::wstring> buttons;
    for (const wchar_t* name : {L"Install", L"Repair", L"Remove"})
    {
        const PackageRow& control = Sample().Row(L"Control", Key(L"ReadyDlg", name));
        buttons.insert(control.at(L"X") + L"," + control.at(L"Y"));
    }
    EXPECT_EQ(buttons.size(), 1u);
}

TEST(SamplePackageDialogs, TextsAndButtonsAreOfReadableSize)
{
    ForEachControl(
        [](const PackageRow& control)
        {
            if (control.at(L"Type") == L"PushButton")
            {
                EXPECT_GE(Number(control, L"Width"), 50);
                EXPECT_GE(Number(control, L"Height"), 14);
            }
            if (control.at(L"Type") == L"Text")
            {
                EXPECT_GE(Number(control, L"Height"), 14);
            }
        });
    for (const PackageLocale& locale : Sample().Locales())
    {
        for (const PackageRow& style : Sample().Localized(L"TextStyle", locale).rows)
            EXPECT_GE(Number(style, L"Size"), 8) << Narrow(locale.tag + L": " + style.at(L"TextStyle"));
    }
}

TEST(SamplePackageDialogs, EveryButtonThatCanBePressedDoesSomething)
{
    ForEachControl(
        [](const PackageRow& control)
        {
            if (CanBePressed(control))
            {
                EXPECT_FALSE(EventsOf(control).empty());
            }
        });
}

TEST(SamplePackageDialogs, ButtonsLeadToDialogsThatExist)
{
    for (const wchar_t* event : {L"NewDialog", L"SpawnDialog"})
    {
        ForEachEvent(event, [](const std::wstring& argument)
            { EXPECT_NE(Sample().Table(L"Dialog").FindRow(argument), nullptr) << Narrow(argument); });
    }
}

TEST(SamplePackageDialogs, ButtonsDoActionsThatExist)
{
    int actions = 0;
    ForEachEvent(L"DoAction",
        [&actions](const std::wstring& argument)
        {
            ++actions;
            EXPECT_NE(Sample().Table(L"CustomAction").FindRow(argument), nullptr) << Narrow(argument);
        });
    EXPECT_EQ(actions, 1);  // the preview of the language dialog
}

TEST(SamplePackageDialogs, DialogsEndInAWayThatTheInstallerKnows)
{
    const std::set<std::wstring> ends = {L"Exit", L"Retry", L"Ignore", L"Return", L"ErrorAbort", L"ErrorCancel",
        L"ErrorIgnore", L"ErrorNo", L"ErrorOk", L"ErrorRetry", L"ErrorYes"};
    ForEachEvent(L"EndDialog",
        [&ends](const std::wstring& argument) { EXPECT_TRUE(ends.contains(argument)) << Narrow(argument); });
}

TEST(SamplePackageDialogs, EveryDialogIsShownBySomething)
{
    std::set<std::wstring> shown = {L"FilesInUse", Sample().Row(L"Property", L"ErrorDialog").at(L"Value")};
    for (const wchar_t* sequence : {L"InstallUISequence", L"AdminUISequence"})
    {
        for (const PackageRow& row : Sample().Table(sequence).rows) shown.insert(row.at(L"Action"));
    }
    for (const wchar_t* event : {L"NewDialog", L"SpawnDialog"})
        ForEachEvent(event, [&shown](const std::wstring& argument) { shown.insert(argument); });
    for (const PackageRow& dialog : Sample().Table(L"Dialog").rows)
        EXPECT_TRUE(shown.contains(dialog.at(L"Dialog"))) << Narrow(dialog.at(L"Dialog"));
}

TEST(SamplePackageDialogs, PicturesExist)
{
    ForEachControl(
        [](const PackageRow& control)
        {
            if (control.at(L"Type") == L"Bitmap")
            {
                EXPECT_NE(Sample().Table(L"Binary").FindRow(control.at(L"Text")), nullptr);
            }
        });
}

TEST(SamplePackageDialogs, PropertiesInTextsExist)
{
    for (const PackageLocale& locale : Sample().Locales())
    {
        std::vector<std::wstring> texts;
        for (const PackageRow& row : Sample().Localized(L"Control", locale).rows) texts.push_back(row.at(L"Text"));
        for (const PackageRow& row : Sample().Localized(L"Dialog", locale).rows) texts.push_back(row.at(L"Title"));
        for (const PackageRow& row : Sample().Localized(L"RadioButton", locale).rows) texts.push_back(row.at(L"Text"));
        for (const std::wstring& text : texts)
        {
            for (const std::wstring& name : PropertiesIn(text))
            {
                EXPECT_TRUE(Sample().Table(L"Property").FindRow(name) || Sample().Table(L"Directory").FindRow(name))
                    << Narrow(locale.tag + L": " + text);
            }
        }
    }
}

TEST(SamplePackageDialogs, TextStylesExist)
{
    const PackageTable& styles = Sample().Table(L"TextStyle");
    EXPECT_NE(styles.FindRow(Sample().Row(L"Property", L"DefaultUIFont").at(L"Value")), nullptr);
    for (const PackageLocale& locale : Sample().Locales())
    {
        for (const PackageRow& row : Sample().Localized(L"Control", locale).rows)
        {
            const std::wstring& text = row.at(L"Text");
            if (text.compare(0, 2, L"{\\") == 0)
            {
                EXPECT_NE(styles.FindRow(text.substr(2, text.find(L'}') - 2)), nullptr) << Narrow(text);
            }
        }
    }
}

TEST(SamplePackageDialogs, NoTwoControlsShareAnAccessKeyInAnyLanguage)
{
    for (const PackageLocale& locale : Sample().Locales())
    {
        for (const PackageRow& dialog : Sample().Table(L"Dialog").rows)
        {
            std::set<wchar_t> keys;
            for (const std::wstring& label : LabelsOf(dialog.at(L"Dialog"), locale))
            {
                const wchar_t key = AccessKey(label);
                if (key != L'\0')
                {
                    EXPECT_TRUE(keys.insert(key).second)
                        << Narrow(locale.tag + L" " + dialog.at(L"Dialog") + L": " + label);
                }
            }
        }
    }
}

TEST(SamplePackageDialogs, TranslatedLabelsHaveAnAccessKeyWhereEnglishOnesHave)
{
    for (const PackageLocale& locale : Sample().Locales())
    {
        for (const PackageRow& dialog : Sample().Table(L"Dialog").rows)
        {
            const auto english = LabelsOf(dialog.at(L"Dialog"), Sample().Locale(L"en"));
            const auto labels = LabelsOf(dialog.at(L"Dialog"), locale);
            ASSERT_EQ(labels.size(), english.size());
            for (size_t i = 0; i < labels.size(); ++i)
                EXPECT_EQ(AccessKey(labels[i]) != 0, AccessKey(english[i]) != 0)
                    << Narrow(locale.tag + L" " + dialog.at(L"Dialog") + L": " + labels[i]);
        }
    }
}
