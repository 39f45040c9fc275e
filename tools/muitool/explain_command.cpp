#include "commands.h"
#include "console.h"
#include "explanation.h"
#include "library_api.h"
#include "locale_sources.h"
#include "text_conversion.h"
#include "tool_error.h"

#include <nlohmann/json.hpp>

#include <memory>

namespace
{

using Json = nlohmann::ordered_json;

const char* StateName(CandidateState state)
{
    switch (state)
    {
        case CandidateState::kChosen: return "chosen";
        case CandidateState::kNoFolder: return "noFolder";
        case CandidateState::kNoFile: return "noFile";
        case CandidateState::kNotLoadable: return "notLoadable";
        case CandidateState::kNotTried: return "notTried";
    }
    return "";
}

std::string Describe(const Candidate& candidate)
{
    switch (candidate.state)
    {
        case CandidateState::kChosen: return "loads: this one is chosen";
        case CandidateState::kNoFolder: return "no such folder";
        case CandidateState::kNoFile: return "the folder lacks the file";
        case CandidateState::kNotLoadable: return "does not load: " + SystemErrorText(candidate.error);
        case CandidateState::kNotTried: return "not tried any more";
    }
    return "";
}

// At least one blank follows.
std::string Padded(std::string text, std::size_t width)
{
    text.append(text.size() < width ? width - text.size() : 1, ' ');
    return text;
}

struct Report
{
    std::vector<LocaleSource> sources;
    std::wstring list;
    std::string decidedBy;
    Explanation explanation;
};

void PrintReport(const Report& report)
{
    constexpr std::size_t kNameWidth = 34;
    PrintLine("Module      " + Utf8(report.explanation.module));
    PrintLine("Files       " + Utf8(report.explanation.pathFormat));
    PrintLine("");
    PrintLine("Sources");
    for (const LocaleSource& source : report.sources)
        PrintLine("  " + Padded(source.description, kNameWidth) + (source.value ? Utf8(*source.value) : "-"));
    PrintLine("");
    PrintLine("List        " + Utf8(report.list) + "   (" + report.decidedBy + ")");
    PrintLine("");
    PrintLine("Candidates");
    for (const Candidate& candidate : report.explanation.candidates)
    {
        const std::string from = candidate.item.empty() ? "fallback" : "from \"" + Utf8(candidate.item) + '"';
        PrintLine("  " + Padded(Utf8(candidate.locale), 10) + Padded(from, 22) + Describe(candidate));
        if (candidate.state != CandidateState::kNotTried) PrintLine("            " + Utf8(candidate.path));
    }
    if (report.explanation.refused) PrintLine("  The user refused to choose a language, which ends the search.");
    const Candidate* const chosen = report.explanation.Chosen();
    PrintLine("");
    PrintLine(chosen ? "Chosen      " + Utf8(chosen->locale) : "Chosen      none: the module has no translated texts");
}

void PrintJson(const Report& report)
{
    Json json;
    json["module"] = Utf8(report.explanation.module);
    json["pathFormat"] = Utf8(report.explanation.pathFormat);
    for (const LocaleSource& source : report.sources)
        json["sources"][source.id] = source.value ? Json(Utf8(*source.value)) : Json(nullptr);
    json["list"] = Utf8(report.list);
    json["decidedBy"] = report.decidedBy;
    json["candidates"] = Json::array();
    for (const Candidate& candidate : report.explanation.candidates)
    {
        Json entry;
        entry["locale"] = Utf8(candidate.locale);
        entry["item"] = candidate.item.empty() ? Json(nullptr) : Json(Utf8(candidate.item));
        entry["path"] = Utf8(candidate.path);
        entry["state"] = StateName(candidate.state);
        entry["error"] = candidate.error;
        json["candidates"].push_back(std::move(entry));
    }
    json["refused"] = report.explanation.refused;
    const Candidate* const chosen = report.explanation.Chosen();
    json["chosen"] = chosen ? Json(Utf8(chosen->locale)) : Json(nullptr);
    PrintLine(json.dump(2));
}

// A module is mapped, never run.
HMODULE MapModule(const std::string& path)
{
    if (path.empty()) return nullptr;
    const HMODULE module = ::LoadLibraryExW(Wide(path).c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
    if (!module) throw ToolError("cannot open " + path + ": " + SystemErrorText(::GetLastError()));
    return module;
}

std::wstring ModulePath(HMODULE module)
{
    wchar_t path[MAX_PATH] = L"";
    ::GetModuleFileNameW(module, path, MAX_PATH);
    return path;
}

std::optional<std::wstring> GivenText(const std::string& text)
{
    return text.empty() ? std::nullopt : std::optional<std::wstring>(Wide(text));
}

}  // namespace

void AddExplainCommand(CommandContext& context)
{
    struct Options
    {
        std::string module;
        std::string file;
        std::string list;
        bool json = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = context.app.add_subcommand("explain",
        "Tell why a module speaks the language that it speaks: the sources, the candidates and the file chosen");
    command->add_option("LIST", options->list, "locale list to explain; the process's own where it is not given");
    command->add_option(
        "--module", options->module, "program or DLL whose translations are meant; muitool itself by default");
    command->add_option(
        "--file", options->file, "name of the resource library, where it is not derived from the module's");
    command->add_flag("--json", options->json, "print one JSON object");
    command->callback(
        [options, &context]
        {
            const HMODULE module = MapModule(options->module);
            const std::wstring processList = Library().ARVMUI_GetDescriptor()->LocaleHintTable[HINT_COMMAND_LINE];
            const std::optional<std::wstring> list = GivenText(options->list);
            Report report;
            report.explanation = Explain(module, GivenText(options->file), list, processList);
            report.explanation.module = ModulePath(module);
            // Behind the search: the user may have been asked in it.
            report.sources = ReadLocaleSources(FindLocaleOption(context.rawArguments));
            report.list = list ? *list : processList;
            const LocaleSource* const deciding = FindDecidingSource(report.sources);
            report.decidedBy = list ? "given" : deciding ? deciding->description : "built in: kiv,user,system";
            if (options->json)
                PrintJson(report);
            else
                PrintReport(report);
            context.exitCode = report.explanation.Chosen() ? kSuccess : kFindings;
        });
}
