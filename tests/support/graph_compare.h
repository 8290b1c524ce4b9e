// Compares the database of this process with the model of it.
#pragma once

#include <gtest/gtest.h>

#include "graph_model.h"
#include "linkdb.h"

// All records, lists with their bits and count words. Ids that the model lacks are
// looked up as well: those up to a few beyond the model's counters, if these are small.
testing::AssertionResult SameGraph(CQVUDatabase *database, model::Graph const &graph);
// One record; both null is equal.
testing::AssertionResult SameObject(DBObject const *object, model::Object const *expected);
