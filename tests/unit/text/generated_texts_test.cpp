// Made-up texts, read in every way, against the plain decoder.

#include "decoded_text.h"
#include "memory_file.h"
#include "plain_decoder.h"

#include "text/text_reader.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace arvmui_test
{
namespace
{

using arvmui::TextReader;

// Deterministic, the same with every library.
class Numbers
{
public:
    explicit Numbers(std::uint64_t seed) : state_(seed) {}
    unsigned Below(unsigned limit)
    {
        state_ = state_ * 6364136223846793005u + 1442695040888963407u;
        return static_cast<unsigned>((state_ >> 33) % limit);
    }

private:
    std::uint64_t state_;
};

UINT AnyCodePage(Numbers& numbers)
{
    return kCodePages[numbers.Below(std::size(kCodePages))].codePage;
}

TEST(Decoding, CodePageChangesBetweenTwoReads)
{
    Numbers numbers(20240611);
    for (int round = 0; round < 200; ++round)
    {
        std::string bytes;
        const unsigned length = 500 + numbers.Below(2500);
        while (bytes.size() < length)
        {
            if (numbers.Below(4) == 0) bytes.append(numbers.Below(40), 'a');
            bytes += Byte(numbers.Below(3) == 0 ? numbers.Below(256) : 0x80 + numbers.Below(128));
        }
        MemoryFile file(bytes);
        PlainDecoder plain(bytes);
        TextReader reader;
        UINT codePage = AnyCodePage(numbers);
        ASSERT_TRUE(reader.Open(MemoryFile::kName, codePage));
        bool ended = false;
        while (!ended)
        {
            std::wstring expected;
            std::wstring got;
            if (numbers.Below(2) == 0)
            {
                const std::uint32_t unit = reader.NextCharacter();
                ASSERT_EQ(plain.Next(codePage), unit) << "round " << round << ", byte " << plain.Position();
                ended = unit == TextReader::kEnd;
            }
            else
            {
                wchar_t units[300];
                const size_t count = reader.NextCharacters(units, 1 + numbers.Below(300));
                for (size_t i = 0; i < count; ++i)
                {
                    ASSERT_EQ(plain.Next(codePage), units[i]) << "round " << round << ", byte " << plain.Position();
                }
                ended = count == 0;
                if (ended)
                {
                    ASSERT_EQ(PlainDecoder::kEnd, plain.Next(codePage));
                }
            }
            codePage = AnyCodePage(numbers);
            reader.SetCodePage(codePage);
        }
    }
}

// Files of the bytes that a code page's own texts have, so that runs get long.
TEST(Decoding, GeneratedTextsOfEveryCodePage)
{
    Numbers numbers(7);
    for (int round = 0; round < 1500; ++round)
    {
        const UINT codePage = AnyCodePage(numbers);
        const unsigned asciiShare = numbers.Below(8);
        const unsigned low = numbers.Below(2) == 0 ? 0x80 : 0xA1;
        std::string bytes;
        const unsigned length = numbers.Below(6000);
        while (bytes.size() < length)
        {
            if (numbers.Below(8) < asciiShare)
                bytes += Byte(numbers.Below(128));
            else
                bytes += {Byte(low + numbers.Below(0x100 - low)), Byte(low + numbers.Below(0x100 - low))};
        }
        const std::wstring expected = DecodePlainly(bytes, codePage);
        MemoryFile file(bytes);
        ASSERT_TRUE(Equal(expected, ReadOneByOne(file, codePage))) << "code page " << codePage << ", round " << round;
        ASSERT_TRUE(Equal(expected, ReadInRuns(file, codePage, 1 + numbers.Below(3000))))
            << "code page " << codePage << ", round " << round;
    }
}

}  // namespace
}  // namespace arvmui_test
