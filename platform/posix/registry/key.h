// An open key, for the tree's own sources.
#pragma once

#include "platform/posix/registry/places.h"
#include "platform/posix/registry/store.h"

namespace platform::registry {

// What it rests on is a hive's node, a stored key, or nothing: it is there for its place alone.
struct Key {
    Place const *place = nullptr;
    Hive *hive = nullptr;
    hive_node_h node = 0;
    StoredKey stored;
    StoredKey above; // the stored key that it lies in
    unsigned depth = 0;
    bool isRoot = false;

    KeyCursor keys;
    KeyCursor merged;
    ValueCursor values;

    bool IsStored() const { return stored.id != 0; }
    bool IsOfPlaceAlone() const { return !hive && !IsStored(); }
};

} // namespace platform::registry
