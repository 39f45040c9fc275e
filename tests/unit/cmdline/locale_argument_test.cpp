#include "resources/process_state.h"
#include "support/guarded_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace
{

using arvmui_test::GuardedText;

template <typename Char>
struct Width;

template <>
struct Width<wchar_t>
{
    static BOOL Parse(int* argc, wchar_t** argv) { return ARVMUI_ParseArgvW(argc, argv); }
};

template <>
struct Width<char>
{
    static BOOL Parse(int* argc, char** argv) { return ARVMUI_ParseArgvA(argc, argv); }
};

// An argument vector whose texts each end at a page that may not be read.
template <typename Char>
class Vector
{
public:
    explicit Vector(const std::vector<std::string>& arguments)
    {
        for (const std::string& argument : arguments)
        {
            const std::basic_string<Char> text(argument.begin(), argument.end());
            texts_.push_back(std::make_unique<GuardedText<Char>>(text));
            argv.push_back(texts_.back()->Get());
        }
        argv.push_back(nullptr);
        argc = static_cast<int>(arguments.size());
    }

    BOOL Parse() { return Width<Char>::Parse(&argc, argv.data()); }

    std::vector<std::string> Arguments() const
    {
        std::vector<std::string> arguments;
        for (int i = 0; i < argc; ++i)
        {
            const std::basic_string<Char> text = argv[static_cast<size_t>(i)];
            arguments.emplace_back();
            for (const Char c : text) arguments.back().push_back(static_cast<char>(c));
        }
        return arguments;
    }

    int argc = 0;
    std::vector<Char*> argv;

private:
    std::vector<std::unique_ptr<GuardedText<Char>>> texts_;
};

template <typename Char>
class LocaleArgument : public testing::Test
{
protected:
    using Arguments = std::vector<std::string>;

    static void ExpectRemaining(const Arguments& before, const Arguments& after)
    {
        Vector<Char> vector(before);
        EXPECT_EQ(vector.Parse(), before.size() != after.size() ? TRUE : FALSE);
        EXPECT_EQ(vector.Arguments(), after);
        EXPECT_EQ(vector.argv[static_cast<size_t>(vector.argc)], nullptr);
    }
};

using Widths = testing::Types<wchar_t, char>;
TYPED_TEST_SUITE(LocaleArgument, Widths);

TYPED_TEST(LocaleArgument, QuotedAndPlainOptionsAreRemoved)
{
    this->ExpectRemaining({"a", "\"/uilocale:x y\"", "/UILOCALE:z", "b"}, {"a", "b"});
}

TYPED_TEST(LocaleArgument, FirstAndLastAreRemoved)
{
    this->ExpectRemaining({"/uilocale:de", "a", "/uilocale:fr"}, {"a"});
}

TYPED_TEST(LocaleArgument, AllMayGo)
{
    this->ExpectRemaining({"/uilocale:de", "/uilocale:", "\"/uilocale:"}, {});
}

TYPED_TEST(LocaleArgument, OthersStay)
{
    const std::vector<std::string> arguments = {"", "\"", "/", "\"/", "/uilocale", "\"/uilocale", "-uilocale:de",
        "x/uilocale:de", "\"\"/uilocale:de", " /uilocale:de", "uilocale:de"};
    this->ExpectRemaining(arguments, arguments);
}

TYPED_TEST(LocaleArgument, EmptyVectorStays)
{
    this->ExpectRemaining({}, {});
}

TYPED_TEST(LocaleArgument, ArgumentsShorterThanTheOptionAreNotReadBeyondTheirEnd)
{
    const std::string option = "/uilocale:";
    for (size_t length = 0; length < option.size(); ++length)
    {
        this->ExpectRemaining({option.substr(0, length)}, {option.substr(0, length)});
        this->ExpectRemaining({"\"" + option.substr(0, length)}, {"\"" + option.substr(0, length)});
    }
    this->ExpectRemaining({option}, {});
    this->ExpectRemaining({"\"" + option}, {});
}

TYPED_TEST(LocaleArgument, ScanEndsAtANullPointer)
{
    Vector<TypeParam> vector({"a", "b", "/uilocale:de"});
    vector.argv[1] = nullptr;
    EXPECT_EQ(vector.Parse(), FALSE);
    EXPECT_EQ(vector.argc, 3);
    EXPECT_NE(vector.argv[2], nullptr);
}

TYPED_TEST(LocaleArgument, CountBoundsTheScan)
{
    Vector<TypeParam> vector({"a", "/uilocale:de"});
    vector.argc = 1;
    EXPECT_EQ(vector.Parse(), FALSE);
    EXPECT_EQ(vector.argc, 1);
}

TYPED_TEST(LocaleArgument, HintsOfTheProcessStayAsTheyAre)
{
    arvmui::SetLocaleHint(arvmui::Descriptor(), HINT_COMMAND_LINE, nullptr);
    Vector<TypeParam> vector({"/uilocale:de"});
    EXPECT_EQ(vector.Parse(), TRUE);
    EXPECT_STREQ(arvmui::GetLocaleHint(arvmui::Descriptor(), HINT_COMMAND_LINE), L"");
}

TYPED_TEST(LocaleArgument, PointersMoveAndTextsStay)
{
    Vector<TypeParam> vector({"/uilocale:de", "a"});
    TypeParam* const second = vector.argv[1];
    EXPECT_EQ(vector.Parse(), TRUE);
    EXPECT_EQ(vector.argv[0], second);
}

}  // namespace
