#include "text_conversion.h"
#include "translation_checks.h"

#include <map>

namespace
{

wchar_t AccessKey(const std::wstring& text)
{
    for (std::size_t at = text.find(L'&'); at != std::wstring::npos && at + 1 < text.size(); at = text.find(L'&', at))
    {
        if (text[at + 1] != L'&')
        {
            wchar_t key = text[at + 1];
            ::CharUpperBuffW(&key, 1);
            return key;
        }
        at += 2;
    }
    return L'\0';
}

bool HasAccessKeys(const DialogControl& control)
{
    return IsButton(control) || (IsStaticText(control) && !(control.style & SS_NOPREFIX));
}

void CheckAccessKeys(const DialogTemplate& dialog, UINT number, const std::filesystem::path& file, Findings& findings)
{
    std::map<wchar_t, std::wstring> keys;
    for (const DialogControl& control : dialog.controls)
    {
        const wchar_t key = HasAccessKeys(control) ? AccessKey(control.title.text) : L'\0';
        if (key == L'\0') continue;
        const auto [first, isNew] = keys.emplace(key, control.title.text);
        if (!isNew)
            findings.Add(file, number, "access-keys",
                "\"" + Utf8(first->second) + "\" and \"" + Utf8(control.title.text) + "\" have the same access key");
    }
}

// Measures texts in a dialog's font, in the units of its template.
class TextRuler
{
public:
    explicit TextRuler(const DialogFont& font) : screen_(::CreateCompatibleDC(nullptr))
    {
        const int height = -::MulDiv(font.size, ::GetDeviceCaps(screen_, LOGPIXELSY), 72);
        font_ = ::CreateFontW(height, 0, 0, 0, font.weight, font.italic, FALSE, FALSE, DEFAULT_CHARSET,
            OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, font.face.c_str());
        previous_ = ::SelectObject(screen_, font_);
        MeasureBaseUnits();
    }
    ~TextRuler()
    {
        ::SelectObject(screen_, previous_);
        ::DeleteObject(font_);
        ::DeleteDC(screen_);
    }
    TextRuler(const TextRuler&) = delete;
    TextRuler& operator=(const TextRuler&) = delete;

    int PixelWidth(int units) const { return ::MulDiv(units, baseWidth_, 4); }
    int PixelHeight(int units) const { return ::MulDiv(units, baseHeight_, 8); }

    SIZE Measure(const std::wstring& text, UINT format, int width) const
    {
        RECT box = {0, 0, width, 0};
        ::DrawTextW(screen_, text.c_str(), -1, &box, format | DT_CALCRECT);
        return {box.right, box.bottom};
    }

private:
    // The base units of a dialog: the mean width of the alphabet and the height of the font.
    void MeasureBaseUnits()
    {
        constexpr wchar_t kAlphabet[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
        SIZE size = {};
        ::GetTextExtentPoint32W(screen_, kAlphabet, 52, &size);
        baseWidth_ = (size.cx / 26 + 1) / 2;
        TEXTMETRICW metrics = {};
        ::GetTextMetricsW(screen_, &metrics);
        baseHeight_ = metrics.tmHeight;
    }

    HDC screen_;
    HFONT font_ = nullptr;
    HGDIOBJ previous_ = nullptr;
    int baseWidth_ = 0;
    int baseHeight_ = 0;
};

bool IsPushButton(const DialogControl& control)
{
    const DWORD type = control.style & BS_TYPEMASK;
    return type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON;
}

bool Fits(const DialogControl& control, const TextRuler& ruler)
{
    constexpr int kButtonBorder = 4;     // pixels on both sides together
    constexpr int kCheckMarkUnits = 12;  // in front of a check box's or radio button's text
    const int width = ruler.PixelWidth(control.box.width);
    if (IsButton(control))
    {
        if ((control.style & BS_TYPEMASK) == BS_GROUPBOX || (control.style & BS_MULTILINE)) return true;
        const int room = IsPushButton(control) ? width - kButtonBorder : width - ruler.PixelWidth(kCheckMarkUnits);
        return ruler.Measure(control.title.text, DT_SINGLELINE, 0).cx <= room;
    }
    const UINT prefix = control.style & SS_NOPREFIX ? DT_NOPREFIX : 0;
    const SIZE size = ruler.Measure(control.title.text, DT_WORDBREAK | prefix, width);
    return size.cx <= width && size.cy <= ruler.PixelHeight(control.box.height) + 1;
}

void CheckRoom(const DialogTemplate& dialog, UINT number, const std::filesystem::path& file, Findings& findings)
{
    if (!(dialog.style & DS_SETFONT)) return;
    const TextRuler ruler(dialog.font);
    for (const DialogControl& control : dialog.controls)
        if ((IsButton(control) || IsStaticText(control)) && !control.title.text.empty() && !Fits(control, ruler))
            findings.Add(
                file, number, "does-not-fit", "\"" + Utf8(control.title.text) + "\" is larger than its control");
}

}  // namespace

void CheckDialogs(const Translation& translation, Findings& findings)
{
    for (const auto& [number, dialog] : translation.dialogs)
    {
        CheckAccessKeys(dialog, number, translation.path, findings);
        CheckRoom(dialog, number, translation.path, findings);
    }
}
