// Power fails during a Flush: from the calls that it makes, every state that a file
// system may leave on the disk is made, and loaded.
//
// What a file system may do: writes to a file that wasn't synced since may be on the
// disk or not, each for itself, or in part, or as zeros of the right length; creations,
// deletions and renames that no sync of the folder followed may be on the disk or not,
// in their order. Syncing a file makes its bytes and its name durable.
#include <algorithm>
#include <set>
#include <tuple>

#include <gtest/gtest.h>

#include "call_hook.h"
#include "faults_fixture.h"
#include "graph_compare.h"

namespace {

using Call = CallHook::Call;
using Moment = CallHook::Moment;

struct Event {
    enum Kind { Create, Write, Seek, Sync, Delete, Rename } kind;
    bool onTemporary; // else on the database's own file
    Bytes data;       // of a Write
    std::size_t at;   // its offset
};

// The calls of one Flush that change something.
std::vector<Event> EventsOf(Session &session) {
    std::vector<Event> events;
    std::size_t position = 0;
    auto const onTemporary = [](Call const &call) {
        return call.path && std::string(call.path).find(".tmp") != std::string::npos;
    };
    CallHook const hook([&](Call const &call) {
        if (call.moment != Moment::Before)
            return false;
        if (Is(call, "CreateFileA"))
            events.push_back({Event::Create, onTemporary(call), {}, 0});
        if (Is(call, "DeleteFileA"))
            events.push_back({Event::Delete, onTemporary(call), {}, 0});
        if (Is(call, "MoveFileExA"))
            events.push_back({Event::Rename, true, {}, 0});
        if (Is(call, "FlushFileBuffers"))
            events.push_back({Event::Sync, true, {}, 0});
        if (Is(call, "SetFilePointerEx"))
            position = 0; // the one seek goes back to the length word
        if (Is(call, "WriteFile")) {
            auto const *const bytes = static_cast<std::uint8_t const *>(call.data);
            events.push_back({Event::Write, true, Bytes(bytes, bytes + *call.size), position});
            position += *call.size;
        }
        return false;
    });
    session->Flush();
    return events;
}

enum Fate { Lost, Zeros, Half, Whole, FateCount };

void Apply(Bytes &content, Event const &write, Fate fate) {
    if (fate == Lost)
        return;
    std::size_t const size = fate == Half ? write.data.size() / 2 : write.data.size();
    content.resize(std::max(content.size(), write.at + size));
    for (std::size_t i = 0; i < size; ++i)
        content[write.at + i] = fate == Zeros ? std::uint8_t{0} : write.data[i];
}

// What the disk may hold: the database's file and the temporary one, absent or not.
struct Disk {
    std::optional<Bytes> database, temporary;
    bool operator<(Disk const &other) const {
        return std::tie(database, temporary) < std::tie(other.database, other.temporary);
    }
};

// All contents that the temporary file may have after the first `count` events.
std::set<Bytes> ContentsAfter(std::vector<Event> const &events, std::size_t count) {
    std::set<Bytes> contents{Bytes()};
    for (std::size_t i = 0; i < count; ++i) {
        std::set<Bytes> next;
        bool const synced =
            std::any_of(events.begin() + static_cast<std::ptrdiff_t>(i),
                        events.begin() + static_cast<std::ptrdiff_t>(count),
                        [](Event const &event) { return event.kind == Event::Sync; });
        for (Bytes const &content : contents)
            for (int fate = events[i].kind != Event::Write || synced ? Whole : Lost;
                 fate < FateCount; ++fate) {
                Bytes changed = content;
                if (events[i].kind == Event::Write)
                    Apply(changed, events[i], static_cast<Fate>(fate));
                next.insert(changed);
            }
        contents = next;
    }
    return contents;
}

// The names after the changes of names among the first `count` events of which the disk
// has seen the first `seen`.
Disk NamesAfter(std::vector<Event> const &events, std::size_t seen, Bytes const &old,
                Bytes const &content) {
    Disk disk{old, std::nullopt};
    for (std::size_t i = 0; i < seen; ++i) {
        Event const &event = events[i];
        std::optional<Bytes> &name = event.onTemporary ? disk.temporary : disk.database;
        if (event.kind == Event::Create)
            name = content;
        if (event.kind == Event::Delete)
            name.reset();
        if (event.kind == Event::Rename) {
            disk.database = disk.temporary;
            disk.temporary.reset();
        }
    }
    return disk;
}

// All states after a power failure behind the first `count` events.
void AddStates(std::vector<Event> const &events, std::size_t count, Bytes const &old,
               std::set<Disk> &states) {
    std::size_t durable = 0; // a synced file has its name
    for (std::size_t i = 0; i < count; ++i)
        if (events[i].kind == Event::Sync)
            durable = i;
    for (Bytes const &content : ContentsAfter(events, count))
        for (std::size_t seen = durable; seen <= count; ++seen)
            states.insert(NamesAfter(events, seen, old, content));
}

} // namespace

class FaultsCrashStates : public testing::Test {
protected:
    TempFolder folder;
    Bytes const old = SmallGraph();

    // The events of a flush over the old file, which left the new one.
    std::vector<Event> Record(Bytes &fresh, std::uint32_t dataSize) {
        WriteBytes(folder.DatabaseFile(), old);
        Session session(folder);
        session->AddObject("new", OBJ_FILE, 0, dataSize, nullptr, transient);
        std::vector<Event> const events = EventsOf(session);
        fresh = ReadBytes(folder.DatabaseFile());
        return events;
    }
};

TEST_F(FaultsCrashStates, Every_state_that_a_file_system_may_leave_has_the_old_graph_or_the_new) {
    Bytes fresh;
    std::vector<Event> const events = Record(fresh, 50);
    model::Graph graph = model::Graph::Load(old, OwnStamp());
    graph.AddObject("new", OBJ_FILE, 0, Bytes(50), false);
    EXPECT_EQ(fresh, graph.Flush(OwnStamp()));
    Bytes const oldAgain = *model::Graph::Load(old, OwnStamp()).Flush(OwnStamp());
    std::set<Disk> states;
    for (std::size_t count = 0; count <= events.size(); ++count)
        AddStates(events, count, old, states);
    EXPECT_GT(states.size(), 10u);
    for (Disk const &disk : states) {
        ASSERT_TRUE(disk.database.has_value()) << "no file at all";
        WriteBytes(folder.DatabaseFile(), *disk.database);
        if (disk.temporary)
            WriteBytes(folder.TemporaryFile(), *disk.temporary);
        else
            std::filesystem::remove(folder.TemporaryFile());
        Session session(folder);
        bool const isOld(SameGraph(session.Get(), model::Graph::Load(old, OwnStamp())));
        bool const isNew(SameGraph(session.Get(), graph));
        EXPECT_TRUE(isOld || isNew);
        session->Flush();
        EXPECT_EQ(ReadBytes(folder.DatabaseFile()), isNew ? fresh : oldAgain);
        EXPECT_FALSE(std::filesystem::exists(folder.TemporaryFile()));
    }
}

TEST_F(FaultsCrashStates, The_recorded_writes_put_together_are_the_file) {
    Bytes fresh;
    std::vector<Event> const events = Record(fresh, 5u << 19);
    EXPECT_GE(std::count_if(events.begin(), events.end(),
                            [](Event const &event) { return event.kind == Event::Write; }),
              4);
    Bytes content;
    for (Event const &event : events)
        if (event.kind == Event::Write)
            Apply(content, event, Whole);
    EXPECT_EQ(content, fresh);
}
