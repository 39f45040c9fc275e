#include "resources/locale_record.h"

#include "foundation/handles.h"
#include "support/import_replacement.h"
#include "support/process_resources.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace
{

DWORD g_parent = 0;           // what the system tells of any process
bool g_queryMissing = false;  // the system lacks the function that tells it
LONG g_queryStatus = 0;
bool g_sectionsFail = false;
bool g_viewsFail = false;

struct SectionRequest
{
    HANDLE file;
    const SECURITY_ATTRIBUTES* security;
    DWORD protection;
    DWORD sizeHigh;
    DWORD sizeLow;
    std::wstring name;
};
SectionRequest g_request;

struct OpenRequest
{
    DWORD access;
    BOOL inherit;
    std::wstring name;
};
OpenRequest g_openRequest;

LONG NTAPI TellParent(HANDLE, ULONG informationClass, void* buffer, ULONG size, ULONG*)
{
    EXPECT_EQ(informationClass, 0u);
    EXPECT_EQ(size, 48u);
    const ULONG_PTR parent = g_parent;
    std::memcpy(static_cast<unsigned char*>(buffer) + 40, &parent, sizeof(parent));
    return g_queryStatus;
}

FARPROC WINAPI FindFunction(HMODULE module, LPCSTR name)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", GetProcAddress);
    if (std::strcmp(name, "NtQueryInformationProcess") != 0) return real(module, name);
    if (g_queryMissing) return nullptr;
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&TellParent));
}

HANDLE WINAPI CreateSection(
    HANDLE file, LPSECURITY_ATTRIBUTES security, DWORD protection, DWORD sizeHigh, DWORD sizeLow, LPCWSTR name)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", CreateFileMappingW);
    g_request = {file, security, protection, sizeHigh, sizeLow, name};
    return g_sectionsFail ? nullptr : real(file, security, protection, sizeHigh, sizeLow, name);
}

HANDLE WINAPI OpenSection(DWORD access, BOOL inherit, LPCWSTR name)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", OpenFileMappingW);
    g_openRequest = {access, inherit, name};
    return real(access, inherit, name);
}

LPVOID WINAPI MapView(HANDLE section, DWORD access, DWORD offsetHigh, DWORD offsetLow, SIZE_T size)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", MapViewOfFile);
    return g_viewsFail ? nullptr : real(section, access, offsetHigh, offsetLow, size);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(GetProcAddress, FindFunction)
ARVMUI_REPLACE_IMPORT(CreateFileMappingW, CreateSection)
ARVMUI_REPLACE_IMPORT(OpenFileMappingW, OpenSection)
ARVMUI_REPLACE_IMPORT(MapViewOfFile, MapView)

namespace
{

using arvmui::PublishLocale;
using arvmui::ReadParentLocale;
using arvmui::UniqueHandle;

// This process is its own parent, so what it publishes it reads.
class Record : public testing::Test
{
protected:
    // The system keeps its folder of names open from the first one on.
    static void SetUpTestSuite() { const UniqueHandle section(PublishLocale(L"en")); }

    Record() { g_parent = ::GetCurrentProcessId(); }
    ~Record() override
    {
        g_queryMissing = g_sectionsFail = g_viewsFail = false;
        g_queryStatus = 0;
    }

    static std::wstring Name() { return L"ARVMUI_" + std::to_wstring(::GetCurrentProcessId()) + L".IPC"; }

    static LocaleRecord Content(HANDLE section)
    {
        LocaleRecord record = {};
        const void* const view = ::MapViewOfFile(section, FILE_MAP_READ, 0, 0, sizeof(record));
        std::memcpy(&record, view, sizeof(record));
        ::UnmapViewOfFile(view);
        return record;
    }

    static UniqueHandle SectionOf(const LocaleRecord& record)
    {
        UniqueHandle section(
            ::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(record), Name().c_str()));
        void* const view = ::MapViewOfFile(section.Get(), FILE_MAP_WRITE, 0, 0, sizeof(record));
        std::memcpy(view, &record, sizeof(record));
        ::UnmapViewOfFile(view);
        return section;
    }

    struct Read
    {
        DWORD length;
        std::wstring text;
    };

    static Read ReadWith(DWORD capacity)
    {
        std::vector<wchar_t> buffer(capacity + 1, L'#');
        const DWORD length = ReadParentLocale(buffer.data(), capacity);
        EXPECT_EQ(buffer[capacity], L'#');
        return {length, buffer.data()};
    }
};

TEST_F(Record, IsCreatedWithExactly132BytesInThePagingFile)
{
    const UniqueHandle section(PublishLocale(L"de"));
    ASSERT_TRUE(section);
    EXPECT_EQ(g_request.file, INVALID_HANDLE_VALUE);
    EXPECT_EQ(g_request.security, nullptr);
    EXPECT_EQ(g_request.protection, static_cast<DWORD>(PAGE_READWRITE));
    EXPECT_EQ(g_request.sizeHigh, 0u);
    EXPECT_EQ(g_request.sizeLow, 132u);
    EXPECT_EQ(g_request.name, Name());
}

TEST_F(Record, HoldsItsSizeAndTheList)
{
    const UniqueHandle section(PublishLocale(L"de-DE,de"));
    const LocaleRecord record = Content(section.Get());
    EXPECT_EQ(record.size, 132u);
    EXPECT_STREQ(record.locales, L"de-DE,de");
}

TEST_F(Record, HoldsAtMost63Characters)
{
    for (const size_t length : {size_t{62}, size_t{63}, size_t{64}, size_t{500}})
    {
        const size_t kept = length < 63 ? length : 63;
        const UniqueHandle section(PublishLocale(std::wstring(length, L'x').c_str()));
        EXPECT_EQ(Content(section.Get()).locales, std::wstring(kept, L'x'));
    }
}

