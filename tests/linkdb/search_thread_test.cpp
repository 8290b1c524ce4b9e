// Searches of several threads at once, and an expansion that another thread watches.
#include "attached.h"
#include "searches.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

TEST(SearchThreads, Separate_searches_of_two_threads_do_not_disturb_each_other) {
    Attached db;
    Ids files, keys;
    for (int i = 0; i < 300; ++i) {
        files.push_back(db.Add("file", OBJ_FILE)->GetUniqueID());
        keys.push_back(db.Add("key", OBJ_KEY)->GetUniqueID());
    }
    std::atomic<int> wrong{0};
    auto const look = [&](char const *pattern, unsigned long mask, Ids const &told) {
        for (int round = 0; round < 40; ++round)
            if (FindObjects(db.Get(), pattern, mask) != told)
                ++wrong;
    };
    std::thread one(look, "file", OBJ_FILE, std::cref(files));
    std::thread other(look, "*", OBJ_KEY, std::cref(keys));
    one.join();
    other.join();
    EXPECT_EQ(wrong, 0);
}

TEST(SearchThreads, Link_walks_and_object_searches_go_on_while_another_thread_adds_and_deletes) {
    Attached db;
    CQVUObject *const hub = db.Add("hub", OBJ_KEY);
    for (unsigned long type = 1; type <= 0x8000; type <<= 1)
        EXPECT_EQ(hub->LinkTo(hub, type), 1);
    std::atomic<bool> done{false};
    std::atomic<int> wrong{0};
    std::thread writer([&] {
        for (int round = 0; round < 1500; ++round) {
            CQVUObject *const object = db.Add("passing", OBJ_FILE);
            object->LinkTo(hub, 2);
            object->Delete();
        }
        done = true;
    });
    do {
        if (FindLinksFrom(hub, allTypes).size() != 16)
            ++wrong;
        CQVUObject *out = nullptr;
        SearchHandle const handle = db->FindFirstObject(Text("hub"), OBJ_KEY, &out);
        if (out != hub || db->FindNextObject(handle, &out))
            ++wrong;
        db->FindCloseObject(handle);
    } while (!done);
    writer.join();
    EXPECT_EQ(wrong, 0);
}

// The marks that an expansion sets are to be seen until it hands out its first result.
TEST(SearchThreads, GetFlags_shows_the_mark_while_another_thread_expands) {
    Attached db;
    CQVUObject *const drive = db.Add("C:", OBJ_DRIVE);
    CQVUObject *const start = db.AddBelow(drive, "start", OBJ_FILE);
    CQVUObject *const first = db.Add("first", OBJ_FILE);
    start->LinkTo(first, 2);
    CQVUObject *last = first;
    for (int i = 0; i < 30000; ++i) {
        CQVUObject *const next = db.Add(nullptr, OBJ_FILE);
        last->LinkTo(next, 2);
        last = next;
    }
    std::atomic<bool> done{false};
    std::thread expander([&] {
        while (!done) {
            CQVUObject *out = nullptr;
            SearchHandle const handle = start->FindFirstDependentObject(&out, nullptr);
            start->FindCloseDependentObject(handle);
        }
    });
    auto const limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    bool seen = false;
    while (!seen && std::chrono::steady_clock::now() < limit)
        seen = (first->GetFlags() & OBJ_FLAG_VISITED) != 0;
    done = true;
    expander.join();
    EXPECT_TRUE(seen);
    EXPECT_EQ(first->GetFlags(), 0u);
}

TEST(SearchThreads, Paths_are_asked_by_several_threads_at_once) {
    Attached db;
    CQVUObject *const drive = db.Add("C:", OBJ_DRIVE);
    std::vector<CQVUObject *> files;
    for (int i = 0; i < 200; ++i)
        files.push_back(db.AddBelow(drive, ("f" + std::to_string(i)).c_str(), OBJ_FILE));
    std::atomic<int> wrong{0};
    auto const ask = [&] {
        for (int round = 0; round < 10; ++round)
            for (CQVUObject *const file : files) {
                std::optional<std::string> const path = PathOf(file);
                if (!path || db->GetObjectByPath(path->c_str()) != file)
                    ++wrong;
            }
    };
    std::thread one(ask), other(ask);
    one.join();
    other.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
