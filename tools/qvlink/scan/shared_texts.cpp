#include "scan/shared_texts.h"

#include <new>

#include "model.h"

namespace qvlink {
namespace {

constexpr std::size_t LONGEST_NAME = 250;

} // namespace

SharedTexts::SharedTexts(CQVUDatabase &database, Tree &tree, std::uint32_t type)
    : m_database(database), m_tree(tree), m_type(type) {
    for (CQVUObject *const object : FindObjects(database, "*", type)) {
        m_objects.emplace(TextOf(*object), object);
    }
}

CQVUObject *SharedTexts::Of(std::string const &text) {
    bool const isLong = text.size() > LONGEST_NAME;
    if (text.empty() || (isLong && m_type == OBJ_VFILE)) {
        return nullptr;
    }
    auto const [known, isNew] = m_objects.try_emplace(text);
    if (isNew) {
        std::string copy = isLong ? text : std::string();
        auto const size = static_cast<std::uint32_t>(copy.size());
        known->second = m_database.AddObject(text.c_str(), m_type, 0, size, copy.data(), 1);
        m_tree.NoteChange();
    }
    if (!known->second) {
        throw std::bad_alloc();
    }
    return known->second;
}

void SharedTexts::RemoveOrphans() {
    for (auto known = m_objects.begin(); known != m_objects.end();) {
        if (LinksTo(m_database, *known->second, AnyLink).empty()) {
            known->second->Delete();
            m_tree.NoteChange();
            known = m_objects.erase(known);
        } else {
            ++known;
        }
    }
}

std::string TextOf(CQVUObject &object) {
    unsigned long const size = object.GetDataSize();
    std::string text(size, '\0');
    if (size > LONGEST_NAME &&
        object.GetData(size, reinterpret_cast<unsigned char *>(text.data()))) {
        return text;
    }
    return std::string(NameOf(object));
}

} // namespace qvlink
