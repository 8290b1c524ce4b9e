// Lists of a test's own in the place of the stored ones, until the end of the scope.
#pragma once

#include "platform/testing.h"
#include "stored_list.h"

#include <cstring>
#include <memory>
#include <string>
#include <vector>

class ToldLists {
public:
    ToldLists() = default;
    ~ToldLists() { testing_hooks::SetResources(nullptr, 0); }
    ToldLists(ToldLists const &) = delete;
    ToldLists &operator=(ToldLists const &) = delete;

    // The type is a static text. Nothing lies behind the bytes, so that a read too far shows.
    void Tell(char const *type, WORD id, std::string const &stored) {
        m_bytes.push_back(std::make_unique<char[]>(stored.size()));
        std::memcpy(m_bytes.back().get(), stored.data(), stored.size());
        m_resources.push_back({type, id, m_bytes.back().get(), static_cast<DWORD>(stored.size())});
        testing_hooks::SetResources(m_resources.data(), m_resources.size());
    }
    void TellText(char const *type, WORD id, std::string const &text) {
        Tell(type, id, lists::Pack(text));
    }

private:
    std::vector<std::unique_ptr<char[]>> m_bytes;
    std::vector<testing_hooks::Resource> m_resources;
};

// A stored list whose first bytes tell another length.
inline std::string WithLength(std::string stored, std::uint32_t length) {
    for (unsigned i = 0; i < 4; ++i)
        stored[i] = static_cast<char>(length >> (8 * i) & 0xff);
    return stored;
}
