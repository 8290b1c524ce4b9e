// Reads the names of the libraries that a PE file (32 or 64 bit) imports from.
#pragma once

#include "readers/byte_source.h"
#include "readers/program.h"

namespace qvlink {

// A file without both signatures is no program: flags 0. Otherwise FLAG_PE is set, and
// where a table leads out of the file or has no end, FLAG_MALFORMED and `malformed`; the
// names read up to there are kept. Names are in lower case (ASCII), as the system's
// loader doesn't tell cases apart. Time and memory are bounded by the file's size.
Program ReadPe(ByteSource &source);

} // namespace qvlink
