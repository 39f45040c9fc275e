#include "file_bytes.h"

#include "text_conversion.h"
#include "tool_error.h"

#include <fstream>
#include <iterator>

std::string ReadFileBytes(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) throw ToolError("cannot open " + Utf8(path.wstring()));
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteFileBytes(const std::filesystem::path& path, const std::string& bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw ToolError("cannot write " + Utf8(path.wstring()));
}
