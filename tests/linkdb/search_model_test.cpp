// Many open searches, stepped at random while the graph changes, against plain ones.
#include "courses.h"
#include "mirror_search.h"
#include "twin.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace {

struct OpenObjects {
    SearchHandle handle;
    mirror::ObjectSearch told;
};

struct OpenLinks {
    SearchHandle handle;
    mirror::LinkSearch told;
};

class Searches {
public:
    explicit Searches(Twin &twin) : m_twin(twin) {}
    ~Searches() {
        while (!m_objects.empty())
            CloseObjects();
        while (!m_links.empty())
            CloseLinks();
    }

    void Act() {
        switch (m_twin.Dice().Below(10)) {
        case 0:
            return OpenObjectSearch();
        case 1:
            return OpenLinkSearch();
        case 2:
            return m_objects.size() > 3 ? CloseObjects() : void();
        case 3:
            return m_links.size() > 3 ? CloseLinks() : void();
        case 4:
        case 5:
        case 6:
            return StepObjects();
        default:
            return StepLinks();
        }
    }

    unsigned long found = 0;

private:
    std::uint32_t AnyMask() {
        static constexpr std::uint32_t masks[] = {0xffffffff, 0xffffffff, 1, 4, 6, 0x1000, 0x38, 0};
        return m_twin.Dice().Pick(masks);
    }

    std::string AnyPattern() {
        static char const *const patterns[] = {"*", "*.*", "*a*", "?", "*.dll", "a*", "*l*", ""};
        return m_twin.Dice().OneIn(3) ? m_twin.AnyName() : m_twin.Dice().Pick(patterns);
    }

    void OpenObjectSearch() {
        std::string const pattern = AnyPattern();
        std::uint32_t const mask = AnyMask();
        mirror::ObjectSearch told(pattern, mask);
        mirror::Id const first = pattern.size() < 100 ? told.Step(m_twin.Mirror()) : 0;
        CQVUObject *out = nullptr;
        SearchHandle const handle = m_twin.Database()->FindFirstObject(Text(pattern), mask, &out);
        ASSERT_EQ(out ? out->dwID : 0, first) << pattern;
        ASSERT_EQ(handle != 0, first != 0);
        if (handle)
            m_objects.push_back({handle, told});
    }

    void StepObjects() {
        if (m_objects.empty())
            return;
        OpenObjects &search = m_objects[m_twin.Dice().Below(m_objects.size())];
        CQVUObject *out = nullptr;
        int const result = m_twin.Database()->FindNextObject(search.handle, &out);
        mirror::Id const next = search.told.Step(m_twin.Mirror());
        ASSERT_EQ(out ? out->dwID : 0, next);
        ASSERT_EQ(result, next ? 1 : 0);
        found += next != 0;
    }

    void CloseObjects() {
        m_twin.Database()->FindCloseObject(m_objects.front().handle);
        m_objects.erase(m_objects.begin());
    }

    void OpenLinkSearch() {
        mirror::Id const id = m_twin.LiveId();
        if (!id)
            return;
        bool const incoming = m_twin.Dice().OneIn(2);
        std::uint32_t const mask = AnyMask();
        mirror::LinkSearch told(id, incoming, mask);
        mirror::Id const first = told.Step(m_twin.Mirror());
        CQVUObject *const object = m_twin.Object(id);
        CQVULink *out = nullptr;
        SearchHandle const handle =
            incoming ? object->FindFirstLinkTo(mask, &out) : object->FindFirstLinkFrom(mask, &out);
        ASSERT_EQ(out ? out->dwID : 0, first);
        ASSERT_EQ(handle != 0, first != 0);
        if (handle)
            m_links.push_back({handle, told});
    }

    // A walk whose object is gone is closed and not stepped.
    void StepLinks() {
        if (m_links.empty())
            return;
        OpenLinks &search = m_links[m_twin.Dice().Below(m_links.size())];
        CQVUObject *const object = m_twin.Object(search.told.Object());
        if (!object)
            return;
        CQVULink *out = nullptr;
        int const result = search.told.IsIncoming() ? object->FindNextLinkTo(search.handle, &out)
                                                    : object->FindNextLinkFrom(search.handle, &out);
        mirror::Id const next = search.told.Step(m_twin.Mirror());
        ASSERT_EQ(out ? out->dwID : 0, next);
        ASSERT_EQ(result, next ? 1 : 0);
        found += next != 0;
    }

    void CloseLinks() {
        CQVUObject *const none = nullptr;
        none->FindCloseLinkTo(m_links.front().handle);
        m_links.erase(m_links.begin());
    }

    Twin &m_twin;
    std::vector<OpenObjects> m_objects;
    std::vector<OpenLinks> m_links;
};

TEST(SearchModel, Open_searches_step_as_told_while_objects_and_links_come_and_go) {
    unsigned long found = 0;
    for (std::uint32_t seed = 500001; seed <= 500000 + Courses(600) && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Twin twin(seed);
        Searches searches(twin);
        for (int change = 0; change < 100 && !HasFailure(); ++change) {
            twin.ChangeInPlace();
            for (int act = 0; act < 6; ++act)
                searches.Act();
        }
        found += searches.found;
    }
    EXPECT_GT(found, Courses(30000));
}

} // namespace
