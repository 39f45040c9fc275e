#include "locale/locale_search.h"

#include "foundation/growable_text.h"
#include "foundation/heap.h"
#include "foundation/system_functions.h"
#include "foundation/text_calls.h"
#include "locale/language_tag.h"
#include "locale/locale_list.h"
#include "locale/registry_store.h"
#include "resources/process_state.h"
#include "ui/language_dialog.h"

namespace arvmui
{
namespace
{

// Each keeps a hint list from expanding itself again.
constexpr DWORD kInsideSettingsFile = 0x10000;
constexpr DWORD kInsideBrowser = 0x20000;
constexpr DWORD kInsideAnswer = 0x40000;

constexpr size_t kListChars = 256;   // process list and tried list, terminators included
constexpr size_t kAnswerChars = 64;  // answer of the user, terminator included
constexpr wchar_t kDefaultList[] = L"kiv,user,system";

enum class Keyword
{
    kUser,
    kSystem,
    kUILanguage,
    kSettingsFile,
    kBrowser,
    kAsk,
    kNone
};

constexpr struct
{
    const wchar_t* name;
    Keyword keyword;
} kKeywords[] = {
    {kKeywordUser, Keyword::kUser},
    {kKeywordSystem, Keyword::kSystem},
    {kKeywordUILanguage, Keyword::kUILanguage},
    {kKeywordSettingsFile, Keyword::kSettingsFile},
    {kKeywordBrowser, Keyword::kBrowser},
    {kKeywordAsk, Keyword::kAsk},
};

Keyword KeywordFromItem(const wchar_t* item) noexcept
{
    for (const auto& entry : kKeywords)
    {
        if (CompareTextNoCase(item, entry.name) == 0) return entry.keyword;
    }
    return Keyword::kNone;
}

// A UI language of the system, 0 where the system has none.
LANGID QueryUILanguage(const char* functionName) noexcept
{
    using Function = LANGID(WINAPI*)();
    const Function function = FindSystemFunction<Function>("KERNEL32.DLL", functionName);
    return function ? function() : LANGID{0};
}

// Shows the language dialog: with the package's languages during an installation, else with the
// installed ones. FALSE when it could not be shown.
BOOL AskUser(LibraryDescriptor& descriptor, wchar_t (&answer)[kAnswerChars]) noexcept
{
    InstallerContext context;
    std::memcpy(&context, GetInstallerContext(descriptor), sizeof(context));
    const HICON icons[] = {context.smallIcon, context.largeIcon};
    return ShowLanguageSelectionDialog(nullptr, icons, context.locales, context.localeCount, answer, kAnswerChars);
}

// The tags that a search has offered, as terminated texts in one buffer. A candidate is written
// behind them and stays there only once it has been offered.
class TriedLocaleList
{
public:
    wchar_t* Candidate() noexcept { return write_; }
    const wchar_t* Limit() const noexcept { return tags_ + kListChars; }
    size_t Room() const noexcept { return static_cast<size_t>(Limit() - write_); }

    // Whether `tag` has been tried by the time that `end`, a candidate, was written.
    bool HoldsBefore(const wchar_t* end, const wchar_t* tag) const noexcept
    {
        return IsTagAlreadyTried(tags_, end, tag) != FALSE;
    }

    void KeepCandidate() noexcept { write_ += WideLength(write_) + 1; }

private:
    wchar_t tags_[kListChars];
    wchar_t* write_ = tags_;  // tags_ <= write_ <= Limit()
};

// One search: the consumer and what it has been offered.
class LocaleSearch
{
public:
    LocaleSearch(ARVMUI_LocaleCallbackW consumer, void* context) noexcept : consumer_(consumer), context_(context) {}

    DWORD Offer(const wchar_t* candidate) const noexcept { return consumer_(candidate, context_); }

