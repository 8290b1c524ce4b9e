// Numbers that are the same for the same seed with every standard library.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

namespace bench {

class Random {
public:
    explicit Random(std::uint64_t seed) : m_engine(seed) {}

    double Unit() { return static_cast<double>(m_engine() >> 11) * 0x1p-53; } // from 0, below 1
    std::uint32_t Below(std::size_t limit) { return At(Unit(), limit); }
    // As Below, with low numbers the more frequent the higher `skew` is; 1 is even.
    std::uint32_t Skewed(std::size_t limit, double skew) {
        return At(std::pow(Unit(), skew), limit);
    }
    bool Chance(double probability) { return Unit() < probability; }

    template <class T> T const &Pick(std::vector<T> const &from) {
        return from[Below(from.size())];
    }
    template <class T> void Shuffle(std::vector<T> &items) {
        for (std::size_t i = items.size(); i > 1; --i)
            std::swap(items[i - 1], items[Below(i)]);
    }

private:
    static std::uint32_t At(double unit, std::size_t limit) {
        return static_cast<std::uint32_t>(unit * static_cast<double>(limit));
    }

    std::mt19937_64 m_engine;
};

} // namespace bench
