// Graphics objects (fonts, brushes, device contexts ...) of this process.
#pragma once

#include <cstddef>

namespace arvmui_test
{

// Zero where the system does not tell.
size_t CountGdiObjects();

}  // namespace arvmui_test
