// Texts that the installer hands out in two calls: properties of the session and fields of a record.
#include "unit/installer/installer_fixture.h"

#include "foundation/heap.h"

#include <memory>

namespace
{

using arvmui::HeapBlock;
using arvmui_test::InstallerTest;

// A length of 0 stands for the first call.
std::wstring CallWithSize(const std::wstring& call, size_t size)
{
    return call + L" size " + std::to_wstring(size);
}

// One of the two readers, on a text of the test's choice.
struct Source
{
    const char* name;
    // The text becomes the one to be read; the installer's call without the size that ends it.
    std::wstring (*provide)(arvmui_test::StandInInstaller& installer, MSIHANDLE& record, const std::wstring& text);
    UINT (*read)(MSIHANDLE record, wchar_t** value);
};

void PrintTo(const Source& source, std::ostream* output)
{
    *output << source.name;
}

const Source kProperty = {"Property",
    [](arvmui_test::StandInInstaller& installer, MSIHANDLE& record, const std::wstring& text)
    {
        record = installer.MakeRecord({});
        installer.properties[L"Colour"] = text;
        return std::wstring(L"MsiGetPropertyW Colour");
    },
    [](MSIHANDLE, wchar_t** value)
    { return arvmui::GetInstallerProperty(arvmui_test::StandInInstaller::kSession, L"Colour", value); }};

const Source kField = {"RecordField",
    [](arvmui_test::StandInInstaller& installer, MSIHANDLE& record, const std::wstring& text)
    {
        record = installer.MakeRecord({L"first", text});
        return L"MsiRecordGetStringW 2 of first|" + text;
    },
    [](MSIHANDLE record, wchar_t** value) { return arvmui::GetRecordString(record, 2, value); }};

class InstallerText : public InstallerTest, public testing::WithParamInterface<Source>
{
protected:
    void Provide(const std::wstring& text) { call_ = GetParam().provide(installer, record_, text); }

    UINT Read() { return GetParam().read(record_, value_.Slot()); }

    void TearDown() override
    {
        arvmui::Installer().MsiCloseHandle(record_);
        ARVMUI_free(value_.Release());
        InstallerTest::TearDown();
    }

    std::vector<std::wstring> BothCalls(size_t length) const
    {
        return {CallWithSize(call_, 0), CallWithSize(call_, length + 32)};
    }

