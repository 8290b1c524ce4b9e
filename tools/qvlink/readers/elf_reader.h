// Reads what an ELF file needs: libraries, interpreter and run path. Stands on libelf.
#pragma once

#include <string_view>

#include "readers/program.h"

namespace qvlink {

// A file that isn't ELF gives flags 0. Otherwise FLAG_ELF is set, and where the file's
// own tables lead out of it, FLAG_MALFORMED and `malformed`; the names read up to there
// are kept. Relocatable and core files need nothing.
Program ReadElfImage(std::string_view bytes);
// The same from an open file of the host, which is read at its positions only and stays
// open and unmoved.
Program ReadElfFile(int descriptor);

} // namespace qvlink
