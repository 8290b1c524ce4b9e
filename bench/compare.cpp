// Compares QVLinkDB with SQLite, LMDB and what the machine can do at best.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <sstream>

#include "Suite.h"

namespace {

struct Options {
    std::vector<std::uint32_t> sizes = {10000, 100000, 1000000};
    std::string folder = "/tmp";
    bool markdown = false;
    bool good = true;
};

char const *const USAGE =
    "Usage: qvlinkdb_bench [--quick | --sizes N,N...] [--dir FOLDER] [--markdown]\n"
    "  --quick     10,000 and 100,000 objects only\n"
    "  --sizes     these numbers of objects; targets are judged at the last one\n"
    "  --dir       where files are written (default: TMPDIR, else /tmp)\n"
    "  --markdown  print tables for a document\n";

std::vector<std::uint32_t> ParseSizes(std::string const &text) {
    std::vector<std::uint32_t> sizes;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, ',');)
        sizes.push_back(static_cast<std::uint32_t>(std::strtoul(part.c_str(), nullptr, 10)));
    return sizes;
}

Options ParseOptions(int argc, char **argv) {
    Options options;
    if (char const *folder = std::getenv("TMPDIR"); folder != nullptr)
        options.folder = folder;
    for (int i = 1; i < argc; ++i) {
        std::string const option = argv[i];
        if (option == "--quick")
            options.sizes = {10000, 100000};
        else if (option == "--markdown")
            options.markdown = true;
        else if (option == "--sizes" && i + 1 < argc)
            options.sizes = ParseSizes(argv[++i]);
        else if (option == "--dir" && i + 1 < argc)
            options.folder = argv[++i];
        else
            options.good = false;
    }
    for (std::uint32_t const size : options.sizes)
        options.good = options.good && size >= 1000 && size <= 10000000;
    return options;
}

bool RunAsChild(int argc, char **argv) {
    if (argc != 5 || std::strcmp(argv[1], "--child") != 0)
        return false;
    if (std::strcmp(argv[2], "load") == 0)
        bench::PrintLoadFigures(argv[3], argv[4]);
    else
        bench::PrintBuildFigures(ParseSizes(argv[3]).at(0), argv[4]);
    return true;
}

void Run(Options const &options) {
    std::vector<std::string> lines = bench::Describe(options.folder);
    lines.push_back("median of " + std::to_string(bench::RUNS) + " runs, contenders in turn");
    bench::PrintLines(lines, options.markdown);
    bench::Report report(options.markdown);
    std::vector<std::string> shapes;
    for (std::uint32_t const size : options.sizes) {
        bench::Suite suite(size, options.folder, report, size == options.sizes.back());
        shapes.push_back(suite.Shape());
        suite.Run();
    }
    report.PrintGrowth();
    std::printf("\n");
    bench::PrintLines(shapes, options.markdown);
    report.PrintSummary();
}

} // namespace

int main(int argc, char **argv) try {
    if (RunAsChild(argc, argv))
        return 0;
    Options const options = ParseOptions(argc, argv);
    if (!options.good) {
        std::fputs(USAGE, stderr);
        return 2;
    }
    Run(options);
    return 0;
} catch (std::exception const &problem) {
    std::fprintf(stderr, "qvlinkdb_bench: %s\n", problem.what());
    return 2;
}
