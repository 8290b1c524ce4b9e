// Answers as JSON; docs/qvlink.schema.json says what they look like.
#pragma once

#include "answer/file_check.h"
#include "answer/overview.h"
#include "answer/referrers.h"
#include "answer/walks.h"
#include "output/names.h"
#include "scan/scan.h"

#include <nlohmann/json_fwd.hpp>

namespace qvlink {

using Json = nlohmann::ordered_json;

// A text of the graph. Where it is no UTF-8, the bytes in question come as U+FFFD, and a
// second member, "<key>Bytes", has all its bytes in hexadecimal.
void PutText(Json &object, const char *key, std::string_view text);

// An object in short, and with all its fields, without its links.
Json JsonOfObject(Names const &names, CQVUObject &object);
Json JsonOfWholeObject(Names const &names, CQVUObject &object);
Json JsonOfLink(CQVULink const &link);

Json JsonOfDependencies(Names const &names, std::vector<Dependency> const &dependencies);
Json JsonOfTree(Names const &names, std::vector<TreeLine> const &lines);
Json JsonOfReferrers(Names const &names, std::vector<Referrer> const &referrers);
Json JsonOfObjects(Names const &names, std::vector<CQVUObject *> const &objects);
Json JsonOfLinks(Names const &names, std::vector<Edge> const &edges);
Json JsonOfMissing(Names const &names, std::vector<MissingName> const &missing);
Json JsonOfStatistics(Names const &names, Statistics const &statistics);
Json JsonOfCheck(FileCheck const &check);

struct ReportedProblem {
    ScanProblem problem;
    std::string path;
    std::string why;
};
Json JsonOfScan(ScanSummary const &summary, std::vector<ReportedProblem> const &problems);

// The text of a document, ready to be written.
std::string Dump(Json const &json, bool indented);

} // namespace qvlink
