#include "commands/arguments.h"

#include "commands/help.h"

#include <CLI/CLI.hpp>
#include <iostream>

namespace qvlink {
namespace {

const char PathHelp[] =
    "A file or folder, a registry key or value, or a bare name that programs ask for";

class Grammar {
public:
    explicit Grammar(Request &request) : m_request(request) {
        m_app.name("qvlink");
        m_app.description(AboutText());
        m_app.set_version_flag("--version", VersionText(), "Print the version and exit");
        m_app.set_help_flag("-h,--help", "Print this help and exit");
        m_app.footer(MainFooter());
        m_app.require_subcommand(1);
        m_app.failure_message(CLI::FailureMessage::simple);
        AddCommonOptions(m_app, "");
        AddScan();
        AddQuestions();
        AddOverviews();
        AddExport();
        AddProtected();
        AddLists();
        AddReg();
    }

    CLI::App &App() { return m_app; }

private:
    void AddCommonOptions(CLI::App &app, std::string const &group) {
        auto const add = [&](CLI::Option *option) {
            if (!group.empty()) {
                option->group(group);
            }
        };
        add(app.add_option("--db", m_request.databaseDirectory,
                           "Folder of linkdb.dat (default: " + DefaultDirectoryText() + ")")
                ->type_name("DIR"));
        add(app.add_flag("--db-paths", m_request.databasePaths,
                         "Take and show paths in the database's own form, C:\\folder\\file"));
        add(app.add_flag("--json", m_request.json, "Answer in JSON"));
        add(app.add_flag("-v,--verbose", m_request.verbose,
                         "Say more: why a dependency was resolved as it was, what a scan met"));
    }

    CLI::App *AddCommand(const char *name, Command command) {
        CommandHelp const &help = HelpOf(name);
        CLI::App *const app = m_app.add_subcommand(name, help.summary);
        app->footer(help.footer);
        app->callback([this, command] { m_request.command = command; });
        AddCommonOptions(*app, "Options of every command");
        return app;
    }

    CLI::App *AddPathCommand(const char *name, Command command) {
        CLI::App *const app = AddCommand(name, command);
        app->add_option("PATH", m_request.paths, PathHelp)->required()->expected(1)->type_name("");
        return app;
    }

    void AddScan() {
        CLI::App *const scan = AddCommand("scan", Command::scan);
        scan->add_option("PATH", m_request.paths, "Folders and files to put into the graph")
            ->type_name("");
        scan->add_option("--registry", m_request.keys,
                         "Keys to put into the graph, with all that is below them: HKLM, "
                         "HKCU\\Software ...; all arguments up to the next option")
            ->type_name("ROOT...");
        scan->callback([this] {
            m_request.command = Command::scan;
            if (m_request.paths.empty() && m_request.keys.empty()) {
                throw CLI::RequiredError("PATH or --registry");
            }
        });
    }

    void AddQuestions() {
        CLI::App *const deps = AddPathCommand("deps", Command::deps);
        CLI::Option *const direct =
            deps->add_flag("--direct", m_request.direct, "Only what it asks for itself");
        deps->add_flag("--tree", m_request.tree, "Show who asks for what")->excludes(direct);
        AddPathCommand("refs", Command::refs)
            ->add_flag("--direct", m_request.direct, "Only those that ask for it themselves");
        CLI::App *const find = AddCommand("find", Command::find);
        find->add_option("PATTERN", m_request.pattern,
                         "A name; * stands for any text, ? for one "
                         "character; case doesn't matter")
            ->required()
            ->type_name("");
        find->add_option("--type", m_request.type, "Only objects of this type")
            ->check(CLI::IsMember(FindTypes()))
            ->type_name("TYPE");
        find->add_flag("--protected", m_request.onlyProtected,
                       "Only files and keys that belong to the operating system");
        AddPathCommand("show", Command::show);
        AddCommand("why", Command::why)
            ->add_option("A B", m_request.paths, "Two files; the chain leads from A to B")
            ->required()
            ->expected(2)
            ->type_name("");
    }

    void AddOverviews() {
        AddCommand("missing", Command::missing);
        AddCommand("stats", Command::stats)
            ->add_option("--top", m_request.top, "How many of the most needed files to list")
            ->capture_default_str()
            ->check(CLI::NonNegativeNumber)
            ->type_name("N");
        AddCommand("verify", Command::verify);
    }

    void AddExport() {
        CLI::App *const app = AddCommand("export", Command::exportGraph);
        app->add_option("--format", m_request.format, "dot, graphml, jsonl or csv")
            ->required()
            ->check(CLI::IsMember({"dot", "graphml", "jsonl", "csv"}))
            ->type_name("FORMAT");
        app->add_option("-o,--output", m_request.output,
                        "The file to write; for csv the folder of nodes.csv and edges.csv "
                        "(default: standard output; for csv the current folder)")
            ->type_name("FILE");
    }

    void AddProtected() {
        AddCommand("protected", Command::protectedPaths)
            ->add_option("PATH", m_request.paths, "Files and keys to ask about")
            ->required()
            ->type_name("");
    }