    std::wstring call_;
    MSIHANDLE record_ = 0;
    HeapBlock<wchar_t> value_;
};

TEST_P(InstallerText, IsReadInTwoCallsWithRoomForMore)
{
    Provide(L"dark blue");
    EXPECT_EQ(Read(), ERROR_SUCCESS);
    EXPECT_EQ(installer.Calls(), BothCalls(9));
    EXPECT_EQ(std::wstring(value_.Get()), L"dark blue");
}

TEST_P(InstallerText, GetsABlockOfTheSizeThatTheInstallerIsTold)
{
    Provide(L"dark blue");
    EXPECT_EQ(Read(), ERROR_SUCCESS);
    EXPECT_EQ(heap.Sizes(), std::vector<size_t>{(9 + 32) * sizeof(wchar_t)});
}

TEST_P(InstallerText, MayBeLong)
{
    const std::wstring text(100000, L'\u3042');
    Provide(text);
    EXPECT_EQ(Read(), ERROR_SUCCESS);
    EXPECT_EQ(std::wstring(value_.Get()), text);
}

TEST_P(InstallerText, ThatIsEmptyIsATextToo)
{
    Provide(L"");
    EXPECT_EQ(Read(), ERROR_SUCCESS);
    ASSERT_TRUE(value_);
    EXPECT_EQ(std::wstring(value_.Get()), L"");
    EXPECT_EQ(installer.Calls(), BothCalls(0));
}

// Whatever the caller had in its variable.
TEST_P(InstallerText, IsNullOnFailure)
{
    for (const UINT result : {UINT{ERROR_SUCCESS}, UINT{ERROR_INVALID_HANDLE}})
    {
        Provide(L"blue");
        installer.Answer(CallWithSize(call_, 0), result, 1);
        wchar_t before[] = L"before";
        wchar_t* value = before;
        EXPECT_NE(GetParam().read(record_, &value), ERROR_SUCCESS);
        EXPECT_EQ(value, nullptr);
        arvmui::Installer().MsiCloseHandle(record_);
    }
    Provide(L"blue");
}

TEST_P(InstallerText, ThatFitsIntoNothingIsAFailure)
{
    Provide(L"blue");
    installer.Answer(CallWithSize(call_, 0), ERROR_SUCCESS);
    EXPECT_EQ(Read(), ERROR_FUNCTION_FAILED);
    EXPECT_EQ(installer.Calls().size(), 1U);
}

TEST_P(InstallerText, KeepsTheInstallersErrorOfTheFirstCall)
{
    for (const UINT error : {ERROR_INVALID_HANDLE, ERROR_INVALID_PARAMETER, ERROR_NO_MORE_ITEMS, ERROR_FUNCTION_FAILED})
    {
        Provide(L"blue");
        installer.ForgetCalls();
        installer.Answer(CallWithSize(call_, 0), error, 1);
        EXPECT_EQ(Read(), error);
        EXPECT_EQ(installer.Calls().size(), 1U);
        arvmui::Installer().MsiCloseHandle(record_);
    }
    Provide(L"blue");
}

// 234 among them: the text has grown between the calls.
TEST_P(InstallerText, KeepsTheInstallersErrorOfTheSecondCall)
{
    for (const UINT error : {ERROR_INVALID_HANDLE, ERROR_MORE_DATA, ERROR_FUNCTION_FAILED})
    {
        Provide(L"blue");
        installer.ForgetCalls();
        installer.Answer(CallWithSize(call_, 4 + 32), error, 1);
        wchar_t* value = nullptr;
        EXPECT_EQ(GetParam().read(record_, &value), error);
        EXPECT_EQ(value, nullptr);
        EXPECT_EQ(heap.LiveBlocks(), 0U);
        EXPECT_EQ(installer.Calls(), BothCalls(4));
        arvmui::Installer().MsiCloseHandle(record_);
    }
    Provide(L"blue");
}

TEST_P(InstallerText, WithoutMemoryIsAFailureOfTheLibrary)
{
    Provide(L"blue");
    heap.FailAt(0);
    EXPECT_EQ(Read(), ERROR_FUNCTION_FAILED);
    EXPECT_FALSE(value_);
    EXPECT_EQ(installer.Calls().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Sources, InstallerText, testing::Values(kProperty, kField),
    [](const testing::TestParamInfo<Source>& parameter) { return std::string(parameter.param.name); });

// ---- The buffer of the first call -----------------------------------------------------------------------

// Null there would have the installer tell nothing.
bool g_wasEmptyText = false;

UINT WINAPI LookAtBuffer(MSIHANDLE, LPCWSTR, LPWSTR buffer, LPDWORD size)
{
    g_wasEmptyText = *size == 0 && buffer && *buffer == L'\0';
    return ERROR_INVALID_HANDLE;
}

UINT WINAPI LookAtFieldBuffer(MSIHANDLE, UINT, LPWSTR buffer, LPDWORD size)
{
    return LookAtBuffer(0, nullptr, buffer, size);
}

class FirstCall : public InstallerTest
{
protected:
    FirstCall()
    {
        entryPoints_.MsiGetPropertyW = LookAtBuffer;
        entryPoints_.MsiRecordGetStringW = LookAtFieldBuffer;
        g_wasEmptyText = false;
    }

private:
    // The next binding replaces them.
    arvmui::InstallerEntryPoints& entryPoints_ = const_cast<arvmui::InstallerEntryPoints&>(arvmui::Installer());
};

TEST_F(FirstCall, HandsAnEmptyTextToTheSession)
{
    wchar_t* value = nullptr;
    arvmui::GetInstallerProperty(arvmui_test::StandInInstaller::kSession, L"Colour", &value);
    EXPECT_TRUE(g_wasEmptyText);
}

TEST_F(FirstCall, HandsAnEmptyTextToTheRecord)
{
    wchar_t* value = nullptr;
    arvmui::GetRecordString(0, 1, &value);
    EXPECT_TRUE(g_wasEmptyText);
}

}  // namespace
