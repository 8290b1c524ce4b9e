#include "answer/key_question.h"

#include <new>
#include <vector>

namespace qvlink {

void KeyQuestion::Releaser::operator()(CQVUDatabase *database) const {
    database->SetSaveFlag(0);
    database->Release();
}

KeyQuestion::KeyQuestion(std::string const &file) : m_database(AttachDatabase(file.c_str())) {
    if (!m_database) {
        throw std::bad_alloc();
    }
}

bool KeyQuestion::operator()(Place const &key) {
    std::vector<CQVUObject *> chain;
    auto const add = [&](std::string const &name, std::uint32_t type) {
        CQVUObject *const object = m_database->AddObject(name.c_str(), type, 0, 0, nullptr, 0);
        if (!object || (!chain.empty() && !chain.back()->LinkTo(object, LINK_PARENT))) {
            throw std::bad_alloc();
        }
        chain.push_back(object);
    };
    add(key.drive, OBJ_HIVE);
    for (std::string const &name : key.names) {
        add(name, OBJ_KEY);
    }
    bool const isProtected = chain.back()->IsProtected() != 0;
    for (CQVUObject *const object : chain) {
        object->Delete();
    }
    return isProtected;
}

} // namespace qvlink
