// Paths of registry keys, in UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qvlink {

// The path with the short name of its root, as the registry is asked for it, and without
// backslashes at its end; nothing if it begins with no root. Roots are known by both names
// in any case.
std::optional<std::string> WithShortRoot(std::string_view path);
// A path as registration files have it: "HKEY_LOCAL_MACHINE\Software".
std::string WithLongRoot(std::string_view path);

// Where the keys go of a prefix's file that says "All keys relative to REGISTRY\..."; nothing
// for what is neither the machine nor a user.
std::optional<std::string> RootOfPrefixFile(std::string_view relativeTo);
// The key that a link leads to; `userRoot` is the user's "User\S-1-...". Nothing if that is in
// no root.
std::optional<std::string> KeyOfSystemPath(std::string_view path, std::string_view userRoot);

// Why the registry can hold no such key or name of a value; empty if it can.
std::string WhyNoKey(std::string_view path);
std::string WhyNoValueName(std::string_view name);

// Without regard to the case of ASCII letters: whether a key is that one or lies below it.
bool IsAtOrBelow(std::string_view path, std::string_view above);

} // namespace qvlink
