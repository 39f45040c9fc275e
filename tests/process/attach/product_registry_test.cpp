// The product's real registry keys. The local machine's lies in the 32-bit view.
#include "process/attach/attach_fixture.h"

#include <gtest/gtest.h>

namespace
{

using arvmui_test::FolderOf;
using arvmui_test::Report;
using arvmui_test::RunHost;

constexpr wchar_t kProductKey[] = L"SOFTWARE\\Pelkor\\MUI";

// One value "UILocale" for as long as it lives; what was there before comes back.
class StoredLocale
{
public:
    StoredLocale(HKEY hive, REGSAM view, const std::wstring& list)
    {
        ::RegCreateKeyExW(hive, kProductKey, 0, nullptr, 0, KEY_ALL_ACCESS | view, nullptr, &key_, nullptr);
        DWORD bytes = sizeof(previous_) - sizeof(wchar_t);
        had_ = ::RegQueryValueExW(key_, L"UILocale", nullptr, nullptr, reinterpret_cast<BYTE*>(previous_), &bytes)
               == ERROR_SUCCESS;
        Write(list);
    }
    ~StoredLocale()
    {
        if (had_)
            Write(previous_);
        else
            ::RegDeleteValueW(key_, L"UILocale");
        ::RegCloseKey(key_);
    }
    StoredLocale(const StoredLocale&) = delete;
    StoredLocale& operator=(const StoredLocale&) = delete;

private:
    void Write(const std::wstring& list) const
    {
        ::RegSetValueExW(key_, L"UILocale", 0, REG_SZ, reinterpret_cast<const BYTE*>(list.c_str()),
            static_cast<DWORD>((list.size() + 1) * sizeof(wchar_t)));
    }

    HKEY key_ = nullptr;
    bool had_ = false;
    wchar_t previous_[256] = {};
};

TEST(ProductRegistry, OfTheUserComesBeforeThatOfTheMachine)
{
    const StoredLocale machine(HKEY_LOCAL_MACHINE, KEY_WOW64_32KEY, L"ja");
    const StoredLocale user(HKEY_CURRENT_USER, KEY_WOW64_32KEY, L"fr");
    const Report report = RunHost(L"host.exe");
    EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), L"fr");
    EXPECT_EQ(report.Text("commandLineHint"), L"fr");
}

TEST(ProductRegistry, OfTheMachineIsReadInThe32BitView)
{
    const StoredLocale other(HKEY_LOCAL_MACHINE, KEY_WOW64_64KEY, L"es");
    const StoredLocale machine(HKEY_LOCAL_MACHINE, KEY_WOW64_32KEY, L"ja");
    const Report report = RunHost(L"host.exe");
    EXPECT_EQ(report.Text("commandLineHint"), L"ja");
}

TEST(ProductRegistry, GivesWayToTheOption)
{
    const StoredLocale user(HKEY_CURRENT_USER, KEY_WOW64_32KEY, L"fr");
    EXPECT_EQ(RunHost(L"host.exe /uilocale:es").Text("commandLineHint"), L"es");
}

}  // namespace
