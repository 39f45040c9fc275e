// A program that loads the library and shows a message box, for tests to read and answer:
//
//   box_host [/uilocale:list] box <type>       ARVMUI_MessageBoxW; exit code: the box's result
//   box_host [/uilocale:list] no-slot <type>   the same with all thread-local slots taken before
//   box_host [/uilocale:list] missing          fails to load a resource library; exit code: last error
//
// Exit codes from kNotLoaded on are the program's own.
#include "arvmui.h"

#include <cwchar>

namespace
{

constexpr int kNotLoaded = 200;
constexpr int kWrongArguments = 201;

template <typename Function>
Function Find(HMODULE library, const char* name)
{
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
}

void TakeAllThreadSlots()
{
    ::GetDesktopWindow();  // the system's own window code takes its slots first
    while (::TlsAlloc() != TLS_OUT_OF_INDEXES)
    {
    }
}

int ShowBox(HMODULE library, UINT type)
{
    const auto show = Find<decltype(&::ARVMUI_MessageBoxW)>(library, "ARVMUI_MessageBoxW");
    return show ? show(nullptr, L"Text", L"Caption", type) : kNotLoaded;
}

int LoadMissing(HMODULE library)
{
    const auto load = Find<decltype(&::ARVMUI_LoadResourceLibraryW)>(library, "ARVMUI_LoadResourceLibraryW");
    if (!load) return kNotLoaded;
    return load(nullptr, L"100%s off.dll", nullptr, nullptr) ? 0 : static_cast<int>(::GetLastError());
}

}  // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    int first = 1;
    while (first < argc && argv[first][0] == L'/') ++first;
    if (first >= argc) return kWrongArguments;
    const wchar_t* const mode = argv[first];
    if (std::wcscmp(mode, L"no-slot") == 0) TakeAllThreadSlots();

    const HMODULE library = ::LoadLibraryW(L"arvmui64.dll");
    if (!library) return kNotLoaded;
    if (std::wcscmp(mode, L"missing") == 0) return LoadMissing(library);
    if (first + 1 >= argc) return kWrongArguments;
    return ShowBox(library, static_cast<UINT>(std::wcstoul(argv[first + 1], nullptr, 0)));
}
