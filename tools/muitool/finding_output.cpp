#include "finding_output.h"

#include "console.h"
#include "text_conversion.h"
#include "tool_error.h"

#include <nlohmann/json.hpp>

namespace
{

std::string Line(const Finding& finding)
{
    std::string line = Utf8(finding.file.wstring()) + '(' + std::to_string(finding.resource) + "): " + finding.kind
                       + ": " + finding.text;
    // A text that is quoted may have lines of its own.
    for (std::size_t at = line.find_first_of("\r\n"); at != std::string::npos; at = line.find_first_of("\r\n", at))
        line.replace(at, 1, line[at] == '\n' ? "\\n" : "\\r");
    return line;
}

void PrintJson(const Findings& findings)
{
    nlohmann::ordered_json json = nlohmann::ordered_json::array();
    for (const Finding& finding : findings.Items())
        json.push_back({{"file", Utf8(finding.file.wstring())}, {"resource", finding.resource}, {"kind", finding.kind},
            {"text", finding.text}});
    PrintLine(json.dump(2));
}

}  // namespace

int ReportFindings(const Findings& findings, bool asJson)
{
    if (asJson)
        PrintJson(findings);
    else
        for (const Finding& finding : findings.Items()) PrintLine(Line(finding));
    return findings.Items().empty() ? kSuccess : kFindings;
}
