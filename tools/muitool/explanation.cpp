#include "explanation.h"

#include "library_api.h"
#include "text_conversion.h"
#include "tool_error.h"

#include <algorithm>
#include <string_view>

namespace
{

constexpr std::wstring_view kPlaceholder = L"%s";
constexpr std::wstring_view kResourceFolder = L"\\resource\\";

struct Collected
{
    std::vector<std::wstring> locales;
    bool refused = false;
};

DWORD ARVMUI_CALLBACK Collect(const WCHAR* locale, void* context)
{
    Collected& collected = *static_cast<Collected*>(context);
    if (locale)
        collected.locales.emplace_back(locale);
    else
        collected.refused = true;
    return locale ? 0 : 1;
}

// What the library offers for a list, in its order. A refusal ends it.
Collected Candidates(const wchar_t* list)
{
    Collected collected;
    Library().ARVMUI_EnumLocalesW(list, Collect, &collected);
    return collected;
}

std::vector<std::wstring> SplitList(const std::wstring& list)
{
    std::vector<std::wstring> items;
    std::size_t begin = 0;
    while (begin <= list.size())
    {
        const std::size_t end = std::min(list.find(L',', begin), list.size());
        const std::wstring item = list.substr(begin, end - begin);
        const std::size_t first = item.find_first_not_of(L" \t\r\n\v\f");
        const std::size_t last = item.find_last_not_of(L" \t\r\n\v\f");
        if (first != std::wstring::npos) items.push_back(item.substr(first, last + 1 - first));
        begin = end + 1;
    }
    return items;
}

// What one item of a list gives: the candidates before those of an item that marks the end.
std::vector<std::wstring> CandidatesOf(const std::wstring& item)
{
    constexpr wchar_t kEndMark[] = L"~";
    std::vector<std::wstring> locales = Candidates((item + L',' + kEndMark).c_str()).locales;
    locales.erase(std::find(locales.begin(), locales.end(), kEndMark), locales.end());
    return locales;
}

// Which item of a list a candidate comes from: the first that gives it when it stands alone.
class Origins
{
public:
    explicit Origins(const std::wstring& list) : items_(SplitList(list))
    {
        for (const std::wstring& item : items_) locales_.push_back(CandidatesOf(item));
    }

    std::wstring Of(const std::wstring& locale) const
    {
        for (std::size_t i = 0; i < items_.size(); ++i)
            for (const std::wstring& own : locales_[i])
                if (IsSameName(own, locale)) return items_[i];
        return {};
    }

private:
    std::vector<std::wstring> items_;
    std::vector<std::vector<std::wstring>> locales_;
};

std::wstring PathFormat(HMODULE module, const std::optional<std::wstring>& fileName)
{
    wchar_t format[MAX_PATH];
    if (!Library().ARVMUI_GetResourceFileFormatW(module, fileName ? fileName->c_str() : nullptr, format, MAX_PATH))
        throw ToolError("the resource folder cannot be named: " + SystemErrorText(::GetLastError()));
    return format;
}

// Not as a printf format: a folder's name may hold a '%'.
std::wstring ReplacePlaceholder(const std::wstring& format, const std::wstring& locale)
{
    std::wstring path = format;
    const std::size_t folder = path.rfind(kResourceFolder);
    const std::size_t place = path.find(kPlaceholder, folder == std::wstring::npos ? 0 : folder);
    if (place != std::wstring::npos) path.replace(place, kPlaceholder.size(), locale);
    return path;
}

CandidateState StateOfMissing(const std::wstring& path)
{
    if (::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) return CandidateState::kNotLoadable;
    const std::wstring folder = path.substr(0, path.rfind(L'\\'));
    return ::GetFileAttributesW(folder.c_str()) == INVALID_FILE_ATTRIBUTES ? CandidateState::kNoFolder
                                                                           : CandidateState::kNoFile;
}

void Try(Candidate& candidate)
{
    DWORD previous = 0;
    ::SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &previous);
    const HMODULE library = ::LoadLibraryW(candidate.path.c_str());
    candidate.error = library ? ERROR_SUCCESS : ::GetLastError();
    ::SetThreadErrorMode(previous, nullptr);
    if (!library)
    {
        candidate.state = StateOfMissing(candidate.path);
        return;
    }
    candidate.state = CandidateState::kChosen;
    ::FreeLibrary(library);
}

}  // namespace

const Candidate* Explanation::Chosen() const
{
    const auto chosen = std::find_if(candidates.begin(), candidates.end(),
        [](const Candidate& candidate) { return candidate.state == CandidateState::kChosen; });
    return chosen == candidates.end() ? nullptr : &*chosen;
}

Explanation Explain(HMODULE module, const std::optional<std::wstring>& fileName,
    const std::optional<std::wstring>& list, const std::wstring& processList)
{
    Explanation explanation = {};
    explanation.pathFormat = PathFormat(module, fileName);
    const Collected offered = Candidates(list ? list->c_str() : nullptr);
    explanation.refused = offered.refused;
    const Origins origins(list ? *list : processList);
    bool isDone = false;
    for (const std::wstring& locale : offered.locales)
    {
        Candidate candidate = {locale, origins.Of(locale), ReplacePlaceholder(explanation.pathFormat, locale),
            CandidateState::kNotTried, ERROR_SUCCESS};
        if (!isDone) Try(candidate);
        isDone = isDone || candidate.state == CandidateState::kChosen;
        explanation.candidates.push_back(std::move(candidate));
    }
    return explanation;
}
