// Entries of stored keys by their indices.
#include "platform/posix/registry/store.h"

namespace platform::registry {
namespace {

// Asks for the entry at an index: from the cursor on if that still holds, else from the
// first. `ask` takes what the entries begin behind and how many of them it passes over, and
// gives the entry's own place and the key's generation.
template <class Last, class Ask> Code GoTo(std::uint32_t index, Cursor<Last> &cursor, Ask ask) {
    Cursor<Last> const start{};
    Cursor<Last> const *from = index < cursor.count ? &start : &cursor;
    for (;;) {
        Last found{};
        std::int64_t generation = 0;
        Code const code = ask(from->last, index - from->count, found, generation);
        if (code != success && code != noMoreItems)
            return code;
        if (from->count != 0 && generation != from->generation) {
            from = &start;
            continue;
        }
        if (code == success)
            cursor = {index + 1, std::move(found), generation};
        return code;
    }
}

} // namespace

// What a query without a row means.
Code Store::Ended(Statement const &query, StoredKey const &key, std::int64_t &generation) {
    if (query.Result() != success)
        return query.Result();
    Code const state = StateOf(key, generation);
    return state == success ? noMoreItems : state;
}

Code Store::KeyAt(StoredKey const &key, std::uint32_t index, KeyCursor &cursor,
                  std::u16string &name) {
    return GoTo(index, cursor,
                [&](std::string const &after, std::uint32_t skipped, std::string &found,
                    std::int64_t &generation) {
                    return FindNext(key, after, skipped, name, found, generation);
                });
}

Code Store::KeyBehind(StoredKey const &key, std::string const &after, std::u16string &name,
                      std::string &folded) {
    std::int64_t generation = 0;
    return FindNext(key, after, 0, name, folded, generation);
}

Code Store::FindNext(StoredKey const &key, std::string const &after, std::uint32_t skipped,
                     std::u16string &name, std::string &folded, std::int64_t &generation) {
    Statement next(m_connection, Sql::NextKey);
    BindKey(next, key);
    next.Bind(4, std::string_view(after)).Bind(5, std::int64_t{skipped});
    if (!next.Step())
        return Ended(next, key, generation);
    name = next.Text(0);
    folded = next.Bytes(1);
    generation = next.Number(2);
    return success;
}

Code Store::ValueAt(StoredKey const &key, std::uint32_t index, ValueCursor &cursor, Value &value) {
    return GoTo(index, cursor,
                [&](std::int64_t after, std::uint32_t skipped, std::int64_t &found,
                    std::int64_t &generation) -> Code {
                    Statement next(m_connection, Sql::NextValue);
                    BindKey(next, key);
                    next.Bind(4, after).Bind(5, std::int64_t{skipped});
                    if (!next.Step())
                        return Ended(next, key, generation);
                    found = next.Number(1);
                    generation = next.Number(2);
                    value = {std::u16string(next.Text(0)),
                             static_cast<std::uint32_t>(next.Number(3)),
                             std::string(next.Bytes(4))};
                    return success;
                });
}

} // namespace platform::registry
