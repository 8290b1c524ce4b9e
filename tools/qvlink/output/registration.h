// Answers about registration files.
#pragma once

#include "output/json.h"
#include "output/screen.h"
#include "registry/import.h"

#include <string>
#include <vector>

namespace qvlink {

struct ImportedFile {
    std::string file;
    Imported result;
    std::string whyUnread; // empty if the file could be read

    // Why nothing of it was brought in; empty if it was.
    std::string const &Failure() const { return whyUnread.empty() ? result.failure : whyUnread; }
};

// The names that --form and the answers in JSON have for the forms.
const char *FormWord(RegistrationForm form);
// "12 keys, 1 value"
std::string CountsOf(std::size_t keys, std::size_t values);

void PrintImport(Screen &screen, ImportedFile const &file);
Json JsonOfImports(std::vector<ImportedFile> const &files);

} // namespace qvlink
