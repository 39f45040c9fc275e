#include "commands.h"
#include "finding_output.h"
#include "text_conversion.h"
#include "tool_error.h"
#include "translation_checks.h"

#include <algorithm>
#include <memory>

namespace
{

namespace fs = std::filesystem;

bool IsResourceLibrary(const fs::path& path)
{
    constexpr std::wstring_view kEnd = L"UI.DLL";
    const std::wstring name = path.filename().wstring();
    return name.size() > kEnd.size() && EndsWithName(name, kEnd);
}

std::vector<std::wstring> LocaleFolders(const fs::path& folder)
{
    std::error_code error;
    std::vector<std::wstring> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
        if (entry.is_directory()) names.push_back(entry.path().filename().wstring());
    if (error) throw ToolError("cannot read the folder " + Utf8(folder.wstring()) + ": " + error.message());
    if (names.empty())
        throw ToolError(Utf8(folder.wstring()) + " holds no locale folders; name the folder \"resource\"");
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<fs::path> ResourceLibraries(const fs::path& folder)
{
    std::vector<fs::path> paths;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        if (entry.is_regular_file() && IsResourceLibrary(entry.path())) paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    return paths;
}

// A file that cannot be read is a finding, not the end of the check.
bool ReadOrReport(const fs::path& path, Translation& translation, Findings& findings)
{
    try
    {
        translation = ReadTranslation(path);
        return true;
    }
    catch (const ToolError& error)
    {
        findings.Add(path, 0, "unreadable", error.what());
        return false;
    }
}

class FolderCheck
{
public:
    FolderCheck(const fs::path& folder, const std::wstring& reference, const std::wstring& file)
        : folder_(folder), reference_(reference), onlyFile_(file), locales_(LocaleFolders(folder))
    {
    }

    Findings Run()
    {
        const bool hasReference = std::find(locales_.begin(), locales_.end(), reference_) != locales_.end();
        if (!hasReference)
            findings_.Add(folder_ / reference_, 0, "missing-reference",
                "there is no folder \"" + Utf8(reference_) + "\" to compare with");
        if (std::find(locales_.begin(), locales_.end(), L"en") == locales_.end() && reference_ != L"en")
            findings_.Add(
                folder_ / L"en", 0, "missing-fallback", "there is no folder \"en\", the last resort of every search");
        for (const std::wstring& locale : locales_) ReadLocale(locale);
        if (!foundAny_ && !onlyFile_.empty())
            throw ToolError("no locale folder in " + Utf8(folder_.wstring()) + " holds " + Utf8(onlyFile_));
        for (const std::wstring& locale : locales_) CheckLocale(locale);
        return findings_;
    }

private:
    void ReadLocale(const std::wstring& locale)
    {
        for (const fs::path& path : ResourceLibraries(folder_ / locale))
        {
            if (!IsWanted(path)) continue;
            foundAny_ = true;
            CheckImage(path, findings_);
            Translation translation;
            if (!ReadOrReport(path, translation, findings_)) continue;
            files_[path.filename().wstring()][locale] = std::move(translation);
        }
    }

    void CheckLocale(const std::wstring& locale)
    {
        for (const auto& [name, locales] : files_)
        {
            const auto own = locales.find(locale);
            const auto reference = locales.find(reference_);
            if (own != locales.end())
                CheckFile(own->second, reference == locales.end() ? nullptr : &reference->second, Languages(locales));
            else if (reference != locales.end() && onlyFile_.empty() && IsLocaleOfProduct(locale)
                     && !fs::exists(folder_ / locale / name))
                findings_.Add(folder_ / locale / name, 0, "missing-file", "the file is not translated");
        }
    }

    bool IsWanted(const fs::path& path) const
    {
        return onlyFile_.empty() || IsSameName(path.filename().wstring(), onlyFile_);
    }

    // The library's own texts come in more languages than most products speak: a folder that holds
    // nothing else is none of the product's.
    bool IsLocaleOfProduct(const std::wstring& locale) const
    {
        const std::vector<fs::path> files = ResourceLibraries(folder_ / locale);
        return files.empty() || files.size() > 1 || !IsSameName(files.front().filename().wstring(), L"arvmuiUI.DLL");
    }

    static std::map<std::wstring, LANGID> Languages(const std::map<std::wstring, Translation>& locales)
    {
        std::map<std::wstring, LANGID> languages;
        for (const auto& [locale, translation] : locales) languages[locale] = translation.Language();
        return languages;
    }

    void CheckFile(
        const Translation& translation, const Translation* reference, const std::map<std::wstring, LANGID>& languages)
    {
        CheckTexts(translation, findings_);
        CheckDialogs(translation, findings_);
        CheckFallback(translation, languages, findings_);
        if (translation.folder == reference_) return;
        if (reference)
            CompareTranslations(*reference, translation, findings_);
        else if (fs::exists(folder_ / reference_))
            findings_.Add(translation.path, 0, "extra-file", "the reference has no such file");
    }

    fs::path folder_;
    std::wstring reference_;
    std::wstring onlyFile_;  // empty for all
    bool foundAny_ = false;
    std::vector<std::wstring> locales_;
    std::map<std::wstring, std::map<std::wstring, Translation>> files_;  // by file name, then locale
    Findings findings_;
};

}  // namespace

void AddCheckCommand(CommandContext& context)
{
    struct Options
    {
        std::string folder;
        std::string reference = "en";
        std::string file;
        bool json = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = context.app.add_subcommand(
        "check", "Check the translations of the modules in a resource folder; exit code 1 when something is wrong");
    command->add_option("FOLDER", options->folder, "folder \"resource\" with its locale folders")->required();
    command->add_option("--reference", options->reference, "locale folder with which the others are compared")
        ->capture_default_str();
    command->add_option(
        "--file", options->file, "check this resource library only, such as editorUI.DLL, in the folders that hold it");
    command->add_flag("--json", options->json, "print one JSON array");
    command->callback(
        [options, &context]
        {
            const Findings findings =
                FolderCheck(Wide(options->folder), Wide(options->reference), Wide(options->file)).Run();
            context.exitCode = ReportFindings(findings, options->json);
        });
}
