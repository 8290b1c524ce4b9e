// Expansion over random graphs, compared with the recursive telling over a plain mirror.
#include "courses.h"
#include "mirror_expansion.h"
#include "searches.h"
#include "system_folders.h"
#include "twin.h"

#include <gtest/gtest.h>

namespace {

mirror::System ThisSystem() {
    SystemFolders const folders = CurrentSystemFolders();
    return {folders.system, folders.windows, true};
}

enum class Question { Dependents, Referrers };

Ids Told(std::vector<mirror::Id> const &ids) { return Ids(ids.begin(), ids.end()); }

class Comparison {
public:
    explicit Comparison(Twin &twin) : m_twin(twin) {}

    std::size_t AskTriple(Question question) {
        mirror::Id const id = m_twin.LiveId();
        if (!id)
            return 0;
        mirror::Expansion expansion(m_twin.Mirror(), ThisSystem());
        bool const forward = question == Question::Dependents;
        Ids const told = Told(forward ? expansion.Dependents(id) : expansion.Referrers(id));
        CQVUObject *const object = m_twin.Object(id);
        EXPECT_EQ(forward ? FindDependents(object) : FindReferrers(object), told)
            << "from object " << id;
        return told.size();
    }

    std::size_t AskDirectly(Question question) {
        mirror::Id const id = m_twin.LiveId();
        if (!id)
            return 0;
        std::optional<std::string> base;
        if (!m_twin.Dice().OneIn(3))
            base = m_twin.AnyPath();
        mirror::Expansion expansion(m_twin.Mirror(), ThisSystem());
        bool const forward = question == Question::Dependents;
        Ids const told = Told(forward ? expansion.Forward(id, base) : expansion.Backward(id, base));
        EXPECT_EQ(Gather(question, id, base), told)
            << "from object " << id << " at " << base.value_or("nowhere");
        if (m_twin.Dice().OneIn(2))
            ClearMarks(told);
        return told.size();
    }

private:
    Ids Gather(Question question, mirror::Id id, std::optional<std::string> const &base) {
        FFDepObjResult *results = nullptr;
        Text text(base.value_or(""));
        char *const place = base ? static_cast<char *>(text) : nullptr;
        CQVUDatabase *const database = m_twin.Database();
        if (question == Question::Dependents)
            database->ExpandObjectRef(m_twin.Object(id), place, &results);
        else
            database->ExpandObjectRefBackwards(m_twin.Object(id), place, &results);
        return Take(results);
    }

    void ClearMarks(Ids const &ids) {
        for (unsigned long const number : ids) {
            mirror::Id const id = static_cast<mirror::Id>(number);
            std::uint32_t &flags = m_twin.Mirror().Find(id)->flags;
            flags &= ~OBJ_FLAG_VISITED;
            EXPECT_EQ(m_twin.Object(id)->SetFlags(flags), 1);
        }
    }

    Twin &m_twin;
};

std::size_t RunCourse(std::uint32_t seed, int changes) {
    Twin twin(seed);
    Comparison comparison(twin);
    std::size_t results = 0;
    for (int change = 0; change < changes; ++change) {
        twin.Change();
        try {
            results += comparison.AskTriple(Question::Dependents);
            results += comparison.AskTriple(Question::Referrers);
            if (change % 8 == 7) {
                results += comparison.AskDirectly(Question::Dependents);
                results += comparison.AskDirectly(Question::Referrers);
            }
        } catch (mirror::Endless const &) {
            return results;
        }
        if (change % 16 == 15)
            twin.ExpectEqual();
        if (testing::Test::HasFailure())
            return results;
    }
    twin.ExpectEqual();
    return results;
}

TEST(ExpansionModel, Both_expansions_give_the_mirror_s_results_in_order_and_its_marks) {
    std::size_t results = 0;
    for (std::uint32_t seed = 200001; seed <= 200000 + Courses(1200) && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        results += RunCourse(seed, 128);
    }
    EXPECT_GT(results, Courses(200000));
}

TEST(ExpansionModel, Large_graphs_expand_as_the_mirror_does) {
    std::size_t results = 0;
    for (std::uint32_t seed = 300001; seed <= 300000 + Courses(8) && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        results += RunCourse(seed, 1800);
    }
    EXPECT_GT(results, Courses(50000));
}

} // namespace
