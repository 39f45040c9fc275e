// What a check of translations found, and where.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

struct Finding
{
    std::filesystem::path file;
    unsigned resource;  // number of the string, dialog or message; 0 where none is meant
    std::string kind;   // for scripts: "missing-string", "placeholders" ...
    std::string text;
};

class Findings
{
public:
    void Add(const std::filesystem::path& file, unsigned resource, std::string kind, std::string text)
    {
        items_.push_back({file, resource, std::move(kind), std::move(text)});
    }

    const std::vector<Finding>& Items() const { return items_; }

private:
    std::vector<Finding> items_;
};