    void AddLists() {
        CommandHelp const &help = HelpOf("lists");
        CLI::App *const app = m_app.add_subcommand("lists", help.summary);
        app->footer(help.footer);
        app->require_subcommand(1);
        AddCommonOptions(*app, "Options of every command");
        AddCapture(*AddSubcommand(*app, "lists capture", Command::listsCapture));
        CLI::App *const pack = AddSubcommand(*app, "lists pack", Command::listsPack);
        AddFiles(*pack, "TEXT", "The text of a list", 1);
        AddOutput(*pack, "The stored list to write")->required();
        CLI::App *const unpack = AddSubcommand(*app, "lists unpack", Command::listsUnpack);
        AddFiles(*unpack, "FILE", "A stored list or a built library", 1);
        AddId(*unpack);
        AddOutput(*unpack, "The text to write (default: standard output)");
        CLI::App *const check = AddSubcommand(*app, "lists check", Command::listsCheck);
        AddFiles(*check, "FILE", "Texts, stored lists and built libraries", 0);
        AddId(*check);
        CLI::App *const diff = AddSubcommand(*app, "lists diff", Command::listsDiff);
        AddFiles(*diff, "A B", "Texts, stored lists or built libraries", 2);
        AddId(*diff);
    }

    void AddReg() {
        CommandHelp const &help = HelpOf("reg");
        CLI::App *const app = m_app.add_subcommand("reg", help.summary);
        app->footer(help.footer);
        app->require_subcommand(1);
        AddCommonOptions(*app, "Options of every command");
        CLI::App *const in = AddSubcommand(*app, "reg import", Command::regImport);
        AddFiles(*in, "FILE", "Registration files, and Wine prefixes for all of theirs", 0);
        in->add_option("--into", m_request.into, "The key that takes the place of the roots")
            ->type_name("KEY");
        AddCodePage(*in);
        CLI::App *const out = AddSubcommand(*app, "reg export", Command::regExport);
        out->add_option("KEY", m_request.key, "The key, with all below it")
            ->required()
            ->type_name("");
        out->add_option("FILE", m_request.output, "The file to write (default: standard output)")
            ->type_name("");
        out->add_option("--form", m_request.form, "5, or 4 for REGEDIT4")
            ->capture_default_str()
            ->check(CLI::IsMember({"4", "5"}))
            ->type_name("FORM");
        AddCodePage(*out);
    }

    void AddCodePage(CLI::App &app) {
        app.add_option("--code-page", m_request.codePage,
                       "Of the texts of REGEDIT4 (default: the system's)")
            ->check(CLI::Range(1u, 65535u))
            ->type_name("N");
    }

    // `name` is the two words of it.
    CLI::App *AddSubcommand(CLI::App &parent, std::string const &name, Command command) {
        CommandHelp const &help = HelpOf(name);
        CLI::App *const app = parent.add_subcommand(name.substr(name.find(' ') + 1), help.summary);
        app->footer(help.footer);
        app->callback([this, command] { m_request.command = command; });
        AddCommonOptions(*app, "Options of every command");
        return app;
    }

    void AddCapture(CLI::App &app) {
        app.add_option("KIND", m_request.listKind, "files or keys")
            ->required()
            ->check(CLI::IsMember({"files", "keys"}))
            ->type_name("");
        app.add_option("--from", m_request.from,
                       "A Wine prefix or the top of a Windows disk (default: this machine; "
                       "on Linux the prefix in use)")
            ->type_name("DIR");
        app.add_option("--without", m_request.without,
                       "Leave out lines that fit the pattern, and what lies below them; * stands "
                       "for any text, ? for one character; may come several times")
            ->type_name("PATTERN")
            ->expected(1)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        AddOutput(app, "The text to write (default: standard output)");
    }

    // `count` 0: one or more.
    void AddFiles(CLI::App &app, const char *name, const char *help, int count) {
        CLI::Option *const option =
            app.add_option(name, m_request.paths, help)->required()->type_name("");
        if (count > 0) {
            option->expected(count);
        }
    }

    CLI::Option *AddOutput(CLI::App &app, const char *help) {
        return app.add_option("-o,--output", m_request.output, help)->type_name("FILE");
    }

    void AddId(CLI::App &app) {
        app.add_option("--id", m_request.id, "The list of this number of a library")
            ->type_name("N");
    }

    Request &m_request;
    CLI::App m_app;
};

// The command that was begun, or the program itself.
CLI::App const &Chosen(CLI::App const &app) {
    auto const chosen = app.get_subcommands();
    return chosen.empty() ? app : Chosen(*chosen.front());
}

std::string CommandPrefix(CLI::App const &app) {
    auto const chosen = app.get_subcommands();
    return app.get_name() + (chosen.empty() ? "" : ' ' + CommandPrefix(*chosen.front()));
}

// The parser's own words, but for a missing or unknown command.
std::string MessageOf(CLI::App const &app, CLI::ParseError const &error) {
    CLI::App const &chosen = Chosen(app);
    if (chosen.get_require_subcommand_min() == 0) {
        return error.what();
    }
    std::vector<std::string> const left = chosen.remaining();
    if (!left.empty()) {
        return "there is no " + std::string(left.front()[0] == '-' ? "option " : "command ") +
               left.front();
    }
    return error.get_name() == "RequiredError" ? "a command is missing" : error.what();
}

} // namespace

Arguments ParseArguments(int count, const char *const *values) {
    Arguments result;
    Request request;
    Grammar grammar(request);
    CLI::App &app = grammar.App();
    try {
        app.parse(count, values);
        result.request = request;
    } catch (CLI::Success const &success) {
        result.exitCode = app.exit(success);
    } catch (CLI::ParseError const &error) {
        std::string const prefix = CommandPrefix(app);
        std::cerr << prefix << ": " << MessageOf(app, error) << "\nRun `" << prefix
                  << " --help` for how it is used.\n";
        result.exitCode = ExitFailure;
    }
    return result;
}

} // namespace qvlink
