#include "model.h"
#include "output/text.h"

namespace qvlink {
namespace {

std::string NeededName(Names const &names, Need const &need) {
    return need.found ? names.Of(*need.found) : std::string(NameOf(*need.asked));
}

// "in /usr/lib, in the loader's cache"
std::string Reason(Names const &names, Need const &need) {
    return need.found ? names.FolderPathOf(*need.found) + ": " + RuleText(need) : RuleText(need);
}

Table::Cell NameCell(Names const &names, Need const &need) {
    return {NeededName(names, need), need.found ? Colour::none : Colour::bad};
}

const char *VerbOf(std::uint32_t linkType) {
    switch (linkType) {
    case LINK_SYMLINK:
        return "is a link to ";
    case LINK_REFERS:
        return "names ";
    default:
        return "needs ";
    }
}

} // namespace

void PrintDependencies(Screen &screen, Names const &names,
                       std::vector<Dependency> const &dependencies, bool verbose) {
    Table table(screen);
    for (Dependency const &dependency : dependencies) {
        Need const &need = dependency.need;
        std::vector<Table::Cell> row{NameCell(names, need)};
        if (verbose) {
            row.push_back({Reason(names, need), Colour::dim});
            row.push_back({"needed by " + names.Of(*dependency.requester), Colour::dim});
        } else if (!need.found) {
            row.push_back({"not found", Colour::bad});
        }
        table.Row(std::move(row));
    }
    table.Print();
}

void PrintTree(Screen &screen, Names const &names, std::vector<TreeLine> const &lines,
               bool verbose) {
    for (TreeLine const &line : lines) {
        Need const &need = line.dependency.need;
        std::string const name = screen.Safe(NeededName(names, need));
        std::string text(line.depth * 2, ' ');
        text += need.found ? name : screen.Painted(name + "  not found", Colour::bad);
        if (verbose) {
            text +=
                "  " + screen.Painted("(" + screen.Safe(Reason(names, need)) + ")", Colour::dim);
        }
        text +=
            line.isRepeated ? "  " + screen.Painted("(its needs stand above)", Colour::dim) : "";
        screen.Line(text);
    }
}

void PrintReferrers(Screen &screen, Names const &names, std::vector<Referrer> const &referrers,
                    bool verbose) {
    Table table(screen);
    for (Referrer const &referrer : referrers) {
        std::vector<Table::Cell> row{{names.Of(*referrer.object)}};
        if (verbose) {
            row.push_back({"needs " + NeededName(names, referrer.need), Colour::dim});
            row.push_back({Reason(names, referrer.need), Colour::dim});
        }
        table.Row(std::move(row));
    }
    table.Print();
}

void PrintChain(Screen &screen, Names const &names, CQVUObject &start,
                std::vector<Dependency> const &chain, bool verbose) {
    screen.Line(screen.Safe(names.Of(start)));
    std::size_t depth = 0;
    for (Dependency const &step : chain) {
        Need const &need = step.need;
        std::string const verb = VerbOf(need.linkType);
        std::string text(++depth * 2, ' ');
        text += screen.Painted(verb, Colour::dim) + screen.Safe(NeededName(names, need));
        if (verbose && need.linkType != LINK_SYMLINK) {
            text +=
                "  " + screen.Painted("(" + screen.Safe(Reason(names, need)) + ")", Colour::dim);
        }
        screen.Line(text);
    }
}

void PrintMissing(Screen &screen, Names const &names, std::vector<MissingName> const &missing,
                  bool verbose) {
    Table table(screen);
    for (MissingName const &name : missing) {
        std::string const text(NameOf(*name.name));
        std::string const kind = name.isDelayed ? "at first use" : "";
        if (!verbose) {
            std::string const first = names.Of(*name.askers.front());
            std::size_t const others = name.askers.size() - 1;
            table.Row({{text, Colour::strong},
                       {others ? first + " and " + ReadableCount(others) + " more" : first},
                       {kind, Colour::dim}});
            continue;
        }
        for (CQVUObject *const asker : name.askers) {
            table.Row({{text, Colour::strong}, {"asked for by " + names.Of(*asker)}, {kind}});
        }
        for (CQVUObject *const file : name.elsewhere) {
            table.Row({{text, Colour::strong}, {"there is " + names.Of(*file)}, {"not searched"}});
        }
    }
    table.Print();
}

} // namespace qvlink
