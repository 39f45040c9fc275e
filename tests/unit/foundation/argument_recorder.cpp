// A library with one entry point for RUNDLL32: writes the text that it is called with into a file
// beside the library, "<library>.txt".
#include <windows.h>

#include <cstring>

// The launcher's convention; no header declares the function. The instance is the launcher's own.
extern "C" void CALLBACK RecordArguments(HWND, HINSTANCE, LPSTR arguments, int)
{
    HMODULE module = nullptr;
    if (!::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
            reinterpret_cast<LPCSTR>(&RecordArguments), &module))
        return;
    char path[MAX_PATH] = {};
    const DWORD length = ::GetModuleFileNameA(module, path, MAX_PATH);
    if (length == 0 || length + 5 > MAX_PATH) return;
    std::strcat(path, ".txt");
    const HANDLE file = ::CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    DWORD written = 0;
    ::WriteFile(file, arguments, static_cast<DWORD>(std::strlen(arguments)), &written, nullptr);
    ::CloseHandle(file);
}
