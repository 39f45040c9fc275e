#include "stored_locale_list.h"

namespace
{

constexpr wchar_t kKey[] = L"SOFTWARE\\Pelkor\\MUI";
constexpr wchar_t kValue[] = L"UILocale";

class Key
{
public:
    Key() = default;
    ~Key()
    {
        if (key_) ::RegCloseKey(key_);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    LSTATUS OpenForReading(HKEY root) { return ::RegOpenKeyExW(root, kKey, 0, KEY_READ | KEY_WOW64_32KEY, &key_); }

    // Creates it where it is missing.
    LSTATUS OpenForWriting(HKEY root)
    {
        return ::RegCreateKeyExW(root, kKey, 0, nullptr, 0, KEY_WRITE | KEY_WOW64_32KEY, nullptr, &key_, nullptr);
    }

    HKEY Get() const { return key_; }

private:
    HKEY key_ = nullptr;
};

}  // namespace

LSTATUS ReadStoredLocaleList(HKEY root, std::wstring& list)
{
    Key key;
    LSTATUS status = key.OpenForReading(root);
    if (status != ERROR_SUCCESS) return status;
    std::wstring text(256, L'\0');
    for (;;)
    {
        DWORD size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        status = ::RegGetValueW(key.Get(), nullptr, kValue, RRF_RT_REG_SZ, nullptr, text.data(), &size);
        if (status != ERROR_MORE_DATA) break;
        text.resize(text.size() * 2);
    }
    if (status == ERROR_SUCCESS) list = text.c_str();
    return status;
}

LSTATUS StoreLocaleList(HKEY root, const std::wstring& list)
{
    Key key;
    const LSTATUS status = key.OpenForWriting(root);
    if (status != ERROR_SUCCESS) return status;
    return ::RegSetValueExW(key.Get(), kValue, 0, REG_SZ, reinterpret_cast<const BYTE*>(list.c_str()),
        static_cast<DWORD>((list.size() + 1) * sizeof(wchar_t)));
}

LSTATUS RemoveStoredLocaleList(HKEY root)
{
    Key key;
    LSTATUS status = key.OpenForWriting(root);
    if (status == ERROR_SUCCESS) status = ::RegDeleteValueW(key.Get(), kValue);
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}
