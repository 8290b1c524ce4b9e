#include "commands/help.h"

#include "model.h"
#include "platform/host.h"

namespace qvlink {
namespace {

const CommandHelp Helps[] = {
    {"scan", "Put folders and their files into the graph, or bring them up to date",
     R"(Walks the folders, reads what programs need, and stores it. What is there
already and hasn't changed isn't read again; what has vanished leaves the
graph. Symbolic links are kept as links and never followed. Of the registry, keys
and values go in, and a value is linked to the files of the graph that it names.

Examples:
  qvlink scan /usr/bin /usr/lib     put two trees into the graph
  qvlink scan .                     bring the current folder up to date
  qvlink scan -v /opt               list what couldn't be read
  qvlink --db /tmp/graph scan /srv  into a database of its own
  qvlink scan ~/.wine/drive_c --registry HKLM HKCU
                                    files first, then keys)"},
    {"deps", "Tell what a program needs",
     R"(All libraries that the program comes to need, those of its libraries
included. A symbolic link stands for the program it leads to. For a folder:
what the programs below it need from outside of it. For a registry value or key:
the files that it, or a value below it, names, and what these need.

Examples:
  qvlink deps /usr/bin/bash            everything that bash needs
  qvlink deps --direct /usr/bin/bash   only what it asks for itself
  qvlink deps --tree /usr/bin/bash     who asks for what
  qvlink deps -v /usr/bin/bash         where each was found, and why there
  qvlink deps 'HKLM\Software\Classes'  what values below the key name
  qvlink deps --json ./setup.exe       for other programs)"},
    {"refs", "Tell who needs a file",
     R"(All programs and libraries that need the file, through others too, by a link
or by its bare name, and the registry values that name one of them. For a folder:
who outside of it needs something below it. A bare name stands for all that ask
for it.

Examples:
  qvlink refs /usr/lib/x86_64-linux-gnu/libstdc++.so.6
  qvlink refs --direct ./libfoo.so
  qvlink refs -v KERNEL32.dll          which of their needs leads there)"},
    {"find", "Find objects by name",
     R"(The pattern is for the whole name: * stands for any text and ? for one
character. Case doesn't matter. Types are drive, folder, file, symlink,
special, name, runpath, hive, key and value; file takes in folders and symbolic
links. A key's own value has the name @.

Examples:
  qvlink find 'libssl*'
  qvlink find '*.exe' --type file
  qvlink find -v 'python?'             with kind and size
  qvlink find '*.dll' --protected      those of the operating system
  qvlink find 'Run*' --type key)"},
    {"show", "Show all that the graph knows of one object",
     R"(Its fields, its data, and its links in both directions.

Examples:
  qvlink show /usr/bin/bash
  qvlink show KERNEL32.dll             a name that programs ask for
  qvlink show 'HKLM\Software\Microsoft\Windows\CurrentVersion\ProgramFilesDir'
  qvlink show --json /usr/lib)"},
    {"missing", "List the names that nothing provides, and who asks for them",
     R"(For a Windows program, or library, names are looked for as if it were started
from its own folder.

Examples:
  qvlink missing
  qvlink missing -v                    all who ask, and files so named elsewhere)"},
    {"why", "Show a shortest chain of needs from A to B",
     R"(B may also be a bare name that somebody asks for.

Examples:
  qvlink why /usr/bin/python3 /usr/lib/x86_64-linux-gnu/libz.so.1
  qvlink why -v ./setup.exe SHELL32.dll   with the rule of each step)"},
    {"stats", "Count what is in the graph and list the most needed files",
     R"(Examples:
  qvlink stats
  qvlink stats --top 50
  qvlink stats --json)"},
    {"verify", "Check the database file and the rules of the graph",
     R"(Reads linkdb.dat byte by byte: its header, records and lists, the ends of each
link, the folder trees. Also says what another process would leave out when it
loads the file. Exit code 0: sound. 1: there are findings. 2: it can't be read.

Examples:
  qvlink verify
  qvlink verify -v                     all findings
  qvlink --db /backup/graph verify --json)"},
    {"export", "Write the whole graph in a format of other programs",
     R"(dot is for Graphviz, graphml for graph editors, jsonl has an object a line, csv
makes nodes.csv and edges.csv for the bulk import of graph databases.

Examples:
  qvlink export --format dot | dot -Tsvg -o graph.svg
  qvlink export --format jsonl | jq 'select(.type == "needs")'
  qvlink export --format graphml -o graph.graphml
  qvlink export --format csv -o /tmp/import)"},
    {"protected", "Tell whether files and registry keys belong to the operating system",
     R"(Asks the library, which knows its system's files and keys by name. A protected
folder or key doesn't protect what is below it, and one that isn't protected may
lead to some that are. No database is needed. Exit code 0: some path is protected.
1: none is. 2: some path couldn't be asked about.

Examples:
  qvlink protected --db-paths 'C:\windows\system32\kernel32.dll'
  qvlink protected ~/.wine/drive_c/windows/*
  qvlink protected 'HKLM\SYSTEM' 'HKEY_CURRENT_USER\Software'
  qvlink protected -v setup.exe        with the line of the list
  qvlink protected --json *.dll        for other programs)"},
    {"lists", "Make, check and compare the lists of protected files and keys",
     R"(A list is a text, one entry a line; the library holds ten of them, packed. Where
a file is asked for it may be a text, a packed list or a built library of either
system.

Examples:
  qvlink lists capture files --from ~/.wine -o 101.txt
  qvlink lists check 101.txt
  qvlink lists diff QVLinkDB.dll libQVLinkDB.so
  qvlink lists unpack libQVLinkDB.so --id 101)"},
    {"lists capture", "Make a list from a system as it stands",
     R"(Lists the files below the Windows folder, or the keys of the registry. What
couldn't be read, and what a list has no place for, is told on standard error.

Examples:
  qvlink lists capture files --from ~/.wine -o 101.txt
  qvlink lists capture keys --from /mnt/disk -o 110.txt
  qvlink lists capture keys --without 'HKLM\SAM' --without 'HKCU\Software\Wine*')"},
    {"lists pack", "Store a list as the library holds it",
     R"(A text that the library would read wrongly isn't stored.

Examples:
  qvlink lists pack 101.txt -o 101.list)"},
    {"lists unpack", "Write the text of a stored list, or of a list in a library",
     R"(Examples:
  qvlink lists unpack 101.list
  qvlink lists unpack libQVLinkDB.so --id 101 -o 101.txt)"},
    {"lists check", "Check lists against the form that the library reads",
     R"(A line for each finding; notes are no errors. Exit code 0: no errors. 1: there
are some. 2: a file can't be read.

Examples:
  qvlink lists check 1*.txt
  qvlink lists check -v libQVLinkDB.so all ten of a library
  qvlink lists check --json QVLinkDB.dll --id 105)"},
    {"lists diff", "Compare lists entry by entry",
     R"(Entries of A alone have a minus in front, those of B a plus. The case of letters
and the order make no difference. Of two libraries all lists that both have are
compared, unless --id names one. Exit code 0: alike. 1: there are differences.
2: failure.

Examples:
  qvlink lists diff 101.txt libQVLinkDB.so --id 101
  qvlink lists diff QVLinkDB.dll libQVLinkDB.so)"},
    {"reg", "Bring registration files into the registry, or write them",
     R"(The registry is the system's own, on Linux that of the prefix in use. The files are
those that Windows and Wine exchange, REGEDIT4 and version 5.00, and those in which
a Wine prefix keeps its registry. No database is needed.

Examples:
  qvlink reg import ~/.wine            the whole registry of a prefix
  qvlink reg import settings.reg
  qvlink reg export 'HKLM\Software\Name' name.reg)"},
    {"reg import", "Bring registration files into the registry",
     R"(Of a Wine prefix system.reg, userdef.reg and user.reg are brought in. A line that
can't be read is told with its number, and the rest is brought in all the same.
On Linux a file goes in whole, or not at all if it can't be stored to its end.
Exit code 0: all of it. 1: some lines can't be read. 2: a file can't be read, or
the registry refused something.

Examples:
  qvlink reg import ~/.wine
  qvlink reg import old.reg --code-page 1252
  qvlink reg import ~/.wine/user.reg --into 'HKCU\Software\Copy')"},
    {"reg export", "Write a key and all below it as a registration file",
     R"(Windows and Wine read what is written, version 5.00 unless --form says otherwise.
Exit code 0: all of it. 1: there is no such key, or something couldn't be written,
which is told. 2: failure.

Examples:
  qvlink reg export 'HKCU\Software\Name' name.reg
  qvlink reg export HKLM machine.reg --form 4 --code-page 1252)"},
};

} // namespace

CommandHelp const &HelpOf(std::string const &command) {
    for (CommandHelp const &help : Helps) {
        if (command == help.name) {
            return help;
        }
    }
    return Helps[0];
}

std::string AboutText() {
    return "qvlink keeps a graph of the programs and libraries of a machine and answers\n"
           "what needs what.";
}

std::string MainFooter() {
    return R"(Exit codes: 0 answered, 1 nothing found, 2 bad use or failure.

Examples:
  qvlink scan /usr/bin /usr/lib      put a machine's programs into the graph
  qvlink deps /usr/bin/bash          what does bash need?
  qvlink refs /usr/lib/libfoo.so     who needs this library?
  qvlink protected setup.exe         is it the operating system's?
  qvlink COMMAND --help              more about a command)";
}

std::string VersionText() { return "qvlink " QVLINK_VERSION; }

std::string DefaultDirectoryText() {
    std::string const directory = DefaultDatabaseDirectory();
    return directory.empty() ? "none, for want of a home" : directory;
}

std::vector<std::string> FindTypes() {
    std::vector<std::string> types{"folder", "symlink", "special"};
    for (TypeName const &type : OBJECT_TYPE_NAMES) {
        types.emplace_back(type.name);
    }
    return types;
}

} // namespace qvlink
