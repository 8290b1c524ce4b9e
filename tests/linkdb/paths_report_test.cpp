// What the graph reports to the receiver of diagnostics.
#include "attached.h"
#include "beside_receiver.h"
#include "roles.h"

#include <gtest/gtest.h>

#include <cstring>

#include "platform/process.h"

namespace {

// Exit codes of the roles: what was found wrong first.
enum Finding : int { asTold = 0, noReceiver, wrongResult, wrongCount, wrongPlace, wrongText };

struct Expected {
    char const *function;
    int line;
    std::string expression;
};

// Compares what the receiver has got.
Finding Check(int reports, Expected const &expected) {
    void *const module = LoadModule(ReceiverHere().string());
    if (!module)
        return noReceiver;
    auto const count = reinterpret_cast<int (*)()>(FindSymbol(module, "ReportCount"));
    auto const last = reinterpret_cast<void (*)(Report *)>(FindSymbol(module, "GetLastReport"));
    if (count() != reports)
        return wrongCount;
    Report report{};
    last(&report);
    if (report.level != 1 || std::strcmp(report.file, "linkdb") != 0 ||
        report.function != std::string(expected.function) || report.line != expected.line)
        return wrongPlace;
    std::string const start = expected.expression + " - ";
    bool const text = report.format == std::string("%s - %lu") &&
                      std::string(report.text).compare(0, start.size(), start) == 0;
    return text ? asTold : wrongText;
}

Expected const tooDeep{"CQVUDatabase::SafeGetFullPath", 790, "0"};
Expected const duplicate{"CQVUDatabase::IndexObject", 78,
                         "m_idmap.find(pObj->dwID) == m_idmap.end()"};

Role const cycleRole("cycle", [](Arguments const &) -> int {
    Attached db;
    CQVUObject *const one = db.Add("one", OBJ_FILE);
    CQVUObject *const two = db.AddBelow(one, "two", OBJ_FILE);
    two->LinkTo(one, LINK_PARENT);
    return PathOf(two) ? wrongResult : Check(1, tooDeep);
});

Role const depthRole("depth", [](Arguments const &) -> int {
    Attached db;
    CQVUObject *const drive = db.Add("C:", OBJ_DRIVE);
    char buffer[1000];
    return db->SafeGetFullPath(drive, buffer, 260) ? wrongResult : Check(1, tooDeep);
});

// A way out of the cycle lets the climb succeed, after reports on the deepest tries.
Role const wayOutRole("way-out", [](Arguments const &) -> int {
    Attached db;
    CQVUObject *const self = db.Add("s", OBJ_FILE);
    self->LinkTo(self, LINK_PARENT);
    db.Add("C:", OBJ_DRIVE)->LinkTo(self, LINK_PARENT);
    return PathOf(self) ? Check(2, tooDeep) : wrongResult;
});

Role const indexRole("index", [](Arguments const &) -> int {
    Attached db;
    CQVUObject *const vfile = db.Add("x.dll", OBJ_VFILE);
    Protected::Index(db.Get(), vfile);
    if (db->LookupVFILE(Text("x.dll")) != vfile || vfile->Delete() != 1 ||
        db->LookupVFILE(Text("x.dll")))
        return wrongResult;
    return Check(1, duplicate);
});

TEST(Reports, A_cycle_of_parent_links_ends_with_one) {
    EXPECT_EQ(RunBesideReceiver("cycle"), asTold);
}

TEST(Reports, A_start_at_the_depth_limit_gives_one) {
    EXPECT_EQ(RunBesideReceiver("depth"), asTold);
}

// At depth 260 the object itself and then its drive are refused.
TEST(Reports, Each_branch_that_reaches_the_limit_gives_one) {
    EXPECT_EQ(RunBesideReceiver("way-out"), asTold);
}

TEST(Reports, Indexing_an_id_again_gives_one_and_goes_on) {
    EXPECT_EQ(RunBesideReceiver("index"), asTold);
}

} // namespace
