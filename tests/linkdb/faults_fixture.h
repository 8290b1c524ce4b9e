// A graph to work on while something fails, and what must hold of it afterwards.
#pragma once

#include <gtest/gtest.h>

#include "session.h"

// The bytes of a file with a small graph of all kinds of records, by this process:
// 2 drive C: (persistent), 3 file a.exe below it (persistent), 4 VFILE b.dll (transient),
// 5 file b.dll below C: (persistent), 6 hub (transient) with data; links 1 (2-3 parent),
// 2 (3-4), 3 (2-5 parent), 4 and on from 6 to 3 and 5 up to nine entries.
Bytes SmallGraph();

// The invariants of a graph that this process made: lists name links of their object,
// marks agree with the ends' persistence, no visited mark is left.
testing::AssertionResult IsSound(CQVUDatabase *database);

// The database works on: takes objects and links, writes a well-formed file that loads
// the same, and lets go of every object.
testing::AssertionResult WorksOn(CQVUDatabase *database, TempFolder const &folder);
