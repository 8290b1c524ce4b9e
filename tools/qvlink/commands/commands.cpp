#include "commands/commands.h"

namespace qvlink {
namespace {

struct Entry {
    Command command;
    const char *word;
    int (*run)(Request const &request);
};

constexpr Entry Entries[] = {
    {Command::scan, "scan", RunScan},
    {Command::deps, "deps", RunDeps},
    {Command::refs, "refs", RunRefs},
    {Command::find, "find", RunFind},
    {Command::show, "show", RunShow},
    {Command::missing, "missing", RunMissing},
    {Command::why, "why", RunWhy},
    {Command::stats, "stats", RunStats},
    {Command::verify, "verify", RunVerify},
    {Command::exportGraph, "export", RunExport},
    {Command::protectedPaths, "protected", RunProtected},
    {Command::listsCapture, "lists capture", RunListsCapture},
    {Command::listsPack, "lists pack", RunListsPack},
    {Command::listsUnpack, "lists unpack", RunListsUnpack},
    {Command::listsCheck, "lists check", RunListsCheck},
    {Command::listsDiff, "lists diff", RunListsDiff},
    {Command::regImport, "reg import", RunRegImport},
    {Command::regExport, "reg export", RunRegExport},
};

Entry const &EntryOf(Command command) {
    Entry const *entry = Entries;
    while (entry->command != command) {
        ++entry;
    }
    return *entry;
}

} // namespace

const char *CommandWord(Command command) { return EntryOf(command).word; }

int RunCommand(Request const &request) { return EntryOf(request.command).run(request); }

} // namespace qvlink
