// Pieces of work that the containers and what one would use instead do in turn.
#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Report.h"

namespace bench {

// One way of doing a piece of work: runs it as often as the state asks.
struct Contender {
    std::string name;
    std::function<void(benchmark::State &)> work;
    Against against = Against::Rival;
    double target = 0; // what the ratio has to reach, or may reach; 0: nothing asked
};

struct Contest {
    std::string workload;
    std::uint32_t size;
    std::vector<Contender> contenders; // the library's first
};

// Searches and comparisons of runs; sizes are bytes.
std::vector<Contest> RangeContests();
// Work on lists; sizes are nodes.
std::vector<Contest> ListContests(std::uint32_t nodes);

// Work that a single call does. Memory counts as changed between calls, so that none is left out.
template <class Call> std::function<void(benchmark::State &)> Repeated(Call call) {
    return [call](benchmark::State &state) {
        while (state.KeepRunning()) {
            benchmark::DoNotOptimize(call());
            benchmark::ClobberMemory();
        }
    };
}

// Work on something that is made anew each time, which the clock doesn't see.
template <class Make, class Work>
std::function<void(benchmark::State &)> RepeatedOn(Make make, Work work) {
    return [make, work](benchmark::State &state) {
        while (state.KeepRunning()) {
            state.PauseTiming();
            {
                auto const subject = make();
                state.ResumeTiming();
                work(*subject);
                state.PauseTiming();
            }
            state.ResumeTiming();
        }
    };
}

inline void Expect(bool right, std::string const &what) {
    if (!right)
        throw std::runtime_error("wrong answer: " + what);
}

} // namespace bench
