// Expansion of graphs that are deep, wide or dense.
#include "attached.h"
#include "searches.h"

#include <gtest/gtest.h>

namespace {

constexpr unsigned long needs = 2;

class Scale : public testing::Test {
protected:
    // So many more objects of consecutive ids.
    std::vector<CQVUObject *> Many(std::size_t count) {
        std::vector<CQVUObject *> objects;
        for (std::size_t i = 0; i < count; ++i)
            objects.push_back(db.Add(nullptr, OBJ_FILE, false));
        return objects;
    }

    // Ids of the objects, the last one first.
    static Ids Backwards(std::vector<CQVUObject *> const &objects) {
        Ids ids;
        for (auto object = objects.rbegin(); object != objects.rend(); ++object)
            ids.push_back((*object)->GetUniqueID());
        return ids;
    }

    Attached db;
    CQVUObject *drive = db.Add("C:", OBJ_DRIVE);
    CQVUObject *start = db.AddBelow(drive, "start", OBJ_FILE);
};

constexpr std::uint32_t firstOfChain = 4;

// A file with a drive, a file below it, and a chain of so many objects that this needs.
image::File WithChain(std::uint32_t length) {
    image::File file;
    std::uint32_t const last = firstOfChain + length - 1;
    file.objects.reserve(length + 2);
    for (std::uint32_t id = 2; id <= last; ++id) {
        image::Object object;
        object.id = id;
        object.type = (id == 2 ? OBJ_DRIVE : OBJ_FILE) | PERSISTENT_BIT;
        if (id < firstOfChain)
            object.name = id == 2 ? "C:" : "start";
        if (id < last) {
            object.from = {id};
            std::uint32_t const type = id == 2 ? LINK_PARENT : needs;
            file.links.push_back({id, id, id + 1, type | PERSISTENT_BIT});
        }
        if (id > 2)
            object.to = {id - 1};
        file.objects.push_back(object);
    }
    return file;
}

// Loaded from a file and gathered by one call, since a million calls take a while where a
// lock is a call to another process.
TEST(LongChain, A_chain_of_a_million_objects_is_expanded_in_order) {
    constexpr std::uint32_t length = 1000000;
    Attached db(WithChain(length));
    CQVUObject *const start = db.Object(firstOfChain - 1);
    CQVUObject *out = nullptr;
    SearchHandle const handle = start->FindFirstDependentObject(&out, nullptr);
    ASSERT_NE(handle, 0u);
    EXPECT_EQ(out->GetUniqueID(), firstOfChain + length - 1);
    EXPECT_EQ(out->GetFlags(), 0u);
    EXPECT_EQ(db.Object(firstOfChain)->GetFlags(), 0u);
    start->FindCloseDependentObject(handle);
    FFDepObjResult *results = nullptr;
    db->ExpandObjectRef(start, nullptr, &results);
    Ids told(length);
    for (std::uint32_t i = 0; i < length; ++i)
        told[i] = firstOfChain + length - 1 - i;
    EXPECT_TRUE(Take(results) == told);
}

TEST_F(Scale, A_long_chain_behind_a_referrer_is_expanded_in_order) {
    std::vector<CQVUObject *> const chain = Many(20000);
    for (std::size_t i = 0; i + 1 < chain.size(); ++i)
        chain[i]->LinkTo(chain[i + 1], needs);
    chain.front()->LinkTo(start, needs);
    Ids told = Backwards(chain);
    told.insert(told.begin(), start->GetUniqueID());
    EXPECT_TRUE(FindReferrers(start) == told);
}

TEST_F(Scale, A_long_cycle_ends_at_the_start) {
    std::vector<CQVUObject *> const chain = Many(20000);
    start->LinkTo(chain.front(), needs);
    for (std::size_t i = 0; i + 1 < chain.size(); ++i)
        chain[i]->LinkTo(chain[i + 1], needs);
    chain.back()->LinkTo(start, needs);
    Ids told = Backwards(chain);
    told.insert(told.begin(), start->GetUniqueID());
    EXPECT_TRUE(FindDependents(start) == told);
}

// Every second object of the chain is a bare name that the folder of the start resolves.
TEST_F(Scale, A_long_chain_through_bare_names_is_expanded_in_order) {
    CQVUObject *const app = db.AddBelow(drive, "app", OBJ_FILE);
    CQVUObject *const program = db.AddBelow(app, "program", OBJ_FILE);
    std::vector<CQVUObject *> located;
    CQVUObject *last = program;
    for (int i = 0; i < 5000; ++i) {
        std::string const name = "lib" + std::to_string(i) + ".dll";
        CQVUObject *const bare = db.Add(name.c_str(), OBJ_VFILE);
        located.push_back(db.AddBelow(app, name.c_str(), OBJ_FILE));
        last->LinkTo(bare, needs);
        last = located.back();
    }
    EXPECT_TRUE(FindDependents(program) == Backwards(located));
}

TEST_F(Scale, An_object_with_twenty_thousand_links_is_expanded_in_order) {
    std::vector<CQVUObject *> const fan = Many(20000);
    for (CQVUObject *const object : fan)
        start->LinkTo(object, needs);
    EXPECT_TRUE(FindDependents(start) == Backwards(fan));
}

TEST_F(Scale, A_dense_graph_is_expanded_once_an_object) {
    std::vector<CQVUObject *> const mesh = Many(300);
    start->LinkTo(mesh.front(), needs);
    for (CQVUObject *const source : mesh)
        for (CQVUObject *const target : mesh)
            source->LinkTo(target, needs);
    EXPECT_EQ(FindDependents(start), Backwards(mesh));
}

TEST_F(Scale, Ten_thousand_levels_of_folders_are_too_deep_for_a_path_and_end_at_once) {
    CQVUObject *last = drive;
    for (int i = 0; i < 10000; ++i)
        last = db.AddBelow(last, "d", OBJ_FILE);
    EXPECT_EQ(PathOf(last), std::nullopt);
    CQVUObject *out = nullptr;
    last->LinkTo(start, needs);
    EXPECT_EQ(last->FindFirstDependentObject(&out, nullptr), 0u);
}

} // namespace
