// The maps of the graph: objects and links by id.
#pragma once

#include "IdMap.h"
#include "linkdb_node.h"

using ObjectMap = IdMap<ObjectNode>;
using LinkMap = IdMap<DBLink>;
