#include "ui/error_dialog.h"

#include "foundation/diagnostic_log.h"
#include "foundation/growable_text.h"
#include "foundation/handles.h"
#include "foundation/heap.h"
#include "resources/process_state.h"
#include "resources/resource_ids.h"
#include "ui/placeholder_format.h"

namespace arvmui
{
namespace
{

constexpr DWORD kMaxArguments = 4;

// A string of the resource library; FALSE with a log line when it is missing, without one when
// memory is lacking.
bool LoadText(UINT id, HeapBlock<wchar_t>& text) noexcept
{
    const int length = AppendResourceString(Descriptor().resourceLibrary, id, text.Slot(), -1);
    if (length == 0) LogLineW(L"ARVMUI_ErrorDialogBoxW: LoadStringW(%u) failed: %lu", id, ::GetLastError());
    return length > 0;
}

bool FillCallerArguments(
    HeapBlock<wchar_t>& result, const wchar_t* format, const wchar_t* const* arguments, DWORD argumentCount) noexcept
{
    PlaceholderArgument filled[kMaxArguments];
    const DWORD count = argumentCount < kMaxArguments ? argumentCount : kMaxArguments;
    for (DWORD i = 0; i < count; ++i) filled[i] = PlaceholderArgument(arguments[i]);
    return FillPlaceholders(result, PlaceholderPass::kBeforeAnother, format, filled, count);
}

bool FillError(HeapBlock<wchar_t>& result, const wchar_t* format, DWORD error) noexcept
{
    wchar_t* systemText = nullptr;
    const DWORD length = ARVMUI_FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr,
        error, 0, reinterpret_cast<wchar_t*>(&systemText), 0, nullptr);
    const UniqueLocalMemory owned(length != 0 ? systemText : nullptr);
    if (!owned) LogLineW(L"ARVMUI_ErrorDialogBoxW: ARVMUI_FormatMessageW(%lu) failed: %lu", error, ::GetLastError());

    const PlaceholderArgument arguments[] = {
        PlaceholderArgument(error), PlaceholderArgument(owned ? systemText : L"-")};
    return FillPlaceholders(result, PlaceholderPass::kLast, format, arguments, 2);
}

}  // namespace

int ARVMUI_ErrorDialogBoxW(HWND owner, UINT type, DWORD error, const wchar_t* format, const wchar_t* const* arguments,
    DWORD argumentCount) noexcept
{
    const LastErrorKeeper keep;  // callers report and then return the error that they report
    const LibraryDescriptor& descriptor = Descriptor();
    if (!descriptor.showMessagePopup) return 0;
    if (!descriptor.resourceLibrary)
    {
        LogLineW(L"ARVMUI_ErrorDialogBoxW: arvmuiUI.dll is not loaded.");
        return 0;
    }

    HeapBlock<wchar_t> loaded;
    if (IsIntegerIdentifier(format))
    {
        if (!LoadText(static_cast<UINT>(reinterpret_cast<ULONG_PTR>(format)), loaded)) return 0;
        format = loaded.Get();
    }

    HeapBlock<wchar_t> withArguments;
    HeapBlock<wchar_t> text;
    if (!FillCallerArguments(withArguments, format, arguments, argumentCount)) return 0;
    if (!FillError(text, withArguments.Get(), error)) return 0;

    HeapBlock<wchar_t> caption;
    const bool hasCaption = LoadText(ARVMUI_STRING_ERROR_CAPTION, caption);
    return ARVMUI_MessageBoxW(owner, text.Get(), hasCaption ? caption.Get() : nullptr, type != 0 ? type : MB_ICONHAND);
}

}  // namespace arvmui
