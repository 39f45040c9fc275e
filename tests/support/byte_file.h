// Files of given bytes.
#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>

namespace arvmui_test
{

// Creates the folders above the file. Throws when it cannot be written.
inline std::filesystem::path WriteBytes(const std::filesystem::path& path, std::string_view bytes)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw std::runtime_error("cannot write a test file");
    return path;
}

}  // namespace arvmui_test
