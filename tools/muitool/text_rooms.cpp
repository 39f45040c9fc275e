#include "text_rooms.h"

namespace
{

struct Room
{
    UINT first;
    UINT last;
    std::size_t characters;
};

constexpr Room kLibraryRooms[] = {
    {3, 4, 63}, {80, 84, 63}, {101, 102, 31}, {103, 111, 63}, {210, 211, 255}, {900, 901, 63}};

// Of any module the library reads these two.
constexpr Room kModuleRooms[] = {{kTagString, kTagString, 63}, {kLanguageString, kLanguageString, 31}};

template <std::size_t kCount>
std::size_t Find(const Room (&rooms)[kCount], UINT number)
{
    for (const Room& room : rooms)
        if (number >= room.first && number <= room.last) return room.characters;
    return 0;
}

}  // namespace

std::size_t RoomOfString(const Translation& translation, UINT number)
{
    const std::size_t room = Find(kModuleRooms, number);
    return room != 0 || !translation.IsLibraryOwn() ? room : Find(kLibraryRooms, number);
}
