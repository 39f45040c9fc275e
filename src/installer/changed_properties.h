// The properties of a session that no longer have the package's English value: the user, the command
// line or an earlier action has changed them, so a translation must not overwrite them.
#pragma once

#include "installer/installer_library.h"
#include "installer/name_list.h"

namespace arvmui
{

class ChangedPropertySet
{
public:
    // Compares the session with the package's table Property_en. A Windows error code.
    UINT Read(MSIHANDLE session, MSIHANDLE database) noexcept;

    bool Contains(const wchar_t* name) const noexcept;

private:
    struct Reading;

    static UINT CompareRow(MSIHANDLE database, MSIHANDLE view, MSIHANDLE record, void* context);
    bool BuildIndex() noexcept;
    size_t FindPlace(const wchar_t* name, bool& found) const noexcept;

    NameList names_;
    HeapBlock<const wchar_t*> sorted_;  // into names_, which has stopped growing by then
    size_t sortedCount_ = 0;
};

}  // namespace arvmui
