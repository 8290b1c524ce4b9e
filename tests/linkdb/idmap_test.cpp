// The map of records by id, against the standard map, and what it takes of memory.
#include "allocations.h"
#include "IdMap.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace {

// A record that says itself whether it is in the map, and one that can't.
struct Telling {
    std::uint32_t dwID;
    bool current;
    std::uint32_t filling[20];
};

struct Silent {
    std::uint32_t dwID;
    std::uint32_t filling[3];
};

template <class Record> class IdMapOf : public testing::Test {
protected:
    using Told = std::map<std::uint32_t, Record *>;

    // Makes and enters a record, and frees the one that had its id.
    Record *Set(std::uint32_t id) {
        Record *const record = map.Make(id);
        EXPECT_EQ(record->dwID, id);
        Record *const former = map.Enter(record);
        auto const place = told.find(id);
        EXPECT_EQ(former, place == told.end() ? nullptr : place->second);
        if (former)
            map.Free(former);
        told[id] = record;
        return record;
    }

    void Erase(std::uint32_t id) {
        Record *const record = map.Find(id);
        ASSERT_EQ(record, FindTold(id));
        if (!record)
            return;
        told.erase(id);
        map.Leave(*record);
        map.Free(record);
        ASSERT_EQ(map.Find(id), nullptr);
    }

    Record *FindTold(std::uint32_t id) const {
        auto const place = told.find(id);
        return place == told.end() ? nullptr : place->second;
    }

    Record *AtOrAfterTold(std::uint32_t id) const {
        auto const place = told.lower_bound(id);
        return place == told.end() ? nullptr : place->second;
    }

    void ExpectAll() const {
        std::vector<Record *> all, allTold;
        map.ForEach([&](Record &record) { all.push_back(&record); });
        for (auto const &entry : told)
            allTold.push_back(entry.second);
        ASSERT_EQ(all, allTold);
        ASSERT_EQ(map.Size(), told.size());
    }

    void TakeAllOut() {
        while (!told.empty() && !testing::Test::HasFailure())
            Erase(told.begin()->first);
        EXPECT_TRUE(map.Empty());
    }

    IdMap<Record> map;
    Told told;
};

using Kinds = testing::Types<Telling, Silent>;
TYPED_TEST_SUITE(IdMapOf, Kinds, );

TYPED_TEST(IdMapOf, An_empty_map_has_nothing) {
    EXPECT_TRUE(this->map.Empty());
    for (std::uint64_t const id : {0ull, 1ull, 0xffffffffull, 0x100000000ull, ~0ull}) {
        EXPECT_EQ(this->map.Find(id), nullptr);
        EXPECT_EQ(this->map.AtOrAfter(id), nullptr);
    }
    this->ExpectAll();
}

TYPED_TEST(IdMapOf, The_outermost_ids_are_kept_like_any_other) {
    TypeParam *const most = this->Set(0xffffffff);
    TypeParam *const zero = this->Set(0);
    TypeParam *const one = this->Set(1);
    EXPECT_EQ(this->map.Find(0), zero);
    EXPECT_EQ(this->map.Find(1), one);
    EXPECT_EQ(this->map.Find(0xffffffff), most);
    EXPECT_EQ(this->map.AtOrAfter(0), zero);
    EXPECT_EQ(this->map.AtOrAfter(2), most);
    EXPECT_EQ(this->map.AtOrAfter(0x100000000), nullptr);
    this->ExpectAll();
    this->Erase(0xffffffff);
    EXPECT_EQ(this->map.AtOrAfter(2), nullptr);
    this->TakeAllOut();
}

TYPED_TEST(IdMapOf, An_id_of_more_than_32_bits_is_no_other_id) {
    this->Set(1);
    EXPECT_EQ(this->map.Find(0x100000001), nullptr);
    EXPECT_EQ(this->map.AtOrAfter(0x100000001), nullptr);
}

TYPED_TEST(IdMapOf, A_record_that_was_made_and_given_up_leaves_its_id_free) {
    TypeParam *const made = this->map.Make(5);
    this->map.Free(made);
    EXPECT_EQ(this->map.Find(5), nullptr);
    EXPECT_TRUE(this->map.Empty());
    TypeParam *const record = this->Set(5);
    EXPECT_EQ(this->map.Find(5), record);
    this->ExpectAll();
}

