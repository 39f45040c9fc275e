#include "commands.h"
#include "console.h"
#include "file_bytes.h"
#include "placeholders.h"
#include "po_file.h"
#include "pseudo_text.h"
#include "resource_writer.h"
#include "text_catalog.h"
#include "text_conversion.h"
#include "tool_error.h"

#include <memory>

// Commands for translators: a pseudo-translation, and texts to and from their editors.

namespace
{

namespace fs = std::filesystem;

int WritePseudo(const std::string& in, const std::string& out)
{
    const Translation original = ReadTranslation(Wide(in));
    std::map<std::string, std::wstring> texts;
    for (const CatalogText& text : ListTexts(original)) texts[text.name] = PseudoTranslate(text.text, text.room);
    WriteTranslation(original, ReplaceTexts(original, texts), Wide(out));
    return kSuccess;
}

std::vector<std::string> Comments(const CatalogText& text)
{
    std::vector<std::string> comments;
    if (!text.note.empty()) comments.push_back(text.note);
    if (text.room != 0) comments.push_back("at most " + std::to_string(text.room) + " characters");
    std::wstring placeholders;
    for (const std::wstring& placeholder : PrintfPlaceholders(text.text)) placeholders += L' ' + placeholder;
    if (!placeholders.empty()) comments.push_back("keep the placeholders in this order:" + Utf8(placeholders));
    std::wstring inserts;
    for (const std::wstring& insert : InsertPlaceholders(text.text)) inserts += L' ' + insert;
    if (!inserts.empty()) comments.push_back("keep the inserts:" + Utf8(inserts));
    return comments;
}

int ExportTexts(const std::string& library, const std::string& po, const std::string& reference)
{
    const Translation translation = ReadTranslation(Wide(library));
    const Translation original = reference.empty() ? translation : ReadTranslation(Wide(reference));
    std::map<std::string, std::wstring> own;
    for (const CatalogText& text : ListTexts(translation)) own[text.name] = text.text;
    std::vector<PoEntry> entries;
    for (const CatalogText& text : ListTexts(original))
    {
        const bool isFormat = !PrintfPlaceholders(text.text).empty();
        entries.push_back({Comments(text), isFormat, text.name, Utf8(text.text), Utf8(own[text.name])});
        own.erase(text.name);
    }
    // What only the translation has is not lost.
    for (const auto& [name, text] : own)
        entries.push_back({{"the reference has no such text"}, false, name, "", Utf8(text)});
    WriteFileBytes(Wide(po), WritePo(Utf8(translation.Tag()), entries));
    return kSuccess;
}

int ImportTexts(const std::string& po, const std::string& in, const std::string& out)
{
    const Translation original = ReadTranslation(Wide(in));
    std::map<std::string, std::string> translations;
    try
    {
        translations = ReadPo(ReadFileBytes(Wide(po)));
    }
    catch (const ToolError& error)
    {
        throw ToolError(po + ": " + error.what());
    }
    std::map<std::string, std::wstring> texts;
    for (const CatalogText& text : ListTexts(original))
        if (const auto found = translations.find(text.name); found != translations.end())
        {
            texts[text.name] = Wide(found->second);
            translations.erase(found);
        }
    WriteTranslation(original, ReplaceTexts(original, texts), Wide(out));
    for (const auto& [name, text] : translations)
        PrintError("muitool: " + in + " has no " + name + "; its translation is left out");
    return translations.empty() ? kSuccess : kFindings;
}

void AddPseudoCommand(CommandContext& context)
{
    struct Options
    {
        std::string in;
        std::string out;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = context.app.add_subcommand(
        "pseudo", "Write a pseudo-translated resource library: longer, accented, bracketed texts");
    command->add_option("IN", options->in, "resource library")->required();
    command->add_option("OUT", options->out, "file to write")->required();
    command->callback([options, &context] { context.exitCode = WritePseudo(options->in, options->out); });
}

void AddExportCommand(CommandContext& context)
{
    struct Options
    {
        std::string library;
        std::string po;
        std::string reference;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        context.app.add_subcommand("export", "Write the texts of a resource library as a PO file for translators");
    command->add_option("LIBRARY", options->library, "resource library")->required();
    command->add_option("PO", options->po, "file to write")->required();
    command->add_option(
        "--reference", options->reference, "resource library with the original texts, such as the English one");
    command->callback(
        [options, &context] { context.exitCode = ExportTexts(options->library, options->po, options->reference); });
}

void AddImportCommand(CommandContext& context)
{
    struct Options
    {
        std::string po;
        std::string in;
        std::string out;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = context.app.add_subcommand(
        "import", "Write a resource library with the texts of a PO file; exit code 1 when some found no place");
    command->add_option("PO", options->po, "file that export wrote and a translator changed")->required();
    command->add_option("IN", options->in, "resource library from which everything else is taken")->required();
    command->add_option("OUT", options->out, "file to write")->required();
    command->callback([options, &context] { context.exitCode = ImportTexts(options->po, options->in, options->out); });
}

}  // namespace

void AddTranslateCommands(CommandContext& context)
{
    AddPseudoCommand(context);
    AddExportCommand(context);
    AddImportCommand(context);
}
