// Paths that are set, climbed and divided, against the standard library's.
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <CUtilsPath.h>

#include "Contest.h"
#include "Random.h"

namespace bench {
namespace {

namespace fs = std::filesystem;

using UTILS::CUtilsPath;
using UTILS::UtilsString;

constexpr std::uint32_t PATHS = 1000;
constexpr double MOST = 2; // times as long as the standard library takes

// The same paths in both spellings, none of which is there.
struct Texts {
    std::vector<UtilsString> ours;
    std::vector<std::string> standard;
    std::size_t components = 0; // of all
};

std::shared_ptr<Texts const> MakeTexts(bool absolute) {
    Random random(absolute ? 1 : 2);
    auto texts = std::make_shared<Texts>();
    for (std::uint32_t i = 0; i < PATHS; ++i) {
        std::string ours = absolute ? "Z:" : "";
        std::string standard;
        std::uint32_t const count = 3 + random.Below(6);
        for (std::uint32_t component = 0; component < count; ++component) {
            std::string name(4 + random.Below(12), ' ');
            for (char &c : name)
                c = static_cast<char>('a' + random.Below(26));
            name += component + 1 == count ? ".tar.gz" : "";
            ours += (ours.empty() ? "" : "\\") + name;
            standard += (absolute || !standard.empty() ? "/" : "") + name;
        }
        texts->ours.emplace_back(ours);
        texts->standard.push_back(standard);
        texts->components += count;
    }
    return texts;
}

// The characters of all paths, which both spellings have the same number of but for drives.
template <class Make> std::size_t SizesOf(std::size_t count, Make make) {
    std::size_t sum = 0;
    for (std::size_t i = 0; i < count; ++i)
        sum += make(i);
    return sum;
}

// Setting a path completes it and looks whether there is such a file; so do both.
std::size_t Completed(std::string const &text) {
    fs::path const path = fs::absolute(text).lexically_normal();
    return path.native().size() + (fs::is_regular_file(path) ? 1 : 0);
}

Contest SetContest(bool absolute) {
    auto const texts = MakeTexts(absolute);
    auto const path = std::make_shared<CUtilsPath>();
    std::size_t const drives = 2 * PATHS;
    Contest contest{absolute ? "Set 1,000 full paths" : "Set 1,000 relative paths", PATHS, {}};
    std::size_t const answer =
        SizesOf(PATHS, [&](std::size_t i) { return Completed(texts->standard[i]); });
    Add(
        contest, "",
        [=] {
            return SizesOf(PATHS, [&](std::size_t i) {
                path->SetDir(texts->ours[i]);
                return path->UGetDir().size() + static_cast<std::size_t>(path->GetFileFlag());
            });
        },
        answer + drives);
    Add(
        contest, "std::filesystem::absolute, lexically_normal, is_regular_file",
        [=] {
            return SizesOf(PATHS, [&](std::size_t i) { return Completed(texts->standard[i]); });
        },
        answer, Against::Limit, MOST);
    return contest;
}

Contest MakeContest() {
    auto const texts = MakeTexts(true);
    // While one is there the others find the installer's module loaded, if there is one.
    auto const first = std::make_shared<CUtilsPath>();
    Contest contest{"Make and destroy 1,000 full paths", PATHS, {}};
    std::size_t const answer =
        SizesOf(PATHS, [&](std::size_t i) { return Completed(texts->standard[i]); });
    Add(
        contest, "",
        [=] {
            benchmark::DoNotOptimize(first.get());
            return SizesOf(PATHS, [&](std::size_t i) {
                CUtilsPath const path(texts->ours[i], 0, 0, 0);
                return path.UGetDir().size() + static_cast<std::size_t>(path.GetFileFlag());
            });
        },
        answer + 2 * PATHS);
    Add(
        contest, "std::filesystem::absolute, lexically_normal, is_regular_file",
        [=] {
            return SizesOf(PATHS, [&](std::size_t i) { return Completed(texts->standard[i]); });
        },
        answer, Against::Limit, MOST);
    return contest;
}

Contest ClimbContest() {
    auto const texts = MakeTexts(true);
    auto ours = std::make_shared<std::vector<std::unique_ptr<CUtilsPath>>>();
    auto standard = std::make_shared<std::vector<fs::path>>();
    for (std::size_t i = 0; i < PATHS; ++i) {
        ours->push_back(std::make_unique<CUtilsPath>(texts->ours[i], 0, 0, 0));
        standard->emplace_back(texts->standard[i]);
    }
    Contest contest{"Climb from 1,000 paths to their roots", PATHS, {}};
    Add(
        contest, "",
        [=] {
            return SizesOf(PATHS, [&](std::size_t i) {
                CUtilsPath &path = *(*ours)[i];
                UtilsString parent;
                std::size_t steps = 0;
                path.CloseParentSearch();
                for (int more = path.GetParentDir(parent); more;
                     more = path.GetNextParentDir(parent))
                    ++steps;
                return steps;
            });
        },
        texts->components);
    Add(
        contest, "std::filesystem::path::parent_path",
        [=] {
            return SizesOf(PATHS, [&](std::size_t i) {
                fs::path path = (*standard)[i];
                std::size_t steps = 0;
                for (; path.has_relative_path(); path = path.parent_path())
                    ++steps;
                return steps;
            });
        },
        texts->components, Against::Limit, MOST);
    return contest;
}

Contest NameContest() {
    auto const texts = MakeTexts(true);
    Contest contest{"Divide the names of 1,000 paths", PATHS, {}};
    auto const theirs = [=] {
        return SizesOf(PATHS, [&](std::size_t i) {
            fs::path const path(texts->standard[i]);
            return path.stem().native().size() + path.extension().native().size() - 1;
        });
    };
    std::size_t const answer = theirs();
    Add(
        contest, "",
        [=] {
            return SizesOf(PATHS, [&](std::size_t i) {
                UtilsString name;
                UtilsString ext;
                CUtilsPath::GetFileNameFromPath(texts->ours[i], name, ext, 0);
                return std::size_t{name.size() + ext.size()};
            });
        },
        answer);
    Add(contest, "std::filesystem::path::stem, extension", theirs, answer, Against::Limit, MOST);
    return contest;
}

} // namespace

std::vector<Contest> PathContests() {
    return {SetContest(true), SetContest(false), MakeContest(), ClimbContest(), NameContest()};
}

} // namespace bench
