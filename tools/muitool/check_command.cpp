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
    return name.size() > kEnd.size()
           && ::CompareStringOrdinal(name.c_str() + name.size() - kEnd.size(), static_cast<int>(kEnd.size()),
                  kEnd.data(), static_cast<int>(kEnd.size()), TRUE)
                  == CSTR_EQUAL;
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
    FolderCheck(const fs::path& folder, const std::wstring& reference)
        : folder_(folder), reference_(reference), locales_(LocaleFolders(folder))
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
        for (const std::wstring& locale : locales_) CheckLocale(locale);
        return findings_;
    }

private:
    void ReadLocale(const std::wstring& locale)
    {
        for (const fs::path& path : ResourceLibraries(folder_ / locale))
        {
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
            else if (reference != locales.end() && !fs::exists(folder_ / locale / name))
                findings_.Add(folder_ / locale / name, 0, "missing-file", "the file is not translated");
        }
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
        bool json = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = context.app.add_subcommand(
        "check", "Check the translations of all modules in a resource folder; exit code 1 when something is wrong");
    command->add_option("FOLDER", options->folder, "folder \"resource\" with its locale folders")->required();
    command->add_option("--reference", options->reference, "locale folder with which the others are compared")
        ->capture_default_str();
    command->add_flag("--json", options->json, "print one JSON array");
    command->callback(
        [options, &context]
        {
            const Findings findings = FolderCheck(Wide(options->folder), Wide(options->reference)).Run();
            context.exitCode = ReportFindings(findings, options->json);
        });
}
