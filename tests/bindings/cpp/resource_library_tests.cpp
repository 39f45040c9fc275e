// Resource libraries of the C++ layer: loading, finding, strings, and who frees what.
#include "bindings/cpp/translated_module.h"
#include "support/module_patch.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace
{

using arvmui::ResourceLibrary;
using arvmui::Result;
using arvmui_test::IsLoaded;

static_assert(!std::is_copy_constructible_v<ResourceLibrary> && !std::is_copy_assignable_v<ResourceLibrary>,
    "two objects would free one library");
static_assert(std::is_nothrow_move_constructible_v<ResourceLibrary>);

class CppResourceLibrary : public testing::Test
{
protected:
    CppResourceLibrary()
    {
        module.AddLibrary(L"de", {{1, L"de-DE"}, {2, L"1031"}, {40, L"Öffnen"}});
        module.AddLibrary(L"fr", {{1, L"fr-FR"}, {2, L"1036"}, {40, L"Ouvrir"}});
    }

    Result<ResourceLibrary> Load(arvmui::LocaleList locales) const
    {
        return ResourceLibrary::Load({.module = module.Get(), .locales = std::move(locales)});
    }

    arvmui_test::TranslatedModule module;
};

TEST_F(CppResourceLibrary, IsTheFirstOfAList)
{
    const auto library = Load(L"it,fr,de");

    ASSERT_TRUE(library);
    EXPECT_EQ(library->Locale(), L"fr-FR");
    EXPECT_EQ(library->Language(), 1036);
    EXPECT_EQ(library->String(40), L"Ouvrir");
}

TEST_F(CppResourceLibrary, IsFoundByALanguageIdentifier)
{
    const auto library = Load(LANGID{1031});

    ASSERT_TRUE(library);
    EXPECT_EQ(library->String(40), L"Öffnen");
}

TEST_F(CppResourceLibrary, IsFoundByTheListOfTheProcess)
{
    std::wstring commandLine = L"program /uilocale:fr";
    arvmui::ParseCommandLine(commandLine);

    const auto library = Load({});

    ASSERT_TRUE(library);
    EXPECT_EQ(library->Locale(), L"fr-FR");
}

TEST_F(CppResourceLibrary, MayHaveAFileNameOfItsOwn)
{
    arvmui_test::WriteResourceImage(module.File(L"de", L"menus.dll"), {{1, L"de-AT"}});
    const std::wstring names = L"menus.dll and more";

    const auto library = ResourceLibrary::Load({.module = module.Get(),
        .fileName = std::wstring_view(names).substr(0, 9),
        .locales = std::wstring_view(L"de,fr").substr(0, 2)});

    ASSERT_TRUE(library);
    EXPECT_EQ(library->Locale(), L"de-AT");
}

TEST_F(CppResourceLibrary, IsMissingWithAnError)
{
    const auto library = Load(L"it");

    EXPECT_FALSE(library);
    EXPECT_EQ(library.Error(), DWORD{ERROR_MOD_NOT_FOUND});
}

TEST_F(CppResourceLibrary, HasNoTextForAnUnknownString)
{
    const auto library = Load(L"de");

    ASSERT_TRUE(library);
    EXPECT_TRUE(library->String(41).empty());
}

// A string of the program, which the system takes for the module where there is none.
int WINAPI LoadProgramString(HINSTANCE, UINT, wchar_t* buffer, int)
{
    *reinterpret_cast<const wchar_t**>(buffer) = L"program";
    return 7;
}

TEST_F(CppResourceLibrary, WithoutAModuleHasNoStringsOfTheProgram)
{
    const arvmui_test::ImportPatch patch(::GetModuleHandleW(nullptr), "LoadStringW", &LoadProgramString);
    const ResourceLibrary none;

    EXPECT_FALSE(none);
    EXPECT_EQ(none.Get(), nullptr);
    EXPECT_TRUE(none.String(1).empty());
    EXPECT_EQ(arvmui::StringOf(nullptr, 1), L"program");
}

TEST_F(CppResourceLibrary, IsFreedWithItsObject)
{
    {
        const auto library = Load(L"de");
        ASSERT_TRUE(IsLoaded(module.File(L"de")));
    }
    EXPECT_FALSE(IsLoaded(module.File(L"de")));
}

TEST_F(CppResourceLibrary, HasOneOwnerAfterMoves)
{
    // A reference of the test's own shows whether more than one was given up.
    const HMODULE reference = ::LoadLibraryW(module.File(L"de").c_str());
    ASSERT_NE(reference, nullptr);
    {
        auto loaded = Load(L"de");
        ASSERT_TRUE(loaded);
        ResourceLibrary first = *std::move(loaded);
        ResourceLibrary second(std::move(first));
        ResourceLibrary third;
        third = std::move(second);
        EXPECT_EQ(third.Get(), reference);
        EXPECT_FALSE(first);
        EXPECT_FALSE(second);
    }
    EXPECT_TRUE(IsLoaded(module.File(L"de")));
    ::FreeLibrary(reference);
    EXPECT_FALSE(IsLoaded(module.File(L"de")));
}

TEST_F(CppResourceLibrary, IsFreedWhenAnotherTakesItsPlace)
{
    auto german = Load(L"de");
    auto french = Load(L"fr");
    ASSERT_TRUE(german && french);

    *german = *std::move(french);

    EXPECT_FALSE(IsLoaded(module.File(L"de")));
    EXPECT_EQ(german->Locale(), L"fr-FR");
}

TEST_F(CppResourceLibrary, CanBeHandedOver)
{
    HMODULE library = nullptr;
    {
        auto loaded = Load(L"de");
        ASSERT_TRUE(loaded);
        library = loaded->Release();
    }
    EXPECT_TRUE(IsLoaded(module.File(L"de")));
    ::FreeLibrary(library);
    EXPECT_FALSE(IsLoaded(module.File(L"de")));
}

TEST_F(CppResourceLibrary, IsFoundWithoutBecomingOwned)
{
    {
        const auto library = Load(L"de");
        ASSERT_TRUE(library);
        const auto found = ResourceLibrary::FindLoaded({.module = module.Get(), .locales = L"fr,de"});
        ASSERT_TRUE(found);
        EXPECT_EQ(*found, library->Get());
    }
    EXPECT_FALSE(IsLoaded(module.File(L"de")));
}

TEST_F(CppResourceLibrary, IsNotFoundUnlessLoaded)
{
    const auto found = ResourceLibrary::FindLoaded({.module = module.Get(), .locales = L"de"});

    EXPECT_FALSE(found);
    EXPECT_EQ(found.Error(), DWORD{ERROR_MOD_NOT_FOUND});
}

TEST_F(CppResourceLibrary, TellsATagLongerThanUsualWhole)
{
    const std::wstring tag = L"de-" + std::wstring(ARVMUI_TAG_CHARS, L'x');
    module.AddLibrary(L"nl", {{1, tag}});

    const auto library = Load(L"nl");

    ASSERT_TRUE(library);
    EXPECT_EQ(library->Locale(), tag);
}

TEST_F(CppResourceLibrary, OfTheLibraryItselfSpeaksForNoModule)
{
    wchar_t tag[ARVMUI_TAG_CHARS] = {};
    ASSERT_NE(::LoadStringW(arvmui::Descriptor().resourceLibrary, 1, tag, ARVMUI_TAG_CHARS), 0);

    EXPECT_EQ(arvmui::LocaleOf(nullptr), tag);
    EXPECT_EQ(arvmui::LanguageOf(nullptr), ARVMUI_GetLangID(arvmui::Descriptor().resourceLibrary));
}

}  // namespace
