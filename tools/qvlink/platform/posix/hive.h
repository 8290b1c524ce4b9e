// A registry hive: the file in which a Windows keeps a part of its registry.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "lists/key_tree.h"

struct hive_h;

namespace qvlink {

class Hive {
public:
    // Null, and `why` says what was wrong.
    static std::unique_ptr<Hive> Open(std::string const &path, std::string &why);
    ~Hive();
    Hive(Hive const &) = delete;
    Hive &operator=(Hive const &) = delete;

    // Adds the keys below the hive's root to a key, which is `line` in a list. What is
    // damaged is told.
    void Read(Key &to, std::string const &line, std::vector<std::string> &skipped) const;
    // A number that a key below the root holds.
    std::optional<unsigned> Number(const char *key, const char *value) const;

private:
    explicit Hive(hive_h *hive) : m_hive(hive) {}
    hive_h *m_hive;
};

} // namespace qvlink
