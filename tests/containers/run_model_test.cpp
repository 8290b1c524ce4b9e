// Runs beside a plain string that is changed alike, at random.
#include "open_run.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dice.h"

namespace {

constexpr int edits = 210000;

template <class T> constexpr bool isText = std::is_same_v<T, char>;

// A run and what it should be.
template <class T> class Twin {
public:
    Twin(unsigned long room, Dice &dice) : m_run(room), m_dice(dice), m_room(room), m_first(room) {}

    // One random change of both, which is told if they differ afterwards.
    void Change() {
        data.clear();
        number = m_dice.Below(5);
        position = m_dice.Below(m_text.size() + 3);
        switch (kind = m_dice.Below(m_text.size() > 40 ? 10 : 8)) {
        case 0:
        case 1:
            return Append();
        case 2:
        case 3:
            return Insert();
        case 4:
            return Cut();
        case 5:
            return m_dice.OneIn(2) ? Reverse() : AppendOwn();
        case 6:
            return m_dice.OneIn(4) ? Zero() : CutAtPosition();
        case 7:
            return m_dice.OneIn(8) ? Empty() : CutAtPosition();
        case 8:
            return Empty();
        default:
            number = static_cast<unsigned long>(m_text.size()) - 3;
            return CutAtPosition();
        }
    }
    void Assign(Twin const &other) {
        kind = 10;
        m_run = other.m_run;
        m_text = other.m_text;
        m_first = other.m_first;
        m_room = m_text.empty() ? m_first : other.m_room;
    }
    testing::AssertionResult IsEqual() const {
        auto const text = m_run.Text();
        if (std::string(text.begin(), text.end()) == m_text && m_run.BlockLength() == m_room &&
            m_run.IsTerminated() && m_run.initialSize == m_first)
            return testing::AssertionSuccess();
        return testing::AssertionFailure()
               << "after change " << kind << " with " << testing::PrintToString(data) << ", "
               << number << ", " << position << ": " << m_run.BlockLength() << " elements for "
               << testing::PrintToString(std::string(text.begin(), text.end())) << " instead of "
               << m_room << " for " << testing::PrintToString(m_text);
    }

private:
    static constexpr unsigned long terminator = isText<T> ? 1 : 0;

    OpenRun<T> m_run;
    std::string m_text;
    Dice &m_dice;
    unsigned long m_room;  // elements of the block
    unsigned long m_first; // those it began with

    unsigned long kind = 0, number = 0, position = 0;
    std::string data;

    unsigned long Size() const { return static_cast<unsigned long>(m_text.size()); }
    void Fits() { m_room = Size() + terminator; }
    // Random data and the size to pass for it, 0 where it is measured.
    unsigned long AnyData() {
        data = m_dice.Text(std::string("abc\0", 4), 6);
        if (m_dice.OneIn(2) && !data.empty())
            return static_cast<unsigned long>(data.size());
        data += data.empty() && !isText<T> ? "x" : ""; // one element is read at least
        data.resize(isText<T> ? std::string(data.c_str()).size() : 1);
        return 0;
    }
    std::vector<T> Elements() const {
        std::vector<T> elements(data.begin(), data.end());
        elements.push_back(T());
        return elements;
    }
    void Append() {
        unsigned long const passed = AnyData();
        m_run.Append(Elements().data(), passed);
        m_text += data;
        Fits();
    }
    void AppendOwn() {
        unsigned long const from = m_dice.Below(m_text.size() + 1);
        number = m_dice.Below(m_text.size() - from + 1);
        if (number == 0)
            return; // would be measured
        m_run.Append(m_run.Retrieve() + from, number);
        m_text += m_text.substr(from, number);
        Fits();
    }
    void Insert() {
        unsigned long const passed = AnyData();
        int const overwrite = m_dice.OneIn(2) ? 1 : 0;
        if (overwrite && m_text.empty() && !isText<T>) {
            EXPECT_THROW(m_run.Insert(Elements().data(), position, 1, passed), std::bad_alloc);
            return;
        }
        m_run.Insert(Elements().data(), position, overwrite, passed);
        if (overwrite) {
            for (std::size_t i = 0; i < data.size() && position + i < m_text.size(); ++i)
                m_text[position + i] = data[i];
        } else if (position <= m_text.size()) {
            m_text.insert(position, data);
        } else {
            m_text.append(data.size(), '\0');
        }
        Fits();
    }
    void Cut() {
        if (number > m_text.size()) {
            EXPECT_THROW(m_run.Truncate(number), std::out_of_range);
            return;
        }
        m_run.Truncate(number);
        Shorten(m_text.substr(0, m_text.size() - number));
    }
    void CutAtPosition() {
        if (number > m_text.size()) {
            EXPECT_THROW(m_run.TruncateAtPosition(number, position), std::out_of_range);
            return;
        }
        m_run.TruncateAtPosition(number, position);
        std::string kept = m_text;
        kept.erase(std::min<std::size_t>(position, kept.size()), number);
        kept.resize(m_text.size() - number);
        Shorten(kept);
    }
    void Shorten(std::string const &kept) {
        bool const all = number == m_text.size();
        m_text = kept;
        Fits();
        if (all)
            m_room = m_first;
    }
    void Empty() {
        m_run.Empty();
        m_text.clear();
        m_room = m_first;
    }
    void Zero() {
        m_run.Zero();
        std::fill(m_text.begin(), m_text.end(), '\0');
    }
    void Reverse() {
        if (m_text.empty() && !isText<T>) {
            EXPECT_THROW(m_run.Reverse(), std::bad_alloc);
            return;
        }
        m_run.Reverse();
        std::reverse(m_text.begin(), m_text.end());
    }
};

template <class T> class RunModel : public testing::Test {};
using Types = testing::Types<char, unsigned char>;
TYPED_TEST_SUITE(RunModel, Types);

} // namespace

TYPED_TEST(RunModel, is_changed_alike) {
    Dice dice(20120504);
    Twin<TypeParam> first(1, dice);
    Twin<TypeParam> second(7, dice);
    for (int i = 0; i < edits && !this->HasFailure(); ++i) {
        Twin<TypeParam> &changed = dice.OneIn(2) ? first : second;
        if (dice.OneIn(20)) {
            changed.Assign(&changed == &first ? second : first);
        } else {
            changed.Change();
        }
        ASSERT_TRUE(changed.IsEqual()) << "edit " << i;
    }
}
