// The keys and values that were written, in the store's file. For one thread at a time.
#pragma once

#include "platform/posix/registry/connection.h"

namespace platform::registry {

// A key's place, and the number by which it is told from one that was there before.
struct StoredKey {
    std::int64_t parent = 0;
    std::string folded;
    std::int64_t id = 0; // 0: not in the store
};

// A key as the first three parameters of a statement, which it has to outlive.
void BindKey(Statement &statement, StoredKey const &key);

// How far an enumeration came: so many entries are at `last` or before it, as long as the
// key's generation is this one.
template <class Last> struct Cursor {
    std::uint32_t count = 0;
    Last last{};
    std::int64_t generation = 0;
};
using KeyCursor = Cursor<std::string>;
using ValueCursor = Cursor<std::int64_t>;

class Store {
public:
    explicit Store(std::string directory) : m_connection(std::move(directory)) {}

    // Keys without parents, HKLM and HKU, are there if there is a store.
    Code FindTop(std::u16string_view name, StoredKey &key);
    // Where there is none it is 2, also if the parent isn't there.
    Code Find(StoredKey const &parent, std::u16string_view name, StoredKey &key);
    Code Make(StoredKey const &parent, std::u16string_view name, StoredKey &key);
    Code Delete(StoredKey const &parent, StoredKey const &key);
    Code StateOf(StoredKey const &key, std::int64_t &generation);

    Code KeyAt(StoredKey const &key, std::uint32_t index, KeyCursor &cursor, std::u16string &name);
    // The first behind a folded name.
    Code KeyBehind(StoredKey const &key, std::string const &after, std::u16string &name,
                   std::string &folded);
    Code ValueAt(StoredKey const &key, std::uint32_t index, ValueCursor &cursor, Value &value);

    Code Read(StoredKey const &key, std::u16string_view name, Value &value);
    Code Set(StoredKey const &key, Value const &value);
    Code DeleteValue(StoredKey const &key, std::u16string_view name);

    // The caller's transaction: what changes the store within it waits for Commit.
    Code Begin();
    Code Commit();
    void Rollback();

    std::uint64_t Steps() const { return m_connection.Steps(); }

    // Questions that go together: the file is locked once for all of them.
    class Reading {
    public:
        explicit Reading(Store &store);
        ~Reading();
        Reading(Reading const &) = delete;
        Reading &operator=(Reading const &) = delete;

    private:
        Store &m_store;
        bool m_own;
    };

    // Changes that go together: part of the caller's transaction, or one of their own.
    class Change {
    public:
        explicit Change(Store &store);
        ~Change();
        Change(Change const &) = delete;
        Change &operator=(Change const &) = delete;

        Code Began() const { return m_code; }
        // Takes the code of the work; what failed leaves nothing behind.
        Code End(Code code);

    private:
        Store &m_store;
        Code m_code = success;
        bool m_own = false;
        bool m_ended = false;
    };

private:
    Code Run(Sql sql);
    Code Broken(Code code);
    void Forget();
    Code Ended(Statement const &query, StoredKey const &key, std::int64_t &generation);
    Code FindNext(StoredKey const &key, std::string const &after, std::uint32_t skipped,
                  std::u16string &name, std::string &folded, std::int64_t &generation);
    Code NoteChange(StoredKey const &key);
    Code TakeId(std::int64_t &id);

    Connection m_connection;
    std::int64_t m_nextId = 0; // of those that are reserved for this connection
    std::int64_t m_endOfIds = 0;
    bool m_inTransaction = false; // the caller's
    Code m_broken = success;      // what made it impossible to commit that
};

} // namespace platform::registry
