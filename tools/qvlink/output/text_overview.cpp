#include "output/text.h"

#include <cstdio>
#include <map>

namespace qvlink {
namespace {

// How many findings of one rule are shown unless all are asked for.
constexpr std::size_t ShownFindings = 10;

std::string Seconds(double seconds) {
    char text[40];
    std::snprintf(text, sizeof text, "%.2f s", seconds);
    return text;
}

void PrintFindings(Screen &screen, std::vector<Finding> const &findings, Colour colour,
                   bool verbose) {
    std::map<std::string, std::size_t> shown;
    Table table(screen);
    for (Finding const &finding : findings) {
        if (verbose || ++shown[finding.check] <= ShownFindings) {
            table.Row({{finding.check, colour}, {finding.text}});
        }
    }
    for (auto const &[check, count] : shown) {
        if (count > ShownFindings) {
            table.Row({{check, colour}, {"and " + ReadableCount(count - ShownFindings) + " more"}});
        }
    }
    table.Print();
}

} // namespace

void PrintStatistics(Screen &screen, Names const &names, Statistics const &statistics,
                     std::string const &file, std::uint64_t fileSize) {
    Table table(screen);
    auto const row = [&](std::string const &name, std::string const &value) {
        table.Row({{name, Colour::dim}, {value, Colour::none, true}});
    };
    screen.Line(screen.Safe(file) + " (" + ReadableSize(fileSize) + ")");
    for (auto const &[type, count] : statistics.objects) {
        row(std::string("objects: ") + TypeWord(type), ReadableCount(count));
    }
    row("of the files: folders", ReadableCount(statistics.folders));
    row("of the files: symbolic links", ReadableCount(statistics.symlinks));
    row("of the files: ELF", ReadableCount(statistics.elf));
    row("of the files: PE", ReadableCount(statistics.pe));
    row("size of the files", ReadableSize(statistics.bytes));
    for (auto const &[type, count] : statistics.links) {
        row("links: " + LinkWord(type), ReadableCount(count));
    }
    table.Print(2);
    if (!statistics.mostNeeded.empty()) {
        screen.Line(screen.Painted("most needed", Colour::strong));
    }
    Table needed(screen);
    for (NeededFile const &entry : statistics.mostNeeded) {
        needed.Row({{ReadableCount(entry.askers), Colour::none, true}, {names.Of(*entry.file)}});
    }
    needed.Print(2);
}

void PrintCheck(Screen &screen, FileCheck const &check, bool verbose) {
    PrintFindings(screen, check.problems, Colour::bad, verbose);
    PrintFindings(screen, check.notes, Colour::dim, verbose);
    std::string const contents = ReadableCount(check.objects) + " objects and " +
                                 ReadableCount(check.links) + " links in " +
                                 ReadableSize(check.bytes);
    screen.Line(
        check.problems.empty()
            ? screen.Painted("sound", Colour::good) + ": " + contents
            : screen.Painted(ReadableCount(check.problems.size()) + " problems", Colour::bad) +
                  " in " + contents);
}

void PrintScan(Screen &screen, ScanSummary const &summary) {
    Table table(screen);
    auto const row = [&](const char *name, std::uint64_t count, std::string const &note) {
        table.Row({{name, Colour::dim}, {ReadableCount(count), Colour::none, true}, {note}});
    };
    row("folders", summary.folders, "");
    row("files", summary.files,
        ReadableCount(summary.read) + " read, " + ReadableCount(summary.elf) + " ELF, " +
            ReadableCount(summary.pe) + " PE");
    row("symbolic links", summary.symlinks, "");
    if (summary.specials) {
        row("special files", summary.specials, "");
    }
    row("needs", summary.needs,
        ReadableCount(summary.missing) + " that nothing provides, " +
            ReadableCount(summary.located) + " libraries beyond the scanned paths");
    if (summary.keys) {
        row("keys", summary.keys, "");
        row("values", summary.values, ReadableCount(summary.references) + " references to files");
    }
    row("added", summary.added, "");
    row("changed", summary.changed, "");
    row("unchanged", summary.unchanged, "");
    row("removed", summary.removed, "");
    std::uint64_t const problems = summary.unreadable + summary.malformed + summary.unrepresentable;
    row("problems", problems,
        ReadableCount(summary.unreadable) + " unreadable, " + ReadableCount(summary.malformed) +
            " malformed, " + ReadableCount(summary.unrepresentable) + " with impossible names");
    table.Print();
    screen.Line((summary.saved ? "saved " : "nothing changed: ") + ReadableCount(summary.objects) +
                " objects and " + ReadableCount(summary.links) + " links, " +
                Seconds(summary.seconds));
}

} // namespace qvlink
