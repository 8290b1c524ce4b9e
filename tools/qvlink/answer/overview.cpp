#include "answer/overview.h"

#include "answer/needs.h"
#include "model.h"

#include <algorithm>
#include <set>
#include <unordered_map>

namespace qvlink {
namespace {

constexpr std::uint32_t AskMask = LINK_NEEDS | LINK_DELAYED;

// Those who get nothing by a bare name.
MissingName AskersInVain(CQVUDatabase &database, CQVUObject &name) {
    MissingName missing{&name, {}, {}, true};
    std::set<CQVUObject *> askers;
    std::map<std::string, CQVUObject *> resolved;
    for (Edge const &edge : LinksTo(database, name, AskMask | LINK_MISSING)) {
        if (TypeOf(*edge.link) != LINK_MISSING) {
            std::string folder = FolderOf(database, *edge.other);
            auto const [place, isNew] = resolved.try_emplace(folder, nullptr);
            if (isNew) {
                place->second = name.Resolve(folder.empty() ? nullptr : folder.data());
            }
            if (place->second) {
                continue;
            }
        }
        missing.isDelayed = missing.isDelayed && TypeOf(*edge.link) == LINK_DELAYED;
        askers.insert(edge.other);
    }
    missing.askers.assign(askers.begin(), askers.end());
    return missing;
}

void FindElsewhere(CQVUDatabase &database, std::vector<MissingName> &missing) {
    std::unordered_map<std::string, MissingName *> byName;
    for (MissingName &name : missing) {
        byName.emplace(FoldName(NameOf(*name.name)), &name);
    }
    for (CQVUObject *const file : FindObjects(database, "*", OBJ_FILE | OBJ_PINNED)) {
        auto const name = byName.find(FoldName(NameOf(*file)));
        if (name != byName.end()) {
            name->second->elsewhere.push_back(file);
        }
    }
}

using Counts = std::unordered_map<CQVUObject *, std::size_t>;

// Counts each asker of a file once, whether it asks by link or by name.
Counts CountAskers(CQVUDatabase &database, std::vector<CQVUObject *> const &objects) {
    Counts counts;
    std::map<std::string, Needs> views;
    for (CQVUObject *const object : objects) {
        if (LinksFrom(database, *object, AskMask).empty()) {
            continue;
        }
        std::string const folder = FolderOf(database, *object);
        std::set<CQVUObject *> found;
        for (Need const &need :
             views.try_emplace(folder, database, folder).first->second.Of(*object)) {
            if (need.found && (need.linkType & AskMask) && found.insert(need.found).second) {
                ++counts[need.found];
            }
        }
    }
    return counts;
}

std::vector<NeededFile> MostNeeded(CQVUDatabase &database, Counts const &counts, std::size_t top) {
    std::vector<NeededFile> files;
    for (auto const &[file, askers] : counts) {
        files.push_back({file, askers});
    }
    PathOrder order(database);
    auto const middle = files.begin() + static_cast<std::ptrdiff_t>(std::min(top, files.size()));
    std::partial_sort(files.begin(), middle, files.end(),
                      [&](NeededFile const &a, NeededFile const &b) {
                          return a.askers != b.askers ? a.askers > b.askers : order(a.file, b.file);
                      });
    files.erase(middle, files.end());
    return files;
}

void CountFile(CQVUObject &object, Statistics &statistics) {
    FileKind const kind = KindOf(&object);
    statistics.folders += kind == FileKind::folder;
    statistics.symlinks += kind == FileKind::symlink;
    statistics.elf += TypeOf(object) == OBJ_FILE && (object.dwFlags & FLAG_ELF) != 0;
    statistics.pe += TypeOf(object) == OBJ_FILE && (object.dwFlags & FLAG_PE) != 0;
    if (kind == FileKind::file) {
        FileData const data = *FileDataOf(object);
        statistics.bytes += (std::uint64_t{data.dwSizeHigh} << 32) | data.dwSizeLow;
    }
}

} // namespace

std::vector<MissingName> FindMissing(CQVUDatabase &database) {
    std::vector<MissingName> missing;
    for (CQVUObject *const name : FindObjects(database, "*", OBJ_VFILE)) {
        MissingName found = AskersInVain(database, *name);
        if (!found.askers.empty()) {
            missing.push_back(std::move(found));
        }
    }
    FindElsewhere(database, missing);
    PathOrder order(database);
    for (MissingName &name : missing) {
        std::sort(name.askers.begin(), name.askers.end(), std::ref(order));
        std::sort(name.elsewhere.begin(), name.elsewhere.end(), std::ref(order));
    }
    std::sort(missing.begin(), missing.end(),
              [&](MissingName const &a, MissingName const &b) { return order(a.name, b.name); });
    return missing;
}

Statistics FindStatistics(CQVUDatabase &database, std::size_t top) {
    Statistics statistics;
    std::vector<CQVUObject *> objects = FindObjects(database, "*", AnyObject);
    for (CQVUObject *const object : objects) {
        ++statistics.objects[TypeOf(*object)];
        CountFile(*object, statistics);
    }
    if (CQVUObject *const root = database.GetRootObject()) {
        ++statistics.objects[OBJ_ROOT];
        objects.push_back(root);
    }
    for (CQVUObject *const object : objects) {
        for (Edge const &edge : LinksFrom(database, *object, AnyLink)) {
            ++statistics.links[TypeOf(*edge.link)];
        }
    }
    statistics.mostNeeded = MostNeeded(database, CountAskers(database, objects), top);
    return statistics;
}

} // namespace qvlink
