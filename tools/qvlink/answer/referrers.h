// Who needs a file: the other direction of FindDependencies.
#pragma once

#include "answer/needs.h"

#include <vector>

namespace qvlink {

// An object that needs a target, and that one of its needs by which it comes there.
struct Referrer {
    CQVUObject *object;
    Need need;
};

// Every object whose dependencies hold one of the targets: by a link, through symbolic
// links, or by a bare name that comes to it from the object's own folder. `direct` leaves
// those out that come there through others. A target may be a bare name: then all that
// ask for it, whatever they get. Registry values that name a target, or something that needs
// one, are told too. Neither the targets nor symbolic links to a referrer are
// told. In order of path.
std::vector<Referrer> FindReferrers(CQVUDatabase &database,
                                    std::vector<CQVUObject *> const &targets, bool direct);

} // namespace qvlink
