#include "output/protection.h"

namespace qvlink {
namespace {

std::string Explanation(PathProtection const &path, std::string const &list) {
    if (!path.line.empty()) {
        return (path.isProtected ? "" : "though it is in ") + list;
    }
    if (path.below == 0) {
        return "";
    }
    return path.below == 1 ? "1 protected file lies below it"
                           : ReadableCount(path.below) + " protected files lie below it";
}

} // namespace

std::string ListText(OwnList const &list) {
    return list.family
               ? "WIN_FILES " + std::to_string(list.family->files) + ", " + list.family->name
               : "";
}

void PrintProtection(Screen &screen, OwnList const &list, std::vector<PathProtection> const &paths,
                     bool verbose) {
    std::string const name = ListText(list);
    Table table(screen);
    for (PathProtection const &path : paths) {
        if (!path.error.empty()) {
            continue;
        }
        std::vector<Table::Cell> row{
            {path.shown},
            {path.isProtected ? "protected" : "not protected",
             path.isProtected ? Colour::good : Colour::none},
            {Explanation(path, name), path.IsLost() ? Colour::bad : Colour::dim}};
        if (verbose) {
            row.push_back({path.line, Colour::dim});
        }
        table.Row(std::move(row));
    }
    table.Print();
}

} // namespace qvlink
