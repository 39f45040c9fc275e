#include "text_catalog.h"

#include "text_rooms.h"

namespace
{

bool IsIdentity(UINT number)
{
    return number == kTagString || number == kLanguageString;
}

std::string StringName(UINT number)
{
    return "string " + std::to_string(number);
}

std::string DialogName(UINT number)
{
    return "dialog " + std::to_string(number);
}

std::string ControlName(UINT number, std::size_t index)
{
    return DialogName(number) + " control " + std::to_string(index + 1);
}

std::string MessageName(UINT number)
{
    return "message " + std::to_string(number);
}

void ListDialog(UINT number, const DialogTemplate& dialog, std::vector<CatalogText>& texts)
{
    if (!dialog.title.empty()) texts.push_back({DialogName(number), dialog.title, 0, "title of the dialog"});
    for (std::size_t i = 0; i < dialog.controls.size(); ++i)
    {
        const DialogControl& control = dialog.controls[i];
        if (control.title.isNumber || control.title.text.empty()) continue;
        texts.push_back({ControlName(number, i), control.title.text, 0,
            "control " + std::to_string(static_cast<short>(control.id)) + ", " + std::to_string(control.box.width)
                + " dialog units wide"});
    }
}

void Replace(std::wstring& text, const std::string& name, const std::map<std::string, std::wstring>& texts)
{
    if (const auto found = texts.find(name); found != texts.end()) text = found->second;
}

}  // namespace

std::vector<CatalogText> ListTexts(const Translation& translation)
{
    std::vector<CatalogText> texts;
    for (const auto& [number, text] : translation.strings)
        if (!IsIdentity(number)) texts.push_back({StringName(number), text, RoomOfString(translation, number), ""});
    for (const auto& [number, dialog] : translation.dialogs) ListDialog(number, dialog, texts);
    for (const auto& [number, text] : translation.messages) texts.push_back({MessageName(number), text, 0, ""});
    return texts;
}

Translation ReplaceTexts(const Translation& translation, const std::map<std::string, std::wstring>& texts)
{
    Translation replaced = translation;
    for (auto& [number, text] : replaced.strings)
        if (!IsIdentity(number)) Replace(text, StringName(number), texts);
    for (auto& [number, dialog] : replaced.dialogs)
    {
        Replace(dialog.title, DialogName(number), texts);
        for (std::size_t i = 0; i < dialog.controls.size(); ++i)
            Replace(dialog.controls[i].title.text, ControlName(number, i), texts);
    }
    for (auto& [number, text] : replaced.messages) Replace(text, MessageName(number), texts);
    return replaced;
}
