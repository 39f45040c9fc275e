// Locale queries, resource files and enumerations of the C++ layer.
#include "bindings/cpp/translated_module.h"
#include "support/module_patch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace
{

using testing::ElementsAre;
using testing::UnorderedElementsAre;

using Tag = std::optional<std::wstring_view>;
using Names = std::vector<std::wstring>;

class CppLocales : public testing::Test
{
protected:
    arvmui_test::TranslatedModule module;
};

TEST_F(CppLocales, AreEnumeratedWithALambdaThatReturnsNothing)
{
    Names tags;

    const DWORD result = arvmui::EnumLocales(L"de-DE,fr", [&](Tag tag) { tags.emplace_back(tag.value_or(L"<none>")); });

    EXPECT_EQ(result, 0u);
    EXPECT_THAT(tags, ElementsAre(L"de-DE", L"de", L"fr", L"en", L"..", L"..\\en"));
}

TEST_F(CppLocales, AreEnumeratedUntilOneIsAccepted)
{
    Names tags;

    const DWORD result = arvmui::EnumLocales(L"de-DE,fr",
        [&](Tag tag) -> DWORD
        {
            tags.emplace_back(*tag);
            return tag == L"de" ? 42 : 0;
        });

    EXPECT_EQ(result, 42u);
    EXPECT_THAT(tags, ElementsAre(L"de-DE", L"de"));
}

TEST_F(CppLocales, AreEnumeratedForALanguageIdentifier)
{
    std::wstring first;

    EXPECT_EQ(arvmui::EnumLocales(LANGID{0x0407}, [&](Tag tag) { return first = *tag, true; }), 1u);

    EXPECT_EQ(first, L"de-DE");
}

bool AcceptsFrench(Tag tag)
{
    return tag == L"fr";
}

TEST_F(CppLocales, AreEnumeratedWithAFunction)
{
    EXPECT_EQ(arvmui::EnumLocales(L"de,fr", AcceptsFrench), 1u);
}

TEST_F(CppLocales, AreEnumeratedWithTheCallableItselfAndNotACopy)
{
    struct Counter
    {
        int calls = 0;
        void operator()(Tag) { ++calls; }
    } counter;

    arvmui::EnumLocales(L"de", counter);

    EXPECT_EQ(counter.calls, 4);  // de, en, .. and ..\en
}

TEST_F(CppLocales, AreEnumeratedWithAConstantCallable)
{
    const std::function<int(Tag)> accept = [](Tag tag) { return tag == L"de" ? 7 : 0; };

    EXPECT_EQ(arvmui::EnumLocales(L"de", accept), 7u);
}

DWORD ARVMUI_CALL OfferRefusal(const WCHAR*, ARVMUI_LocaleCallbackW callback, void* context)
{
    return callback(nullptr, context);
}

TEST_F(CppLocales, AreRefusedByAMissingTag)
{
    const arvmui_test::ImportPatch patch(::GetModuleHandleW(nullptr), "ARVMUI_EnumLocalesW", &OfferRefusal);
    bool refused = false;

    arvmui::EnumLocales(L"ask", [&](Tag tag) { refused = !tag; });

    EXPECT_TRUE(refused);
}

TEST_F(CppLocales, HaveCodePages)
{
    EXPECT_EQ(arvmui::AnsiCodePage(0x0419).value_or(0u), 1251u);
}

TEST_F(CppLocales, WithoutCodePageAreErrors)
{
    const auto codePage = arvmui::AnsiCodePage(0x7F7F);

    EXPECT_FALSE(codePage);
    EXPECT_EQ(codePage.Error(), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(CppLocales, HaveFolders)
{
    module.AddLibrary(L"de", {});
    module.AddLibrary(L"pt-BR", {});
    Names folders;

    const auto result =
        arvmui::EnumResourceFolders(module.Get(), [&](std::wstring_view folder) { folders.emplace_back(folder); });

    ASSERT_TRUE(result);
    EXPECT_EQ(*result, 0u);
    EXPECT_THAT(folders, UnorderedElementsAre(L"de", L"pt-BR"));
}

TEST_F(CppLocales, HaveFoldersUntilOneIsAccepted)
{
    module.AddLibrary(L"de", {});
    module.AddLibrary(L"fr", {});
    int calls = 0;

    const auto result = arvmui::EnumResourceFolders(module.Get(), [&](std::wstring_view) { return ++calls, 5; });

    EXPECT_EQ(result.value_or(0u), 5u);
    EXPECT_EQ(calls, 1);
}

TEST_F(CppLocales, HaveFoldersAfterAnEarlierError)
{
    module.AddLibrary(L"de", {});
    ::SetLastError(ERROR_GEN_FAILURE);

    EXPECT_TRUE(arvmui::EnumResourceFolders(module.Get(), [](std::wstring_view) {}));
}

TEST_F(CppLocales, WithoutFoldersAreAnError)
{
    const auto result = arvmui::EnumResourceFolders(module.Get(), [](std::wstring_view) {});

    EXPECT_FALSE(result);
    EXPECT_NE(result.Error(), DWORD{ERROR_SUCCESS});
}

TEST_F(CppLocales, HaveAPathFormat)
{
    const std::wstring folder = module.Folder().wstring();

    EXPECT_EQ(arvmui::ResourceFileFormat(module.Get()).value_or(L""), folder + L"\\resource\\%s\\editorUI.DLL");
    EXPECT_EQ(arvmui::ResourceFileFormat(module.Get(), L"a.txt").value_or(L""), folder + L"\\resource\\%s\\a.txt");
}

TEST_F(CppLocales, HaveNoPathFormatForAnIdentifier)
{
    const auto format = arvmui::ResourceFileFormat(module.Get(), WORD{5});

    EXPECT_FALSE(format);
    EXPECT_EQ(format.Error(), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(CppLocales, HaveFiles)
{
    module.AddFile(L"fr", L"about.txt", "");

    const auto path = arvmui::ResourceFileName({.module = module.Get(), .fileName = L"about.txt", .locales = L"de,fr"});

    EXPECT_EQ(path.value_or(L""), module.File(L"fr", L"about.txt").wstring());
}

TEST_F(CppLocales, WithoutFileAreAnError)
{
    const auto path = arvmui::ResourceFileName({.module = module.Get(), .fileName = L"about.txt", .locales = L"de"});

    EXPECT_FALSE(path);
    EXPECT_EQ(path.Error(), DWORD{ERROR_FILE_NOT_FOUND});
}

}  // namespace
