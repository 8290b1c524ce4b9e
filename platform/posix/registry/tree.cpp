// Keys: found, made and deleted.
#include "platform/posix/registry/key.h"
#include "platform/posix/registry/names.h"

namespace platform::registry {

using Lock = std::lock_guard<std::mutex>;

Tree::Tree(std::string const &directory, std::vector<Mount> const &mounts)
    : m_store(std::make_unique<Store>(directory)), m_places(std::make_unique<Places>(mounts)) {
    for (Root const root : {Root::ClassesRoot, Root::CurrentUser, Root::LocalMachine, Root::Users,
                            Root::CurrentConfig}) {
        auto key = std::make_shared<Key>();
        key->place = m_places->Of(root);
        key->isRoot = true;
        m_roots[Places::Number(root)] = std::move(key);
    }
}

Tree::~Tree() = default;

OpenKey const &Tree::RootKey(Root root) const { return m_roots[Places::Number(root)]; }

// Finds what a key that is there for its place alone rests on by now, if anything.
Code Tree::Settle(Key &key) {
    if (key.hive || (key.IsStored() && !key.isRoot))
        return success;
    StoredKey const before = std::move(key.stored);
    Code const code = Resolve(*key.place, key);
    if (key.stored.id != before.id) {
        key.keys = key.merged = {};
        key.values = {};
    }
    return code;
}

Code Tree::Resolve(Place const &place, Key &key) {
    key.place = &place;
    key.stored = {};
    if (place.hive)
        return Enter(*place.hive, key);
    if (!place.above) {
        Code const code = m_store->FindTop(place.name, key.stored);
        return code == notFound ? success : code;
    }
    Key above;
    Code code = Resolve(*place.above, above);
    if (code == success)
        code = FindBase(above, place.name, key);
    return code == notFound || code == keyDeleted ? success : code;
}

Code Tree::Enter(Hive &hive, Key &key) {
    Code const code = hive.Root(key.node);
    if (code == success)
        key.hive = &hive;
    return code;
}

// What a key rests on, by what the key above it rests on.
Code Tree::FindBase(Key const &of, std::u16string_view name, Key &key) {
    key.above = of.stored;
    if (!of.hive)
        return of.IsStored() ? m_store->Find(of.stored, name, key.stored) : notFound;
    Code const code = of.hive->Find(of.node, name, key.node);
    if (code == success)
        key.hive = of.hive;
    return code;
}

Code Tree::Child(Key const &of, std::u16string_view name, Key &child) {
    if (name.size() > longestKeyName || of.depth == deepestKey)
        return invalidParameter;
    child.depth = of.depth + 1;
    if (of.place && !of.place->below.empty()) {
        auto const place = of.place->below.find(Folded(name));
        child.place = place == of.place->below.end() ? nullptr : place->second.get();
    }
    if (child.place && child.place->hive)
        return Enter(*child.place->hive, child);
    Code const code = FindBase(of, name, child);
    return code == notFound && child.place && child.place->shown ? success : code;
}

// Without the whole way, what was reached is the last key on it.
Code Tree::Walk(Key const &from, std::u16string_view path, Key &reached) {
    if (!path.empty() && path.front() == u'\\')
        return badPath;
    reached = from;
    reached.isRoot = from.isRoot && path.empty();
    while (!path.empty()) {
        Key child;
        Code const code = Child(reached, TakeName(path), child);
        if (code != success)
            return code;
        reached = std::move(child);
    }
    return success;
}

// Where nothing is left to find, or nothing was found, a key may be gone itself.
Code Tree::WalkExactly(Key &from, std::u16string_view path, Key &reached) {
    Code code = Settle(from);
    if (code == success)
        code = Walk(from, path, reached);
    bool const isFrom = reached.stored.id == from.stored.id;
    if (isFrom && reached.IsStored() && (code == success || code == notFound)) {
        std::int64_t generation = 0;
        Code const state = m_store->StateOf(reached.stored, generation);
        return state == success ? code : state;
    }
    return code;
}

Code Tree::Open(Key &from, std::u16string_view path, OpenKey &opened) {
    Lock const lock(m_mutex);
    auto reached = std::make_shared<Key>();
    Store::Reading const reading(*m_store);
    Code const code = WalkExactly(from, path, *reached);
    if (code == success)
        opened = std::move(reached);
    return code;
}

Code Tree::Duplicate(Key &key, OpenKey &duplicate) {
    Lock const lock(m_mutex);
    duplicate = std::make_shared<Key>(key);
    return success;
}

Code Tree::Create(Key &from, std::u16string_view path, OpenKey &opened, bool &made) {
    Lock const lock(m_mutex);
    auto reached = std::make_shared<Key>();
    bool fresh = false;
    Code code = path.empty() ? WalkExactly(from, path, *reached) : Settle(from);
    if (code == success && !path.empty())
        code = Walk(from, path, *reached);
    if (code == notFound) {
        Store::Change change(*m_store);
        code = change.Began();
        if (code == success)
            code = change.End(MakeBelow(from, path, *reached, fresh));
    }
    if (code == success) {
        opened = std::move(reached);
        made = fresh;
    }
    return code;
}

Code Tree::MakeBelow(Key &from, std::u16string_view path, Key &reached, bool &made) {
    Code code = Settle(from);
    Key key = from;
    key.isRoot = false;
    while (code == success && !path.empty()) {
        Key child;
        std::u16string_view const name = TakeName(path);
        code = Child(key, name, child);
        if (code == notFound) {
            code = MakeChild(key, name, child);
            made = true;
        }
        key = std::move(child);
    }
    reached = std::move(key);
    return code;
}

Code Tree::MakeChild(Key &of, std::u16string_view name, Key &child) {
    if (of.hive)
        return accessDenied;
    Code const code = MakeSelf(of);
    child.above = of.stored;
    return code == success ? m_store->Make(of.stored, name, child.stored) : code;
}

// Has the store take a key in that is there for its place alone.
Code Tree::MakeSelf(Key &key) {
    if (key.IsStored())
        return success;
    Key above;
    Code const code = key.place->above ? Resolve(*key.place->above, above) : corrupt;
    return code == success ? MakeChild(above, key.place->name, key) : code;
}

Code Tree::Delete(Key &from, std::u16string_view path) {
    Lock const lock(m_mutex);
    Key reached;
    Code code = WalkExactly(from, path, reached);
    if (code != success)
        return code;
    if (!reached.IsStored() || reached.above.id == 0 || (reached.place && reached.place->shown))
        return accessDenied;
    Store::Change change(*m_store);
    code = change.Began();
    if (code == success)
        code = change.End(m_store->Delete(reached.above, reached.stored));
    return code == keyDeleted && !path.empty() ? notFound : code;
}

Code Tree::Begin() {
    Lock const lock(m_mutex);
    return m_store->Begin();
}

Code Tree::Commit() {
    Lock const lock(m_mutex);
    return m_store->Commit();
}

void Tree::Rollback() {
    Lock const lock(m_mutex);
    m_store->Rollback();
}

std::uint64_t Tree::Steps() const {
    Lock const lock(m_mutex);
    return m_store->Steps();
}

} // namespace platform::registry
