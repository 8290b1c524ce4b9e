// Searches over all objects: masks, patterns, order.
#include "attached.h"
#include "searches.h"

#include <gtest/gtest.h>

namespace {

class Objects : public testing::Test {
protected:
    // Adds an object of type OBJ_FILE; its id.
    unsigned long File(std::string const &name) {
        return db.Add(name.c_str(), OBJ_FILE)->GetUniqueID();
    }
    Ids Find(std::string const &pattern, unsigned long mask = allTypes) {
        return FindObjects(db.Get(), pattern, mask);
    }

    Attached db;
};

TEST_F(Objects, A_fresh_database_has_nothing_to_find) {
    CQVUObject *out = nullptr;
    EXPECT_EQ(db->FindFirstObject(Text("*"), allTypes, &out), 0u);
    EXPECT_EQ(db->FindFirstObject(Text("*"), 0, &out), 0u);
    EXPECT_EQ(out, nullptr);
}

TEST_F(Objects, An_empty_database_has_nothing_to_find) {
    EXPECT_EQ(db->DeleteObject(1), 1);
    CQVUObject *out = nullptr;
    EXPECT_EQ(db->FindFirstObject(Text("*"), allTypes, &out), 0u);
    EXPECT_EQ(out, nullptr);
}

TEST_F(Objects, The_root_is_not_found_even_with_a_name) {
    Rename(db->GetRootObject(), "root");
    EXPECT_EQ(Find("*"), Ids{});
    EXPECT_EQ(Find("root"), Ids{});
}

TEST_F(Objects, They_come_in_ascending_order_of_id) {
    unsigned long const c = File("c"), a = File("a"), b = File("b");
    EXPECT_EQ(Find("*"), (Ids{c, a, b}));
    EXPECT_LT(c, a);
    EXPECT_LT(a, b);
}

TEST_F(Objects, A_mask_finds_the_types_that_share_a_bit_with_it) {
    unsigned long const pinned = db.Add("p", OBJ_PINNED)->GetUniqueID();
    unsigned long const file = db.Add("f", OBJ_FILE)->GetUniqueID();
    unsigned long const both = db.Add("b", OBJ_FILE | OBJ_PINNED)->GetUniqueID();
    unsigned long const own = db.Add("o", 64)->GetUniqueID();
    db.Add("none", OBJ_ROOT);
    EXPECT_EQ(Find("*", 4), (Ids{file, both}));
    EXPECT_EQ(Find("*", 2), (Ids{pinned, both}));
    EXPECT_EQ(Find("*", 6), (Ids{pinned, file, both}));
    EXPECT_EQ(Find("*", 64), (Ids{own}));
    EXPECT_EQ(Find("*", 1), Ids{});
    EXPECT_EQ(Find("*", 0), Ids{});
    EXPECT_EQ(Find("*", allTypes), (Ids{pinned, file, both, own}));
}

TEST_F(Objects, The_bit_of_persistence_is_no_type) {
    File("a");
    EXPECT_EQ(Find("*", PERSISTENT_BIT), Ids{});
}

TEST_F(Objects, Transient_objects_are_found_as_well) {
    unsigned long const id = db.Add("t", OBJ_FILE, false)->GetUniqueID();
    EXPECT_EQ(Find("t"), Ids{id});
}

TEST_F(Objects, An_object_without_a_name_is_never_returned) {
    db.Add(nullptr, OBJ_FILE);
    db.Add("", OBJ_FILE);
    for (char const *const pattern : {"*", "*.*", "", "?", "*.dll"})
        EXPECT_EQ(Find(pattern), Ids{}) << pattern;
}

TEST_F(Objects, A_pattern_without_wildcards_matches_the_whole_name_in_any_case) {
    unsigned long const name = File("Name");
    File("Names");
    File("aName");
    EXPECT_EQ(Find("nAME"), Ids{name});
    EXPECT_EQ(Find(""), Ids{});
}

TEST_F(Objects, A_star_a_dot_and_three_letters_match_the_end_of_longer_names) {
    unsigned long const plain = File("a.dll"), upper = File("B.DLL"), two = File("x.y.dll"),
                        noBase = File("..dll");
    File(".dll");
    File("adll");
    File("a.dll.txt");
    File("a.dl");
    EXPECT_EQ(Find("*.dll"), (Ids{plain, upper, two, noBase}));
    EXPECT_EQ(Find("*.DLL"), (Ids{plain, upper, two, noBase}));
}

TEST_F(Objects, In_the_extension_form_nothing_is_a_wildcard) {
    File("a.dll");
    unsigned long const literal = File("a.d?l"), stars = File("b.***");
    EXPECT_EQ(Find("*.d?l"), Ids{literal});
    EXPECT_EQ(Find("*.***"), Ids{stars});
    EXPECT_EQ(Find("*.*.*"), Ids{});
    unsigned long const dots = File("c.*.*");
    EXPECT_EQ(Find("*.*.*"), Ids{dots});
}

TEST_F(Objects, A_longer_or_shorter_extension_takes_the_matcher) {
    unsigned long const alone = File(".html"), page = File("a.HTML"), js = File("a.js"),
                        bare = File(".js");
    EXPECT_EQ(Find("*.html"), (Ids{alone, page}));
    EXPECT_EQ(Find("*.h?ml"), (Ids{alone, page}));
    EXPECT_EQ(Find("*.js"), (Ids{js, bare}));
    EXPECT_EQ(Find("?.js"), Ids{js});
}

TEST_F(Objects, Five_characters_that_do_not_start_with_a_star_and_a_dot_take_the_matcher) {
    unsigned long const id = File("a.txt"), other = File("axtxt");
    EXPECT_EQ(Find("?.txt"), Ids{id});
    EXPECT_EQ(Find("*?txt"), (Ids{id, other}));
    EXPECT_EQ(Find("a.*xt"), Ids{id});
}

TEST_F(Objects, A_star_and_star_dot_star_match_names_without_a_dot_too) {
    unsigned long const bare = File("bare"), dotted = File("a.b");
    EXPECT_EQ(Find("*"), (Ids{bare, dotted}));
    EXPECT_EQ(Find("*.*"), (Ids{bare, dotted}));
    EXPECT_EQ(Find("**.*"), Ids{dotted});
    EXPECT_EQ(Find("*.**"), Ids{dotted});
    EXPECT_EQ(Find("?*.*"), Ids{dotted});
}

TEST_F(Objects, A_question_mark_takes_exactly_one_character) {
    unsigned long const two = File("ab");
    File("a");
    unsigned long const three = File("abc");
    EXPECT_EQ(Find("a?"), Ids{two});
    EXPECT_EQ(Find("??"), Ids{two});
    EXPECT_EQ(Find("ab?"), Ids{three});
    EXPECT_EQ(Find("abc?"), Ids{});
    EXPECT_EQ(Find("a*?"), (Ids{two, three}));
}

TEST_F(Objects, Wildcards_in_names_are_plain_characters) {
    unsigned long const star = File("a*b"), mark = File("a?b");
    File("axb");
    EXPECT_EQ(Find("a*b").size(), 3u);
    EXPECT_EQ(Find("a?b").size(), 3u);
    EXPECT_EQ(Find("*?b").size(), 3u);
    Rename(db.Object(star), "z*");
    Rename(db.Object(mark), "z?");
    EXPECT_EQ(Find("z*"), (Ids{star, mark}));
}

TEST_F(Objects, Searches_see_present_names) {
    unsigned long const id = File("old.dll");
    Rename(db.Object(id), "new.txt");
    EXPECT_EQ(Find("*.dll"), Ids{});
    EXPECT_EQ(Find("old*"), Ids{});
    EXPECT_EQ(Find("*.txt"), Ids{id});
    EXPECT_EQ(Find("NEW.*"), Ids{id});
}

TEST_F(Objects, Out_is_written_on_success_only) {
    unsigned long const id = File("a");
    CQVUObject *out = nullptr;
    EXPECT_EQ(db->FindFirstObject(Text("b"), allTypes, &out), 0u);
    EXPECT_EQ(out, nullptr);
    SearchHandle const handle = db->FindFirstObject(Text("a"), allTypes, &out);
    ASSERT_NE(handle, 0u);
    EXPECT_EQ(out, db.Object(id));
    CQVUObject *untouched = nullptr;
    EXPECT_EQ(db->FindNextObject(handle, &untouched), 0);
    EXPECT_EQ(untouched, nullptr);
    db->FindCloseObject(handle);
}

TEST_F(Objects, The_step_of_a_search_gives_the_next_match_or_null) {
    unsigned long const a = File("a"), b = File("b");
    File("other");
    CQVUObject *out = nullptr;
    SearchHandle const handle = db->FindFirstObject(Text("?"), allTypes, &out);
    ASSERT_NE(handle, 0u);
    EXPECT_EQ(out, db.Object(a));
    EXPECT_EQ(Protected::Step(db.Get(), handle), db.Object(b));
    EXPECT_EQ(Protected::Step(db.Get(), handle), nullptr);
    EXPECT_EQ(Protected::Step(db.Get(), handle), nullptr);
    db->FindCloseObject(handle);
}

TEST_F(Objects, Patterns_of_a_hundred_characters_and_more_match_nothing) {
    unsigned long const fits = File(std::string(99, 'x'));
    File(std::string(100, 'x'));
    File(std::string(101, 'x'));
    EXPECT_EQ(Find(std::string(99, 'x')), Ids{fits});
    EXPECT_EQ(Find(std::string(99, '*')).size(), 3u);
    for (std::size_t const length : {100u, 101u, 104u, 128u, 1000u, 1000000u}) {
        EXPECT_EQ(Find(std::string(length, '*')), Ids{}) << length;
        EXPECT_EQ(Find(std::string(length, '?')), Ids{}) << length;
        EXPECT_EQ(Find(std::string(length, 'x')), Ids{}) << length;
    }
}

TEST(ObjectsFromFiles, Names_of_any_length_are_examined) {
    image::File file;
    for (std::uint32_t id = 2; id <= 7; ++id) {
        image::Object object;
        object.id = id;
        object.type = OBJ_FILE | PERSISTENT_BIT;
        object.to = {1};
        file.objects.push_back(object);
    }
    file.objects[0].name = std::string(65535, 'n');
    file.objects[1].name = std::string(998, 'n') + "z";
    file.objects[2].name = std::string(65531, 'n') + ".dll";
    file.objects[3].name = "nz";
    file.objects[4].name = "plain.dll";
    file.objects[5].name = std::string(999, 'm') + "z";
    Attached db(file);
    EXPECT_EQ(FindObjects(db.Get(), "n*z", allTypes), (Ids{3, 5}));
    EXPECT_EQ(FindObjects(db.Get(), "*.dll", allTypes), (Ids{4, 6}));
    EXPECT_EQ(FindObjects(db.Get(), "nz", allTypes), Ids{5});
}

} // namespace
