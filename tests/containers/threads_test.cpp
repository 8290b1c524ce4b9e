// What the locks of containers promise: objects of their own for each thread, one heap for
// several, and one lock for several.
#include "list_elements.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <list>
#include <thread>

using UTILS::CCriticalSection;
using UTILS::ListObject;
using UTILS::MapObject;
using UTILS::ScopedLock;
using UTILS::UtilsAllocator;

namespace {

constexpr int THREADS = 4;

// Runs the work on several threads at once, each with a number of its own.
void OnThreads(std::function<void(int)> const &work) {
    std::atomic<int> ready{0};
    std::vector<std::thread> threads;
    for (int number = 0; number < THREADS; ++number)
        threads.emplace_back([&, number] {
            ++ready;
            while (ready < THREADS)
                std::this_thread::yield();
            work(number);
        });
    for (std::thread &thread : threads)
        thread.join();
}

std::vector<int> Range(int count) {
    std::vector<int> keys;
    for (int key = 0; key < count; ++key)
        keys.push_back(key);
    return keys;
}

} // namespace

TEST(ContainerThreads, Each_thread_uses_a_list_of_its_own) {
    std::vector<std::vector<int>> results(THREADS);
    OnThreads([&results](int number) {
        for (int round = 0; round < 20; ++round) {
            OpenList<Number> list;
            for (int i = 0; i < 100; ++i) {
                Number one{(i * 37 + number) % 100, number};
                i % 2 ? list.AddToHead(&one, 0) : list.AddToTail(&one, 0);
            }
            list.Sort(static_cast<unsigned>(round % 2 ? 1 : 4));
            OpenList<Number> copy;
            static_cast<ListObject<Number> &>(copy) = list;
            copy.SmartRemoveFromIndice(60);
            Number one{60, number};
            copy.SortedInsert(&one, 0);
            results[static_cast<std::size_t>(number)] = Keys(copy);
        }
    });
    for (auto const &keys : results)
        EXPECT_EQ(keys, Range(100));
}

TEST(ContainerThreads, Each_thread_uses_lists_and_maps_of_the_library_of_its_own) {
    std::vector<int> sizes(THREADS);
    OnThreads([&sizes](int number) {
        for (int round = 0; round < 100; ++round) {
            OpenList<char> list, copy;
            MapObject<int, char> map, mapCopy;
            char text[] = "text";
            for (int i = 0; i < 20; ++i) {
                list.AddToTail(text, 0);
                map.AddToTail(&i, text, 0, 0);
            }
            static_cast<ListObject<char> &>(copy) = list;
            mapCopy = map;
            mapCopy.RemoveFromHead();
            EXPECT_STREQ(list.derived_class(), copy.derived_class());
            sizes[static_cast<std::size_t>(number)] += static_cast<int>(copy.Nodes().size());
        }
    });
    EXPECT_EQ(sizes, std::vector<int>(THREADS, 2000));
}

TEST(ContainerThreads, A_list_goes_from_thread_to_thread_under_a_lock_of_the_callers) {
    OpenList<Number> list;
    CCriticalSection lock;
    OnThreads([&](int number) {
        for (int i = 0; i < 200; ++i) {
            ScopedLock const held(lock);
            Number one{number, i};
            list.AddToTail(&one, 0);
            if (i % 4 == 3)
                list.RemoveFromHead();
        }
    });
    EXPECT_EQ(list.Nodes().size(), static_cast<std::size_t>(THREADS * 150));
}

TEST(ContainerThreads, One_allocator_serves_several_threads_as_a_heap) {
    UtilsAllocator<char> heap;
    UtilsAllocator<Word> objects;
    OnThreads([&](int number) {
        char const mark = static_cast<char>('a' + number);
        for (unsigned long size = 1; size <= 300; ++size) {
            char *const block = heap.AllocateMemory(nullptr, size);
            std::fill(block, block + size, mark);
            Word *const words = objects.AllocateMemory(nullptr, 3);
            words[2].text = mark;
            EXPECT_EQ(std::count(block, block + size, mark), static_cast<long>(size));
            EXPECT_EQ(words[2].text[0], mark);
            heap.FreeMemory(block);
            objects.FreeMemory(words);
        }
    });
    EXPECT_EQ(heap.AllocationScheme(), 0);
    EXPECT_EQ(heap.GetLength(), 0u);
}

TEST(ContainerThreads, One_allocator_copies_and_fills_for_several_threads) {
    UtilsAllocator<int> heap;
    OnThreads([&heap](int number) {
        for (int round = 0; round < 200; ++round) {
            std::vector<int> const source(50, number);
            std::vector<int> target(50, -1);
            heap.CopyMem(target.data(), source.data(), 50);
            EXPECT_EQ(target, source);
            heap.ZeroMem(target.data(), 50);
            EXPECT_EQ(target, std::vector<int>(50, 0));
            int *block = heap.AllocateMemory(nullptr, 5);
            std::fill(block, block + 5, number);
            block = heap.ReAllocateMemory(block, 5, 9);
            EXPECT_EQ(std::count(block, block + 5, number), 5);
            heap.FreeMemory(block);
        }
    });
}

TEST(ContainerThreads, One_lock_lets_one_thread_in_at_a_time_also_nested) {
    CCriticalSection lock;
    int inside = 0;
    int entered = 0;
    OnThreads([&](int) {
        for (int round = 0; round < 500; ++round) {
            ScopedLock const outer(lock);
            EXPECT_EQ(++inside, 1);
            {
                ScopedLock const inner(lock);
                ++entered;
            }
            --inside;
        }
    });
    EXPECT_EQ(entered, THREADS * 500);
    EXPECT_EQ(lock.GetState(-1), 0);
}
