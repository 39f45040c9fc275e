// Guards that own one system resource each and release it on every path. Releasing never changes
// the last-error code, so a function may set the code that it reports and then return.
#pragma once

#include <windows.h>

namespace arvmui
{

// Restores the last-error code that was in force when it was made.
class LastErrorKeeper
{
public:
    LastErrorKeeper() noexcept : error_(::GetLastError()) {}
    ~LastErrorKeeper() { ::SetLastError(error_); }
    LastErrorKeeper(const LastErrorKeeper&) = delete;
    LastErrorKeeper& operator=(const LastErrorKeeper&) = delete;

private:
    DWORD error_;
};

// Keeps the system from showing boxes of its own about files that cannot be loaded or reached.
class QuietSystemErrors
{
public:
    QuietSystemErrors() noexcept
    {
        changed_ =
            ::SetThreadErrorMode(::GetThreadErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &previous_);
    }
    ~QuietSystemErrors()
    {
        const LastErrorKeeper keep;
        // Ignored: without the old mode the thread merely stays quiet.
        if (changed_) ::SetThreadErrorMode(previous_, nullptr);
    }
    QuietSystemErrors(const QuietSystemErrors&) = delete;
    QuietSystemErrors& operator=(const QuietSystemErrors&) = delete;

private:
    DWORD previous_ = 0;
    BOOL changed_ = FALSE;
};

// Owner of one resource; Policy knows the resource's type, its invalid value and how to close it.
template <typename Policy>
class UniqueResource
{
public:
    using Value = typename Policy::Value;

    UniqueResource() noexcept = default;
    explicit UniqueResource(Value value) noexcept : value_(value) {}
    UniqueResource(UniqueResource&& other) noexcept : value_(other.Release()) {}
    UniqueResource& operator=(UniqueResource&& other) noexcept
    {
        if (this != &other) Reset(other.Release());
        return *this;
    }
    UniqueResource(const UniqueResource&) = delete;
    UniqueResource& operator=(const UniqueResource&) = delete;
    ~UniqueResource() { Reset(Policy::Invalid()); }

    Value Get() const noexcept { return value_; }
    explicit operator bool() const noexcept { return value_ != Policy::Invalid(); }

    Value Release() noexcept
    {
        const Value value = value_;
        value_ = Policy::Invalid();
        return value;
    }

    // Where a system call stores a new resource; the guard must be empty.
    Value* Slot() noexcept { return &value_; }

private:
    void Reset(Value value) noexcept
    {
        if (value_ != Policy::Invalid())
        {
            const LastErrorKeeper keep;  // closing must not hide the error being reported
            Policy::Close(value_);
        }
        value_ = value;
    }

    Value value_ = Policy::Invalid();
};

struct HandlePolicy
{
    using Value = HANDLE;
    static Value Invalid() noexcept { return nullptr; }
    static void Close(Value value) noexcept { ::CloseHandle(value); }
};

struct LibraryPolicy
{
    using Value = HMODULE;
    static Value Invalid() noexcept { return nullptr; }
    static void Close(Value value) noexcept { ::FreeLibrary(value); }
};

struct ViewPolicy
{
    using Value = void*;
    static Value Invalid() noexcept { return nullptr; }
    static void Close(Value value) noexcept { ::UnmapViewOfFile(value); }
};

struct FilePolicy
{
    using Value = HANDLE;
    static Value Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Value value) noexcept { ::CloseHandle(value); }
};

struct FindPolicy
{
    using Value = HANDLE;
    static Value Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Value value) noexcept { ::FindClose(value); }
};

struct RegKeyPolicy
{
    using Value = HKEY;
    static Value Invalid() noexcept { return nullptr; }
    static void Close(Value value) noexcept { ::RegCloseKey(value); }
};

struct LocalMemoryPolicy
{
    using Value = HLOCAL;
    static Value Invalid() noexcept { return nullptr; }
    static void Close(Value value) noexcept { ::LocalFree(value); }
};

using UniqueHandle = UniqueResource<HandlePolicy>;
using UniqueLibrary = UniqueResource<LibraryPolicy>;
using UniqueView = UniqueResource<ViewPolicy>;
using UniqueFile = UniqueResource<FilePolicy>;
using UniqueFind = UniqueResource<FindPolicy>;
using UniqueRegKey = UniqueResource<RegKeyPolicy>;
using UniqueLocalMemory = UniqueResource<LocalMemoryPolicy>;

}  // namespace arvmui
