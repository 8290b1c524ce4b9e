// The registry as a tree of keys: what is written lies in a store in a directory of the host,
// and hive files are mounted below its keys for reading. It knows no handles, no code pages
// and nothing else of the library, so that a tool may use it as well.
//
// Names are UTF-16: a key's has 1 to 255 units, a value's up to 16383, and the empty one is
// the key's own value. Data are bytes as Windows stores them, so texts are in UTF-16LE.
// Results are Windows' codes, 0 for success; docs/platform.md lists them. After a failure
// what would have been told is as it was. Operations throw nothing but std::bad_alloc.
//
// Any number of threads may use a tree, and its keys, at once.
#pragma once

#include "platform/settings.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::registry {

using Code = std::uint32_t;

// By their numbers as handles.
enum class Root : std::uint32_t {
    ClassesRoot = 0x80000000,
    CurrentUser,
    LocalMachine,
    Users,
    CurrentConfig = 0x80000005
};

// Takes a root's name, short (HKLM) or long (HKEY_LOCAL_MACHINE) and in any case, and the
// backslash behind it from the front of a path; nothing if it begins with none.
std::optional<Root> TakeRoot(std::u16string_view &path);

// A hive file below a key, which is told with its root's name.
struct Mount {
    std::u16string key;
    std::string file;
};

struct Value {
    std::u16string name;
    std::uint32_t type = 0;
    std::string data;
};

struct Key; // an open key: belongs to its tree and must not outlive it
using OpenKey = std::shared_ptr<Key>;

class Hive;
class Places;
struct Place;
class Store;

class Tree {
public:
    // Touches nothing before the first operation, and makes nothing before the first that
    // writes. Of two mounts at one key the last holds.
    Tree(std::string const &directory, std::vector<Mount> const &mounts);
    ~Tree();
    Tree(Tree const &) = delete;
    Tree &operator=(Tree const &) = delete;

    // A root is there always, with or without a store.
    OpenKey const &RootKey(Root root) const;

    // A path is of names with a backslash between each two; a last backslash counts for
    // nothing, and the empty path is the key itself, opened once more.
    Code Open(Key &from, std::u16string_view path, OpenKey &opened);
    // Opens it, and makes it and what is missing above it before.
    Code Create(Key &from, std::u16string_view path, OpenKey &opened, bool &made);
    Code Duplicate(Key &key, OpenKey &duplicate);
    // A key with subkeys isn't deleted: 5.
    Code Delete(Key &from, std::u16string_view path);

    // By index, subkeys in the order of their names, values in that in which they were made.
    // Going on from the index before costs the same wherever that is; behind the last is 259.
    Code EnumerateKey(Key &key, std::uint32_t index, std::u16string &name);
    Code EnumerateValue(Key &key, std::uint32_t index, Value &value);

    Code ReadValue(Key &key, std::u16string_view name, Value &value);
    Code SetValue(Key &key, Value const &value);
    Code DeleteValue(Key &key, std::u16string_view name);

    // One transaction of the tree: all changes until Commit, whoever makes them, go together.
    // Other processes that write wait for it. After a failed Commit nothing was changed.
    Code Begin();
    Code Commit();
    void Rollback();

    // Steps that the store's statements took in all: for tests that nothing takes too many.
    std::uint64_t Steps() const;

private:
    Code Settle(Key &key);
    Code Resolve(Place const &place, Key &key);
    Code Enter(Hive &hive, Key &key);
    Code FindBase(Key const &of, std::u16string_view name, Key &key);
    Code Child(Key const &of, std::u16string_view name, Key &child);
    Code Walk(Key const &from, std::u16string_view path, Key &reached);
    Code WalkExactly(Key &from, std::u16string_view path, Key &reached);
    Code MakeBelow(Key &from, std::u16string_view path, Key &reached, bool &made);
    Code MakeChild(Key &of, std::u16string_view name, Key &child);
    Code MakeSelf(Key &key);
    Code MergedKey(Key &key, std::uint32_t index, std::u16string &name);
    Code NextMerged(Key const &key, std::string const &after, std::u16string &name,
                    std::string &folded);

    mutable std::mutex m_mutex;
    std::unique_ptr<Store> m_store;
    std::unique_ptr<Places> m_places;
    OpenKey m_roots[5];
};

// The mounts of a prefix: lines of its platform.ini, `hive.HKLM\SOFTWARE=FILE`. A file's name
// that isn't whole counts from the prefix.
std::vector<Mount> ReadMounts(std::string const &prefix);

// The tree that settings and the prefix in use tell of.
std::shared_ptr<Tree> OpenTree(Settings const &settings);

} // namespace platform::registry
