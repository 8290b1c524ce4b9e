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
    const char *const what = path.isKey ? "protected key" : "protected file";
    return path.below == 1 ? std::string("1 ") + what + " lies below it"
                           : ReadableCount(path.below) + ' ' + what + "s lie below it";
}

} // namespace

std::string ListText(OwnList const &list) {
    const char *const type = list.kind == lists::Kind::files ? "WIN_FILES " : "WIN_REGS ";
    return list.family ? type + std::to_string(list.Id()) + ", " + list.family->name : "";
}

void PrintProtection(Screen &screen, OwnLists const &lists,
                     std::vector<PathProtection> const &paths, bool verbose) {
    Table table(screen);
    for (PathProtection const &path : paths) {
        if (!path.error.empty()) {
            continue;
        }
        std::vector<Table::Cell> row{{path.shown},
                                     {path.isProtected ? "protected" : "not protected",
                                      path.isProtected ? Colour::good : Colour::none},
                                     {Explanation(path, ListText(lists.Of(path))),
                                      path.IsLost() ? Colour::bad : Colour::dim}};
        if (verbose) {
            row.push_back({path.line, Colour::dim});
        }
        table.Row(std::move(row));
    }
    table.Print();
}

} // namespace qvlink
