#include "unit/installer/set_locale_fixture.h"

#include "ui/language_dialog.h"

#include <cstring>

namespace arvmui_test
{
namespace
{

HMODULE Program()
{
    return ::GetModuleHandleW(nullptr);
}

}  // namespace

OfferedLocales* OfferedLocales::current_ = nullptr;

OfferedLocales::OfferedLocales()
    : patch_(reinterpret_cast<void*>(&ARVMUI_EnumLocalesW), reinterpret_cast<void*>(&Search))
{
    current_ = this;
}

DWORD OfferedLocales::Search(const wchar_t* list, ARVMUI_LocaleCallbackW consumer, void* context)
{
    OfferedLocales& self = *current_;
    self.lists.push_back(list);
    std::memcpy(&self.published, arvmui::GetInstallerContext(arvmui::Descriptor()), sizeof(self.published));
    if (self.published.locales)
        self.locales.assign(self.published.locales, self.published.locales + self.published.localeCount);
    for (const auto& offer : self.offers)
    {
        self.answers.push_back(consumer(offer ? offer->c_str() : nullptr, context));
        if (self.answers.back() != 0) return self.answers.back();
    }
    return 0;
}

AnsweredDialog* AnsweredDialog::current_ = nullptr;

AnsweredDialog::AnsweredDialog()
    : patch_(reinterpret_cast<void*>(&arvmui::ShowLanguageSelectionDialog), reinterpret_cast<void*>(&Show))
{
    current_ = this;
}

BOOL AnsweredDialog::Show(
    HWND owner, const HICON* icons, const LocaleEntry* entries, DWORD count, wchar_t* answer, DWORD answerSize) noexcept
{
    AnsweredDialog& self = *current_;
    ++self.timesShown;
    self.owner = owner;
    if (icons) self.icons = {icons[0], icons[1]};
    self.entries.assign(entries, entries + count);
    self.hasBuffer = answer != nullptr;
    self.answerSize = answerSize;
    if (self.whileOpen) self.whileOpen();
    if (self.result && answer) ::lstrcpynW(answer, self.answer.c_str(), static_cast<int>(answerSize));
    return self.result;
}

SetLocaleTest* SetLocaleTest::current_ = nullptr;

SetLocaleTest::SetLocaleTest()
    : loadIcon_(Program(), "LoadIconW", &LoadIconOf), version_(Program(), "GetVersionExA", &Version),
      findWindow_(Program(), "FindWindowW", &FindInstallerWindow)
{
    current_ = this;
    arvmui::Descriptor() = {};
    EXPECT_TRUE(registry.ReplaceRoot(HKEY_LOCAL_MACHINE));
    EXPECT_TRUE(registry.ReplaceRoot(HKEY_CURRENT_USER));
    installer.rows[kLocaleQuery] = {{L"en", L"1033", L"English", L"English"}, {L"de", L"1031", L"German", L"Deutsch"},
        {L"zh-CN", L"2052", L"Chinese", L"\u4E2D\u6587"}};
    installer.rows[L"SELECT `Key`,`Text` FROM `ARVUIText` WHERE `Locale`='de'"] = {{L"OK", L"Gut"}};
}

SetLocaleTest::~SetLocaleTest()
{
    arvmui::Descriptor() = {};
}

bool SetLocaleTest::IsContextPublished()
{
    const arvmui::InstallerContext nothing = {};
    return std::memcmp(arvmui::GetInstallerContext(arvmui::Descriptor()), &nothing, sizeof(nothing)) != 0;
}

HICON WINAPI SetLocaleTest::LoadIconOf(HINSTANCE module, LPCWSTR name)
{
    return module == current_->installer.Module() && name == MAKEINTRESOURCEW(203) ? kIcon : nullptr;
}

BOOL WINAPI SetLocaleTest::Version(OSVERSIONINFOA* version)
{
    current_->versionRecordSizes.push_back(version->dwOSVersionInfoSize);
    version->dwPlatformId = current_->platform;
    return TRUE;
}

HWND WINAPI SetLocaleTest::FindInstallerWindow(LPCWSTR className, LPCWSTR title)
{
    const bool isInstallers = className && std::wstring(className) == L"MsiDialogCloseClass" && !title;
    return isInstallers ? current_->installerWindow : nullptr;
}

}  // namespace arvmui_test
