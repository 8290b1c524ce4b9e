// Paths over random graphs, asked of the database and of a plain mirror of it.
#include "attached.h"
#include "courses.h"
#include "mirror_paths.h"
#include "system_folders.h"
#include "twin.h"

#include <gtest/gtest.h>

namespace {

using mirror::Id;

struct Tally {
    unsigned long asked = 0;
    unsigned long found = 0;

    void Count(bool hit) {
        ++asked;
        found += hit;
    }
};

struct Tallies {
    Tally full, byPath, chain, vfile, resolved;
};

mirror::System ThisSystem() {
    SystemFolders const folders = CurrentSystemFolders();
    return {folders.system, folders.windows, true};
}

Id IdOf(CQVUObject *object) { return object ? object->dwID : 0; }

class Questions {
public:
    Questions(Twin &twin, Tallies &tallies)
        : m_twin(twin), m_tallies(tallies), m_paths(twin.Mirror()), m_system(ThisSystem()) {}

    void AskAll() {
        AskFullPath();
        AskByPath();
        AskChain();
        AskVFile();
        AskResolve();
    }

private:
    void AskFullPath() {
        Id const id = m_twin.LiveId();
        if (!id)
            return;
        std::optional<std::string> const told = m_paths.FullPath(id);
        ASSERT_EQ(PathOf(m_twin.Object(id)), told) << "object " << id;
        m_tallies.full.Count(told.has_value());
    }

    void AskByPath() {
        std::string const path = m_twin.AnyPath();
        Id const found = IdOf(m_twin.Database()->GetObjectByPath(path.c_str()));
        try {
            Id const told = m_paths.ByPath(path);
            ASSERT_EQ(found, told) << path;
            m_tallies.byPath.Count(told != 0);
        } catch (mirror::Endless const &) {
        }
    }

    void AskChain() {
        Id const id = m_twin.LiveId();
        if (!id)
            return;
        std::string told = m_twin.Dice().OneIn(2) ? m_twin.FolderOf(id) : m_twin.AnyPath();
        if (told.size() >= 1000)
            return;
        std::vector<char> text(told.begin(), told.end());
        text.resize(1000);
        int const result =
            Protected::HasCorrectPath(m_twin.Database(), m_twin.Object(id), text.data());
        try {
            std::string const asked = told;
            bool const hit = m_paths.HasCorrectPath(id, told);
            ASSERT_EQ(result, hit ? 1 : 0) << "object " << id << " below " << asked;
            ASSERT_EQ(text.data(), told) << "what is left of " << asked;
            m_tallies.chain.Count(hit);
        } catch (mirror::Endless const &) {
        }
    }

    void AskVFile() {
        std::string const name = m_twin.AnyName();
        Id const told = m_paths.VFile(name);
        ASSERT_EQ(IdOf(m_twin.Database()->LookupVFILE(Text(name))), told) << name;
        m_tallies.vfile.Count(told != 0);
    }

    void AskResolve() {
        Id const id = m_twin.AnyVFile();
        if (!id)
            return;
        std::optional<std::string> base;
        if (!m_twin.Dice().OneIn(4))
            base = m_twin.Dice().OneIn(2) ? m_twin.FolderWith(id) : m_twin.AnyPath();
        CQVUObject *const object = m_twin.Object(id);
        Id const found = IdOf(object->Resolve(base ? static_cast<char *>(Text(*base)) : nullptr));
        try {
            Id const told = m_paths.Resolve(id, base, m_system);
            ASSERT_EQ(found, told) << "object " << id << " from " << base.value_or("nowhere");
            m_tallies.resolved.Count(told != 0);
        } catch (mirror::Endless const &) {
        }
    }

    Twin &m_twin;
    Tallies &m_tallies;
    mirror::Paths m_paths;
    mirror::System m_system;
};

void RunCourse(std::uint32_t seed, Course course, int changes, int questionsEach,
               Tallies &tallies) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Twin twin(seed, course);
    Questions questions(twin, tallies);
    for (int change = 0; change < changes; ++change) {
        twin.Change();
        for (int question = 0; question < questionsEach; ++question)
            questions.AskAll();
        if (testing::Test::HasFailure())
            FAIL() << "after change " << change;
    }
    twin.ExpectEqual();
}

// Enough of the questions have an answer, so that agreement says something.
void ExpectTelling(Tally const &tally, unsigned long oneIn) {
    EXPECT_GT(tally.found * oneIn, tally.asked) << tally.found << " of " << tally.asked;
}

TEST(PathModel, Small_graphs_answer_as_the_mirror_does_after_every_change) {
    Tallies tallies;
    for (std::uint32_t seed = 1; seed <= Courses(1500) && !HasFailure(); ++seed)
        RunCourse(seed, Course::Wild, 120, 2, tallies);
    ExpectTelling(tallies.full, 3);
    ExpectTelling(tallies.byPath, 12);
    ExpectTelling(tallies.chain, 50);
    ExpectTelling(tallies.vfile, 5);
    ExpectTelling(tallies.resolved, 150);
}

TEST(PathModel, Trees_answer_as_the_mirror_does_while_they_grow_and_are_disturbed) {
    Tallies tallies;
    for (std::uint32_t seed = 40001; seed <= 40000 + Courses(400) && !HasFailure(); ++seed)
        RunCourse(seed, Course::Tidy, 250, 2, tallies);
    ExpectTelling(tallies.full, 2);
    ExpectTelling(tallies.byPath, 6);
    ExpectTelling(tallies.chain, 10);
}

TEST(PathModel, Large_graphs_answer_as_the_mirror_does) {
    Tallies tallies;
    for (std::uint32_t seed = 70001; seed <= 70000 + Courses(8) && !HasFailure(); ++seed)
        RunCourse(seed, Course::Wild, 2500, 1, tallies);
    for (std::uint32_t seed = 80001; seed <= 80000 + Courses(8) && !HasFailure(); ++seed)
        RunCourse(seed, Course::Tidy, 2500, 1, tallies);
    ExpectTelling(tallies.full, 5);
    ExpectTelling(tallies.byPath, 20);
}

} // namespace
