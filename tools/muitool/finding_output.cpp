#include "finding_output.h"

#include "console.h"
#include "text_conversion.h"
#include "tool_error.h"

#include <nlohmann/json.hpp>

namespace
{

std::string Line(const Finding& finding)
{
    return Utf8(finding.file.wstring()) + '(' + std::to_string(finding.resource) + "): " + finding.kind + ": "
           + finding.text;
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
