// Counts the blocks in use on the process heap, so that a test can show that nothing is left behind.
// With some runtime libraries a test's own strings and vectors lie there too. The last-error code
// stays as it was.
#pragma once

#include <cstddef>

namespace arvmui_test
{

size_t CountBusyBlocks();

}  // namespace arvmui_test
