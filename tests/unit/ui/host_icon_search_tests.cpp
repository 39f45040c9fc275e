// How the program's icon is looked for: by the numbers that the program has, and by no others. What the
// program has and what can be loaded is replaced.
#include "support/module_patch.h"
#include "ui/host_icon.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

using arvmui_test::ImportPatch;

constexpr wchar_t kName[] = L"NAMED";

std::vector<const wchar_t*> g_present;
std::vector<DWORD> g_tried;
DWORD g_loadable = 0;  // the only icon that loads; 0 for none
HMODULE g_searched = nullptr;

BOOL WINAPI EnumerateIcons(HMODULE module, const wchar_t* type, ENUMRESNAMEPROCW callback, LONG_PTR context)
{
    g_searched = module;
    for (const wchar_t* const icon : g_present)
        if (!callback(module, type, const_cast<wchar_t*>(icon), context)) return FALSE;
    return TRUE;
}

HICON TheIcon()
{
    return ::LoadIconA(nullptr, reinterpret_cast<const char*>(IDI_HAND));
}

HICON WINAPI LoadNumberedIcon(HINSTANCE, const wchar_t* name)
{
    const DWORD number = static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(name));
    g_tried.push_back(number);
    return number == g_loadable ? TheIcon() : nullptr;
}

class HostIconSearch : public testing::Test
{
protected:
    HostIconSearch()
    {
        g_present.clear();
        g_tried.clear();
        g_loadable = 0;
    }

    static void Have(std::initializer_list<WORD> numbers)
    {
        for (const WORD number : numbers) g_present.push_back(MAKEINTRESOURCEW(number));
    }

    using Numbers = std::vector<DWORD>;

private:
    const ImportPatch enumerate_{::GetModuleHandleW(nullptr), "EnumResourceNamesW", &EnumerateIcons};
    const ImportPatch load_{::GetModuleHandleW(nullptr), "LoadIconW", &LoadNumberedIcon};
};

TEST_F(HostIconSearch, TriesNothingInAProgramWithoutIcons)
{
    DWORD identifier = 4711;
    EXPECT_EQ(arvmui::FindHostIcon(&identifier), nullptr);
    EXPECT_EQ(identifier, DWORD{0});
    EXPECT_EQ(g_tried, Numbers());
    EXPECT_EQ(g_searched, ::GetModuleHandleW(nullptr));
}

TEST_F(HostIconSearch, TriesTheSmallestNumberOnly)
{
    Have({300, 7, 65535, 9});
    g_present.push_back(kName);
    g_loadable = 7;
    DWORD identifier = 0;
    EXPECT_EQ(arvmui::FindHostIcon(&identifier), TheIcon());
    EXPECT_EQ(identifier, DWORD{7});
    EXPECT_EQ(g_tried, Numbers({7}));
}

TEST_F(HostIconSearch, GoesOnWhereAnIconCannotBeLoaded)
{
    Have({300, 7, 65535, 9});
    g_loadable = 300;
    DWORD identifier = 0;
    EXPECT_EQ(arvmui::FindHostIcon(&identifier), TheIcon());
    EXPECT_EQ(identifier, DWORD{300});
    EXPECT_EQ(g_tried, Numbers({7, 9, 300}));
}

TEST_F(HostIconSearch, GivesUpBehindTheLast)
{
    Have({65535, 1});
    g_present.insert(g_present.begin(), kName);
    DWORD identifier = 4711;
    EXPECT_EQ(arvmui::FindHostIcon(&identifier), nullptr);
    EXPECT_EQ(identifier, DWORD{0});
    EXPECT_EQ(g_tried, Numbers({1, 65535}));
}

}  // namespace
