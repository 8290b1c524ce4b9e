// What the parts of one scan share.
#pragma once

#include <string>

#include "platform/interrupt.h"
#include "scan/scan.h"
#include "scan/tree.h"

namespace qvlink {

struct Session {
    CQVUDatabase &database;
    Tree &tree;
    ScanObserver &observer;
    ScanSummary summary;

    void Problem(ScanProblem problem, std::string const &path, std::string const &why) {
        switch (problem) {
        case ScanProblem::unreadable:
            ++summary.unreadable;
            break;
        case ScanProblem::malformed:
            ++summary.malformed;
            break;
        case ScanProblem::unrepresentable:
            ++summary.unrepresentable;
            break;
        }
        observer.Problem(problem, path, why);
    }

    static void StopIfAsked() {
        if (InterruptWatch::Requested()) {
            throw ScanInterrupted("stopped; the stored graph is as it was");
        }
    }
};

// The host's path of an object of the file tree; empty if it has none.
std::string HostPathOf(CQVUDatabase &database, CQVUObject &object);

} // namespace qvlink
