#include "diag_folder.h"

#include "Diag.h"
#include "platform/testing.h"
#include "platform/winapi.h"
#include "receiver.h"
#include "roles.h"

#include <atomic>
#include <cstring>
#include <fstream>
#include <thread>

#include <gtest/gtest.h>

#include "platform/module_file.h"
#include "platform/process.h"

namespace fs = std::filesystem;

namespace {

struct Calls {
    std::atomic<int> loads{0}, handles{0}, entries{0};
    bool hidden = false;
};

bool Is(const char *text, const char *expected) { return text && !std::strcmp(text, expected); }

bool CountCall(testing_hooks::Call const &call, void *context) {
    auto &calls = *static_cast<Calls *>(context);
    if (call.moment == testing_hooks::Moment::After)
        return false;
    bool const ofModule = Is(call.path, "QVDebug.dll");
    bool const handle = ofModule && Is(call.service, "GetModuleHandleA");
    calls.loads += ofModule && Is(call.service, "LoadLibraryA");
    calls.handles += handle;
    calls.entries += Is(call.path, "OutputA") && Is(call.service, "GetProcAddress");
    return handle && calls.hidden;
}

// The receiver as the test sees it; loaded when the test first wants something of it.
class Receiver {
public:
    explicit Receiver(fs::path const &path) : m_path(path) {}

    void Throw(int kind) const { Find<void (*)(int)>("ThrowWhenReported")(kind); }
    void Delete() const { fs::rename(m_path, m_path.string() + ".away"); }
    void Restore() const { fs::rename(m_path.string() + ".away", m_path); }

    void Tell(std::ostream &facts) const {
        auto const count = Find<int (*)()>("ReportCount");
        if (!count)
            return;
        Report last{};
        Find<void (*)(Report *)>("GetLastReport")(&last);
        facts << "reports=" << count() << "\nlevel=" << last.level
              << "\nmodulePath=" << last.modulePath << "\nfile=" << last.file
              << "\nfunction=" << last.function << "\nline=" << last.line
              << "\ntimestamp=" << last.timestamp << "\nformat=" << last.format
              << "\ntext=" << last.text << '\n';
    }

private:
    template <class Function> Function Find(const char *name) const {
        void *const module = fs::exists(m_path) ? LoadModule(m_path.string()) : nullptr;
        return reinterpret_cast<Function>(module ? FindSymbol(module, name) : nullptr);
    }

    fs::path m_path;
};

void ReportOnce() {
    Diag(3, "some file", "Some::Function", 790, "Fri May  4 13:58:19 2012", "%s - %lu", "x == 1",
         4711ul);
}

void ReportFromThreads() {
    std::vector<std::thread> threads(8);
    for (std::thread &thread : threads)
        thread = std::thread([] {
            for (int report = 0; report < 10; ++report)
                ReportOnce();
        });
    for (std::thread &thread : threads)
        thread.join();
}

int RunSteps(Arguments const &arguments) {
    Calls calls;
    Receiver const receiver(fs::path(ProgramPath()).replace_filename(RECEIVER_FILE));
    std::map<std::string, void (*)(Calls &, Receiver const &)> const steps{
        {"report", [](Calls &, Receiver const &) { ReportOnce(); }},
        {"threads", [](Calls &, Receiver const &) { ReportFromThreads(); }},
        {"throw0", [](Calls &, Receiver const &module) { module.Throw(0); }},
        {"throw1", [](Calls &, Receiver const &module) { module.Throw(1); }},
        {"throw2", [](Calls &, Receiver const &module) { module.Throw(2); }},
        {"hide", [](Calls &asked, Receiver const &) { asked.hidden = true; }},
        {"show", [](Calls &asked, Receiver const &) { asked.hidden = false; }},
        {"delete", [](Calls &, Receiver const &module) { module.Delete(); }},
        {"restore", [](Calls &, Receiver const &module) { module.Restore(); }}};
    testing_hooks::SetHook(CountCall, &calls);
    for (std::size_t i = 1; i < arguments.size(); ++i)
        steps.at(arguments[i])(calls, receiver);
    testing_hooks::SetHook(nullptr, nullptr);
    std::ofstream facts(arguments.at(0));
    facts << "loads=" << calls.loads << "\nhandles=" << calls.handles
          << "\nentries=" << calls.entries << '\n';
    receiver.Tell(facts);
    return 0;
}

Role const runSteps("run-steps", RunSteps);

fs::path BesideThisProgram(std::string const &name) {
    return fs::path(ProgramPath()).replace_filename(name);
}

} // namespace

DiagFolder::DiagFolder() {
    std::error_code failed;
    fs::create_hard_link(ProgramPath(), Program(), failed);
    if (failed)
        fs::copy_file(ProgramPath(), Program());
}

fs::path DiagFolder::Program() const {
    return m_folder.Path() / fs::path(ProgramPath()).filename();
}

void DiagFolder::Place(std::string const &module) const {
    fs::copy_file(BesideThisProgram("receiver") / (module + MODULE_ENDING),
                  m_folder.Path() / RECEIVER_FILE);
}

std::map<std::string, std::string> DiagFolder::Run(std::vector<std::string> const &steps) const {
    std::string const file = (m_folder.Path() / "facts").string();
    std::vector<std::string> arguments{"--role", "run-steps", file};
    arguments.insert(arguments.end(), steps.begin(), steps.end());
    // What the program itself needs is looked for in the current directory too.
    fs::path const start = fs::current_path();
    fs::current_path(fs::path(ProgramPath()).parent_path());
    EXPECT_EQ(0, RunProgram(Program().string(), arguments));
    fs::current_path(start);
    std::map<std::string, std::string> facts;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);)
        facts[line.substr(0, line.find('='))] = line.substr(line.find('=') + 1);
    return facts;
}
