#include "settings_file.h"

#include "arvmui.h"
#include "support/byte_file.h"

namespace arvmui_test
{
namespace
{

constexpr DWORD kRoomyChars = 65536;

std::vector<std::wstring> Split(const Wide& answer)
{
    std::vector<std::wstring> names;
    const std::wstring list = answer.buffer.substr(0, answer.result);
    for (size_t begin = 0; begin < list.size();)
    {
        const size_t end = list.find(L'\0', begin);
        names.push_back(list.substr(begin, end - begin));
        if (end == std::wstring::npos) break;
        begin = end + 1;
    }
    return names;
}

}  // namespace

SettingsFile::SettingsFile(std::string_view bytes) : path_(WriteBytes(folder_.Path() / L"settings.ini", bytes)) {}

Wide SettingsFile::Ask(const wchar_t* section, const wchar_t* key, const wchar_t* defaultValue, DWORD size) const
{
    Wide answer{0, std::wstring(size, L'#')};
    answer.result =
        ARVMUI_GetPrivateProfileStringW(section, key, defaultValue, answer.buffer.data(), size, Path().c_str());
    return answer;
}

Narrow SettingsFile::Ask(const char* section, const char* key, const char* defaultValue, DWORD size) const
{
    Narrow answer{0, std::string(size, '#')};
    answer.result =
        ARVMUI_GetPrivateProfileStringA(section, key, defaultValue, answer.buffer.data(), size, PathA().c_str());
    return answer;
}

std::wstring SettingsFile::Value(const wchar_t* section, const wchar_t* key) const
{
    const Wide answer = Ask(section, key, L"<none>", kRoomyChars);
    return answer.buffer.substr(0, answer.result);
}

std::string SettingsFile::Value(const char* section, const char* key) const
{
    const Narrow answer = Ask(section, key, "<none>", kRoomyChars);
    return answer.buffer.substr(0, answer.result);
}

std::vector<std::wstring> SettingsFile::Sections() const
{
    return Split(Ask(static_cast<const wchar_t*>(nullptr), nullptr, nullptr, kRoomyChars));
}

std::vector<std::wstring> SettingsFile::Keys(const wchar_t* section) const
{
    return Split(Ask(section, nullptr, nullptr, kRoomyChars));
}

}  // namespace arvmui_test
