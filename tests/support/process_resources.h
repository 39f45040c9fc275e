// What this process holds of the system's resources, for tests that nothing is left behind.
#pragma once

#include <windows.h>

#include <cstddef>

namespace arvmui_test
{

// Open handles of any kind.
size_t CountHandles();

// Thread-local slots that can still be had.
size_t CountFreeThreadSlots();

}  // namespace arvmui_test
