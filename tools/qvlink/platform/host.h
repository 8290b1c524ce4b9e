// What the tool asks of the system it runs on, scanning apart.
#pragma once

#include "answer/place.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qvlink {

// The folder of linkdb.dat when none is named; empty if the system names no home.
std::string DefaultDatabaseDirectory();
// An absolute form of a folder of the host, for AttachDatabase.
std::string AbsoluteDirectory(std::string const &directory);

// The place that a path of the host names; a relative path starts at the current
// directory, and `.` and `..` are taken off by text alone. Nothing if no drive holds it.
std::optional<Place> PlaceOfHostPath(std::string const &path);
// The path as the host writes it. A drive without a directory of the host keeps the
// database's own form.
std::string HostPath(Place const &place);
// The path with all symbolic links of its folders followed, the last name untouched.
// Nothing if there is no such file.
std::optional<std::string> PathThroughLinks(std::string const &path);

// The system's own two folders, in the database's form, as the library is told them.
struct SystemDirectories {
    std::string windows;
    std::string system;
};
SystemDirectories FindSystemDirectories();
// The file beside the library that unpacks its lists.
extern const char *const DecompressorFile;

enum class Stream { out, err };
bool IsTerminal(Stream stream);
unsigned TerminalColumns(Stream stream); // 80 if unknown
// Readies the standard streams: no translation of line ends; a console shows UTF-8 and
// colour sequences. Undone at exit.
void PrepareStreams();
// Whether a write that failed with this errno met a pipe that nobody reads any more.
bool IsClosedPipe(int error);

// Size of a file in bytes; nothing if there is none or it isn't a file.
std::optional<std::uint64_t> FileSize(std::string const &path);

// A text in the system's code page as UTF-8. Bytes without meaning there are kept on
// hosts whose names are bytes.
std::string ToUtf8(std::string_view text);
// The other way; `lossless` becomes false if the code page can't hold the text.
std::string FromUtf8(std::string_view text, bool &lossless);

} // namespace qvlink
