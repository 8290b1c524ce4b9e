// Chance for tests: the same seed gives the same course on every system.
#pragma once

#include <cstdint>
#include <random>
#include <string>

class Dice {
public:
    explicit Dice(std::uint32_t seed) : m_engine(seed) {}

    unsigned long Below(std::size_t limit) {
        return static_cast<unsigned long>(m_engine() % limit);
    }
    bool OneIn(std::size_t limit) { return Below(limit) == 0; }
    char Of(std::string const &letters) { return letters[Below(letters.size())]; }
    // Below `limit` letters.
    std::string Text(std::string const &letters, std::size_t limit) {
        std::string text(Below(limit), ' ');
        for (char &c : text)
            c = Of(letters);
        return text;
    }

private:
    std::mt19937 m_engine;
};
