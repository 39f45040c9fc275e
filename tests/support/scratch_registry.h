// A registry key of one test's own under the current user, removed with everything below it when the
// test ends. It can stand in for a whole root key, for this process only.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace arvmui_test
{

class ScratchRegistry
{
public:
    ScratchRegistry();
    ~ScratchRegistry();
    ScratchRegistry(const ScratchRegistry&) = delete;
    ScratchRegistry& operator=(const ScratchRegistry&) = delete;

    HKEY Key() const { return key_; }

    // From here on the root key (HKEY_CURRENT_USER, ...) is an empty key of this test in this process.
    // FALSE when the system refuses.
    bool ReplaceRoot(HKEY root);

private:
    std::wstring path_;  // below the real current user
    HKEY key_ = nullptr;
    std::vector<HKEY> replacedRoots_;
};

// Stores a value, creating the key; `root` may be any key.
void StoreValue(
    HKEY root, const wchar_t* subkey, const wchar_t* name, DWORD type, const void* data, DWORD bytes, REGSAM view = 0);
void StoreText(HKEY root, const wchar_t* subkey, const wchar_t* name, const std::wstring& text, DWORD type = REG_SZ);

// The text of a value; L"<none>" when there is none.
std::wstring StoredText(HKEY root, const wchar_t* subkey, const wchar_t* name, REGSAM view = 0);

}  // namespace arvmui_test
