// The placeholders of a text, as printf and as the system's message formatter read them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// "%s", "%5lu" ... in their order. "%%" is none.
std::vector<std::wstring> PrintfPlaceholders(std::wstring_view text);

// "%1", "%2!d!" ..., sorted: their numbers let a translation change the order.
std::vector<std::wstring> InsertPlaceholders(std::wstring_view text);

// Length of the placeholder or escape ("%%") that begins the text with a percent sign; 0 for a percent
// sign that is just one.
std::size_t PlaceholderLength(std::wstring_view text);

// What the first of two formatting passes leaves for the second: "%%" becomes "%", and what it fills
// in itself is gone.
std::wstring TextForSecondPass(std::wstring_view text);
