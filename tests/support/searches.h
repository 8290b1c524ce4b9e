// Searches run to their end and closed.
#pragma once

#include "attached.h"

#include <string>
#include <vector>

using Ids = std::vector<unsigned long>;

// Ids of all objects that a search gives, in its order.
Ids FindObjects(CQVUDatabase *database, std::string const &pattern, unsigned long typeMask);
// Ids of all links that a walk gives, in its order.
Ids FindLinksTo(CQVUObject *object, unsigned long typeMask);
Ids FindLinksFrom(CQVUObject *object, unsigned long typeMask);
// Ids of all results of an expansion, in its order. Checks that each comes with 1.0.
Ids FindDependents(CQVUObject *object);
Ids FindReferrers(CQVUObject *object);
// The ids of a result list, which is freed.
Ids Take(FFDepObjResult *results);

constexpr unsigned long allTypes = 0xffffffff;
