// The loader's calls to the system: their order, and what each does that fails.
#include "load_lines.h"

#include "call_hook.h"
#include "platform/winapi.h"

namespace {

using Calls = std::vector<std::string>;

bool HasOle() {
    bool const begun = SUCCEEDED(win::OleInitialize(nullptr));
    if (begun)
        win::OleUninitialize();
    return begun;
}

struct Observed {
    Calls calls;
    Lines lines;
    std::vector<std::string> modules; // names that LoadLibraryA was given
    std::vector<std::string> entries; // and GetProcAddress
};

// Loads a list of one line with a service failing.
Observed LoadWithout(std::string const &failing, std::string const &stored) {
    Observed observed;
    ToldLists told;
    told.Tell(listType, listId, stored);
    CallHook const hook([&](CallHook::Call const &call) {
        if (call.moment != CallHook::Moment::Before)
            return false;
        observed.calls.emplace_back(call.service);
        if (Is(call, "LoadLibraryA"))
            observed.modules.emplace_back(call.path);
        if (Is(call, "GetProcAddress"))
            observed.entries.emplace_back(call.path);
        return failing == call.service;
    });
    observed.lines = LinesTold();
    return observed;
}

Observed LoadWithout(std::string const &failing) {
    return LoadWithout(failing, lists::Pack("one\r\n"));
}

constexpr char const *takes[] = {"FindResourceA", "SizeofResource", "LoadResource",
                                 "LockResource",  "OleInitialize",  "GetModuleFileNameA",
                                 "LoadLibraryA",  "GetProcAddress"};

// The steps up to one, and then what was acquired given back, the last first.
Calls UpTo(std::string const &last, bool succeeded = false) {
    Calls calls;
    for (char const *const step : takes) {
        calls.emplace_back(step);
        if (step == last)
            break;
    }
    auto const done = [&](char const *step) {
        auto const at = std::find(calls.begin(), calls.end(), step);
        return at != calls.end() && (succeeded || *at != last);
    };
    Calls back;
    if (done("LoadLibraryA"))
        back.emplace_back("FreeLibrary");
    if (done("OleInitialize") && HasOle())
        back.emplace_back("OleUninitialize");
    if (done("LoadResource"))
        back.emplace_back("FreeResource");
    calls.insert(calls.end(), back.begin(), back.end());
    return calls;
}

Calls WholeCourse() { return UpTo("GetProcAddress", true); }

std::string BesideThisProgram(std::string const &name) {
    char path[4096];
    win::GetModuleFileNameA(nullptr, path, sizeof path);
    std::string const own = path;
    return own.substr(0, own.find_last_of('\\') + 1) + name;
}

} // namespace

TEST(LoadSteps, Are_made_in_order_and_undone_in_reverse) {
    Observed const observed = LoadWithout("");
    EXPECT_EQ(Lines{"one"}, observed.lines);
    EXPECT_EQ(WholeCourse(), observed.calls);
}

TEST(LoadSteps, Look_for_the_decompressor_beside_the_library_and_nowhere_else) {
    Observed const observed = LoadWithout("");
    EXPECT_EQ((Lines{BesideThisProgram("ziplib.dll")}), observed.modules);
    EXPECT_EQ((Lines{"EtUnCompress"}), observed.entries);
    EXPECT_EQ((Lines{BesideThisProgram("ziplib.dll")}), LoadWithout("LoadLibraryA").modules);
}

TEST(LoadSteps, One_that_fails_ends_the_load_and_gives_back_what_there_is) {
    for (char const *const step :
         {"FindResourceA", "SizeofResource", "LoadResource", "LockResource", "GetModuleFileNameA",
          "LoadLibraryA", "GetProcAddress"}) {
        Observed const observed = LoadWithout(step);
        EXPECT_EQ(Lines{}, observed.lines) << step;
        EXPECT_EQ(UpTo(step), observed.calls) << step;
    }
}

TEST(LoadSteps, Without_objects_of_other_programs_go_on_and_dont_end_what_wasnt_begun) {
    Observed const observed = LoadWithout("OleInitialize");
    EXPECT_EQ(Lines{"one"}, observed.lines);
    Calls expected = WholeCourse();
    expected.erase(std::remove(expected.begin(), expected.end(), "OleUninitialize"),
                   expected.end());
    EXPECT_EQ(expected, observed.calls);
}

TEST(LoadSteps, Giving_back_that_fails_changes_nothing) {
    for (char const *const step : {"FreeLibrary", "OleUninitialize", "FreeResource"}) {
        Observed const observed = LoadWithout(step);
        EXPECT_EQ(Lines{"one"}, observed.lines) << step;
        EXPECT_EQ(WholeCourse(), observed.calls) << step;
    }
    // What wasn't given back by those calls.
    win::FreeLibrary(win::GetModuleHandleA("ziplib.dll"));
    if (HasOle())
        win::OleUninitialize();
}

TEST(LoadSteps, Of_a_damaged_stream_give_everything_back) {
    Observed const observed = LoadWithout("", WithLength(std::string(50, '\xff'), 100));
    EXPECT_EQ(Lines{}, observed.lines);
    EXPECT_EQ(WholeCourse(), observed.calls);
}

TEST(LoadSteps, Of_a_resource_without_bytes_end_at_its_size) {
    Observed const observed = LoadWithout("", "");
    EXPECT_EQ(Lines{}, observed.lines);
    EXPECT_EQ(UpTo("SizeofResource", true), observed.calls);
}

// Its length can't be read, so there is nothing to decompress.
TEST(LoadSteps, Of_a_resource_below_four_bytes_end_before_the_decompressor) {
    std::string const stored = lists::Pack("one\r\n");
    EXPECT_EQ(UpTo("SizeofResource", true), LoadWithout("", "").calls);
    for (std::size_t size = 1; size < 4; ++size) {
        Observed const observed = LoadWithout("", stored.substr(0, size));
        EXPECT_EQ(Lines{}, observed.lines) << size;
        EXPECT_EQ(UpTo("LockResource", true), observed.calls) << size;
    }
}

TEST(LoadSteps, Leave_no_module_behind) {
    LoadWithout("");
    EXPECT_FALSE(win::GetModuleHandleA("ziplib.dll"));
    LoadWithout("GetProcAddress");
    EXPECT_FALSE(win::GetModuleHandleA("ziplib.dll"));
}
