#include "commands/arguments.h"

#include "commands/help.h"

#include <CLI/CLI.hpp>
#include <iostream>

namespace qvlink {
namespace {

const char PathHelp[] = "A file or folder, or a bare name that programs ask for";

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
        AddCommand("scan", Command::scan)
            ->add_option("PATH", m_request.paths, "Folders and files to put into the graph")
            ->required()
            ->type_name("");
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

    Request &m_request;
    CLI::App m_app;
};

std::string CommandPrefix(CLI::App const &app) {
    auto const chosen = app.get_subcommands();
    return chosen.empty() ? "qvlink" : "qvlink " + chosen.front()->get_name();
}

// The parser's own words, but for a missing or unknown command.
std::string MessageOf(CLI::App const &app, CLI::ParseError const &error) {
    if (!app.get_subcommands().empty()) {
        return error.what();
    }
    std::vector<std::string> const left = app.remaining();
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
