#include "dialog_template.h"

#include "tool_error.h"

#include <cstring>

namespace
{

constexpr WORD kExtendedSignature = 0xFFFF;
constexpr WORD kNumberFollows = 0xFFFF;

class Reader
{
public:
    explicit Reader(const std::vector<BYTE>& bytes) : bytes_(bytes) {}

    template <typename T>
    T Read()
    {
        T value;
        if (sizeof(T) > bytes_.size() - at_) throw ToolError("a dialog template ends in its middle");
        std::memcpy(&value, bytes_.data() + at_, sizeof(T));
        at_ += sizeof(T);
        return value;
    }

    std::wstring ReadText()
    {
        std::wstring text;
        for (wchar_t character = Read<wchar_t>(); character != L'\0'; character = Read<wchar_t>()) text += character;
        return text;
    }

    NameOrNumber ReadName()
    {
        NameOrNumber name;
        const WORD first = Read<WORD>();
        if (first == kNumberFollows)
        {
            name.isNumber = true;
            name.number = Read<WORD>();
        }
        else if (first != 0)
            name.text = static_cast<wchar_t>(first) + ReadText();
        return name;
    }

    std::vector<BYTE> ReadBytes(std::size_t count)
    {
        std::vector<BYTE> result(count);
        for (BYTE& byte : result) byte = Read<BYTE>();
        return result;
    }

    void Align()
    {
        while (at_ % sizeof(DWORD) != 0 && at_ < bytes_.size()) ++at_;
    }

private:
    const std::vector<BYTE>& bytes_;
    std::size_t at_ = 0;  // at_ <= bytes_.size()
};

class Writer
{
public:
    template <typename T>
    void Write(T value)
    {
        const BYTE* const bytes = reinterpret_cast<const BYTE*>(&value);
        bytes_.insert(bytes_.end(), bytes, bytes + sizeof(T));
    }

    void WriteText(const std::wstring& text)
    {
        for (const wchar_t character : text) Write(character);
        Write(L'\0');
    }

    void WriteName(const NameOrNumber& name)
    {
        if (!name.isNumber) return WriteText(name.text);
        Write(kNumberFollows);
        Write(name.number);
    }

    void WriteBytes(const std::vector<BYTE>& bytes) { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }

    void Align()
    {
        while (bytes_.size() % sizeof(DWORD) != 0) Write(BYTE{0});
    }

    std::vector<BYTE> Take() { return std::move(bytes_); }

private:
    std::vector<BYTE> bytes_;
};

DialogBox ReadBox(Reader& reader)
{
    DialogBox box;
    box.x = reader.Read<short>();
    box.y = reader.Read<short>();
    box.width = reader.Read<short>();
    box.height = reader.Read<short>();
    return box;
}

void WriteBox(Writer& writer, const DialogBox& box)
{
    writer.Write(box.x);
    writer.Write(box.y);
    writer.Write(box.width);
    writer.Write(box.height);
}

DialogFont ReadFont(Reader& reader, bool isExtended)
{
    DialogFont font;
    font.size = reader.Read<WORD>();
    if (isExtended)
    {
        font.weight = reader.Read<WORD>();
        font.italic = reader.Read<BYTE>();
        font.charset = reader.Read<BYTE>();
    }
    font.face = reader.ReadText();
    return font;
}

DialogControl ReadControl(Reader& reader, bool isExtended)
{
    DialogControl control;
    reader.Align();
    if (isExtended) control.helpId = reader.Read<DWORD>();
    const DWORD first = reader.Read<DWORD>();
    const DWORD second = reader.Read<DWORD>();
    control.style = isExtended ? second : first;
    control.extendedStyle = isExtended ? first : second;
    control.box = ReadBox(reader);
    control.id = isExtended ? reader.Read<DWORD>() : reader.Read<WORD>();
    control.windowClass = reader.ReadName();
    control.title = reader.ReadName();
    // In the old form the size counts itself.
    const WORD size = reader.Read<WORD>();
    const WORD own = isExtended ? 0 : sizeof(WORD);
    if (size > own) control.data = reader.ReadBytes(static_cast<std::size_t>(size - own));
    return control;
}

void WriteControl(Writer& writer, const DialogControl& control, bool isExtended)
{
    writer.Align();
    if (isExtended) writer.Write(control.helpId);
    writer.Write(isExtended ? control.extendedStyle : control.style);
    writer.Write(isExtended ? control.style : control.extendedStyle);
    WriteBox(writer, control.box);
    if (isExtended)
        writer.Write(control.id);
    else
        writer.Write(static_cast<WORD>(control.id));
    writer.WriteName(control.windowClass);
    writer.WriteName(control.title);
    const std::size_t own = isExtended || control.data.empty() ? 0 : sizeof(WORD);
    writer.Write(static_cast<WORD>(control.data.size() + own));
    writer.WriteBytes(control.data);
}

}  // namespace

DialogTemplate ParseDialogTemplate(const std::vector<BYTE>& bytes)
{
    Reader reader(bytes);
    DialogTemplate dialog;
    Reader signature(bytes);
    const WORD version = signature.Read<WORD>();
    dialog.isExtended = version == 1 && signature.Read<WORD>() == kExtendedSignature;
    if (dialog.isExtended)
    {
        reader.Read<DWORD>();
        dialog.helpId = reader.Read<DWORD>();
        dialog.extendedStyle = reader.Read<DWORD>();
        dialog.style = reader.Read<DWORD>();
    }
    else
    {
        dialog.style = reader.Read<DWORD>();
        dialog.extendedStyle = reader.Read<DWORD>();
    }
    const WORD count = reader.Read<WORD>();
    dialog.box = ReadBox(reader);
    dialog.menu = reader.ReadName();
    dialog.windowClass = reader.ReadName();
    dialog.title = reader.ReadText();
    if (dialog.style & DS_SETFONT) dialog.font = ReadFont(reader, dialog.isExtended);
    for (WORD i = 0; i < count; ++i) dialog.controls.push_back(ReadControl(reader, dialog.isExtended));
    return dialog;
}

std::vector<BYTE> WriteDialogTemplate(const DialogTemplate& dialog)
{
    Writer writer;
    if (dialog.isExtended)
    {
        writer.Write(WORD{1});
        writer.Write(kExtendedSignature);
        writer.Write(dialog.helpId);
        writer.Write(dialog.extendedStyle);
        writer.Write(dialog.style);
    }
    else
    {
        writer.Write(dialog.style);
        writer.Write(dialog.extendedStyle);
    }
    writer.Write(static_cast<WORD>(dialog.controls.size()));
    WriteBox(writer, dialog.box);
    writer.WriteName(dialog.menu);
    writer.WriteName(dialog.windowClass);
    writer.WriteText(dialog.title);
    if (dialog.style & DS_SETFONT)
    {
        writer.Write(dialog.font.size);
        if (dialog.isExtended)
        {
            writer.Write(dialog.font.weight);
            writer.Write(dialog.font.italic);
            writer.Write(dialog.font.charset);
        }
        writer.WriteText(dialog.font.face);
    }
    for (const DialogControl& control : dialog.controls) WriteControl(writer, control, dialog.isExtended);
    return writer.Take();
}

bool IsButton(const DialogControl& control)
{
    return control.windowClass.isNumber && control.windowClass.number == kButtonClass;
}

bool IsStaticText(const DialogControl& control)
{
    return control.windowClass.isNumber && control.windowClass.number == kStaticClass && !control.title.isNumber;
}
