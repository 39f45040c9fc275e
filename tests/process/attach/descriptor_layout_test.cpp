// The descriptor and the record as another process sees them: bytes at fixed places.
#include "process/attach/attach_fixture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace
{

using arvmui_test::ChildProcess;
using arvmui_test::HostSettings;
using arvmui_test::ReadReport;
using arvmui_test::Report;

constexpr size_t kDescriptorBytes = 2136;

class AttachedProcess : public testing::Test
{
protected:
    AttachedProcess()
        : child_(HostSettings(L"host.exe /uilocale:de,ja", {{L"ARVMUI_TEST_WAIT", L"1"}})), report_(ReadReport(child_))
    {
    }

    template <typename Value>
    static Value At(const std::vector<unsigned char>& bytes, size_t offset)
    {
        Value value = {};
        std::memcpy(&value, bytes.data() + offset, sizeof(value));
        return value;
    }

    std::vector<unsigned char> Memory(std::uint64_t address, size_t size) const
    {
        std::vector<unsigned char> bytes(size);
        SIZE_T read = 0;
        ::ReadProcessMemory(child_.Process(), reinterpret_cast<const void*>(address), bytes.data(), size, &read);
        bytes.resize(read);
        return bytes;
    }

    static std::wstring TextAt(const std::vector<unsigned char>& bytes, size_t offset)
    {
        std::wstring text;
        for (; offset + 1 < bytes.size(); offset += 2)
        {
            const std::uint16_t unit = static_cast<std::uint16_t>(bytes[offset] | bytes[offset + 1] << 8);
            if (unit == 0) break;
            text.push_back(static_cast<wchar_t>(unit));
        }
        return text;
    }

    std::wstring RecordName() const { return L"ARVMUI_" + std::to_wstring(child_.Id()) + L".IPC"; }

    ChildProcess child_;
    Report report_;
};

TEST_F(AttachedProcess, HasItsDescriptorInThisOrder)
{
    const std::vector<unsigned char> descriptor = Memory(report_.Number("descriptor"), kDescriptorBytes);
    ASSERT_EQ(descriptor.size(), kDescriptorBytes);
    EXPECT_EQ(At<std::uint64_t>(descriptor, 0), report_.Number("module"));
    EXPECT_NE(At<std::uint64_t>(descriptor, 8), 0u);   // resource library
    EXPECT_NE(At<std::uint64_t>(descriptor, 16), 0u);  // record
    EXPECT_EQ(At<std::uint32_t>(descriptor, 24), report_.Number("threadSlot"));
    EXPECT_EQ(TextAt(descriptor, 28), L"de,ja");
    EXPECT_EQ(TextAt(descriptor, 28 + 512), L"");
    EXPECT_EQ(TextAt(descriptor, 28 + 1024), L"");
    EXPECT_EQ(TextAt(descriptor, 28 + 1536), L"");
    EXPECT_EQ(At<std::uint32_t>(descriptor, 2128), 1u);  // popups
    for (size_t offset = 2088; offset < 2128; ++offset) EXPECT_EQ(descriptor[offset], 0) << offset;
}

TEST_F(AttachedProcess, HasItsKeyboardLanguagesBehindTheirCount)
{
    const std::vector<unsigned char> descriptor = Memory(report_.Number("descriptor"), kDescriptorBytes);
    ASSERT_EQ(descriptor.size(), kDescriptorBytes);
    const std::uint32_t count = At<std::uint32_t>(descriptor, 2076);
    ASSERT_GT(count, 0u);
    const std::vector<unsigned char> languages =
        Memory(At<std::uint64_t>(descriptor, 2080), count * sizeof(std::uint16_t));
    ASSERT_EQ(languages.size(), count * sizeof(std::uint16_t));
    std::wstring text;
    for (std::uint32_t i = 0; i < count; ++i) text += std::to_wstring(At<std::uint16_t>(languages, i * 2)) + L" ";
    EXPECT_EQ(text, report_.Text("keyboardLanguages"));
}

TEST_F(AttachedProcess, HasItsRecordUnderItsIdentifier)
{
    const HANDLE section = ::OpenFileMappingW(FILE_MAP_READ, FALSE, RecordName().c_str());
    ASSERT_NE(section, nullptr);
    const unsigned char* const view =
        static_cast<const unsigned char*>(::MapViewOfFile(section, FILE_MAP_READ, 0, 0, 132));
    ASSERT_NE(view, nullptr);
    const std::vector<unsigned char> record(view, view + 132);
    ::UnmapViewOfFile(view);
    ::CloseHandle(section);

    EXPECT_EQ(record[0], 132);
    EXPECT_EQ(record[1], 0);
    EXPECT_EQ(record[2], 0);
    EXPECT_EQ(record[3], 0);
    const unsigned char list[] = {'d', 0, 'e', 0, ',', 0, 'j', 0, 'a', 0, 0, 0};
    EXPECT_EQ(std::memcmp(record.data() + 4, list, sizeof(list)), 0);
}

TEST_F(AttachedProcess, TakesItsRecordAlongWhenItEnds)
{
    child_.CloseInput();
    ASSERT_EQ(child_.Wait(), 0u);
    const HANDLE section = ::OpenFileMappingW(FILE_MAP_READ, FALSE, RecordName().c_str());
    EXPECT_EQ(section, nullptr);
    if (section) ::CloseHandle(section);
}

}  // namespace
