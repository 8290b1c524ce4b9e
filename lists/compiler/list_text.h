// The text of a protected list: one entry a line. A list of files holds paths behind the
// tag of one of the two system folders, a list of keys holds registry paths.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lists {

enum class Kind { files, keys };

// Told by the first line that isn't empty; nothing if it is neither's.
std::optional<Kind> KindOf(std::string_view text);

constexpr std::string_view windowsTag = "%WindowsDir%\\";
constexpr std::string_view systemTag = "%SystemDir%\\";
// A line that the library takes is shorter.
constexpr std::size_t lineRoom = 260;

struct Finding {
    std::size_t line;    // from 1
    bool isError;        // the library would read the line wrongly or pass over it, or it
                         // breaks the form; else it is only worth knowing
    std::string message; // without a full stop
};
// Kinds of notes that are told apart.
constexpr std::string_view noLineEnd = "the last line has no line end, so it is never read";

// In order of lines.
std::vector<Finding> Check(std::string_view text, Kind kind);

struct Difference {
    std::vector<std::string> onlyInFirst;
    std::vector<std::string> onlyInSecond;
};

// By entries, as they are spelt, in the order of EntryBefore. The case of ASCII letters
// and how many backslashes stand together make no difference, nor do blanks around an
// entry and a missing line end.
Difference Compare(std::string_view first, std::string_view second);

// The order of lists: component by component, without regard to the case of ASCII letters.
bool EntryBefore(std::string_view a, std::string_view b);

} // namespace lists
