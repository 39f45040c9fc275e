// Prints size and fields of the public records as the compiler sees them, as one JSON object. A field is its
// offset and its size.
#include "arvmui.h"

#include <cstddef>
#include <cstdio>

namespace
{

struct Field
{
    const char* name;
    size_t offset;
    size_t size;
};

template <size_t kCount>
void PrintRecord(const char* name, size_t size, const Field (&fields)[kCount], const char* end)
{
    std::printf("\"%s\": {\"size\": %u, \"fields\": {", name, static_cast<unsigned>(size));
    const char* separator = "";
    for (const Field& field : fields)
    {
        std::printf("%s\"%s\": [%u, %u]", separator, field.name, static_cast<unsigned>(field.offset),
            static_cast<unsigned>(field.size));
        separator = ", ";
    }
    std::printf("}}%s\n", end);
}

constexpr Field MakeField(const char* name, size_t offset, size_t size)
{
    return {name, offset, size};
}

}  // namespace

#define FIELD(Record, name) MakeField(#name, offsetof(Record, name), sizeof(Record::name))

int main()
{
    const Field descriptor[] = {FIELD(LibraryDescriptor, module), FIELD(LibraryDescriptor, resourceLibrary),
        FIELD(LibraryDescriptor, localeMapping), FIELD(LibraryDescriptor, tlsIndex),
        FIELD(LibraryDescriptor, LocaleHintTable), FIELD(LibraryDescriptor, keyboardLanguageCount),
        FIELD(LibraryDescriptor, keyboardLanguages), FIELD(LibraryDescriptor, installerContext),
        FIELD(LibraryDescriptor, showMessagePopup)};
    const Field entry[] = {FIELD(LocaleEntry, LangID), FIELD(LocaleEntry, Locale), FIELD(LocaleEntry, LocaleLength),
        FIELD(LocaleEntry, EnglishName), FIELD(LocaleEntry, NativeName), FIELD(LocaleEntry, LanguageSelectionTitle),
        FIELD(LocaleEntry, LanguageSelectionDesc), FIELD(LocaleEntry, OK), FIELD(LocaleEntry, Cancel)};
    const Field record[] = {FIELD(LocaleRecord, size), FIELD(LocaleRecord, locales)};

    std::printf("{");
    PrintRecord("LibraryDescriptor", sizeof(LibraryDescriptor), descriptor, ",");
    PrintRecord("LocaleEntry", sizeof(LocaleEntry), entry, ",");
    PrintRecord("LocaleRecord", sizeof(LocaleRecord), record, "}");
    return 0;
}
