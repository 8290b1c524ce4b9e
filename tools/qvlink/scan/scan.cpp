#include "scan/scan.h"

#include <algorithm>
#include <chrono>
#include <optional>

#include "platform/host.h"
#include "platform/walk.h"
#include "scan/key_walker.h"
#include "scan/program_links.h"
#include "scan/session.h"
#include "scan/walker.h"

namespace qvlink {
namespace {

struct Roots {
    std::vector<std::string> present; // canonical, none of them below another
    std::vector<std::string> absent;
};

bool IsBelow(std::string const &path, std::string const &folder) {
    std::string const start = JoinPath(folder, "");
    return path.size() > start.size() && path.compare(0, start.size(), start) == 0;
}

// The path itself with the links in its folders followed; nothing if there is no such file.
std::optional<std::string> WithoutLastLink(std::string const &path) {
    SplitPath const parts = SplitLastName(AbsoluteDirectory(path));
    Presence presence{};
    std::string why;
    Entry entry;
    auto const canonical = CanonicalPath(parts.folder, presence);
    auto const folder = canonical ? Folder::Open(*canonical, why) : nullptr;
    if (parts.name.empty() || !folder || folder->Look(parts.name, entry) != Presence::present) {
        return std::nullopt;
    }
    return JoinPath(*canonical, parts.name);
}

void AddRoot(Roots &roots, std::string const &path) {
    Presence presence{};
    auto const whole = CanonicalPath(path, presence);
    auto const itself = WithoutLastLink(path);
    if (presence == Presence::unknown && !itself) {
        throw ScanError("cannot reach " + path + "; check that you may read its folder");
    }
    if (whole) {
        roots.present.push_back(*whole);
    }
    if (itself) {
        roots.present.push_back(*itself);
    }
    if (!whole && !itself) {
        SplitPath const parts = SplitLastName(AbsoluteDirectory(path));
        auto const folder = CanonicalPath(parts.folder, presence);
        roots.absent.push_back(JoinPath(folder.value_or(parts.folder), parts.name));
    }
}

Roots FindRoots(std::vector<std::string> const &paths) {
    Roots roots;
    for (std::string const &path : paths) {
        AddRoot(roots, path);
    }
    auto &present = roots.present;
    std::sort(present.begin(), present.end());
    present.erase(std::unique(present.begin(), present.end()), present.end());
    std::vector<std::string> const all = present;
    present.erase(std::remove_if(present.begin(), present.end(),
                                 [&](std::string const &path) {
                                     return std::any_of(all.begin(), all.end(),
                                                        [&](std::string const &other) {
                                                            return IsBelow(path, other);
                                                        });
                                 }),
                  present.end());
    for (std::string const &path : present) {
        if (!PlaceOfHostPath(path)) {
            throw ScanError("no drive of the database holds " + path);
        }
    }
    return roots;
}

std::string CanonicalOrEmpty(std::string const &path) {
    Presence presence{};
    return path.empty() ? path : CanonicalPath(path, presence).value_or("");
}

} // namespace

ScanSummary Scan(CQVUDatabase &database, ScanOptions const &options, ScanObserver &observer,
                 bool &changed) {
    auto const start = std::chrono::steady_clock::now();
    Roots const roots = FindRoots(options.paths);
    std::optional<ProgramLinks> programs;
    Tree tree(database, [&](CQVUObject &object) { programs->BeforeRemoval(object); });
    Session session{database, tree, observer, {}};
    programs.emplace(session);
    Walker walker(session, *programs, CanonicalOrEmpty(options.databaseFolder));

    std::optional<KeyWalker> keys;
    if (!options.keys.empty()) {
        keys.emplace(session, *options.registry);
        keys->Find(options.keys);
    }
    for (std::string const &path : roots.absent) {
        if (!walker.Forget(path)) {
            throw ScanError("there is no " + path + ", neither on the disk nor in the database");
        }
    }
    for (std::string const &path : roots.present) {
        walker.Scan(path);
    }
    std::vector<std::uint32_t> lost;
    programs->LinkAll([&](std::string const &path) { return walker.Locate(path); }, lost);
    walker.LinkSymlinks(lost);
    walker.RemoveLost(lost);
    programs->RemoveOrphans();
    if (keys) {
        keys->Scan();
    }

    changed = tree.Changed();
    session.summary.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return session.summary;
}

} // namespace qvlink
