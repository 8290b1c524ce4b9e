// Making objects, and their fields.
#include "store_fixture.h"

#include <cstring>

TEST_F(Store, The_first_object_has_id_2_and_the_first_link_id_1) {
    CQVUObject *const object = File("a", transient);
    EXPECT_EQ(object->GetUniqueID(), 2u);
    object->LinkTo(session->GetRootObject(), 2);
    EXPECT_NE(Link(1), nullptr);
    EXPECT_EQ(File("b", transient)->GetUniqueID(), 3u);
}

TEST_F(Store, AddObject_fills_the_record) {
    unsigned char data[] = {9, 8, 7};
    CQVUObject *const object =
        session->AddObject("name", OBJ_KEY, 0xffffffff, sizeof data, data, persistent);
    EXPECT_EQ(object->dwID, 2u);
    EXPECT_EQ(object->dwFlags, 0xffffffffu);
    EXPECT_EQ(object->dwType, OBJ_KEY | PERSISTENT_BIT);
    EXPECT_EQ(object->dwDataSize, 3u);
    EXPECT_EQ(object->dwLinksFrom, 0u);
    EXPECT_EQ(object->dwLinksTo, 0u);
    EXPECT_STREQ(object->pszName, "name");
    EXPECT_EQ(object->pdwLinksFrom, nullptr);
    EXPECT_EQ(object->pdwLinksTo, nullptr);
    EXPECT_EQ(std::memcmp(object->pData, data, 3), 0);
    EXPECT_NE(object->pData, data);
}

TEST_F(Store, A_handed_out_object_is_the_record_itself) {
    CQVUObject *const object = File("a", transient);
    EXPECT_EQ(static_cast<DBObject *>(object), session->LookupObject(2));
    EXPECT_EQ(session->GetRootObject(), session->LookupObject(1));
}

TEST_F(Store, Lookups_of_ids_that_name_nothing_give_null) {
    for (unsigned long const id : {0ul, 2ul, 3ul, 0xfffffffful})
        EXPECT_EQ(session->LookupObject(id), nullptr);
    for (unsigned long const id : {0ul, 1ul, 0x3ffffffful, 0xfffffffful})
        EXPECT_EQ(session->LookupLink(id), nullptr);
}

TEST_F(Store, GetRootObject_gives_object_1_or_null) {
    EXPECT_EQ(session->GetRootObject()->GetUniqueID(), 1u);
    session->DeleteObject(1);
    EXPECT_EQ(session->GetRootObject(), nullptr);
}

TEST_F(Store, AddObject_stores_the_first_250_characters_of_a_name) {
    for (std::size_t const length : {249u, 250u, 251u, 300u}) {
        std::string const name(length, 'n');
        EXPECT_EQ(NameOf(File(name.c_str(), transient)),
                  name.substr(0, std::min<std::size_t>(length, 250)));
    }
}

TEST_F(Store, AddObject_without_a_name_or_with_an_empty_one_has_none) {
    EXPECT_EQ(File(nullptr, transient)->pszName, nullptr);
    EXPECT_EQ(File("", transient)->pszName, nullptr);
}

TEST_F(Store, An_object_of_type_2_is_always_persistent) {
    EXPECT_EQ(session.Add("p", OBJ_PINNED, transient)->IsPersistent(), 1);
    session.Release();
    EXPECT_EQ(FileIn(folder).objects.size(), 2u); // and it marked a change
}

TEST_F(Store, A_type_with_other_bits_beside_2_is_not_forced) {
    EXPECT_EQ(session.Add("p", OBJ_PINNED | OBJ_FILE, transient)->IsPersistent(), 0);
}

TEST_F(Store, Any_value_but_zero_makes_an_object_persistent) {
    EXPECT_EQ(session.Add("a", OBJ_FILE, 1)->IsPersistent(), 1);
    EXPECT_EQ(session.Add("a", OBJ_FILE, -5)->IsPersistent(), 1);
    EXPECT_EQ(session.Add("a", OBJ_FILE, 0)->IsPersistent(), 0);
}

