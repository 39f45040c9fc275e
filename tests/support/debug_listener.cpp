#include "support/debug_listener.h"

#include <chrono>
#include <cstring>

namespace arvmui_test
{
namespace
{

// The section with which the system hands the text over.
struct DebugBuffer
{
    DWORD processId;
    char text[4096 - sizeof(DWORD)];
};

}  // namespace

DebugListener::DebugListener(DWORD processId) : processId_(processId)
{
    bufferReady_ = ::CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_BUFFER_READY");
    if (::GetLastError() == ERROR_ALREADY_EXISTS) return;
    dataReady_ = ::CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_DATA_READY");
    section_ =
        ::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(DebugBuffer), L"DBWIN_BUFFER");
    stop_ = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (!bufferReady_ || !dataReady_ || !section_ || !stop_) return;
    view_ = ::MapViewOfFile(section_, FILE_MAP_READ, 0, 0, 0);
    if (!view_) return;
    thread_ = std::thread([this] { Listen(); });
}

DebugListener::~DebugListener()
{
    if (thread_.joinable())
    {
        ::SetEvent(stop_);
        thread_.join();
    }
    if (view_) ::UnmapViewOfFile(view_);
    for (const HANDLE handle : {bufferReady_, dataReady_, section_, stop_})
    {
        if (handle) ::CloseHandle(handle);
    }
}

void DebugListener::Listen()
{
    const HANDLE events[] = {stop_, dataReady_};
    for (;;)
    {
        ::SetEvent(bufferReady_);
        if (::WaitForMultipleObjects(2, events, FALSE, INFINITE) != WAIT_OBJECT_0 + 1) return;
        const auto* const buffer = static_cast<const DebugBuffer*>(view_);
        if (buffer->processId != processId_) continue;
        const std::lock_guard<std::mutex> lock(mutex_);
        texts_.emplace_back(buffer->text, ::strnlen(buffer->text, sizeof(buffer->text)));
        arrived_.notify_all();
    }
}

std::vector<std::string> DebugListener::WaitForTexts(size_t count)
{
    std::unique_lock<std::mutex> lock(mutex_);
    arrived_.wait_for(lock, std::chrono::seconds(5), [&] { return texts_.size() >= count; });
    return texts_;
}

}  // namespace arvmui_test
