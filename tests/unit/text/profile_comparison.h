// The library's answers about a settings file in memory, against the plain model's: whole buffers.
#pragma once

#include "memory_file.h"
#include "plain_profile.h"

#include <gtest/gtest.h>

namespace arvmui_test
{

// Fails the test, with all of file and query, where the answers differ. The library's answer.
ProfileAnswer<wchar_t> ExpectPlainAnswer(const MemoryFile& file, const ProfileQuery<wchar_t>& query);
ProfileAnswer<char> ExpectPlainAnswer(const MemoryFile& file, const ProfileQuery<char>& query);

}  // namespace arvmui_test
