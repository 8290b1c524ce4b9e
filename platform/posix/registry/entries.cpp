// What a key holds: its subkeys by index, and its values.
#include "platform/posix/registry/key.h"
#include "platform/posix/registry/names.h"

#include <algorithm>

namespace platform::registry {

using Lock = std::lock_guard<std::mutex>;

namespace {

bool HoldsPlaces(Key const &key) {
    return key.place && std::any_of(key.place->below.begin(), key.place->below.end(),
                                    [](auto const &below) { return below.second->shown; });
}

// The first place behind a name that shows; null if there is none.
Place const *PlaceBehind(Place const &of, std::string const &after, std::string &folded) {
    auto place = of.below.upper_bound(after);
    while (place != of.below.end() && !place->second->shown)
        ++place;
    if (place == of.below.end())
        return nullptr;
    folded = place->first;
    return place->second.get();
}

} // namespace

Code Tree::EnumerateKey(Key &key, std::uint32_t index, std::u16string &name) {
    Lock const lock(m_mutex);
    Code const code = Settle(key);
    if (code != success)
        return code;
    if (HoldsPlaces(key))
        return MergedKey(key, index, name);
    if (key.IsStored())
        return m_store->KeyAt(key.stored, index, key.keys, name);
    if (!key.hive)
        return noMoreItems;
    SharedEntries keys;
    Code const listed = key.hive->Keys(key.node, keys);
    if (listed != success || index >= keys->size())
        return listed != success ? listed : noMoreItems;
    name = (*keys)[index].name;
    return success;
}

Code Tree::MergedKey(Key &key, std::uint32_t index, std::u16string &name) {
    std::int64_t generation = 0;
    Code code = key.IsStored() ? m_store->StateOf(key.stored, generation) : success;
    KeyCursor cursor = key.merged;
    if (index < cursor.count || generation != cursor.generation)
        cursor = {};
    while (code == success && cursor.count <= index) {
        code = NextMerged(key, std::string(cursor.last), name, cursor.last);
        ++cursor.count;
    }
    if (code == success) {
        cursor.generation = generation;
        key.merged = std::move(cursor);
    }
    return code;
}

// The first name behind another, of what the key rests on and of the places below it. A place
// hides what else is there.
Code Tree::NextMerged(Key const &key, std::string const &after, std::u16string &name,
                      std::string &folded) {
    std::u16string other;
    std::string otherFolded;
    Code code = noMoreItems;
    if (key.IsStored()) {
        code = m_store->KeyBehind(key.stored, after, other, otherFolded);
    } else if (key.hive) {
        SharedEntries keys;
        code = key.hive->Keys(key.node, keys);
        if (code == success) {
            auto const place =
                std::upper_bound(keys->begin(), keys->end(), after,
                                 [](std::string const &text, HiveEntry const &entry) {
                                     return text < entry.folded;
                                 });
            code = place == keys->end() ? noMoreItems : success;
            if (code == success) {
                other = place->name;
                otherFolded = place->folded;
            }
        }
    }
    if (code != success && code != noMoreItems)
        return code;
    std::string placeFolded;
    Place const *const place = PlaceBehind(*key.place, after, placeFolded);
    if (!place && code == noMoreItems)
        return code;
    bool const takePlace = place && (code == noMoreItems || placeFolded <= otherFolded);
    bool const both = takePlace && placeFolded == otherFolded;
    name = takePlace && (place->hive || !both) ? place->name : other;
    folded = takePlace ? placeFolded : otherFolded;
    return success;
}

Code Tree::EnumerateValue(Key &key, std::uint32_t index, Value &value) {
    Lock const lock(m_mutex);
    Code const code = Settle(key);
    if (code != success)
        return code;
    if (key.IsStored())
        return m_store->ValueAt(key.stored, index, key.values, value);
    if (!key.hive)
        return noMoreItems;
    SharedEntries values;
    Code const listed = key.hive->Values(key.node, values);
    if (listed != success || index >= values->size())
        return listed != success ? listed : noMoreItems;
    return key.hive->Read((*values)[index], value);
}

Code Tree::ReadValue(Key &key, std::u16string_view name, Value &value) {
    Lock const lock(m_mutex);
    Code const code = Settle(key);
    if (code != success)
        return code;
    if (key.IsStored())
        return m_store->Read(key.stored, name, value);
    return key.hive ? key.hive->Read(key.node, name, value) : notFound;
}

Code Tree::SetValue(Key &key, Value const &value) {
    if (value.name.size() > longestValueName)
        return invalidParameter;
    Lock const lock(m_mutex);
    Code code = Settle(key);
    if (code != success)
        return code;
    if (key.hive)
        return accessDenied;
    if (key.IsStored())
        return m_store->Set(key.stored, value);
    Store::Change change(*m_store);
    code = change.Began();
    if (code != success)
        return code;
    // Whoever made it meanwhile made what is needed.
    Key made = key;
    code = Settle(made);
    if (code == success)
        code = made.hive ? accessDenied : MakeSelf(made);
    if (code == success)
        code = m_store->Set(made.stored, value);
    return change.End(code);
}

Code Tree::DeleteValue(Key &key, std::u16string_view name) {
    Lock const lock(m_mutex);
    Code const code = Settle(key);
    if (code != success)
        return code;
    if (key.hive)
        return accessDenied;
    return key.IsStored() ? m_store->DeleteValue(key.stored, name) : notFound;
}

} // namespace platform::registry
