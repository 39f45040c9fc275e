// The machine's locale list where it really lies: in the 32-bit view of the registry.
#include "arvmui.h"
#include "support/candidate_recorder.h"

#include <gtest/gtest.h>

namespace
{

using arvmui_test::CandidateRecorder;

constexpr wchar_t kKey[] = L"SOFTWARE\\Pelkor\\MUI";
constexpr wchar_t kValue[] = L"UILocale";

// A value in one view of the machine's key; the value that was there comes back.
class MachineValue
{
public:
    MachineValue(REGSAM view, const std::wstring& text) : view_(view)
    {
        DWORD bytes = sizeof(old_);
        HKEY key = nullptr;
        ::RegCreateKeyExW(
            HKEY_LOCAL_MACHINE, kKey, 0, nullptr, 0, KEY_READ | KEY_WRITE | view_, nullptr, &key, nullptr);
        hadOld_ = ::RegQueryValueExW(key, kValue, nullptr, &oldType_, old_, &bytes) == ERROR_SUCCESS;
        oldBytes_ = bytes;
        ::RegSetValueExW(key, kValue, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
            static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
        ::RegCloseKey(key);
    }
    ~MachineValue()
    {
        HKEY key = nullptr;
        ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, KEY_WRITE | view_, &key);
        if (hadOld_)
            ::RegSetValueExW(key, kValue, 0, oldType_, old_, oldBytes_);
        else
            ::RegDeleteValueW(key, kValue);
        ::RegCloseKey(key);
    }
    MachineValue(const MachineValue&) = delete;
    MachineValue& operator=(const MachineValue&) = delete;

private:
    REGSAM view_;
    bool hadOld_ = false;
    DWORD oldType_ = 0;
    DWORD oldBytes_ = 0;
    BYTE old_[1024] = {};
};

TEST(MachineLocaleList, IsTheOneOfTheThirtyTwoBitView)
{
    for (auto& hint : ARVMUI_GetDescriptor()->LocaleHintTable) hint[0] = L'\0';
    const MachineValue narrow(KEY_WOW64_32KEY, L"nl");
    const MachineValue wide(KEY_WOW64_64KEY, L"pl");
    CandidateRecorder recorder;
    EXPECT_EQ(ARVMUI_EnumLocalesW(nullptr, CandidateRecorder::Record, &recorder), 0u);
    EXPECT_EQ(recorder.offered, L"nl|en|..|..\\en|");
}

}  // namespace
