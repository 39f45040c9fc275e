#include "placeholders.h"
#include "text_conversion.h"
#include "translation_checks.h"

#include <algorithm>
#include <set>

namespace
{

std::string Joined(const std::vector<std::wstring>& placeholders)
{
    if (placeholders.empty()) return "none";
    std::wstring text;
    for (const std::wstring& placeholder : placeholders) text += (text.empty() ? L"" : L" ") + placeholder;
    return Utf8(text);
}

// Numbers that only one side has.
template <typename T>
void CompareNumbers(const std::map<UINT, T>& reference, const std::map<UINT, T>& translation, const char* what,
    const std::filesystem::path& file, Findings& findings)
{
    const std::string name = what;
    for (const auto& [number, content] : reference)
        if (!translation.contains(number))
            findings.Add(file, number, "missing-" + name, "the " + name + " is not translated");
    for (const auto& [number, content] : translation)
        if (!reference.contains(number))
            findings.Add(file, number, "extra-" + name, "the reference has no such " + name);
}

void ComparePass(const std::wstring& reference, const std::wstring& translation, const char* pass, UINT number,
    const std::filesystem::path& file, Findings& findings)
{
    const auto expected = PrintfPlaceholders(reference);
    const auto found = PrintfPlaceholders(translation);
    if (expected != found)
        findings.Add(file, number, "placeholders",
            std::string("placeholders") + pass + " are " + Joined(found) + ", in the reference " + Joined(expected));
}

// A text without placeholders is no format, whatever its percent signs look like.
void ComparePlaceholders(const std::wstring& reference, const std::wstring& translation, UINT number,
    const std::filesystem::path& file, Findings& findings)
{
    if (!PrintfPlaceholders(reference).empty()) ComparePass(reference, translation, "", number, file, findings);
    const auto expected = InsertPlaceholders(reference);
    const auto found = InsertPlaceholders(translation);
    if (!expected.empty() && expected != found)
        findings.Add(
            file, number, "placeholders", "inserts are " + Joined(found) + ", in the reference " + Joined(expected));
}

// The library formats its error texts twice.
bool IsFormattedTwice(const Translation& translation, UINT number)
{
    return translation.IsLibraryOwn() && number >= 902 && number <= 908;
}

void CompareStrings(const Translation& reference, const Translation& translation, Findings& findings)
{
    CompareNumbers(reference.strings, translation.strings, "string", translation.path, findings);
    for (const auto& [number, text] : reference.strings)
    {
        const auto own = translation.strings.find(number);
        if (own == translation.strings.end()) continue;
        if (!IsFormattedTwice(translation, number))
        {
            ComparePlaceholders(text, own->second, number, translation.path, findings);
            continue;
        }
        ComparePass(text, own->second, " of the first pass", number, translation.path, findings);
        ComparePass(TextForSecondPass(text), TextForSecondPass(own->second), " of the second pass", number,
            translation.path, findings);
    }
}

// Class and identifier, which is what the program knows a control by.
std::multiset<std::wstring> ControlNames(const DialogTemplate& dialog)
{
    std::multiset<std::wstring> names;
    for (const DialogControl& control : dialog.controls)
    {
        const NameOrNumber& type = control.windowClass;
        names.insert(std::to_wstring(static_cast<int>(static_cast<short>(control.id))) + L" ("
                     + (type.isNumber ? std::to_wstring(type.number) : type.text) + L")");
    }
    return names;
}

void CompareControls(const DialogTemplate& reference, const DialogTemplate& translation, UINT number,
    const std::filesystem::path& file, Findings& findings)
{
    const auto expected = ControlNames(reference);
    const auto found = ControlNames(translation);
    std::vector<std::wstring> missing;
    std::vector<std::wstring> extra;
    std::set_difference(expected.begin(), expected.end(), found.begin(), found.end(), std::back_inserter(missing));
    std::set_difference(found.begin(), found.end(), expected.begin(), expected.end(), std::back_inserter(extra));
    if (!missing.empty()) findings.Add(file, number, "controls", "the dialog lacks the controls " + Joined(missing));
    if (!extra.empty())
        findings.Add(file, number, "controls", "the reference's dialog has no controls " + Joined(extra));
}

}  // namespace

void CompareTranslations(const Translation& reference, const Translation& translation, Findings& findings)
{
    CompareStrings(reference, translation, findings);
    CompareNumbers(reference.dialogs, translation.dialogs, "dialog", translation.path, findings);
    for (const auto& [number, dialog] : reference.dialogs)
        if (const auto own = translation.dialogs.find(number); own != translation.dialogs.end())
            CompareControls(dialog, own->second, number, translation.path, findings);
    CompareNumbers(reference.messages, translation.messages, "message", translation.path, findings);
    for (const auto& [number, text] : reference.messages)
        if (const auto own = translation.messages.find(number); own != translation.messages.end())
            ComparePlaceholders(text, own->second, number, translation.path, findings);
}
