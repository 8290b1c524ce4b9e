// Several threads on one database.
#include <atomic>
#include <thread>

#include "store_fixture.h"

namespace {

constexpr int threadCount = 4, rounds = 300;

template <class Body> void OnThreads(Body body) {
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back(body, i);
    for (std::thread &thread : threads)
        thread.join();
}

} // namespace

TEST_F(Store, Threads_that_add_objects_get_distinct_ids) {
    std::vector<std::vector<unsigned long>> ids(threadCount);
    OnThreads([&](int self) {
        for (int i = 0; i < rounds; ++i)
            ids[static_cast<std::size_t>(self)].push_back(
                File("object", persistent)->GetUniqueID());
    });
    std::vector<bool> seen(threadCount * rounds + 2);
    for (auto const &own : ids)
        for (unsigned long const id : own) {
            ASSERT_LT(id, seen.size());
            EXPECT_FALSE(seen[id]);
            seen[id] = true;
        }
}

TEST_F(Store, Threads_that_link_to_one_hub_lose_no_link) {
    CQVUObject *const hub = File("hub", persistent);
    OnThreads([&](int) {
        for (int i = 0; i < rounds; ++i)
            File("leaf", persistent)->LinkTo(hub, 8);
    });
    EXPECT_EQ(hub->dwLinksTo, static_cast<std::uint32_t>(threadCount * rounds) | LINK_LIST_BLOCKED);
}

TEST_F(Store, Threads_that_make_the_same_persistent_link_make_one) {
    CQVUObject *const a = File("a", persistent), *const b = File("b", persistent);
    OnThreads([&](int) {
        for (int i = 0; i < rounds; ++i)
            EXPECT_EQ(a->LinkTo(b, 8), 1);
    });
    EXPECT_EQ(LinksFrom(a), Entries{1});
}

// Each thread works on objects of its own, all linked with one that all share.
TEST_F(Store, Threads_that_add_link_change_search_and_delete_leave_a_sound_graph) {
    CQVUObject *const hub = File("hub", persistent);
    OnThreads([&](int self) {
        std::string const name = "thread" + std::to_string(self);
        std::string longer = name + " with a longer name", pattern = name + "*";
        for (int i = 0; i < rounds; ++i) {
            CQVUObject *const object = File(name.c_str(), i % 2);
            object->LinkTo(hub, 8);
            hub->LinkTo(object, 16);
            object->SetName(longer.data());
            object->SetData(4, reinterpret_cast<unsigned char *>(longer.data()));
            object->SetFlags(static_cast<unsigned long>(i));
            object->MakePersistent();
            CQVULink *link = nullptr;
            SearchHandle const links = object->FindFirstLinkTo(16, &link);
            EXPECT_NE(links, 0u);
            object->FindCloseLinkTo(links);
            CQVUObject *found = nullptr;
            SearchHandle const objects = session->FindFirstObject(pattern.data(), OBJ_FILE, &found);
            EXPECT_NE(objects, 0u);
            session->FindCloseObject(objects);
            EXPECT_EQ(DataOf(object).size(), 4u);
            if (i % 50 == 0)
                session->Flush();
            EXPECT_EQ(object->Delete(), 1);
        }
    });
    EXPECT_EQ(hub->dwLinksFrom & LINK_ENTRY_ID_MASK, 0u);
    EXPECT_EQ(hub->dwLinksTo & LINK_ENTRY_ID_MASK, 0u);
    for (unsigned long id = 3; id <= 2ul + threadCount * rounds; ++id)
        ASSERT_EQ(session->LookupObject(id), nullptr);
}

TEST_F(Store, A_walk_over_a_list_that_other_threads_change_ends) {
    CQVUObject *const hub = File("hub", transient);
    std::atomic<bool> done{false};
    std::thread walker([&] {
        while (!done) {
            CQVULink *link = nullptr;
            SearchHandle const handle = hub->FindFirstLinkTo(8, &link);
            while (handle && hub->FindNextLinkTo(handle, &link)) {
            }
            hub->FindCloseLinkTo(handle);
            std::this_thread::yield();
        }
    });
    for (int i = 0; i < rounds; ++i) {
        CQVUObject *const leaf = File("leaf", transient);
        leaf->LinkTo(hub, 8);
        if (i % 3)
            leaf->Delete();
    }
    done = true;
    walker.join();
    EXPECT_EQ(hub->dwLinksTo & LINK_ENTRY_ID_MASK, static_cast<std::uint32_t>(rounds) / 3);
}
