// Random operations on a list and on its model, the anchor compared after each.
#include "list_model.h"

#include <functional>
#include <list>
#include <random>
#include <stdexcept>

using UTILS::ListObject;
using UTILS::NOT_FOUND_INDEX;

namespace {

unsigned long Index(int index) {
    return index < 0 ? NOT_FOUND_INDEX : static_cast<unsigned long>(index);
}

class ListWalk {
public:
    ListWalk(unsigned seed, int largest, int keys)
        : m_random(seed), m_largest(largest), m_keys(keys) {}

    void Step() {
        if (m_model.Size() >= m_goal)
            m_growing = false;
        if (m_model.Size() == 0) {
            m_growing = true;
            m_goal = Below(m_largest) + 1;
        }
        int const choice = Below(100);
        if (choice < 40)
            m_growing ? Add() : Remove();
        else if (choice < 55)
            m_growing ? Remove() : Add();
        else if (choice < 85)
            Retrieve();
        else if (choice < 93)
            Search();
        else if (choice < 95)
            Insert();
        else if (Below(6) == 0)
            Rare();
    }

    void Compare() const {
        ASSERT_EQ(m_list.ListSize(), m_model.numbers.size());
        ASSERT_EQ(m_list.isSorted == 1, m_model.sorted);
        ASSERT_EQ(m_list.Anchor(), m_model.anchor);
        auto const nodes = m_list.Nodes();
        for (std::size_t i = 0; i < nodes.size(); ++i)
            ASSERT_EQ(*nodes[i]->Retrieve(), m_model.numbers[i]) << i;
    }

private:
    int Below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }
    Number Any() { return {Below(m_keys), ++m_mark}; }
    // An index that is there; the list isn't empty.
    int Place() { return Below(m_model.Size()); }

    void Add() {
        Number number = Any();
        if (Below(2)) {
            m_list.AddToTail(&number, 0);
            m_model.AddToTail(number);
        } else {
            m_list.AddToHead(&number, 0);
            m_model.AddToHead(number);
        }
    }

    void Remove() {
        if (m_model.Size() == 0 || Below(4) == 0) {
            m_list.RemoveFromHead();
            m_model.RemoveFromHead();
            return;
        }
        bool const forward = Below(2);
        int const place = Place();
        m_list.SmartRemoveFromIndiceItem(Index(place), forward ? 1 : 0);
        m_model.SmartRemove(place, forward);
    }

    void Retrieve() {
        if (m_model.Size() == 0) {
            EXPECT_THROW(m_list.SmartRetrieve(0), std::out_of_range);
            return;
        }
        bool const forward = Below(2);
        int const direction = forward ? 1 : 0;
        int const place = Place();
        auto const at = [this](int index) { return m_model.numbers[Index(index)]; };
        EXPECT_EQ(*m_list.SmartRetrieveItem(Index(place), direction),
                  at(m_model.SmartIndex(place, forward)));
        EXPECT_EQ(*m_list.RetrieveItem(Index(place), direction),
                  at(forward ? place : m_model.Size() - 1 - place));
    }

    void Search() {
        bool const forward = Below(2);
        Number const item = Any();
        m_list.SetSearchDirection(forward ? 1 : 0);
        EXPECT_EQ(m_list.SearchList(&item, 0, 3, 0), Index(m_model.Search(item.key, forward)));
        if (Below(10) == 0)
            Bisect(item, forward);
        m_list.SetSearchDirection(1);
    }

    // What it finds is told only for ordered lists and true anchors.
    void Bisect(Number const &item, bool forward) {
        m_model.Sort(0);
        if (m_model.Size() == 0 || !m_model.IsOrdered() || !m_model.AnchorIsTrue()) {
            m_list.Sort(0);
            return;
        }
        int const first = m_model.Search(item.key, forward);
        EXPECT_EQ(m_list.SearchList(&item, 1, 0, 0), Index(first));
        int const occurrence = 1 + Below(2);
        auto const search = [&] { return m_list.SearchList(&item, 1, Index(occurrence), 0); };
        if (first < 0)
            EXPECT_EQ(search(), NOT_FOUND_INDEX);
        else if (first + occurrence >= m_model.Size())
            EXPECT_THROW(search(), std::out_of_range);
        else
            EXPECT_EQ(search(), occurrence < m_model.Equals(item.key) ? Index(first + occurrence)
                                                                      : NOT_FOUND_INDEX);
    }

    // Into a list that is only marked as sorted the place is not told.
    void Insert() {
        if (m_model.sorted && !m_model.IsOrdered())
            return;
        Number number = Any();
        m_list.SetSearchDirection(Below(3));
        m_list.SortedInsert(&number, 0);
        m_list.SetSearchDirection(1);
        m_model.SortedInsert(number);
    }

    void Rare() {
        switch (Below(5)) {
        case 0: {
            auto const algorithm = static_cast<unsigned>(Below(6));
            m_list.Sort(algorithm);
            m_model.Sort(algorithm);
            break;
        }
        case 1:
            m_list.RemoveAll();
            m_model = ListModel{{}, -1, m_model.sorted};
            break;
        case 2:
            Copy();
            break;
        case 3:
            if (m_model.Size() <= m_largest / 2) {
                m_list.CopyList(m_list);
                m_model.Append(m_model);
            }
            break;
        default:
            Reverse();
        }
    }

    // There and back: the anchor is true afterwards.
    void Copy() {
        OpenList<Number> copy;
        static_cast<ListObject<Number> &>(copy) = m_list;
        static_cast<ListObject<Number> &>(m_list) = copy;
        ListModel again;
        again.Append(m_model);
        m_model = again;
    }

    void Reverse() {
        std::list<Number> standard(m_model.numbers.begin(), m_model.numbers.end());
        static_cast<ListObject<Number> &>(m_list) = standard;
        ListModel again{{}, -1, m_model.sorted};
        for (Number const &number : standard)
            again.AddToHead(number);
        m_model = again;
    }

    OpenList<Number> m_list;
    ListModel m_model;
    std::mt19937 m_random;
    int const m_largest;
    int const m_keys;
    int m_mark = 0;
    int m_goal = 0;
    bool m_growing = false;
};

class ListModelRandom : public testing::TestWithParam<int> {};

} // namespace

// Small sizes, sizes about the threshold of Smart walks, and large ones.
TEST_P(ListModelRandom, Steps_leave_the_list_like_its_model) {
    int const largest = GetParam();
    for (unsigned seed = 1; seed <= 5; ++seed) {
        ListWalk walk(seed, largest, seed % 2 ? 8 : 1000);
        for (int step = 0; step < 20000; ++step) {
            walk.Step();
            ASSERT_NO_FATAL_FAILURE(walk.Compare()) << "seed " << seed << ", step " << step;
            ASSERT_FALSE(HasFailure()) << "seed " << seed << ", step " << step;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(UpTo, ListModelRandom, testing::Values(6, 70, 300),
                         testing::PrintToStringParamName());
