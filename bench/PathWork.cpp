// Paths that are set, climbed and divided, against the standard library's.
#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <CUtilsPath.h>

#include "Contest.h"

namespace bench {
namespace {

namespace fs = std::filesystem;

using UTILS::CUtilsPath;
using UTILS::UtilsString;

constexpr std::uint32_t PATHS = 1000;
constexpr double MOST = 2; // times as long as the standard library takes

// Files that are there, in both spellings.
struct Texts {
    std::vector<UtilsString> ours;
    std::vector<std::string> standard;
    std::size_t components = 0; // of all
};

constexpr char const *FILES = "/usr/include";

std::shared_ptr<Texts const> MakeTexts(bool absolute) {
    auto texts = std::make_shared<Texts>();
    for (fs::directory_entry const &entry : fs::recursive_directory_iterator(FILES)) {
        std::string const file = entry.path().string();
        if (!entry.is_regular_file() || texts->standard.size() == PATHS ||
            entry.path().extension().empty())
            continue;
        std::string const text = absolute ? file : file.substr(1);
        std::string ours = absolute ? "Z:" + text : text;
        std::replace(ours.begin(), ours.end(), '/', '\\');
        texts->ours.emplace_back(ours);
        texts->standard.push_back(text);
        texts->components += static_cast<std::size_t>(std::count(file.begin(), file.end(), '/'));
    }
    Expect(texts->standard.size() == PATHS, std::string("no 1,000 files in ") + FILES);
    return texts;
}

// The characters of all paths, which both spellings have the same number of but for drives.
template <class Make> std::size_t SizesOf(std::size_t count, Make make) {
    std::size_t sum = 0;
    for (std::size_t i = 0; i < count; ++i)
        sum += make(i);
    return sum;
}

// Setting a path completes it, and looks whether there is such a file and how large it is; so do
// both.
std::size_t Completed(std::string const &text) {
    fs::path const path = fs::absolute(text).lexically_normal();
    bool const isFile = fs::is_regular_file(path);
    std::uintmax_t const size = isFile ? fs::file_size(path) : 0;
    benchmark::DoNotOptimize(size);
    return path.native().size() + (isFile ? 1 : 0);
}

void AddStandard(Contest &contest, std::shared_ptr<Texts const> const &texts, std::size_t answer) {
    Add(
        contest, "std::filesystem: absolute, lexically_normal, is_regular_file, file_size",
        [=] {
            return SizesOf(PATHS, [&](std::size_t i) { return Completed(texts->standard[i]); });
        },
        answer, Against::Limit, MOST);
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
    AddStandard(contest, texts, answer);
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
    AddStandard(contest, texts, answer);
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
            UtilsString name;
            UtilsString ext;
            return SizesOf(PATHS, [&](std::size_t i) {
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
    fs::current_path("/"); // where the relative ones begin
    return {SetContest(true), SetContest(false), MakeContest(), ClimbContest(), NameContest()};
}

} // namespace bench
