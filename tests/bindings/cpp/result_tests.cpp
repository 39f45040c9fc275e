// Results of the C++ layer: a value or an error code.
#include "arvmui.hpp"

#include <gtest/gtest.h>

#include <memory>

namespace
{

using arvmui::Result;

TEST(Results, HoldAValueWithoutError)
{
    const Result<std::wstring> result(L"text");

    ASSERT_TRUE(result);
    EXPECT_EQ(*result, L"text");
    EXPECT_EQ(result->size(), 4u);
    EXPECT_EQ(result.Error(), DWORD{ERROR_SUCCESS});
}

TEST(Results, HoldAnErrorWithoutValue)
{
    const auto result = Result<std::wstring>::Failure(ERROR_CANCELLED);

    EXPECT_FALSE(result);
    EXPECT_EQ(result.Error(), DWORD{ERROR_CANCELLED});
    EXPECT_EQ(result.value_or(L"other"), L"other");
}

TEST(Results, TakeTheErrorOfTheFailedCall)
{
    ::SetLastError(ERROR_MOD_NOT_FOUND);

    EXPECT_EQ(Result<int>::LastFailure().Error(), DWORD{ERROR_MOD_NOT_FOUND});
}

TEST(Results, TellAValueThatIsANumberFromAnError)
{
    EXPECT_TRUE(Result<DWORD>(0));
    EXPECT_FALSE(Result<DWORD>::Failure(0));
}

TEST(Results, HandOverAValueThatCannotBeCopied)
{
    Result<std::unique_ptr<int>> result(std::make_unique<int>(7));

    const std::unique_ptr<int> value = *std::move(result);

    ASSERT_TRUE(value);
    EXPECT_EQ(*value, 7);
}

}  // namespace
