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

// What goes into one table.
struct Topic {
    std::string sizes; // what the sizes of its contests are
    std::vector<Contest> contests;
    std::vector<Row> rows; // known already, without a clock
};
using Topics = std::function<std::vector<Topic>(bool quick)>;

// A whole program that measures some topics: its options, its tables and its result.
int RunTopics(int argc, char **argv, char const *program, Topics const &topics);

// Searches and comparisons of runs; sizes are bytes.
std::vector<Contest> RangeContests();
// Work on lists; sizes are nodes.
std::vector<Contest> ListContests(std::uint32_t nodes);
// Work on single strings; sizes are characters.
std::vector<Contest> StringContests();
std::vector<Row> StringMemory();
// Splitting of texts and work on lists of strings; sizes are strings.
std::vector<Contest> StringListContests(std::uint32_t strings);

// Paths; sizes are paths.
std::vector<Contest> PathContests();

// The protected lists; sizes are lines of the largest one.
std::vector<Contest> ProtectContests();
std::vector<Row> ProtectMemory();
Row ListLoad(int runs);
double SecondsOf(std::string const &work); // of a load or an inflate, in this process
// What loading the library adds to a program; sizes are runs.
std::vector<Row> LoadTimes(int runs);

// The registry, and a mounted hive, which has to come first; sizes are keys.
std::vector<Contest> HiveContests(std::uint32_t keys);
std::vector<Contest> RegistryContests(std::uint32_t keys);

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

// Adds a way of doing the work once its answer has been seen to be right.
template <class Call, class Answer> void Add(Contest &contest, std::string const &name, Call call,
                                             Answer const &answer, Against against = Against::Rival,
                                             double target = 0) {
    Expect(call() == answer, contest.workload + ", " + name);
    contest.contenders.push_back({name, Repeated(call), against, target});
}

} // namespace bench
