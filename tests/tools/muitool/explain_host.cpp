// Explains as many random lists as the test wants, and loads what the library loads for each. Prints one
// JSON object: what it says about the process, and the two paths for each list.
//   MUITOOL_TEST_MODULE  the module whose translations are meant
//   MUITOOL_TEST_SEED    of the random lists
//   MUITOOL_TEST_COUNT   of the random lists
#include "console.h"
#include "explanation.h"
#include "locale_choices.h"
#include "locale_sources.h"
#include "text_conversion.h"

#include <nlohmann/json.hpp>

#include <cstdlib>

namespace
{

using Json = nlohmann::json;

unsigned NumberVariable(const char* name)
{
    const char* const text = std::getenv(name);
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : 0;
}

Json DescribeSources(const std::vector<LocaleSource>& sources)
{
    Json json = Json::object();
    for (const LocaleSource& source : sources) json[source.id] = source.value ? Json(Utf8(*source.value)) : Json();
    return json;
}

// Every third list is the process's own.
Json ExplainAndLoad(HMODULE module, LocaleChoices& choices, const std::wstring& processList)
{
    const std::wstring text = choices.List(false);
    const bool isOwn = choices.Number(3) == 0;
    const Explanation explanation =
        Explain(module, std::nullopt, isOwn ? std::nullopt : std::optional(text), processList);
    const Candidate* const chosen = explanation.Chosen();
    Json json;
    json["list"] = isOwn ? Json() : Json(Utf8(text));
    json["explained"] = chosen ? Utf8(std::filesystem::path(chosen->path).lexically_normal().wstring()) : std::string();
    json["loaded"] = Utf8(LoadedByLibrary(module, isOwn ? nullptr : text.c_str()));
    return json;
}

}  // namespace

int wmain(int argc, wchar_t** argv)
{
    wchar_t path[MAX_PATH] = L"";
    ::GetEnvironmentVariableW(L"MUITOOL_TEST_MODULE", path, MAX_PATH);
    const HMODULE module = ::LoadLibraryW(path);
    if (!module) return 1;

    Library().ARVMUI_SetMessagePopup(FALSE, nullptr);  // nobody is there to read what it would tell
    LocaleChoices choices(NumberVariable("MUITOOL_TEST_SEED"));
    const std::wstring processList = Library().ARVMUI_GetDescriptor()->LocaleHintTable[HINT_COMMAND_LINE];
    const std::vector<LocaleSource> sources =
        ReadLocaleSources(FindLocaleOption(std::vector<std::wstring>(argv + 1, argv + argc)));
    const LocaleSource* const deciding = FindDecidingSource(sources);

    Json json;
    json["sources"] = DescribeSources(sources);
    json["decidedBy"] = deciding ? Json(deciding->id) : Json();
    json["list"] = Utf8(processList);
    json["explanations"] = Json::array();
    for (unsigned count = NumberVariable("MUITOOL_TEST_COUNT"); count > 0; --count)
        json["explanations"].push_back(ExplainAndLoad(module, choices, processList));
    PrintLine(json.dump());
    return 0;
}
