// Whole files as bytes; a ToolError where one cannot be read or written.
#pragma once

#include <filesystem>
#include <string>

std::string ReadFileBytes(const std::filesystem::path& path);
void WriteFileBytes(const std::filesystem::path& path, const std::string& bytes);