    DWORD EvaluateLocaleList(const wchar_t* list, DWORD flags) noexcept;

private:
    // What an item gave: the consumer's result, and whether its list is to be abandoned.
    struct Outcome
    {
        DWORD result = 0;
        bool abandonList = false;
    };

    Outcome EvaluateItem(DWORD flags) noexcept;
    DWORD EvaluateSettingsFile(DWORD flags) noexcept;
    Outcome EvaluateAnswer(DWORD flags) noexcept;
    DWORD OfferLanguageId(LANGID id, DWORD flags) noexcept;
    DWORD OfferCandidate(DWORD flags) noexcept;
    DWORD OfferDerived(const wchar_t* candidate) noexcept;

    ARVMUI_LocaleCallbackW consumer_;
    void* context_;
    TriedLocaleList tried_;
};

DWORD LocaleSearch::EvaluateLocaleList(const wchar_t* list, DWORD flags) noexcept
{
    for (const wchar_t* item = SkipListSeparators(list); *item;)
    {
        const wchar_t* const end = FindListItemEnd(item);
        if (!CopyListItem(tried_.Candidate(), tried_.Limit(), item, end)) return 0;
        if (!IsDots(tried_.Candidate()))
        {
            const Outcome outcome = EvaluateItem(flags);
            if (outcome.result != 0 || outcome.abandonList) return outcome.result;
        }
        item = SkipListSeparators(end);
    }
    return 0;
}

// The item that stands in the candidate's place.
LocaleSearch::Outcome LocaleSearch::EvaluateItem(DWORD flags) noexcept
{
    const wchar_t* const item = SanitizeLocaleItem(tried_.Candidate());
    switch (KeywordFromItem(item))
    {
        case Keyword::kUser: return {OfferLanguageId(::GetUserDefaultLangID(), flags)};
        case Keyword::kSystem: return {OfferLanguageId(::GetSystemDefaultLangID(), flags)};
        case Keyword::kUILanguage:
        {
            const DWORD result = OfferLanguageId(QueryUILanguage("GetUserDefaultUILanguage"), flags);
            if (result != 0) return {result};
            return {OfferLanguageId(QueryUILanguage("GetSystemDefaultUILanguage"), flags)};
        }
        case Keyword::kSettingsFile: return {EvaluateSettingsFile(flags)};
        case Keyword::kBrowser:
            if (flags & kInsideBrowser) return {};
            return {EvaluateLocaleList(GetLocaleHint(Descriptor(), HINT_BROWSER), flags | kInsideBrowser)};
        case Keyword::kAsk: return EvaluateAnswer(flags);
        case Keyword::kNone: break;
    }
    if (IsNumericItem(item)) return {OfferLanguageId(ParseNumericItem(item), flags)};
    return {OfferCandidate(flags)};
}

DWORD LocaleSearch::EvaluateSettingsFile(DWORD flags) noexcept
{
    if (flags & kInsideSettingsFile) return 0;
    const wchar_t* const list = GetLocaleHint(Descriptor(), HINT_SETTINGS_FILE);
    // The keyword itself, as it stands in the list: the file may be named later.
    if ((flags & kExpandOnly) && *list == L'\0') return OfferCandidate(flags | kInsideSettingsFile);
    return EvaluateLocaleList(list, flags | kInsideSettingsFile);
}

LocaleSearch::Outcome LocaleSearch::EvaluateAnswer(DWORD flags) noexcept
{
    if (flags & kInsideAnswer) return {};
    LibraryDescriptor& descriptor = Descriptor();
    wchar_t answer[kAnswerChars];
    if (CopyCut(answer, kAnswerChars, GetLocaleHint(descriptor, HINT_ASKED)) == 0)
    {
        // Before the dialog, so that the user is asked once in a process, whatever comes of it.
        SetLocaleHint(descriptor, HINT_ASKED, kNothingFound);
        if (!AskUser(descriptor, answer)) return {0, true};
        if (answer[0] == L'\0') return {Offer(nullptr)};
        SetLocaleHint(descriptor, HINT_ASKED, answer);
    }
    return {EvaluateLocaleList(answer, flags | kInsideAnswer)};
}

DWORD LocaleSearch::OfferLanguageId(LANGID id, DWORD flags) noexcept
{
    return FormatLanguageTagW(id, tried_.Candidate(), tried_.Room()) ? OfferCandidate(flags) : 0;
}

DWORD LocaleSearch::OfferCandidate(DWORD flags) noexcept
{
    const wchar_t* const candidate = tried_.Candidate();
    if (tried_.HoldsBefore(candidate, candidate)) return 0;

    const DWORD result = Offer(candidate);
    tried_.KeepCandidate();
    if (result != 0 || (flags & kExpandOnly)) return result;
    return OfferDerived(candidate);
}

// Derived forms stand in the next candidate's place and are not kept.
DWORD LocaleSearch::OfferDerived(const wchar_t* candidate) noexcept
{
    wchar_t* const derived = tried_.Candidate();
    if (DeriveFullTag(candidate, derived, tried_.Room()))
    {
        if (tried_.HoldsBefore(candidate, derived)) return 0;
        const DWORD result = Offer(derived);
        if (result != 0) return result;
    }
    if (DeriveLanguageTag(candidate, derived, tried_.Room()) && !tried_.HoldsBefore(candidate, derived))
        return Offer(derived);
    return 0;
}

// The list of the process where its command line and its parent gave none.
const wchar_t* ReadStoredList(wchar_t* buffer, DWORD capacity) noexcept
{
    const LastErrorKeeper keep;  // a missing setting is no error of the search
    if (ReadUILocale(HKEY_CURRENT_USER, buffer, capacity) != 0) return buffer;
    if (ReadUILocale(HKEY_LOCAL_MACHINE, buffer, capacity) != 0) return buffer;
    return kDefaultList;
}

DWORD ARVMUI_CALLBACK CollectCandidate(const wchar_t* candidate, void* context)
{
    if (!candidate) return 0;
    HeapBlock<wchar_t>& text = *static_cast<HeapBlock<wchar_t>*>(context);
    if (AppendFormat(text.Slot(), -1, L",%s", candidate) >= 0) return 0;
    ARVMUI_free(text.Release());
    return 1;
}

}  // namespace

DWORD SearchLocales(const wchar_t* list, ARVMUI_LocaleCallbackW consumer, void* context, DWORD flags) noexcept
{
    wchar_t buffer[kListChars];
    if (list && IsIntegerIdentifier(list))
    {
        const LANGID id = static_cast<LANGID>(reinterpret_cast<ULONG_PTR>(list));
        if (!FormatLanguageTagW(id, buffer, kListChars)) return 0;
        list = buffer;
    }
    else if (!list)
    {
        list = GetLocaleHint(Descriptor(), HINT_COMMAND_LINE);
        if (*list == L'\0') list = ReadStoredList(buffer, kListChars);
    }

    LocaleSearch search(consumer, context);
    DWORD result = search.EvaluateLocaleList(list, flags);
    if (flags & kExpandOnly) return result;

    if (result == 0) result = search.EvaluateLocaleList(L"en", flags);
    // Relative to the resource folder: the module's own folder, and "en" beside the resource folder.
    if (result == 0) result = search.Offer(L"..");
    if (result == 0) result = search.Offer(L"..\\en");
    return result;
}

DWORD ExpandLocaleList(const wchar_t* list, wchar_t* buffer, DWORD capacity) noexcept
{
    if (capacity == 0) return 0;
    buffer[0] = L'\0';
    HeapBlock<wchar_t> text;
    // Ignored: the collector stops only for lack of memory, and its text is gone then.
    SearchLocales(list, CollectCandidate, &text, kExpandOnly);
    if (!text) return 0;
    return static_cast<DWORD>(CopyCut(buffer, capacity, text.Get() + 1));  // without the leading comma
}

}  // namespace arvmui
