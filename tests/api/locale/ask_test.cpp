// The keyword "ask": the user is asked once in a process, and the answer is searched like a list.
#include "api/locale/ask_fixture.h"
#include "support/box_recorder.h"
#include "support/busy_blocks.h"
#include "support/candidate_recorder.h"

namespace
{

using arvmui_test::AnsweredAskTest;
using arvmui_test::AskingSearch;
using arvmui_test::AskTest;
using arvmui_test::BoxRecorder;
using arvmui_test::ImportPatch;
using arvmui_test::LibraryUnderTest;
using arvmui_test::MakeEntry;
using arvmui_test::Search;
using arvmui_test::SearchFor;

using Names = std::vector<std::wstring>;

constexpr wchar_t kAskedInVain[] = L"\t";

// ---- An answer -----------------------------------------------------------------------------------------------

TEST_F(AskTest, AnswerIsOfferedInPlaceOfTheKeywordAndKept)
{
    AskingSearch search(L"pl,ask,ja");
    ASSERT_NE(search.Dialog(), nullptr);
    search.Choose(2);
    EXPECT_EQ(search.Outcome().offered, L"pl|fr-CA|fr|ja|en|..|..\\en|");
    EXPECT_EQ(Hint(HINT_ASKED), L"fr-CA");
}

TEST_F(AnsweredAskTest, QuestionComesOnlyWhenTheListGetsToTheKeyword)
{
    Answer(1);
    EXPECT_EQ(SearchFor(L"pl,ask", L"pl").offered, L"pl|");
    EXPECT_EQ(Hint(HINT_ASKED), L"");
    EXPECT_EQ(Dialogs(), 0);
}

TEST_F(AskTest, AcceptedAnswerEndsTheSearch)
{
    AskingSearch search(L"pl,ask,ja", L"nl");
    search.Choose(1);
    EXPECT_EQ(search.Outcome().offered, L"pl|nl-NL|nl|");
    EXPECT_EQ(search.Outcome().result, 7u);
}

TEST_F(AnsweredAskTest, QuestionIsAskedOnceInAProcess)
{
    Answer(3);
    for (int round = 0; round < 3; ++round)
        EXPECT_EQ(SearchFor(L"ask,pl,ASK").offered, L"fr-CA|fr|pl|en|..|..\\en|") << round;
    EXPECT_EQ(Dialogs(), 1);
}

TEST_F(AnsweredAskTest, AnswerThatHasBeenTriedIsNotOfferedAgain)
{
    Answer(3);
    EXPECT_EQ(SearchFor(L"fr-ca,ask").offered, L"fr-ca|fr|en|..|..\\en|");
}

TEST_F(AnsweredAskTest, AnswerIsAListOfItsOwn)
{
    Offer({MakeEntry(0x0409, L"pl,1041,user")});
    Answer(1);
    EXPECT_EQ(SearchFor(L"ask,nl").offered, L"pl|ja-JP|ja|de-DE|de|nl|en|..|..\\en|");
    EXPECT_EQ(Hint(HINT_ASKED), L"pl,1041,user");
}

TEST_F(AnsweredAskTest, AnswerThatAsksIsNotAskedAgain)
{
    Offer({MakeEntry(0x0409, L"ask,pl,Ask")});
    Answer(1);
    EXPECT_EQ(SearchFor(L"ask,nl").offered, L"pl|nl|en|..|..\\en|");
    EXPECT_EQ(Dialogs(), 1);
}

TEST_F(AnsweredAskTest, AnswerMayNameTheOtherHints)
{
    SetHint(HINT_SETTINGS_FILE, L"pl,ask");
    SetHint(HINT_BROWSER, L"ja");
    Offer({MakeEntry(0x0409, L"kiv,msie")});
    Answer(1);
    EXPECT_EQ(SearchFor(L"ask,nl").offered, L"pl|ja|nl|en|..|..\\en|");
}

TEST_F(AnsweredAskTest, LongestAnswerIsKeptWhole)
{
    const std::wstring tag(63, L'x');
    LocaleEntry entry = MakeEntry(0x0409, L"");
    tag.copy(entry.Locale, tag.size());
    Offer({entry});
    Answer(1);
    EXPECT_EQ(SearchFor(L"ask").offered, tag + L"|en|..|..\\en|");
    EXPECT_EQ(Hint(HINT_ASKED), tag);
}

TEST_F(AnsweredAskTest, HintsMayAsk)
{
    SetHint(HINT_SETTINGS_FILE, L"pl,msie,ja");
    SetHint(HINT_BROWSER, L"ask,ko");
    Answer(2);
    EXPECT_EQ(SearchFor(L"kiv,nl").offered, L"pl|nl-NL|nl|ko|ja|en|..|..\\en|");
}

TEST_F(AnsweredAskTest, ProcessesOwnListMayAsk)
{
    SetHint(HINT_COMMAND_LINE, L"ask,ja");
    Answer(2);
    EXPECT_EQ(SearchFor(nullptr).offered, L"nl-NL|nl|ja|en|..|..\\en|");
    EXPECT_EQ(Hint(HINT_COMMAND_LINE), L"ask,ja");
}

// ---- A refusal ------------------------------------------------------------------------------------------------

TEST_F(AskTest, RefusalIsOfferedAsNullAndTheListGoesOn)
{
    AskingSearch search(L"pl,ask,ja");
    ASSERT_NE(search.Dialog(), nullptr);
    search.Refuse();
    EXPECT_EQ(search.Outcome().offered, L"pl|(null)|ja|en|..|..\\en|");
    EXPECT_EQ(Hint(HINT_ASKED), kAskedInVain);
}

TEST_F(AnsweredAskTest, AcceptedRefusalEndsTheSearch)
{
    Answer(0);
    const Search search = SearchFor(L"pl,ask,ja", L"(null)");
    EXPECT_EQ(search.offered, L"pl|(null)|");
    EXPECT_EQ(search.result, 7u);
}

TEST_F(AnsweredAskTest, RefusalIsOfferedOnceInAProcess)
{
    Answer(0);
    EXPECT_EQ(SearchFor(L"ask,pl,ask").offered, L"(null)|pl|en|..|..\\en|");
    EXPECT_EQ(SearchFor(L"ask,pl,ask").offered, L"pl|en|..|..\\en|");
    EXPECT_EQ(Dialogs(), 1);
}

TEST_F(AnsweredAskTest, LanguageWithoutTagIsARefusal)
{
    Offer({MakeEntry(0x0409, L"")});
    Answer(1);
    EXPECT_EQ(SearchFor(L"pl,ask,ja").offered, L"pl|(null)|ja|en|..|..\\en|");
    EXPECT_EQ(Hint(HINT_ASKED), kAskedInVain);
}

TEST_F(AnsweredAskTest, RefusalInAHintIsOfferedToo)
{
    SetHint(HINT_SETTINGS_FILE, L"nl,ask,pl");
    Answer(0);
    EXPECT_EQ(SearchFor(L"kiv,ja").offered, L"nl|(null)|pl|ja|en|..|..\\en|");
}

TEST_F(AnsweredAskTest, NarrowFormPassesOverARefusal)
{
    Answer(0);
    arvmui_test::NarrowCandidateRecorder recorder;
    EXPECT_EQ(ARVMUI_EnumLocalesA("pl,ask,ja", recorder.Record, &recorder), 0u);
    EXPECT_EQ(recorder.offered, "pl|ja|en|..|..\\en|");
    EXPECT_EQ(recorder.nulls, 0u);
    EXPECT_EQ(Dialogs(), 1);
    EXPECT_EQ(Hint(HINT_ASKED), kAskedInVain);
}

TEST_F(AnsweredAskTest, NarrowFormOffersAnAnswer)
{
    Answer(3);
    arvmui_test::NarrowCandidateRecorder recorder;
    EXPECT_EQ(ARVMUI_EnumLocalesA("pl,ask,ja", recorder.Record, &recorder), 0u);
    EXPECT_EQ(recorder.offered, "pl|fr-CA|fr|ja|en|..|..\\en|");
}

// ---- A dialog that cannot be shown ----------------------------------------------------------------------------

class FailedAskTest : public AnsweredAskTest
{
protected:
    FailedAskTest() { Answer(-1); }