TEST_F(Record, IsWrittenIntoASectionThatExists)
{
    LocaleRecord old = {7, {}};
    std::memset(old.locales, 0x55, sizeof(old.locales));
    const UniqueHandle existing = SectionOf(old);
    const UniqueHandle section(PublishLocale(L"ja"));
    ASSERT_TRUE(section);
    EXPECT_EQ(Content(existing.Get()).size, 132u);
    EXPECT_STREQ(Content(existing.Get()).locales, L"ja");
}

TEST_F(Record, IsNotPublishedWithoutASection)
{
    const size_t before = arvmui_test::CountHandles();
    g_sectionsFail = true;
    EXPECT_EQ(PublishLocale(L"de"), nullptr);
    EXPECT_EQ(arvmui_test::CountHandles(), before);
}

TEST_F(Record, ClosesTheSectionThatCannotBeMapped)
{
    const size_t before = arvmui_test::CountHandles();
    g_viewsFail = true;
    EXPECT_EQ(PublishLocale(L"de"), nullptr);
    EXPECT_EQ(arvmui_test::CountHandles(), before);
}

TEST_F(Record, LivesAsLongAsItsHandle)
{
    {
        const UniqueHandle section(PublishLocale(L"de"));
        EXPECT_EQ(ReadWith(64).text, L"de");
    }
    EXPECT_EQ(ReadWith(64).length, 0u);
}

TEST_F(Record, OfTheParentIsOpenedForReadingOnly)
{
    const UniqueHandle section(PublishLocale(L"de"));
    ReadWith(64);
    EXPECT_EQ(g_openRequest.access, static_cast<DWORD>(FILE_MAP_READ));
    EXPECT_EQ(g_openRequest.inherit, FALSE);
    EXPECT_EQ(g_openRequest.name, Name());
}

TEST_F(Record, IsReadByTheParentsIdentifier)
{
    const UniqueHandle section(PublishLocale(L"de"));
    g_parent = 0xFFFFFFF0;
    EXPECT_EQ(ReadWith(64).length, 0u);
    EXPECT_EQ(g_openRequest.name, L"ARVMUI_4294967280.IPC");
}

TEST_F(Record, IsCopiedWithinTheCapacity)
{
    const UniqueHandle section(PublishLocale(L"de-DE"));
    EXPECT_EQ(ReadWith(6).text, L"de-DE");
    EXPECT_EQ(ReadWith(6).length, 5u);
    EXPECT_EQ(ReadWith(5).text, L"de-D");
    EXPECT_EQ(ReadWith(5).length, 4u);
    EXPECT_EQ(ReadWith(1).text, L"");
    EXPECT_EQ(ReadWith(1).length, 0u);
}

TEST_F(Record, NeedsASizeOf132)
{
    for (const DWORD size : {DWORD{0}, DWORD{4}, DWORD{131}})
    {
        const UniqueHandle section = SectionOf({size, L"de"});
        EXPECT_EQ(ReadWith(64).length, 0u) << size;
    }
    for (const DWORD size : {DWORD{132}, DWORD{133}, DWORD{0xFFFFFFFF}})
    {
        const UniqueHandle section = SectionOf({size, L"de"});
        EXPECT_EQ(ReadWith(64).text, L"de") << size;
    }
}

TEST_F(Record, WithoutATerminatorIsNotReadBeyondItsEnd)
{
    LocaleRecord record = {132, {}};
    for (wchar_t& character : record.locales) character = L'x';
    const UniqueHandle section = SectionOf(record);
    EXPECT_EQ(ReadWith(64).text, std::wstring(63, L'x'));
    EXPECT_LE(ReadWith(500).length, 64u);
}

TEST_F(Record, IsNotReadWithoutAView)
{
    const UniqueHandle section(PublishLocale(L"de"));
    const size_t before = arvmui_test::CountHandles();
    g_viewsFail = true;
    EXPECT_EQ(ReadWith(64).length, 0u);
    EXPECT_EQ(arvmui_test::CountHandles(), before);
}

TEST_F(Record, ReadingLeavesNoHandle)
{
    const UniqueHandle section(PublishLocale(L"de"));
    const size_t before = arvmui_test::CountHandles();
    for (int i = 0; i < 20; ++i) ReadWith(64);
    EXPECT_EQ(arvmui_test::CountHandles(), before);
}

TEST_F(Record, IsNotReadWhereTheSystemTellsNoParent)
{
    const UniqueHandle section(PublishLocale(L"de"));
    g_queryMissing = true;
    EXPECT_EQ(ReadWith(64).length, 0u);
    g_queryMissing = false;
    g_queryStatus = static_cast<LONG>(0xC0000022);
    EXPECT_EQ(ReadWith(64).length, 0u);
    g_queryStatus = 0;
    EXPECT_EQ(ReadWith(64).text, L"de");
}

TEST_F(Record, OfAllBitsSetIsNoParents)
{
    const UniqueHandle section(::CreateFileMappingW(
        INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(LocaleRecord), L"ARVMUI_4294967295.IPC"));
    LocaleRecord* const record =
        static_cast<LocaleRecord*>(::MapViewOfFile(section.Get(), FILE_MAP_WRITE, 0, 0, sizeof(LocaleRecord)));
    record->size = sizeof(LocaleRecord);
    ::lstrcpyW(record->locales, L"de");
    ::UnmapViewOfFile(record);
    g_parent = 0xFFFFFFFF;
    EXPECT_EQ(ReadWith(64).length, 0u);
}

}  // namespace
