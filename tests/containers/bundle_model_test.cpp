// The bundle's vector beside a plain vector of strings that is changed alike, at random.
#include "UtilsVector.h"

#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dice.h"

namespace {

constexpr int changes = 20000;

using Texts = std::vector<std::string>;

class Twin {
public:
    void Change() {
        std::string const text = m_dice.Text("abc", 8);
        unsigned long const index = m_dice.Below(texts.size() + 1);
        switch (m_dice.Below(texts.size() > 12 ? 7 : 6)) {
        case 0:
        case 1:
            return Add(text);
        case 2:
            return m_dice.OneIn(3) ? Build(text) : AddOwn(index);
        case 3:
        case 4:
            return Edit(index, text);
        case 5:
            return Remove(index);
        default:
            return Build(text);
        }
    }
    void ExpectEqual() const {
        for (unsigned long i = 0; i < texts.size(); ++i) {
            UTILS::MemObject<char> const &run = bundle.RetrieveVectorItem(i);
            ASSERT_EQ(texts[i], std::string(run.Retrieve(), bundle.RetrieveVectorSize(i)));
            ASSERT_EQ('\0', run.Retrieve()[texts[i].size()]);
        }
        auto const behind = static_cast<unsigned long>(texts.size());
        ASSERT_THROW(bundle.RetrieveVectorItem(behind), std::out_of_range);
    }

private:
    UTILS::Utils<char, int> bundle;
    Texts texts;
    Dice m_dice{20120504};

    void Build(std::string const &text) {
        unsigned long const count = m_dice.Below(4) + 1;
        bundle.BuildVector(count, text.c_str(), 0);
        texts.assign(count, text);
    }
    void Add(std::string const &text) {
        unsigned long const size = m_dice.Below(text.size() + 1);
        bundle.AddVector(text.c_str(), size);
        texts.push_back(size ? text.substr(0, size) : text);
    }
    void AddOwn(unsigned long index) {
        if (index == texts.size()) {
            bundle.AddVector(nullptr, 0);
            texts.emplace_back();
        } else {
            bundle.AddVector(bundle.RetrieveVectorItem(index).Retrieve(), 0);
            texts.push_back(std::string(texts[index]));
        }
    }
    void Edit(unsigned long index, std::string const &text) {
        if (index == texts.size())
            return;
        UTILS::MemObject<char> &run = bundle.RetrieveVectorItem(index);
        run.Empty();
        run.Append(text.c_str());
        texts[index] = text;
    }
    void Remove(unsigned long index) {
        if (index == texts.size()) {
            EXPECT_THROW(bundle.RemoveVectorItem(index), std::out_of_range);
        } else if (texts.size() == 1) {
            EXPECT_THROW(bundle.RemoveVectorItem(index), std::bad_alloc);
            texts[0].clear();
        } else {
            bundle.RemoveVectorItem(index);
            texts.erase(texts.begin() + static_cast<std::ptrdiff_t>(index));
        }
    }
};

} // namespace

TEST(BundleModel, is_changed_alike) {
    Twin twin;
    for (int i = 0; i < changes && !HasFailure(); ++i) {
        twin.Change();
        twin.ExpectEqual();
    }
}