using IdMapOfTelling = IdMapOf<Telling>;

TEST_F(IdMapOfTelling, A_record_is_in_the_map_only_once_it_is_entered) {
    Telling *const made = map.Make(5);
    EXPECT_EQ(map.Find(5), nullptr);
    EXPECT_EQ(map.AtOrAfter(0), nullptr);
    map.Enter(made);
    EXPECT_EQ(map.Find(5), made);
}

TEST_F(IdMapOfTelling, A_second_record_of_an_id_takes_the_place_of_the_first) {
    for (std::uint32_t const id : {7u, 0xfffffff0u, 0u}) {
        Set(id);
        Telling *const second = Set(id);
        EXPECT_EQ(map.Find(id), second);
    }
    ExpectAll();
    TakeAllOut();
}

// Ids: the next one, anything, one near the next, round numbers, the outermost, one that was.
class Source {
public:
    explicit Source(std::uint32_t seed) : m_engine(seed) {}
    std::uint32_t Below(std::uint32_t limit) {
        return static_cast<std::uint32_t>(m_engine()) % limit;
    }
    std::uint32_t Id() {
        switch (Below(8)) {
        case 0:
            return static_cast<std::uint32_t>(m_engine());
        case 1:
            return m_next + Below(20000);
        case 2:
            return std::uint32_t{1} << Below(32);
        case 3:
            return 0xffffffff - Below(4);
        case 4:
            return Below(m_next + 1);
        default:
            return m_next++;
        }
    }

private:
    std::mt19937 m_engine;
    std::uint32_t m_next = 1;
};

TYPED_TEST(IdMapOf, Random_steps_leave_it_like_the_standard_map) {
    constexpr bool canReplace = std::is_same_v<TypeParam, Telling>;
    for (std::uint32_t seed = 1; seed <= 60 && !this->HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Source source(seed);
        for (int step = seed % 10 ? 400 : 15000; step > 0 && !this->HasFailure(); --step) {
            std::uint32_t const id = source.Id();
            if (source.Below(4) == 0)
                this->Erase(id);
            else if (canReplace || !this->FindTold(id))
                this->Set(id);
            std::uint32_t const asked = source.Id();
            ASSERT_EQ(this->map.Find(asked), this->FindTold(asked));
            ASSERT_EQ(this->map.AtOrAfter(asked), this->AtOrAfterTold(asked));
            ASSERT_EQ(this->map.Find(id), this->FindTold(id));
        }
        this->ExpectAll();
        if (seed % 3 == 0)
            this->TakeAllOut();
    }
}

// The most bytes held while these ids are entered.
std::size_t BytesFor(std::vector<std::uint32_t> const &ids) {
    AllocationWatch const watch;
    IdMap<Silent> map;
    for (std::uint32_t const id : ids)
        map.Enter(map.Make(id));
    EXPECT_EQ(map.Size(), ids.size());
    return watch.PeakBytes();
}

TEST(IdMapMemory, A_hundred_thousand_ids_take_bounded_memory_wherever_they_lie) {
    constexpr std::uint32_t count = 100000;
    std::vector<std::uint32_t> dense, descending, scattered, spaced, sparse;
    for (std::uint32_t i = 0; i < count; ++i) {
        dense.push_back(i + 1);
        descending.push_back(0xffffffff - i);
        scattered.push_back(i * 2654435761u);
        spaced.push_back(i * 9 + 1);
        sparse.push_back(i * 4096 + 1);
    }
    // Eight slots of 16 bytes a record, or memory of its own and a node of the ordered map.
    for (auto const *const ids : {&dense, &descending, &scattered, &spaced, &sparse})
        EXPECT_LT(BytesFor(*ids), std::size_t{400} * count);
    EXPECT_LT(BytesFor(dense), std::size_t{100} * count);
}

TEST(IdMapMemory, One_hostile_id_takes_little) {
    for (std::uint32_t const id : {0xffffffffu, 0x7fffffffu, 0x100000u, 100000u})
        EXPECT_LT(BytesFor({id}), 256u * 1024);
}

} // namespace
