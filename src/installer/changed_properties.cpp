#include "installer/changed_properties.h"

#include "foundation/text.h"

#include <cstring>

namespace arvmui
{

struct ChangedPropertySet::Reading
{
    MSIHANDLE session;
    NameList& names;
};

UINT ChangedPropertySet::CompareRow(MSIHANDLE, MSIHANDLE, MSIHANDLE record, void* context)
{
    Reading& reading = *static_cast<Reading*>(context);
    HeapBlock<wchar_t> name;
    UINT result = GetRecordString(record, 1, name.Slot());
    if (result != ERROR_SUCCESS) return result;
    HeapBlock<wchar_t> current;
    result = GetInstallerProperty(reading.session, name.Get(), current.Slot());
    if (result != ERROR_SUCCESS) return result;
    HeapBlock<wchar_t> english;
    result = GetRecordString(record, 2, english.Slot());
    if (result != ERROR_SUCCESS || CompareText(current.Get(), english.Get()) == 0) return result;
    return reading.names.Append(name.Get()) ? ERROR_SUCCESS : ERROR_FUNCTION_FAILED;
}

UINT ChangedPropertySet::Read(MSIHANDLE session, MSIHANDLE database) noexcept
{
    Reading reading = {session, names_};
    const UINT result = RunQuery(database, L"SELECT * FROM `Property_en`", 0, CompareRow, &reading);
    if (result != ERROR_SUCCESS) return result;
    return BuildIndex() ? ERROR_SUCCESS : ERROR_FUNCTION_FAILED;
}

bool ChangedPropertySet::BuildIndex() noexcept
{
    if (names_.Count() == 0) return true;
    if (!sorted_.Resize(names_.Count())) return false;
    for (const wchar_t* name = names_.First(); name; name = names_.Next(name))
    {
        bool found = false;
        const wchar_t** const place = sorted_.Get() + FindPlace(name, found);
        const wchar_t** const end = sorted_.Get() + sortedCount_;
        std::memmove(place + 1, place, static_cast<size_t>(end - place) * sizeof(*place));
        *place = name;
        ++sortedCount_;
    }
    return true;
}

// The index of the name, or the one where it belongs.
size_t ChangedPropertySet::FindPlace(const wchar_t* name, bool& found) const noexcept
{
    size_t low = 0;
    size_t high = sortedCount_;
    while (low < high)
    {
        const size_t middle = low + (high - low) / 2;
        const int order = CompareText(sorted_.Get()[middle], name);
        if (order == 0)
        {
            found = true;
            return middle;
        }
        if (order < 0)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

bool ChangedPropertySet::Contains(const wchar_t* name) const noexcept
{
    bool found = false;
    // Ignored: the place; only membership counts.
    FindPlace(name, found);
    return found;
}

}  // namespace arvmui
