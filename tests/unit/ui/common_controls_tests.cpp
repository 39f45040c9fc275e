// The language of the common controls. Which of their functions exist is the tests' choice.
#include "arvmui.h"
#include "resources/process_state.h"
#include "resources/resource_ids.h"
#include "support/import_replacement.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace
{

using arvmui_test::LoadedModule;
using arvmui_test::TemporaryFolder;

const char* g_missingFunction = nullptr;

FARPROC WINAPI FindFunction(HMODULE module, const char* name)
{
    if (g_missingFunction && reinterpret_cast<ULONG_PTR>(name) > 0xFFFF && std::strcmp(name, g_missingFunction) == 0)
        return nullptr;
    return ARVMUI_REAL_FUNCTION(L"kernel32.dll", GetProcAddress)(module, name);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(GetProcAddress, FindFunction)

namespace
{

using SetLanguage = void(WINAPI*)(LANGID);
using GetLanguage = LANGID(WINAPI*)();

class CommonControls : public testing::Test
{
protected:
    CommonControls() { arvmui::Descriptor() = {}; }
    ~CommonControls() override
    {
        g_missingFunction = nullptr;
        arvmui::Descriptor() = {};
        if (controls_) ::FreeLibrary(controls_);
    }

    void UseLanguage(const std::wstring& number)
    {
        texts_.reset();
        texts_ = std::make_unique<LoadedModule>(
            folder_.Path() / L"texts.dll", arvmui_test::Strings{{ARVMUI_STRING_LANGUAGE_ID, number}});
        arvmui::Descriptor().resourceLibrary = texts_->Get();
    }

    void LoadControls()
    {
        controls_ = ::LoadLibraryW(L"COMCTL32.DLL");
        ASSERT_NE(controls_, nullptr);
        ASSERT_NE(Function<SetLanguage>("InitMUILanguage"), nullptr);
        ASSERT_NE(Function<GetLanguage>("GetMUILanguage"), nullptr);
    }

    template <typename Type>
    Type Function(const char* name) const
    {
        return reinterpret_cast<Type>(reinterpret_cast<void*>(::GetProcAddress(controls_, name)));
    }

private:
    TemporaryFolder folder_;
    std::unique_ptr<LoadedModule> texts_;
    HMODULE controls_ = nullptr;
};

TEST_F(CommonControls, AreNotLoadedForTheirLanguage)
{
    if (::GetModuleHandleW(L"COMCTL32.DLL")) GTEST_SKIP() << "this system loads the common controls by itself";
    UseLanguage(L"0x0407");
    EXPECT_EQ(ARVMUI_InitCommonControlsLanguage(), 0);
    EXPECT_EQ(::GetModuleHandleW(L"COMCTL32.DLL"), nullptr);
}

TEST_F(CommonControls, UseTheLanguageOfTheResourceLibrary)
{
    LoadControls();
    UseLanguage(L"0x0407");
    EXPECT_EQ(ARVMUI_InitCommonControlsLanguage(), 0x0407);
    EXPECT_EQ(Function<GetLanguage>("GetMUILanguage")(), 0x0407);
    UseLanguage(L"1041");
    EXPECT_EQ(ARVMUI_InitCommonControlsLanguage(), 0x0411);
}

TEST_F(CommonControls, UseEnglishWithoutResourceLibrary)
{
    LoadControls();
    UseLanguage(L"0x0407");
    ASSERT_EQ(ARVMUI_InitCommonControlsLanguage(), 0x0407);
    arvmui::Descriptor().resourceLibrary = nullptr;
    EXPECT_EQ(ARVMUI_InitCommonControlsLanguage(), 0x0409);
}

TEST_F(CommonControls, KeepTheirLanguageWhereTheLowBitsAreZero)
{
    LoadControls();
    Function<SetLanguage>("InitMUILanguage")(0x040C);
    for (const wchar_t* const number : {L"0", L"0x10000", L"none"})
    {
        UseLanguage(number);
        EXPECT_EQ(ARVMUI_InitCommonControlsLanguage(), 0) << number;
    }
    EXPECT_EQ(Function<GetLanguage>("GetMUILanguage")(), 0x040C);
    UseLanguage(L"0x10407");
    EXPECT_EQ(ARVMUI_InitCommonControlsLanguage(), 0x0407);
}

TEST_F(CommonControls, KeepTheirLanguageWhereAFunctionIsMissing)
{
    LoadControls();
    UseLanguage(L"0x0407");
    const auto getLanguage = Function<GetLanguage>("GetMUILanguage");
    Function<SetLanguage>("InitMUILanguage")(0x040C);
    for (const char* const name : {"InitMUILanguage", "GetMUILanguage"})
    {
        g_missingFunction = name;
        EXPECT_EQ(ARVMUI_InitCommonControlsLanguage(), 0) << name;
        EXPECT_EQ(getLanguage(), 0x040C) << name;
    }
}

}  // namespace
