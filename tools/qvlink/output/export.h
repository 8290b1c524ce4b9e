// The whole graph in the formats of other programs.
#pragma once

#include "output/names.h"

#include <iosfwd>

namespace qvlink {

// Objects in order of id, then links in the order of their sources' lists. Objects without
// a name are left out, the root object apart.
void ExportDot(std::ostream &out, Names const &names);
void ExportGraphml(std::ostream &out, Names const &names);
void ExportJsonl(std::ostream &out, Names const &names);
// Two tables for the bulk import of graph databases.
void ExportCsv(std::ostream &nodes, std::ostream &edges, Names const &names);

} // namespace qvlink
