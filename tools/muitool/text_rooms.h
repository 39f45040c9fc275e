// How much of a string its reader takes.
#pragma once

#include "translation.h"

// In characters without the terminator; 0 where it is not known.
std::size_t RoomOfString(const Translation& translation, UINT number);
