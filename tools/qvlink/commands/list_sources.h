// The files that hold protected lists: texts, stored lists and built libraries, told apart by
// what is in them.
#pragma once

#include "commands/request.h"
#include "lists/library_lists.h"

#include <optional>
#include <string>
#include <vector>

namespace qvlink {

// One list of a file.
struct ListSource {
    std::string name; // the file, and the list's id in brackets if it is in a library
    std::optional<lists::Kind> kind; // as the library has it, or as the text shows
    std::optional<std::uint32_t> id; // in a library
    std::string text;
    std::string damage; // why there is no text; empty if there is
};

class ListFile {
public:
    enum class Form { text, stored, library };

    // Throws CommandError for a file that can't be read.
    explicit ListFile(std::string const &path);
    ListFile(ListFile const &) = delete;
    ListFile &operator=(ListFile const &) = delete;

    Form Is() const { return m_form; }
    // All lists of a library, or the one list of another file. With an id that one of a
    // library. Throws CommandError if a library has no such list.
    std::vector<ListSource> Lists(std::optional<std::uint32_t> id) const;
    // The one list that is meant. Throws CommandError if a library has several, or if
    // there is no text.
    ListSource TheList(std::optional<std::uint32_t> id) const;
    // Why the file isn't a stored list: for a text only.
    std::string const &WhyNotStored() const { return m_whyNotStored; }

private:
    std::string Name(LibraryList const &list) const;
    std::string WhatThereIs() const;

    std::string m_path;
    std::string m_bytes;
    std::string m_text; // of a text or stored list
    std::string m_whyNotStored;
    LibraryLists m_library; // its lists are parts of m_bytes
    Form m_form = Form::text;
};

// "WIN_FILES 101"
std::string ListName(lists::Kind kind, std::uint32_t id);

// Throws CommandError if --json is given: for commands whose answer is a list itself.
void RequireNoJson(Request const &request);
// Writes to standard output, or whole to the file that --output names. Throws CommandError.
void WriteList(std::string const &output, std::string_view bytes);

} // namespace qvlink
