// The largest list, loaded as at the library's attach, and questions about it.
#include <cstdlib>
#include <fstream>
#include <memory>
#include <unordered_set>

#include <zlib.h>

#include "CNTAdminObject.h"
#include "linkdb_state.h"
#include "platform/settings.h"
#include "platform/winapi.h"
#include "protect_load.h"

#include "Contest.h"
#include "Random.h"
#include "System.h"

namespace bench {
namespace {

constexpr WORD LIST = 110;
constexpr std::uint32_t LINES = 33086; // of the list
constexpr std::size_t HEAD = 4;

// The stored list, without and with its head.
struct Stored {
    unsigned char const *stream;
    std::size_t size;
    std::size_t length; // of the text
};

Stored FindStored() {
    HRSRC const found = win::FindResourceA(g_hModule, MAKEINTRESOURCEA(LIST), "WIN_REGS");
    Expect(found != nullptr, "no list in this program");
    auto const *const bytes =
        static_cast<unsigned char const *>(win::LockResource(win::LoadResource(g_hModule, found)));
    std::uint32_t length = 0;
    for (std::size_t i = HEAD; i > 0; --i)
        length = length << 8 | bytes[i - 1];
    return {bytes + HEAD, win::SizeofResource(g_hModule, found) - HEAD, length};
}

// As one would without any library.
std::size_t Inflate(Stored const &stored, char *text, std::size_t room) {
    z_stream stream = {};
    inflateInit2(&stream, -15);
    stream.next_in = const_cast<Bytef *>(stored.stream);
    stream.avail_in = static_cast<uInt>(stored.size);
    stream.next_out = reinterpret_cast<Bytef *>(text);
    stream.avail_out = static_cast<uInt>(room);
    inflate(&stream, Z_FINISH);
    inflateEnd(&stream);
    return stream.total_out;
}

std::vector<std::string> LinesOf(std::string const &text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t const end = text.find("\r\n", at);
        if (end > at)
            lines.push_back(text.substr(at, end - at));
        at = end + 2;
    }
    return lines;
}

std::string Folded(std::string text) {
    for (char &c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

std::string InOtherCase(std::string text, Random &random) {
    for (char &c : text)
        if (c >= 'A' && c <= 'Z' && random.Chance(0.5))
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

struct Questions {
    std::vector<std::string> asked;
    std::vector<std::string> folded;
    std::unordered_set<std::string> known; // all lines, folded
};

std::shared_ptr<Questions> MakeQuestions(bool listed) {
    Stored const stored = FindStored();
    std::string text(stored.length, '\0');
    Expect(Inflate(stored, text.data(), text.size()) == text.size(), "inflate");
    std::vector<std::string> const lines = LinesOf(text);
    auto questions = std::make_shared<Questions>();
    Random random(lines.size());
    for (std::string const &line : lines)
        questions->known.insert(Folded(line));
    for (int i = 0; i < 4096; ++i) {
        questions->asked.push_back(InOtherCase(random.Pick(lines), random) + (listed ? "" : "_"));
        questions->folded.push_back(Folded(questions->asked.back()));
    }
    return questions;
}

// Asks one question after the other.
template <class Ask> std::function<void(benchmark::State &)> OneByOne(std::size_t count, Ask ask) {
    return [count, ask](benchmark::State &state) {
        for (std::size_t next = 0; state.KeepRunning(); ++next)
            benchmark::DoNotOptimize(ask(next % count));
    };
}

Contest QueryContest(bool listed) {
    auto const questions = MakeQuestions(listed);
    auto const ours = [=](std::size_t i) {
        return ProtectFind(ProtectedRegTree, questions->asked[i].c_str(), nullptr);
    };
    auto const lookup = [=](std::size_t i) {
        return questions->known.count(questions->folded[i]) > 0;
    };
    auto const both = [=](std::size_t i) {
        return questions->known.count(Folded(questions->asked[i])) > 0;
    };
    std::size_t const count = questions->asked.size();
    for (std::size_t i = 0; i < count; ++i)
        Expect(ours(i) == listed && lookup(i) == listed && both(i) == listed, questions->asked[i]);
    return {listed ? "Ask for a listed path" : "Ask for an unlisted path",
            LINES,
            {{"", OneByOne(count, ours)},
             {"std::unordered_set, path folded before", OneByOne(count, lookup), Against::Limit, 3},
             {"std::unordered_set, path to be folded", OneByOne(count, both), Against::Limit, 3}}};
}

// A family without lists, so that the program's start loads none.
void MakePrefix(std::string const &folder) {
    std::ofstream(folder + "/platform.ini") << "version=1.4.20\n";
    setenv("QVPREFIX", folder.c_str(), 1);
}

void BecomeFamilyWithLists() {
    platform::Settings settings = platform::CurrentSettings();
    settings.platformId = 2;
    settings.majorVersion = 5;
    settings.minorVersion = 1;
    platform::ApplySettings(settings);
    g_NTAdminObject = CNTAdminObject();
}

double SecondsToLoad() {
    BecomeFamilyWithLists();
    double const seconds = Seconds(LoadProtectedRegs);
    Expect(ProtectFind(ProtectedRegTree, "hklm\\software\\classes\\clsid", nullptr), "no tree");
    return seconds;
}

// Into memory of its own, which a program would need as well.
double SecondsToInflate() {
    Stored const stored = FindStored();
    std::size_t length = 0;
    double const seconds = Seconds([&] {
        std::unique_ptr<char[]> const text(new char[stored.length]);
        length = Inflate(stored, text.get(), stored.length);
    });
    Expect(length == stored.length, "inflate");
    return seconds;
}

} // namespace

std::vector<Contest> ProtectContests() { return {QueryContest(true), QueryContest(false)}; }

double SecondsOf(std::string const &work) {
    return work == "--load" ? SecondsToLoad() : SecondsToInflate();
}

// In processes of their own, as a library meets them that is being loaded, turn by turn.
Row ListLoad(int runs) {
    TemporaryFolder const prefix("/tmp");
    MakePrefix(prefix.Path());
    std::vector<double> load;
    std::vector<double> inflate;
    for (int run = 0; run < runs; ++run) {
        load.push_back(RunSelf({"--load"}).at(0));
        inflate.push_back(RunSelf({"--inflate"}).at(0));
    }
    unsetenv("QVPREFIX");
    return {LINES,          "Load the largest list", Unit::Seconds,   Median(load),
            Against::Limit, "inflate alone",         Median(inflate), 4};
}

// What stays, and with it the text that is there during the load.
std::vector<Row> ProtectMemory() {
    Stored const stored = FindStored();
    auto const length = static_cast<double>(stored.length);
    ProtectClear(ProtectedRegTree);
    std::size_t const before = HeapBytes();
    LoadProtectedRegs();
    auto const tree = static_cast<double>(HeapBytes() - before);
    Expect(ProtectFind(ProtectedRegTree, "hklm\\software\\classes\\clsid", nullptr), "no tree");
    return {{LINES, "Memory of the tree", Unit::Bytes, tree, Against::Limit, "the text", length, 3},
            {LINES, "Memory at most, during the load", Unit::Bytes, tree + length, Against::Limit,
             "the text", length, 3}};
}

} // namespace bench