    // The library reports the failure in a box.
    BoxRecorder boxes_{LibraryUnderTest()};
};

TEST_F(FailedAskTest, EndsItsListAndIsNotTriedAgain)
{
    EXPECT_EQ(SearchFor(L"pl,ask,ja").offered, L"pl|en|..|..\\en|");
    EXPECT_EQ(Hint(HINT_ASKED), kAskedInVain);
    EXPECT_EQ(boxes_.Texts().size(), size_t{1});
    EXPECT_EQ(SearchFor(L"pl,ask,ja").offered, L"pl|ja|en|..|..\\en|");
    EXPECT_EQ(Dialogs(), 1);
}

TEST_F(FailedAskTest, EndsTheListOfItsHintOnly)
{
    SetHint(HINT_SETTINGS_FILE, L"nl,ask,pl");
    EXPECT_EQ(SearchFor(L"kiv,ja").offered, L"nl|ja|en|..|..\\en|");
}

// The text of the box is itself looked for in the languages of the process.
TEST_F(FailedAskTest, ReportAsksForNothing)
{
    SetHint(HINT_COMMAND_LINE, L"ask,de");
    EXPECT_EQ(SearchFor(nullptr).offered, L"en|..|..\\en|");
    EXPECT_EQ(boxes_.Texts().size(), size_t{1});
    EXPECT_EQ(Dialogs(), 1);
}

HANDLE WINAPI FindNothing(const wchar_t*, WIN32_FIND_DATAW*)
{
    ::SetLastError(ERROR_PATH_NOT_FOUND);
    return INVALID_HANDLE_VALUE;
}

TEST_F(FailedAskTest, MissingLanguagesEndTheListWithoutReport)
{
    Offer({});
    const ImportPatch find(LibraryUnderTest(), "FindFirstFileW", &FindNothing);
    EXPECT_EQ(SearchFor(L"pl,ask,ja").offered, L"pl|en|..|..\\en|");
    EXPECT_EQ(Hint(HINT_ASKED), kAskedInVain);
    EXPECT_EQ(Dialogs(), 0);
    EXPECT_EQ(boxes_.Texts(), Names());
}

// ---- Threads and memory ---------------------------------------------------------------------------------------

// The second thread finds the question asked and not answered yet.
TEST_F(AskTest, QuestionOfOneThreadDoesNotKeepAnotherWaiting)
{
    AskingSearch first(L"ask,ja");
    ASSERT_NE(first.Dialog(), nullptr);
    EXPECT_EQ(SearchFor(L"pl,ask,ja").offered, L"pl|ja|en|..|..\\en|");
    first.Choose(1);
    EXPECT_EQ(first.Outcome().offered, L"nl-NL|nl|ja|en|..|..\\en|");
    EXPECT_EQ(SearchFor(L"pl,ask,ja").offered, L"pl|nl-NL|nl|ja|en|..|..\\en|");
}

TEST_F(AnsweredAskTest, LeavesNoMemoryBehind)
{
    const auto consumer = [](const wchar_t*, void*) -> DWORD { return 0; };
    Offer({});
    for (const INT_PTR answer : {1, 0})
    {
        Answer(answer);
        ARVMUI_EnumLocalesW(L"ask", consumer, nullptr);
        SetHint(HINT_ASKED, L"");
        const size_t before = arvmui_test::CountBusyBlocks();
        ARVMUI_EnumLocalesW(L"ask", consumer, nullptr);
        EXPECT_EQ(arvmui_test::CountBusyBlocks(), before) << answer;
        SetHint(HINT_ASKED, L"");
    }
}

}  // namespace
