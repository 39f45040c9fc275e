#include "dialog_template.h"

#include <cstring>
#include <iterator>
#include <stdexcept>

namespace arvmui_test
{
namespace
{

constexpr DWORD kNoIdentifier = 0xFFFF;  // a 16-bit -1 in the script
constexpr WORD kIsNumber = 0xFFFF;       // in place of a text
constexpr const wchar_t* kSystemClasses[] = {L"Button", L"Edit", L"Static", L"ListBox", L"ScrollBar", L"ComboBox"};
constexpr WORD kFirstSystemClass = 0x0080;

class TemplateReader
{
public:
    TemplateReader(const BYTE* bytes, size_t size) : bytes_(bytes), size_(size) {}

    template <typename Type>
    Type Take()
    {
        Type value = {};
        if (size_ - at_ < sizeof(value)) throw std::runtime_error("dialog template is cut");
        std::memcpy(&value, bytes_ + at_, sizeof(value));
        at_ += sizeof(value);
        return value;
    }

    void AlignToControl() { at_ = (at_ + 3) / 4 * 4; }
    void Skip(size_t bytes) { at_ += bytes; }

    std::wstring TakeText()
    {
        std::wstring text;
        for (WORD c = Take<WORD>(); c != 0; c = Take<WORD>()) text += static_cast<wchar_t>(c);
        return text;
    }

    // A text, or a number in its place, for which `name` finds one.
    template <typename Name>
    std::wstring TakeTextOrNumber(const Name& name)
    {
        const size_t start = at_;
        if (Take<WORD>() == kIsNumber) return name(Take<WORD>());
        at_ = start;
        return TakeText();
    }

    DialogRect TakeRect()
    {
        DialogRect rect = {};
        for (int* const value : {&rect.x, &rect.y, &rect.width, &rect.height}) *value = Take<SHORT>();
        return rect;
    }

private:
    const BYTE* bytes_;
    size_t size_;
    size_t at_ = 0;
};

std::wstring ClassName(WORD number)
{
    const size_t index = static_cast<size_t>(number - kFirstSystemClass);
    if (index >= std::size(kSystemClasses)) throw std::runtime_error("unknown control class");
    return kSystemClasses[index];
}

DialogControl TakeControl(TemplateReader& reader)
{
    reader.AlignToControl();
    DialogControl control = {};
    reader.Take<DWORD>();  // help
    control.extendedStyle = reader.Take<DWORD>();
    control.style = reader.Take<DWORD>();
    control.place = reader.TakeRect();
    control.id = reader.Take<DWORD>();
    if (control.id == 0xFFFFFFFF) control.id = kNoIdentifier;
    control.className = reader.TakeTextOrNumber(ClassName);
    control.text = reader.TakeTextOrNumber([](WORD number) { return L"#" + std::to_wstring(number); });
    reader.Skip(reader.Take<WORD>());
    return control;
}

}  // namespace

DialogTemplate ReadDialogTemplate(HMODULE library, WORD dialog)
{
    const HRSRC place = ::FindResourceW(library, MAKEINTRESOURCEW(dialog), RT_DIALOG);
    if (!place) throw std::runtime_error("no dialog " + std::to_string(dialog));
    TemplateReader reader(
        static_cast<const BYTE*>(::LockResource(::LoadResource(library, place))), ::SizeofResource(library, place));
    if (reader.Take<WORD>() != 1 || reader.Take<WORD>() != 0xFFFF)
        throw std::runtime_error("not an extended dialog template");

    DialogTemplate result;
    reader.Take<DWORD>();  // help
    result.extendedStyle = reader.Take<DWORD>();
    result.style = reader.Take<DWORD>();
    const WORD count = reader.Take<WORD>();
    result.place = reader.TakeRect();
    const auto asNumber = [](WORD number) { return L"#" + std::to_wstring(number); };
    reader.TakeTextOrNumber(asNumber);  // menu
    reader.TakeTextOrNumber(asNumber);  // class
    result.title = reader.TakeText();
    if (!(result.style & DS_SETFONT)) throw std::runtime_error("dialog template without a font");
    result.fontPoints = reader.Take<WORD>();
    reader.Take<WORD>();  // weight
    reader.Take<WORD>();  // italic, character set
    result.fontName = reader.TakeText();
    for (WORD i = 0; i < count; ++i) result.controls.push_back(TakeControl(reader));
    return result;
}

}  // namespace arvmui_test
