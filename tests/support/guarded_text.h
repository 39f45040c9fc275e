// Text whose last character lies at the end of a page behind which nothing may be read: reading
// beyond the terminator ends the test program.
#pragma once

#include <windows.h>

#include <cstring>
#include <string_view>

namespace arvmui_test
{

template <typename Char>
class GuardedText
{
public:
    explicit GuardedText(std::basic_string_view<Char> text)
    {
        SYSTEM_INFO system = {};
        ::GetSystemInfo(&system);
        const size_t page = system.dwPageSize;
        const size_t bytes = (text.size() + 1) * sizeof(Char);
        const size_t used = (bytes + page - 1) / page * page;
        pages_ =
            static_cast<unsigned char*>(::VirtualAlloc(nullptr, used + page, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
        DWORD previous = 0;
        ::VirtualProtect(pages_ + used, page, PAGE_NOACCESS, &previous);
        text_ = reinterpret_cast<Char*>(pages_ + used - bytes);
        std::memcpy(text_, text.data(), text.size() * sizeof(Char));
        text_[text.size()] = Char{};
    }
    ~GuardedText() { ::VirtualFree(pages_, 0, MEM_RELEASE); }
    GuardedText(const GuardedText&) = delete;
    GuardedText& operator=(const GuardedText&) = delete;

    Char* Get() const { return text_; }

private:
    unsigned char* pages_ = nullptr;
    Char* text_ = nullptr;
};

}  // namespace arvmui_test
