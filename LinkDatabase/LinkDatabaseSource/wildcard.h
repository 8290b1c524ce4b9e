// Name patterns: a star stands for any text, a question mark for any one character.
#pragma once

#include <string_view>

// Whether the whole text matches, character by character, in time bounded by the product
// of the lengths.
bool WildcardMatch(std::string_view pattern, std::string_view text);

// The same without regard to case, and with "*.*" matching names without a dot too.
bool NameMatchesPattern(std::string_view pattern, std::string_view name);
