// Random locale lists and folders for explanations, and what the library itself makes of them.
#pragma once

#include "library_api.h"
#include "support/resource_image.h"

#include <windows.h>

#include <array>
#include <filesystem>
#include <iterator>
#include <random>
#include <string>

constexpr std::array kChoiceFolders = {
    L"de", L"de-DE", L"de-CH", L"en", L"en-US", L"fr", L"ja", L"zh-CN", L"x_y", L"pt-BR"};
constexpr std::array kChoiceItems = {L"de", L"de-CH", L"de-AT-x", L"en", L"en-US", L"en_GB.UTF-8", L"fr-CA", L"ja",
    L"xx", L"user", L"system", L"uilang", L"kiv", L"msie", L"0x0407", L"1041", L"0x0804", L"99999", L"x:y", L"..", L".",
    L" pt-BR ", L""};

class LocaleChoices
{
public:
    explicit LocaleChoices(unsigned seed) : random_(seed) {}

    // From 0 to below the limit.
    unsigned Number(unsigned limit) { return static_cast<unsigned>(random_()) % limit; }

    template <typename Values>
    auto Pick(const Values& values)
    {
        return values[Number(static_cast<unsigned>(std::size(values)))];
    }

    // Up to four items, the user's answer among them where the list may ask for it.
    std::wstring List(bool mayAsk)
    {
        std::wstring list;
        for (unsigned count = Number(5); count > 0; --count)
        {
            const bool asks = mayAsk && Number(kChoiceItems.size() + 1) == 0;
            list += (list.empty() ? L"" : L",") + std::wstring(asks ? L"ask" : Pick(kChoiceItems));
        }
        return list;
    }

    // Beside a module of that folder: some folders with its file, some without, some with a file that is
    // no library.
    void ArrangeFolders(const std::filesystem::path& folder, const wchar_t* file)
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder / L"resource", ignored);
        for (const wchar_t* const locale : kChoiceFolders)
        {
            const std::filesystem::path path = folder / L"resource" / locale / file;
            const unsigned kind = Number(6);
            if (kind < 2) std::filesystem::create_directories(path.parent_path());
            if (kind == 1) WriteEmptyFile(path);
            if (kind == 2) arvmui_test::WriteResourceImage(path, {{1, locale}});
        }
        std::filesystem::remove(folder / file, ignored);
        if (Number(4) == 0) arvmui_test::WriteResourceImage(folder / file, {{1, L"x"}});
    }

    static void WriteEmptyFile(const std::filesystem::path& path)
    {
        ::CloseHandle(
            ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    }

private:
    std::mt19937 random_;
};

// The path of the resource library that the library loads for a module, or nothing.
inline std::wstring LoadedByLibrary(HMODULE module, const wchar_t* list)
{
    HMODULE loaded = nullptr;
    if (!Library().ARVMUI_LoadResourceLibraryW(module, nullptr, list, &loaded)) return {};
    wchar_t path[MAX_PATH] = L"";
    ::GetModuleFileNameW(loaded, path, MAX_PATH);
    ::FreeLibrary(loaded);
    return std::filesystem::path(path).lexically_normal().wstring();
}
