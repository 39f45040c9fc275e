#include "resources/process_state.h"

#include <gtest/gtest.h>

#include <cstring>
#include <numeric>
#include <string>
#include <vector>

namespace
{

using arvmui::GetInstallerContext;
using arvmui::GetLocaleHint;
using arvmui::GetThreadValue;
using arvmui::HasKeyboardLanguage;
using arvmui::NoThreadSlot;
using arvmui::SetInstallerContext;
using arvmui::SetLocaleHint;
using arvmui::SetThreadValue;

TEST(Descriptor, IsTheOneThatTheExportReturns)
{
    EXPECT_EQ(ARVMUI_GetDescriptor(), &arvmui::Descriptor());
}

TEST(LocaleHint, EachSlotKeepsItsOwnText)
{
    LibraryDescriptor descriptor = {};
    const wchar_t* const texts[] = {L"a", L"bb", L"ccc", L"dddd"};
    for (unsigned slot = 0; slot < 4; ++slot) SetLocaleHint(descriptor, slot, texts[slot]);
    for (unsigned slot = 0; slot < 4; ++slot) EXPECT_STREQ(GetLocaleHint(descriptor, slot), texts[slot]);
    EXPECT_STREQ(descriptor.LocaleHintTable[HINT_COMMAND_LINE], L"a");
    EXPECT_STREQ(descriptor.LocaleHintTable[HINT_SETTINGS_FILE], L"bb");
    EXPECT_STREQ(descriptor.LocaleHintTable[HINT_BROWSER], L"ccc");
    EXPECT_STREQ(descriptor.LocaleHintTable[HINT_ASKED], L"dddd");
}

TEST(LocaleHint, OfASlotThatDoesNotExistIsEmpty)
{
    LibraryDescriptor descriptor = {};
    for (unsigned slot = 0; slot < 4; ++slot) SetLocaleHint(descriptor, slot, L"x");
    EXPECT_STREQ(GetLocaleHint(descriptor, 4), L"");
    EXPECT_STREQ(GetLocaleHint(descriptor, 0xFFFFFFFF), L"");
}

TEST(LocaleHint, IsNotStoredInASlotThatDoesNotExist)
{
    LibraryDescriptor descriptor = {};
    const LibraryDescriptor untouched = {};
    SetLocaleHint(descriptor, 4, L"x");
    SetLocaleHint(descriptor, 0xFFFFFFFF, L"x");
    EXPECT_EQ(std::memcmp(&descriptor, &untouched, sizeof(descriptor)), 0);
}

TEST(LocaleHint, NullEmptiesTheSlot)
{
    LibraryDescriptor descriptor = {};
    SetLocaleHint(descriptor, 1, L"x");
    SetLocaleHint(descriptor, 1, nullptr);
    EXPECT_STREQ(GetLocaleHint(descriptor, 1), L"");
}

TEST(LocaleHint, HoldsAtMost255Characters)
{
    LibraryDescriptor descriptor = {};
    for (const size_t length : {size_t{254}, size_t{255}, size_t{256}, size_t{1000}})
    {
        const size_t kept = length < 255 ? length : 255;
        SetLocaleHint(descriptor, 0, std::wstring(length, L'x').c_str());
        EXPECT_EQ(GetLocaleHint(descriptor, 0), std::wstring(kept, L'x'));
        EXPECT_STREQ(GetLocaleHint(descriptor, 1), L"");
    }
}

TEST(LocaleHint, ShorterTextReplacesALongerOneWhole)
{
    LibraryDescriptor descriptor = {};
    SetLocaleHint(descriptor, 0, L"abcdef");
    SetLocaleHint(descriptor, 0, L"x");
    EXPECT_STREQ(GetLocaleHint(descriptor, 0), L"x");
}

TEST(InstallerContext, Holds40Bytes)
{
    LibraryDescriptor descriptor = {};
    unsigned char block[41];
    std::iota(std::begin(block), std::end(block), static_cast<unsigned char>(1));
    SetInstallerContext(descriptor, block);
    EXPECT_EQ(std::memcmp(GetInstallerContext(descriptor), block, 40), 0);
    EXPECT_EQ(descriptor.showMessagePopup, FALSE);  // the field behind
}

TEST(InstallerContext, NullZeroesIt)
{
    LibraryDescriptor descriptor = {};
    const std::vector<unsigned char> block(40, 0xAB);
    const std::vector<unsigned char> zero(40, 0);
    SetInstallerContext(descriptor, block.data());
    SetInstallerContext(descriptor, nullptr);
    EXPECT_EQ(std::memcmp(GetInstallerContext(descriptor), zero.data(), 40), 0);
}

struct Lookup
{
    BOOL found;
    DWORD position;
};

class KeyboardLanguages : public testing::Test
{
protected:
    Lookup Find(std::vector<WORD> languages, LANGID language)
    {
        LibraryDescriptor descriptor = {};
        descriptor.keyboardLanguages = languages.data();
        descriptor.keyboardLanguageCount = static_cast<DWORD>(languages.size());
        Lookup result = {FALSE, 99};
        result.found = HasKeyboardLanguage(descriptor, language, &result.position);
        EXPECT_EQ(HasKeyboardLanguage(descriptor, language, nullptr), result.found);
        return result;
    }
};

TEST_F(KeyboardLanguages, EveryMemberIsFoundAtItsIndex)
{
    for (size_t count = 1; count <= 9; ++count)
    {
        std::vector<WORD> languages;
        for (size_t i = 0; i < count; ++i) languages.push_back(static_cast<WORD>(2 * i + 2));
        for (size_t i = 0; i < count; ++i)
        {
            const Lookup result = Find(languages, languages[i]);
            EXPECT_EQ(result.found, TRUE);
            EXPECT_EQ(result.position, i);
        }
    }
}

TEST_F(KeyboardLanguages, OthersGiveTheIndexWhereTheyWouldStand)
{
    for (size_t count = 0; count <= 9; ++count)
    {
        std::vector<WORD> languages;
        for (size_t i = 0; i < count; ++i) languages.push_back(static_cast<WORD>(2 * i + 2));
        for (size_t i = 0; i <= count; ++i)
        {
            const Lookup result = Find(languages, static_cast<LANGID>(2 * i + 1));
            EXPECT_EQ(result.found, FALSE);
            EXPECT_EQ(result.position, i);
        }
    }
}

TEST_F(KeyboardLanguages, SublanguageDoesNotCount)
{
    EXPECT_EQ(Find({0x07, 0x09}, 0x0C07).found, TRUE);
    EXPECT_EQ(Find({0x07, 0x09}, 0xFC09).position, 1u);
    EXPECT_EQ(Find({0x07, 0x09}, 0xFC08).found, FALSE);
}

TEST_F(KeyboardLanguages, CompareAsUnsigned)
{
    EXPECT_EQ(Find({0x009, 0x3FF}, 0xFFFF).position, 1u);
    EXPECT_EQ(Find({0x009, 0x3FF}, 0xFFFF).found, TRUE);
}

TEST(ThreadValue, IsAllBitsSetWithoutASlot)
{
    LibraryDescriptor descriptor = {};
    descriptor.tlsIndex = TLS_OUT_OF_INDEXES;
    EXPECT_EQ(GetThreadValue(descriptor), NoThreadSlot());
    EXPECT_EQ(reinterpret_cast<ULONG_PTR>(NoThreadSlot()), ~static_cast<ULONG_PTR>(0));
}

TEST(ThreadValue, IsNotStoredWithoutASlot)
{
    LibraryDescriptor descriptor = {};
    descriptor.tlsIndex = TLS_OUT_OF_INDEXES;
    EXPECT_EQ(SetThreadValue(descriptor, &descriptor), FALSE);
}

TEST(ThreadValue, IsWhatWasStored)
{
    LibraryDescriptor descriptor = {};
    descriptor.tlsIndex = ::TlsAlloc();
    ASSERT_NE(descriptor.tlsIndex, TLS_OUT_OF_INDEXES);
    EXPECT_EQ(GetThreadValue(descriptor), nullptr);
    EXPECT_EQ(SetThreadValue(descriptor, &descriptor), TRUE);
    EXPECT_EQ(GetThreadValue(descriptor), &descriptor);
    EXPECT_EQ(::TlsGetValue(descriptor.tlsIndex), &descriptor);
    ::TlsFree(descriptor.tlsIndex);
}

}  // namespace
