// Names: reading, changing, and where they are filed.
#include "store_fixture.h"

#include <cstring>

namespace {

class StoreName : public Store {
protected:
    CQVUObject *Named(std::string const &name) {
        return session.Add(name.c_str(), OBJ_VFILE, transient);
    }
    static void Rename(CQVUObject *object, std::string name) {
        EXPECT_EQ(object->SetName(name.data()), 1);
    }
    CQVUObject *Lookup(std::string name) { return session->LookupVFILE(name.data()); }
};

} // namespace

TEST_F(StoreName, GetName_copies_a_shorter_name_whole_and_cuts_others) {
    CQVUObject *const object = Named("abcd");
    struct {
        unsigned long size;
        char const *expected;
    } const rows[] = {{1, ""}, {2, "a"}, {4, "abc"}, {5, "abcd"}, {9, "abcd"}};
    for (auto const &row : rows) {
        char buffer[10];
        std::memset(buffer, '?', sizeof buffer);
        EXPECT_EQ(object->GetName(buffer, row.size), 1);
        EXPECT_STREQ(buffer, row.expected);
        for (std::size_t i = std::strlen(row.expected) + 1; i < sizeof buffer; ++i)
            EXPECT_EQ(buffer[i], '?') << "size " << row.size;
    }
}

TEST_F(StoreName, GetName_of_size_0_writes_nothing_and_gives_1) {
    char buffer[1] = {'?'};
    EXPECT_EQ(Named("a")->GetName(buffer, 0), 1);
    EXPECT_EQ(buffer[0], '?');
}

TEST_F(StoreName, GetName_without_a_name_gives_0_and_leaves_the_buffer) {
    char buffer[4] = "abc";
    EXPECT_EQ(File(nullptr, transient)->GetName(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "abc");
}

TEST_F(StoreName, SetName_takes_any_text_up_to_250_characters) {
    CQVUObject *const object = File(nullptr, transient);
    for (std::size_t const length : {3u, 1u, 2u, 249u, 250u, 0u, 100u}) {
        std::string const name(length, static_cast<char>('a' + length % 26));
        Rename(object, name);
        EXPECT_EQ(NameOf(object), name);
    }
}

TEST_F(StoreName, SetName_reuses_the_buffer_of_a_name_that_is_at_least_as_long) {
    CQVUObject *const object = Named("abcd");
    char const *const buffer = object->pszName;
    Rename(object, "efgh");
    EXPECT_EQ(object->pszName, buffer);
    Rename(object, "x");
    EXPECT_EQ(object->pszName, buffer);
    EXPECT_STREQ(object->pszName, "x");
}

TEST_F(StoreName, SetName_to_an_empty_text_leaves_an_empty_name) {
    CQVUObject *const object = Named("abcd");
    Rename(object, "");
    ASSERT_NE(object->pszName, nullptr);
    EXPECT_STREQ(object->pszName, "");
    CQVUObject *const nameless = File(nullptr, transient);
    Rename(nameless, "");
    ASSERT_NE(nameless->pszName, nullptr);
    EXPECT_STREQ(nameless->pszName, "");
}

TEST_F(StoreName, SetName_cuts_a_long_text_if_the_old_name_is_shorter_than_250) {
    CQVUObject *const object = Named(std::string(249, 'o'));
    Rename(object, std::string(300, 'n'));
    EXPECT_EQ(NameOf(object), std::string(250, 'n'));
}

TEST_F(StoreName, SetName_stores_a_long_text_whole_if_the_old_name_has_250) {
    CQVUObject *const object = Named(std::string(250, 'o'));
    Rename(object, std::string(251, 'n'));
    EXPECT_EQ(NameOf(object), std::string(251, 'n'));
    Rename(object, std::string(5000, 'm'));
    EXPECT_EQ(NameOf(object), std::string(5000, 'm'));
    Rename(object, std::string(300, 'k'));
    EXPECT_EQ(NameOf(object), std::string(300, 'k'));
}

TEST_F(StoreName, SetName_may_take_the_object_s_own_name) {
    CQVUObject *const object = Named("abcdef");
    object->SetName(object->pszName + 2);
    EXPECT_EQ(NameOf(object), "cdef");
}

TEST_F(StoreName, A_renamed_object_stays_filed_under_its_old_name) {
    CQVUObject *const object = Named("old.dll");
    Rename(object, "new.dll");
    EXPECT_EQ(Lookup("old.dll"), nullptr); // filed there, and no longer so named
    EXPECT_EQ(Lookup("new.dll"), nullptr);
    Rename(object, "OLD.DLL");
    EXPECT_EQ(Lookup("old.dll"), object);
}

TEST_F(StoreName, A_nameless_object_that_gets_a_name_is_not_filed) {
    CQVUObject *const object = session.Add(nullptr, OBJ_VFILE, transient);
    Rename(object, "new.dll");
    EXPECT_EQ(Lookup("new.dll"), nullptr);
    EXPECT_EQ(session->DeleteObject(2), 1);
}

TEST_F(StoreName, A_new_name_of_the_same_hash_is_found) {
    std::string const tail = "0123456789abcdef"; // the last 16 characters make the hash
    CQVUObject *const object = Named("x" + tail);
    Rename(object, "y" + tail);
    EXPECT_EQ(Lookup("Y" + tail), object);
    EXPECT_EQ(Lookup("x" + tail), nullptr);
}

TEST_F(StoreName, Names_of_one_hash_are_told_apart) {
    std::string const tail = "0123456789abcdef";
    CQVUObject *const x = Named("x" + tail), *const y = Named("y" + tail);
    EXPECT_EQ(Lookup("x" + tail), x);
    EXPECT_EQ(Lookup("y" + tail), y);
    session->DeleteObject(x->dwID);
    EXPECT_EQ(Lookup("x" + tail), nullptr);
    EXPECT_EQ(Lookup("y" + tail), y);
}

TEST_F(StoreName, Of_equal_names_the_one_indexed_first_is_found) {
    CQVUObject *const first = Named("same.dll"), *const second = Named("SAME.dll");
    EXPECT_EQ(Lookup("Same.Dll"), first);
    session->DeleteObject(first->dwID);
    EXPECT_EQ(Lookup("Same.Dll"), second);
    session->DeleteObject(second->dwID);
    EXPECT_EQ(Lookup("Same.Dll"), nullptr);
}

TEST_F(StoreName, A_renamed_object_that_is_deleted_leaves_the_index) {
    CQVUObject *const object = Named("old.dll");
    Rename(object, "new.dll");
    object->Delete();
    EXPECT_EQ(Lookup("old.dll"), nullptr);
    EXPECT_EQ(Lookup("new.dll"), nullptr);
    CQVUObject *const successor = Named("old.dll");
    EXPECT_EQ(Lookup("old.dll"), successor);
    // A text over the freed memory would have shown through the index.
    for (int i = 0; i < 100; ++i)
        Named("filler" + std::to_string(i));
    EXPECT_EQ(Lookup("old.dll"), successor);
}

TEST_F(StoreName, Deleting_a_renamed_object_leaves_others_of_its_new_name_filed) {
    CQVUObject *const other = Named("new.dll");
    CQVUObject *const object = Named("old.dll");
    Rename(object, "new.dll");
    object->Delete();
    EXPECT_EQ(Lookup("new.dll"), other);
}

TEST_F(StoreName, Characters_above_127_and_case_beyond_ascii) {
    CQVUObject *const object = Named("\xe4\xff.dll");
    EXPECT_EQ(Lookup("\xe4\xff.DLL"), object);
}