TEST_F(Store, GetType_leaves_the_persistent_bit_out) {
    EXPECT_EQ(session.Add("a", 0xffffffff, transient)->dwType, 0x7fffffffu);
    EXPECT_EQ(session.Add("a", 0xffffffff, persistent)->dwType, 0xffffffffu);
    EXPECT_EQ(session.Object(3)->GetType(), 0x7fffffffu);
    EXPECT_EQ(session.Add("a", OBJ_VALUE, persistent)->GetType(), OBJ_VALUE);
}

TEST_F(Store, Flags_are_stored_and_given_whole) {
    CQVUObject *const object = session->AddObject("a", OBJ_FILE, 5, 0, nullptr, 0);
    EXPECT_EQ(object->GetFlags(), 5u);
    EXPECT_EQ(object->SetFlags(0xffffffff), 1);
    EXPECT_EQ(object->GetFlags(), 0xffffffffu);
    EXPECT_EQ(object->SetFlags(0), 1);
    EXPECT_EQ(object->GetFlags(), 0u);
}

TEST_F(Store, GetData_copies_the_smaller_of_both_sizes) {
    unsigned char data[] = {1, 2, 3, 4};
    CQVUObject *const object = session->AddObject("a", OBJ_FILE, 0, sizeof data, data, 0);
    EXPECT_EQ(object->GetDataSize(), 4u);
    unsigned char buffer[6] = {0xee, 0xee, 0xee, 0xee, 0xee, 0xee};
    EXPECT_EQ(object->GetData(2, buffer), 1);
    EXPECT_EQ(Bytes(buffer, buffer + 6), (Bytes{1, 2, 0xee, 0xee, 0xee, 0xee}));
    EXPECT_EQ(object->GetData(6, buffer), 1);
    EXPECT_EQ(Bytes(buffer, buffer + 6), (Bytes{1, 2, 3, 4, 0xee, 0xee}));
}

TEST_F(Store, GetData_of_size_0_or_without_data_gives_0) {
    unsigned char data[] = {1}, buffer[1] = {0xee};
    CQVUObject *const with = session->AddObject("a", OBJ_FILE, 0, 1, data, 0);
    EXPECT_EQ(with->GetData(0, buffer), 0);
    EXPECT_EQ(with->GetData(0, nullptr), 0);
    EXPECT_EQ(File("b", transient)->GetData(1, buffer), 0);
    EXPECT_EQ(buffer[0], 0xee);
}

TEST_F(Store, SetData_makes_grows_and_shrinks_a_block) {
    CQVUObject *const object = File("a", transient);
    for (std::size_t const size : {3u, 1u, 2u, 100u, 100u, 0u, 5u}) {
        Bytes data(size);
        for (std::size_t i = 0; i < size; ++i)
            data[i] = static_cast<std::uint8_t>(i + size);
        EXPECT_EQ(object->SetData(static_cast<unsigned long>(size), data.data()), 1);
        EXPECT_EQ(object->GetDataSize(), size);
        EXPECT_EQ(DataOf(object), data);
    }
}

TEST_F(Store, SetData_of_no_more_than_the_present_size_reuses_the_block) {
    unsigned char data[] = {1, 2, 3, 4};
    CQVUObject *const object = session->AddObject("a", OBJ_FILE, 0, sizeof data, data, 0);
    unsigned char const *const block = object->pData;
    object->SetData(4, data);
    EXPECT_EQ(object->pData, block);
    object->SetData(1, data);
    EXPECT_EQ(object->pData, block);
}

TEST_F(Store, SetData_may_take_the_object_s_own_block) {
    unsigned char data[] = {1, 2, 3, 4};
    CQVUObject *const object = session->AddObject("a", OBJ_FILE, 0, sizeof data, data, 0);
    EXPECT_EQ(object->SetData(2, object->pData + 1), 1);
    EXPECT_EQ(DataOf(object), (Bytes{2, 3}));
}

