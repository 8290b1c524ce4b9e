// Answers as text for people, and for other programs line by line.
#pragma once

#include "answer/file_check.h"
#include "answer/overview.h"
#include "answer/referrers.h"
#include "answer/walks.h"
#include "output/names.h"
#include "output/screen.h"
#include "scan/scan.h"

#include <string>
#include <vector>

namespace qvlink {

void PrintDependencies(Screen &screen, Names const &names,
                       std::vector<Dependency> const &dependencies, bool verbose);
void PrintTree(Screen &screen, Names const &names, std::vector<TreeLine> const &lines,
               bool verbose);
void PrintReferrers(Screen &screen, Names const &names, std::vector<Referrer> const &referrers,
                    bool verbose);
void PrintObjects(Screen &screen, Names const &names, std::vector<CQVUObject *> const &objects,
                  bool verbose);
void PrintObject(Screen &screen, Names const &names, CQVUObject &object);
void PrintMissing(Screen &screen, Names const &names, std::vector<MissingName> const &missing,
                  bool verbose);
void PrintChain(Screen &screen, Names const &names, CQVUObject &start,
                std::vector<Dependency> const &chain, bool verbose);
void PrintStatistics(Screen &screen, Names const &names, Statistics const &statistics,
                     std::string const &file, std::uint64_t fileSize);
void PrintCheck(Screen &screen, FileCheck const &check, bool verbose);
void PrintScan(Screen &screen, ScanSummary const &summary);

} // namespace qvlink
