// Questions of several threads: the marking is the one thing that they write.
#include "tree_nodes.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

namespace {

constexpr int rounds = 2000;

std::string Folder(int round) { return "C:\\folder " + std::to_string(round); }

} // namespace

TEST(ProtectThreads, That_race_for_an_interior_path_see_it_marked_later) {
    ProtectNode tree;
    for (int round = 0; round < rounds; ++round)
        ProtectAdd(tree, (Folder(round) + "\\file").c_str(), 0);
    std::vector<int> answers[2] = {std::vector<int>(rounds), std::vector<int>(rounds)};
    std::atomic<int> turn{0};
    auto const ask = [&](int self) {
        for (int round = 0; round < rounds; ++round) {
            ++turn;
            while (turn < 2 * (round + 1))
                std::this_thread::yield();
            answers[self][static_cast<std::size_t>(round)] = Ask(tree, Folder(round));
        }
    };
    std::thread other(ask, 1);
    ask(0);
    other.join();
    for (int round = 0; round < rounds; ++round) {
        auto const at = static_cast<std::size_t>(round);
        EXPECT_FALSE(answers[0][at] && answers[1][at]) << round; // nobody had marked it
        EXPECT_TRUE(Ask(tree, Folder(round)));
    }
}

TEST(ProtectThreads, Each_split_their_own_path) {
    ProtectNode tree;
    std::vector<std::string> paths;
    for (int i = 0; i < 8; ++i)
        paths.push_back("C:\\a\\b\\c\\d\\" + std::string(1, static_cast<char>('e' + i)));
    for (std::string const &path : paths)
        ProtectAdd(tree, path.c_str(), 0);
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (std::string const &path : paths)
        threads.emplace_back([&tree, &wrong, &path] {
            for (int round = 0; round < rounds; ++round)
                wrong += !Ask(tree, path) || Ask(tree, path + "\\x");
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(0, wrong);
}