TEST_F(Store, A_size_without_data_gives_zeros) {
    CQVUObject *const object = session->AddObject("a", OBJ_FILE, 0, 5, nullptr, 0);
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(DataOf(object), Bytes(5));
    EXPECT_EQ(object->SetData(7, nullptr), 1);
    EXPECT_EQ(DataOf(object), Bytes(7));
}

TEST_F(Store, GetFileData_wants_exactly_24_bytes) {
    unsigned char data[25];
    for (unsigned i = 0; i < sizeof data; ++i)
        data[i] = static_cast<unsigned char>(i + 1);
    for (unsigned long const size : {0ul, 23ul, 24ul, 25ul}) {
        FileData out{};
        CQVUObject *const object = session->AddObject("a", OBJ_FILE, 0, size, data, 0);
        EXPECT_EQ(object->GetFileData(&out), size == 24 ? 1 : 0) << size;
        FileData const nothing{};
        EXPECT_EQ(std::memcmp(&out, size == 24 ? static_cast<void const *>(data) : &nothing, 24),
                  0);
        EXPECT_EQ(object->GetFileData(nullptr), 0);
    }
}

TEST_F(Store, Null_views_are_tolerated_where_told) {
    FileData out;
    EXPECT_EQ(noObject->GetUniqueID(), 0u);
    EXPECT_EQ(noObject->SetData(0, nullptr), 0);
    EXPECT_EQ(noObject->GetFileData(&out), 0);
    EXPECT_EQ(noObject->IsPersistent(), 0);
    EXPECT_EQ(noObject->MakePersistent(), 0);
    EXPECT_EQ(noObject->LinkTo(session->GetRootObject(), 1), 0);
    EXPECT_EQ(session->GetRootObject()->LinkTo(nullptr, 1), 0);
    EXPECT_EQ(noObject->LinkTo(nullptr, 1), 0);
    EXPECT_EQ(noObject->Delete(), 1);
    EXPECT_EQ(noLink->GetSource(), nullptr);
    EXPECT_EQ(noLink->GetTarget(), nullptr);
    EXPECT_EQ(noLink->Delete(), 1);
}

TEST_F(Store, Ids_and_sizes_above_32_bits_are_refused_and_types_lose_what_is_above) {
    if (sizeof(unsigned long) == 4)
        GTEST_SKIP() << "unsigned long has 32 bits here";
    auto const above = static_cast<unsigned long>(0x100000000ull);
    CQVUObject *const object = File("a", transient);
    EXPECT_EQ(session->LookupObject(above + 1), nullptr);
    EXPECT_EQ(session->LookupObject(above + 2), nullptr);
    EXPECT_EQ(session->DeleteObject(above + 2), 0);
    object->LinkTo(object, 2);
    EXPECT_EQ(session->LookupLink(above + 1), nullptr);
    EXPECT_EQ(session->DeleteLink(above + 1, 1, 1), 0);
    EXPECT_EQ(session->AddObject("a", OBJ_FILE, 0, above, nullptr, 0), nullptr);
    EXPECT_EQ(session->MakeNewLink(above + 2, 2, 2, 0), nullptr);
    EXPECT_EQ(session->MakeNewLink(2, above + 2, 2, 0), nullptr);
    EXPECT_EQ(object->SetData(above + 1, nullptr), 0);
    EXPECT_EQ(session->AddObject("a", above + OBJ_FILE, 0, 0, nullptr, 0)->GetType(), OBJ_FILE);
    EXPECT_EQ(session->MakeNewLink(2, 2, above + 8, 0)->dwType, 8u);
}

TEST_F(Store, Assigning_a_view_copies_all_fields_pointers_included) {
    unsigned char data[] = {1};
    CQVUObject *const a = session->AddObject("a", OBJ_FILE, 5, 1, data, persistent);
    CQVUObject *const b = File(nullptr, transient);
    *b = *a;
    EXPECT_EQ(std::memcmp(static_cast<DBObject *>(a), static_cast<DBObject *>(b), sizeof(DBObject)),
              0);
    static_cast<DBObject &>(*b) =
        DBObject{3, 0,       OBJ_FILE, 0,       0,
                 0, nullptr, nullptr,  nullptr, nullptr}; // each part has one owner again
}
