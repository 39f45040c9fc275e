#include "api/locale/ask_fixture.h"

#include "support/box_window.h"
#include "support/dialog_controls.h"

#include <cstring>

namespace arvmui_test
{
namespace
{

constexpr int kList = 202;
constexpr wchar_t kNull[] = L"(null)";

struct Consumer
{
    Search& search;
    const std::wstring& accepted;

    static DWORD ARVMUI_CALLBACK Take(const wchar_t* candidate, void* context)
    {
        const Consumer& consumer = *static_cast<const Consumer*>(context);
        const std::wstring text = candidate ? candidate : kNull;
        consumer.search.offered += text + L"|";
        return text == consumer.accepted ? 7 : 0;
    }
};

// In place of a dialog.
int g_dialogs = 0;
INT_PTR g_answer = 0;

INT_PTR WINAPI AnswerAtOnce(HINSTANCE, const wchar_t*, HWND, DLGPROC, LPARAM)
{
    ++g_dialogs;
    return g_answer;
}

}  // namespace

Search SearchFor(const wchar_t* list, const std::wstring& accepted)
{
    Search search;
    Consumer consumer = {search, accepted};
    search.result = ARVMUI_EnumLocalesW(list, Consumer::Take, &consumer);
    return search;
}

AskingSearch::AskingSearch(const std::wstring& list, const std::wstring& accepted)
    : call_(
        [=, this]
        {
            search_ = SearchFor(list.c_str(), accepted);
            return 0;
        }),
      dialog_(call_.WaitForBox())
{
}

HWND AskingSearch::List() const
{
    return ::GetDlgItem(dialog_, kList);
}

void AskingSearch::Choose(int index) const
{
    SelectComboItem(dialog_, kList, index);
    EXPECT_TRUE(PressButton(dialog_, IDOK));
}

void AskingSearch::Refuse() const
{
    EXPECT_TRUE(PressButton(dialog_, IDCANCEL));
}

const Search& AskingSearch::Outcome()
{
    call_.Result();
    return search_;
}

AskTest::AskTest() : languages(LibraryUnderTest())
{
    languages.user = 0x0407;
    languages.system = 0x040C;
    for (unsigned slot = 0; slot < ARVMUI_HINT_COUNT; ++slot) SetHint(slot, L"");
    Offer({MakeEntry(0x0409, L"en-US"), MakeEntry(0x0413, L"nl-NL"), MakeEntry(0x0C0C, L"fr-CA")});
}

AskTest::~AskTest()
{
    Offer({});
}

void AskTest::SetHint(unsigned slot, const std::wstring& text)
{
    SetText(ARVMUI_GetDescriptor()->LocaleHintTable[slot], text);
}

void AskTest::Offer(const std::vector<LocaleEntry>& entries, HICON smallIcon, HICON largeIcon)
{
    entries_ = entries;
    const InstallerBlock block = {nullptr, smallIcon, largeIcon, static_cast<DWORD>(entries_.size()), entries_.data()};
    std::memcpy(ARVMUI_GetDescriptor()->installerContext, &block, sizeof(block));
}

AnsweredAskTest::AnsweredAskTest() : show_(LibraryUnderTest(), "DialogBoxParamW", &AnswerAtOnce)
{
    g_dialogs = 0;
}

void AnsweredAskTest::Answer(INT_PTR answer)
{
    g_answer = answer;
}

int AnsweredAskTest::Dialogs()
{
    return g_dialogs;
}

}  // namespace arvmui_test
