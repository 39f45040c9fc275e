// Replaces a function in a loaded module, the DLL under test for instance, for as long as the patch
// lives. Unlike a replaced import of the test program (import_replacement.h) it works on modules that
// are linked already, and a program may replace a function in one test and leave it alone in another.
#pragma once

#include <windows.h>

#include <array>

namespace arvmui_test
{

// Another pointer in the import table of `importer`: calls from that module alone are redirected.
class ImportPatch
{
public:
    // Throws when the module does not import the function.
    template <typename Result, typename... Arguments>
    ImportPatch(HMODULE importer, const char* function, Result(WINAPI* replacement)(Arguments...))
        : ImportPatch(importer, function, reinterpret_cast<void*>(replacement))
    {
    }
    ImportPatch(HMODULE importer, const char* function, void* replacement);
    ~ImportPatch();
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;

    // What the module would have called.
    template <typename Function>
    Function Original() const
    {
        return reinterpret_cast<Function>(original_);
    }

private:
    void** slot_;
    void* original_;
};

// A jump over the first bytes of a function's own code: every call is redirected, those from inside
// its module too.
class FunctionPatch
{
public:
    FunctionPatch(void* function, void* replacement);
    ~FunctionPatch();
    FunctionPatch(const FunctionPatch&) = delete;
    FunctionPatch& operator=(const FunctionPatch&) = delete;

private:
    static constexpr size_t kJumpBytes = 12;  // mov rax, imm64; jmp rax

    unsigned char* code_;
    std::array<unsigned char, kJumpBytes> original_;
};

// The DLL that the test program links; null in programs that link the objects instead.
HMODULE LibraryUnderTest();

}  // namespace arvmui_test
