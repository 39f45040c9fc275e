#include "support/scratch_registry.h"

#include <stdexcept>

namespace arvmui_test
{
namespace
{

void Require(LSTATUS status, const char* what)
{
    if (status != ERROR_SUCCESS) throw std::runtime_error(std::string(what) + ": " + std::to_string(status));
}

DWORD BytesOf(const std::wstring& text)
{
    return static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
}

}  // namespace

ScratchRegistry::ScratchRegistry()
{
    LARGE_INTEGER ticks = {};
    ::QueryPerformanceCounter(&ticks);
    path_ =
        L"Software\\ArvmuiTest_" + std::to_wstring(::GetCurrentProcessId()) + L"_" + std::to_wstring(ticks.QuadPart);
    Require(::RegCreateKeyExW(HKEY_CURRENT_USER, path_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_, nullptr),
        "scratch key");
}

ScratchRegistry::~ScratchRegistry()
{
    for (const HKEY root : replacedRoots_) ::RegOverridePredefKey(root, nullptr);
    ::RegCloseKey(key_);
    ::RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
}

bool ScratchRegistry::ReplaceRoot(HKEY root)
{
    const std::wstring name = L"root" + std::to_wstring(replacedRoots_.size());
    HKEY stand = nullptr;
    if (::RegCreateKeyExW(key_, name.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &stand, nullptr) != ERROR_SUCCESS)
        return false;
    const LSTATUS status = ::RegOverridePredefKey(root, stand);
    ::RegCloseKey(stand);
    if (status != ERROR_SUCCESS) return false;
    replacedRoots_.push_back(root);
    return true;
}

void StoreValue(
    HKEY root, const wchar_t* subkey, const wchar_t* name, DWORD type, const void* data, DWORD bytes, REGSAM view)
{
    HKEY key = nullptr;
    Require(::RegCreateKeyExW(root, subkey, 0, nullptr, 0, KEY_WRITE | view, nullptr, &key, nullptr), "create key");
    const LSTATUS status = ::RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(data), bytes);
    ::RegCloseKey(key);
    Require(status, "set value");
}

void StoreText(HKEY root, const wchar_t* subkey, const wchar_t* name, const std::wstring& text, DWORD type)
{
    StoreValue(root, subkey, name, type, text.c_str(), BytesOf(text));
}

std::wstring StoredText(HKEY root, const wchar_t* subkey, const wchar_t* name, REGSAM view)
{
    HKEY key = nullptr;
    if (::RegOpenKeyExW(root, subkey, 0, KEY_READ | view, &key) != ERROR_SUCCESS) return L"<none>";
    wchar_t text[1024] = {};
    DWORD bytes = sizeof(text) - sizeof(wchar_t);
    const LSTATUS status = ::RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &bytes);
    ::RegCloseKey(key);
    return status == ERROR_SUCCESS ? text : L"<none>";
}

}  // namespace arvmui_test
