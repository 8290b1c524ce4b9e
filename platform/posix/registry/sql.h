// What the store's file holds, and what is asked of it.
#pragma once

#include "platform/posix/registry/connection.h"

namespace platform::registry {

// The keys' order is that of their parents and folded names; the values of a key are in the
// order of their places. A key's generation counts what moves the indices of its subkeys and
// values: a subkey that comes or goes, a value that goes.
constexpr const char *idsTable = "CREATE TABLE ids(next INTEGER NOT NULL) STRICT";
constexpr const char *keysTable =
    "CREATE TABLE keys(parent INTEGER NOT NULL, folded BLOB NOT NULL, id INTEGER NOT NULL, "
    "name TEXT NOT NULL, generation INTEGER NOT NULL, PRIMARY KEY(parent, folded)) "
    "STRICT, WITHOUT ROWID";
constexpr const char *valuesTable =
    "CREATE TABLE vals(key INTEGER NOT NULL, place INTEGER NOT NULL, folded BLOB NOT NULL, "
    "name TEXT NOT NULL, type INTEGER NOT NULL, data BLOB NOT NULL, PRIMARY KEY(key, place)) "
    "STRICT, WITHOUT ROWID";
constexpr const char *valuesByName = "CREATE UNIQUE INDEX vals_by_name ON vals(key, folded)";
constexpr const char *schema[] = {idsTable, keysTable, valuesTable, valuesByName};

constexpr std::int64_t applicationId = 1364613703;
constexpr std::int64_t storeVersion = 1;
constexpr const char *beginnings[] = {
    "PRAGMA synchronous=OFF",
    "PRAGMA encoding='UTF-16le'",
    "PRAGMA application_id=1364613703",
    "PRAGMA user_version=1",
    "BEGIN",
};
constexpr const char *firstKeys = "INSERT INTO keys VALUES(0, x'0048004B004C004D', 1, 'HKLM', 0), "
                                  "(0, x'0048004B0055', 2, 'HKU', 0)";
constexpr const char *endings[] = {
    "INSERT INTO ids VALUES(16)",
    firstKeys,
    "COMMIT",
    "PRAGMA journal_mode=WAL",
};

constexpr const char *nextKey =
    "SELECT below.name, below.folded, own.generation FROM keys AS own CROSS JOIN keys AS below "
    "WHERE own.parent=?1 AND own.folded=?2 AND own.id=?3 AND below.parent=?3 AND "
    "below.folded>?4 ORDER BY below.folded LIMIT 1 OFFSET ?5";
constexpr const char *nextValue =
    "SELECT vals.name, vals.place, own.generation, vals.type, vals.data FROM keys AS own "
    "CROSS JOIN vals WHERE own.parent=?1 AND own.folded=?2 AND own.id=?3 AND vals.key=?3 AND "
    "vals.place>?4 ORDER BY vals.place LIMIT 1 OFFSET ?5";
constexpr const char *setValue =
    "INSERT INTO vals SELECT ?3, (SELECT ifnull(max(place), 0)+1 FROM vals WHERE key=?3), ?4, "
    "?5, ?6, ?7 FROM keys WHERE parent=?1 AND folded=?2 AND id=?3 "
    "ON CONFLICT(key, folded) DO UPDATE SET type=excluded.type, data=excluded.data";

// In the order of Sql.
constexpr const char *texts[static_cast<std::size_t>(Sql::Count)] = {
    "BEGIN IMMEDIATE",
    "BEGIN",
    "COMMIT",
    "ROLLBACK",
    "SELECT id FROM keys WHERE parent=?1 AND folded=?2",
    "SELECT generation FROM keys WHERE parent=?1 AND folded=?2 AND id=?3",
    "UPDATE ids SET next=next+?1 RETURNING next-?1",
    "INSERT INTO keys VALUES(?1, ?2, ?3, ?4, 0)",
    "UPDATE keys SET generation=generation+1 WHERE parent=?1 AND folded=?2 AND id=?3",
    "SELECT 1 FROM keys WHERE parent=?1 LIMIT 1",
    "DELETE FROM keys WHERE parent=?1 AND folded=?2 AND id=?3",
    "DELETE FROM vals WHERE key=?1",
    nextKey,
    nextValue,
    "SELECT name, type, data FROM vals WHERE key=?1 AND folded=?2",
    setValue,
    "DELETE FROM vals WHERE key=?1 AND folded=?2",
};

} // namespace platform::registry
