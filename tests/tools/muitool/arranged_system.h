// A system of a test's choice, which arranged_process.cpp arranges in the processes that get these
// variables: a registry of the test's own, keyboards and languages.
#pragma once

#include "support/scratch_registry.h"

#include <windows.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

class ArrangedSystem
{
public:
    // Below a key that does not last nothing lasting can be stored.
    explicit ArrangedSystem(DWORD keyOptions = REG_OPTION_NON_VOLATILE)
        : path_(L"Software\\MuitoolTest_" + std::to_wstring(::GetCurrentProcessId()) + L'_' + std::to_wstring(++count_))
    {
        ::RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
        for (const wchar_t* const hive : {L"", L"\\machine", L"\\user"})
        {
            HKEY key = nullptr;
            ::RegCreateKeyExW(
                HKEY_CURRENT_USER, (path_ + hive).c_str(), 0, nullptr, keyOptions, KEY_READ, nullptr, &key, nullptr);
            ::RegCloseKey(key);
        }
    }
    ~ArrangedSystem() { ::RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str()); }
    ArrangedSystem(const ArrangedSystem&) = delete;
    ArrangedSystem& operator=(const ArrangedSystem&) = delete;

    // The list of preferred locales; `hive` is L"user" or L"machine".
    void Store(const std::wstring& hive, const std::wstring& list) const
    {
        arvmui_test::StoreText(HKEY_CURRENT_USER, ProductKey(hive).c_str(), L"UILocale", list);
    }
    std::wstring Stored(const std::wstring& hive) const
    {
        return arvmui_test::StoredText(HKEY_CURRENT_USER, ProductKey(hive).c_str(), L"UILocale");
    }

    // None for those of the real system.
    std::vector<LANGID> keyboards;

    // Of the user, the system and Windows; none for the real ones.
    std::vector<LANGID> languages;

    std::vector<std::pair<std::wstring, std::optional<std::wstring>>> Environment() const
    {
        return {{L"MUITOOL_TEST_REGISTRY", path_}, {L"MUITOOL_TEST_KEYBOARDS", Hexadecimal(keyboards)},
            {L"MUITOOL_TEST_LANGUAGES", Hexadecimal(languages)}};
    }

private:
    std::wstring ProductKey(const std::wstring& hive) const
    {
        return path_ + L"\\" + hive + L"\\SOFTWARE\\Pelkor\\MUI";
    }

    static std::wstring Hexadecimal(const std::vector<LANGID>& numbers)
    {
        std::wstring text;
        wchar_t digits[16];
        for (const LANGID number : numbers)
        {
            ::wsprintfW(digits, L"%04x ", number);
            text += digits;
        }
        return text;
    }

    static inline unsigned count_ = 0;

    std::wstring path_;
};
