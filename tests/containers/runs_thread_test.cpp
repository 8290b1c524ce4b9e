// What the locks of the allocator and of the bundle are for: several threads at one object.
#include "UtilsVector.h"

#include <algorithm>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

constexpr int threadCount = 4;

// Runs a body in each of several threads, which it is told the number of.
void InThreads(std::function<void(int)> const &body) {
    std::vector<std::thread> threads;
    for (int number = 0; number < threadCount; ++number)
        threads.emplace_back(body, number);
    for (std::thread &thread : threads)
        thread.join();
}

} // namespace

TEST(AllocatorThreads, copy_with_one_counter_one_at_a_time) {
    constexpr unsigned long size = 64;
    UTILS::UtilsAllocator<std::string> heap;
    std::vector<int> wrong(threadCount);
    InThreads([&](int number) {
        std::vector<std::string> const source(size, std::to_string(number));
        for (int round = 0; round < 200; ++round) {
            std::string *const target = heap.AllocateMemory(nullptr, size);
            heap.CopyMem(target, source.data(), size);
            if (!std::equal(source.begin(), source.end(), target))
                ++wrong[static_cast<std::size_t>(number)];
            heap.FreeMemory(target);
        }
    });
    EXPECT_EQ(std::vector<int>(threadCount), wrong);
}

TEST(BundleThreads, grow_one_vector_without_losing_a_run) {
    constexpr unsigned long each = 40;
    UTILS::Utils<char, int> bundle;
    InThreads([&](int number) {
        std::string const text(1, static_cast<char>('a' + number));
        for (unsigned long i = 0; i < each; ++i)
            bundle.AddVector(text.c_str(), 0);
    });
    std::string all;
    for (unsigned long i = 0; i < threadCount * each; ++i)
        all += bundle.RetrieveVectorItem(i).Retrieve();
    std::sort(all.begin(), all.end());
    std::string expected;
    for (int number = 0; number < threadCount; ++number)
        expected += std::string(each, static_cast<char>('a' + number));
    EXPECT_EQ(expected, all);
}

TEST(BundleThreads, shrink_one_vector_to_what_is_left) {
    UTILS::Utils<char, int> bundle;
    bundle.BuildVector(1 + threadCount * 20, "x", 0);
    InThreads([&](int) {
        for (int i = 0; i < 20; ++i)
            bundle.RemoveVectorItem(0);
    });
    EXPECT_EQ(1u, bundle.RetrieveVectorSize(0));
    EXPECT_THROW(bundle.RetrieveVectorItem(1), std::out_of_range);
}
