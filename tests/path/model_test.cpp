// Random texts and steps against a model on plain strings.
#include "open_path.h"

#include <random>

#include <gtest/gtest.h>

#include "courses.h"
#include "path_model.h"

using UTILS::UtilsString;

namespace {

using Random = std::mt19937;

std::string RandomText(Random &random) {
    static char const *const words[] = {".",  ".",  "\\", "\\", "\\", ":",    "a",    "bc",
                                        "C:", "..", " ",  "d",  "x",  "HKLM", "HKCU", "HKEY_USERS"};
    std::string text;
    for (auto left = random() % 9; left > 0; --left)
        text += words[random() % std::size(words)];
    return text;
}

std::string RandomBase(Random &random) {
    static char const *const bases[] = {"C:\\a\\b",     "C:",      "C:\\", "a",
                                        "\\\\host\\x",  "HKLM\\a", "",     " D:\\d\\e\\f ",
                                        "C:\\C:\\C:\\", "x\\y"};
    return random() % 4 == 0 ? RandomText(random) : bases[random() % std::size(bases)];
}

class Twin {
public:
    explicit Twin(std::uint32_t seed) : m_random(seed) {
        OpenPath const named("C:\\name");
        std::string const name = named.Network();
        m_model.host = name.substr(2, name.rfind('\\') - 2);
        m_model.current = UtilsString(OpenPath::UGetCurrentDir()).Retrieve();
    }

    void Step() {
        std::string const text = RandomText(m_random);
        switch (m_random() % 10) {
        case 0:
        case 1:
        case 2: {
            std::string const base = RandomBase(m_random);
            m_done = "SetPath [" + text + "] [" + base + "]";
            Same(m_model.SetPath(text, base), m_path.SetPath(text, base));
            break;
        }
        case 3:
        case 4:
        case 5:
            m_done = "AddToPath [" + text + "]";
            Same(m_model.AddToPath(text), m_path.AddToPath(text));
            break;
        case 6:
            m_done = "SetPathToSubDir";
            Same(m_model.MoveToParent(), m_path.SetPathToSubDir());
            break;
        case 7:
            m_done = "CloseParentSearch";
            m_model.parentLevel = 0;
            m_path.CloseParentSearch();
            break;
        default:
            Climb();
        }
        SameState();
    }

private:
    void Climb() {
        UtilsString out("untouched");
        bool const up = m_random() % 2 == 0;
        m_done = up ? "GetNextParentDir" : "GetPrevParentDir";
        auto const wanted = up ? m_model.NextParent() : m_model.PreviousParent();
        Same(wanted.has_value(), up ? m_path.GetNextParentDir(out) : m_path.GetPrevParentDir(out));
        ASSERT_EQ(wanted.value_or("untouched"), out.Retrieve()) << m_done;
    }

    void Same(bool wanted, int result) const { ASSERT_EQ(wanted ? 1 : 0, result) << m_done; }

    void SameState() {
        ASSERT_EQ(m_model.path, m_path.Text()) << m_done;
        ASSERT_EQ(m_model.pathUNC, m_path.Network()) << m_done;
        ASSERT_EQ(m_model.regFlag, m_path.regFlag == 1) << m_done;
        ASSERT_EQ(m_model.uncFlag, m_path.uncFlag == 1) << m_done;
        ASSERT_EQ(m_model.parentLevel, m_path.parentLevel) << m_done;
        ASSERT_EQ(m_model.Parent().value_or("-"), ParentOf(m_path)) << m_done;
        UtilsString folder("untouched");
        ASSERT_EQ(m_model.Folder().has_value(), m_path.GetDirFolder(folder) == 1) << m_done;
        ASSERT_EQ(m_model.Folder().value_or("untouched"), folder.Retrieve()) << m_done;
        ASSERT_EQ(m_model.Drive(), m_path.GetDrive()) << m_done;
    }

    Random m_random;
    PathModel m_model;
    OpenPath m_path;
    std::string m_done;
};

} // namespace

TEST(PathModel, Steps_in_any_order_do_what_plain_strings_do) {
    for (std::uint32_t seed = 1; seed <= Courses(6000) && !testing::Test::HasFailure(); ++seed) {
        Twin twin(seed);
        for (int step = 0; step < 8 && !testing::Test::HasFailure(); ++step)
            twin.Step();
        if (testing::Test::HasFailure())
            ADD_FAILURE() << "course " << seed;
    }
}

TEST(PathModel, Names_are_divided_as_plain_strings_are) {
    Random random(99);
    for (std::uint32_t round = Courses(20000); round > 0; --round) {
        std::string const text = RandomText(random);
        int const firstDot = static_cast<int>(random() % 2);
        UtilsString name("old");
        UtilsString ext("old");
        int const divided = OpenPath::GetFileNameFromPath(UtilsString(text), name, ext, firstDot);
        auto const [wantedName, wantedExt] = PathModel::NameParts(text, firstDot == 1);
        ASSERT_EQ(wantedExt.empty() ? 0 : 1, divided) << text;
        ASSERT_EQ(wantedName, name.Retrieve()) << text;
        ASSERT_EQ(wantedExt, ext.Retrieve()) << text;
    }
}
