// Folders that a test captures from.
#pragma once

#include <string>
#include <vector>

#include "lists/capture.h"
#include "temp_folder.h"

// A folder of files, gone with the object.
class Disk {
public:
    // Makes a file and the folders above it.
    void Put(std::string const &path, std::string const &text = "");
    std::string Root() const { return m_folder.Path().string(); }
    std::filesystem::path At(std::string const &path) const { return m_folder.Path() / path; }

private:
    TempFolder m_folder;
};

// The text of one of a prefix's files with these keys, each with the lines that follow it.
std::string PrefixText(std::string const &root, std::vector<std::string> const &keys);
// A key of such a text that is a link.
std::string PrefixLink(std::string const &key, std::string const &target);

qvlink::Capture CaptureFiles(std::string const &from, std::vector<std::string> const &without = {});
qvlink::Capture CaptureKeys(std::string const &from, std::vector<std::string> const &without = {});
// The text of a list with these lines.
std::string TextOf(std::vector<std::string> const &lines);
// What the exception says that a capture ends with; empty if there is none.
std::string Refusal(lists::Kind kind, std::string const &from);
// Whether one of the texts has these words in it.
bool HasWords(std::vector<std::string> const &texts, std::string const &words);
