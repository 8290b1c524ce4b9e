#include "answer/protection.h"

#include "answer/place.h"

namespace qvlink {

std::string PathKey(std::string_view databasePath) {
    std::string key;
    for (char const c : FoldName(databasePath)) {
        bool const isEmptyName = c == '\\' && (key.empty() || key.back() == '\\');
        key += isEmptyName ? "" : std::string(1, c);
    }
    if (!key.empty() && key.back() == '\\') {
        key.pop_back();
    }
    return key;
}

std::optional<bool> Protection::Of(std::string const &databasePath) {
    return Of(databasePath, [&] { return m_ask(databasePath.c_str()) != 0; });
}

std::optional<bool> Protection::Of(std::string const &databasePath,
                                   std::function<bool()> const &ask) {
    if (databasePath.size() >= ProtectedPathRoom) {
        return std::nullopt;
    }
    auto const [answer, isNew] = m_answers.emplace(PathKey(databasePath), false);
    if (isNew) {
        answer->second = ask();
    }
    return answer->second;
}

} // namespace qvlink
