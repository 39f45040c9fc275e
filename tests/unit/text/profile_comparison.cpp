#include "profile_comparison.h"

#include "arvmui.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <type_traits>

namespace arvmui_test
{
namespace
{

constexpr size_t kGuardChars = 8;

DWORD Call(const wchar_t* section, const wchar_t* key, const wchar_t* defaultValue, wchar_t* buffer, DWORD size)
{
    return ARVMUI_GetPrivateProfileStringW(section, key, defaultValue, buffer, size, MemoryFile::kName);
}

DWORD Call(const char* section, const char* key, const char* defaultValue, char* buffer, DWORD size)
{
    return ARVMUI_GetPrivateProfileStringA(section, key, defaultValue, buffer, size, MemoryFile::kNarrowName);
}

template <typename Char>
ProfileAnswer<Char> AskLibrary(const ProfileQuery<Char>& query, bool& wroteBehind)
{
    const Char* section = query.section ? query.section->c_str() : nullptr;
    if (query.anySection) section = reinterpret_cast<const Char*>(~ULONG_PTR{0});
    constexpr Char kFilling = static_cast<Char>(0x5A);
    std::vector<Char> buffer(query.size + kGuardChars, kFilling);
    ProfileAnswer<Char> answer;
    answer.result = Call(section, query.key ? query.key->c_str() : nullptr,
        query.defaultValue ? query.defaultValue->c_str() : nullptr, buffer.data(), query.size);
    wroteBehind = std::any_of(buffer.begin() + query.size, buffer.end(), [](Char c) { return c != kFilling; });
    buffer.resize(query.size);
    answer.buffer = buffer;
    return answer;
}

template <typename Text>
std::string Visible(const Text& text)
{
    std::ostringstream out;
    out << std::hex << '"';
    for (const auto character : text)
    {
        const unsigned value = static_cast<std::make_unsigned_t<std::decay_t<decltype(character)>>>(character);
        if (value >= 32 && value < 127)
            out << static_cast<char>(value);
        else
            out << "<" << value << ">";
    }
    out << '"';
    return out.str();
}

template <typename Char>
std::string Visible(const ProfileQuery<Char>& query)
{
    std::ostringstream out;
    out << "section "
        << (query.anySection   ? "any"
               : query.section ? Visible(*query.section)
                               : "NULL")
        << ", key " << (query.key ? Visible(*query.key) : "NULL") << ", default "
        << (query.defaultValue ? Visible(*query.defaultValue) : "NULL") << ", size " << query.size;
    return out.str();
}

template <typename Char>
std::string Visible(const ProfileAnswer<Char>& answer)
{
    std::basic_string<Char> text(answer.buffer.begin(), answer.buffer.end());
    while (!text.empty() && text.back() == Char{}) text.pop_back();
    return std::to_string(answer.result) + " " + Visible(text);
}

template <typename Char>
ProfileAnswer<Char> ExpectSameAnswer(const MemoryFile& file, const ProfileQuery<Char>& query)
{
    const ProfileAnswer<Char> expected = AnswerPlainly(file.bytes, query);
    bool wroteBehind = false;
    ProfileAnswer<Char> got = AskLibrary(query, wroteBehind);
    EXPECT_TRUE(expected == got) << Visible(expected) << " expected and not\n"
                                 << Visible(got) << " of\n"
                                 << Visible(file.bytes) << "\n"
                                 << Visible(query);
    EXPECT_FALSE(wroteBehind) << Visible(file.bytes) << "\n" << Visible(query);
    return got;
}

}  // namespace

ProfileAnswer<wchar_t> ExpectPlainAnswer(const MemoryFile& file, const ProfileQuery<wchar_t>& query)
{
    return ExpectSameAnswer(file, query);
}

ProfileAnswer<char> ExpectPlainAnswer(const MemoryFile& file, const ProfileQuery<char>& query)
{
    return ExpectSameAnswer(file, query);
}

}  // namespace arvmui_test
