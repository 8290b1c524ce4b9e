// Names for the generated folders and files.
#pragma once

#include <string>
#include <unordered_set>

#include "Random.h"

namespace bench {

enum class Role { Folder, Library, Program, Document };

class NameMaker {
public:
    explicit NameMaker(Random &random) : m_random(random) {}

    void NextFolder() { m_taken.clear(); }
    // A name that no other of the present folder has, without regard to case.
    std::string Next(Role role);

private:
    std::string Draw(Role role);
    std::string Word();

    Random &m_random;
    std::unordered_set<std::string> m_taken;
};

} // namespace bench
