// The system's services fail in turn, under Flush and under a load.
#include <gtest/gtest.h>

#include "call_hook.h"
#include "faults_fixture.h"
#include "graph_compare.h"
#include "platform/winapi.h"

namespace {

using Call = CallHook::Call;
using Moment = CallHook::Moment;

// A database that holds more than its file does.
class FaultsCalls : public testing::Test {
protected:
    std::optional<TempFolder> folder; // a new one for each try: a file may stay open
    Bytes const old = SmallGraph();
    Bytes fresh;
    std::optional<Session> session;

    FaultsCalls() { Restart(); }

    void Restart() {
        session.reset();
        folder.emplace();
        WriteBytes(folder->DatabaseFile(), old);
        session.emplace(*folder);
        Bytes data(100, 7);
        model::Graph graph = model::Graph::Load(old, OwnStamp());
        graph.AddObject("new", OBJ_FILE, 0, data, false);
        fresh = *graph.Flush(OwnStamp());
        (*session)->AddObject("new", OBJ_FILE, 0, static_cast<unsigned long>(data.size()),
                              data.data(), transient);
    }
    Bytes Stored() const { return ReadBytes(folder->DatabaseFile()); }
    bool TemporaryLeft() const { return std::filesystem::exists(folder->TemporaryFile()); }

    std::vector<std::string> CallsOfFlush() {
        std::vector<std::string> calls;
        CallHook const hook([&](Call const &call) {
            if (call.moment == Moment::Before)
                calls.emplace_back(call.service);
            return false;
        });
        (*session)->Flush();
        return calls;
    }
    // Flushes with call `number` failing, and all later ones if `onwards`.
    void FlushFailing(std::size_t number, bool onwards, DWORD code) {
        std::size_t count = 0;
        CallHook const hook([&](Call const &call) {
            if (call.moment == Moment::After)
                return false;
            ++count;
            bool const fail = onwards ? count >= number : count == number;
            if (fail)
                win::SetLastError(code);
            return fail;
        });
        (*session)->Flush();
    }
};

// Position of a call; the last one if it comes several times.
std::ptrdiff_t LastOf(std::vector<std::string> const &calls, char const *service) {
    auto const found = std::find(calls.rbegin(), calls.rend(), service);
    EXPECT_NE(found, calls.rend()) << service;
    return calls.rend() - found;
}

} // namespace

TEST_F(FaultsCalls, Flush_syncs_what_it_wrote_before_it_takes_the_old_file_s_place) {
    std::vector<std::string> const calls = CallsOfFlush();
    EXPECT_EQ(calls.front(), "CreateFileA");
    EXPECT_LT(LastOf(calls, "WriteFile"), LastOf(calls, "FlushFileBuffers"));
    EXPECT_LT(LastOf(calls, "FlushFileBuffers"), LastOf(calls, "CloseHandle"));
    EXPECT_LT(LastOf(calls, "CloseHandle"), LastOf(calls, "MoveFileExA"));
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "DeleteFileA"), 0);
    EXPECT_EQ(Stored(), fresh);
}

TEST_F(FaultsCalls, Each_call_of_Flush_that_fails_leaves_the_old_file_or_the_new_one) {
    std::vector<std::string> const calls = CallsOfFlush();
    for (DWORD const code : {DWORD{ERROR_DISK_FULL}, DWORD{ERROR_ACCESS_DENIED}})
        for (std::size_t number = 1; number <= calls.size(); ++number) {
            std::string const &service = calls[number - 1];
            SCOPED_TRACE(service + " as call " + std::to_string(number));
            Restart();
            FlushFailing(number, false, code);
            bool const harmless =
                service == "GetFileAttributesA" || service == "SetFileAttributesA";
            EXPECT_EQ(Stored(), harmless ? fresh : old);
            if (service == "CloseHandle") // the hook left it open, and its file busy
                continue;
            EXPECT_FALSE(TemporaryLeft());
            (*session)->Flush();
            EXPECT_EQ(Stored(), fresh);
        }
}

TEST_F(FaultsCalls, A_system_that_fails_from_some_call_on_leaves_the_old_file_or_the_new_one) {
    std::size_t const count = CallsOfFlush().size();
    for (std::size_t number = 1; number <= count; ++number) {
        SCOPED_TRACE(number);
        Restart();
        FlushFailing(number, true, ERROR_DISK_FULL);
        EXPECT_EQ(Stored(), old);
    }
}

TEST_F(FaultsCalls, Each_write_that_is_cut_short_leaves_the_old_file) {
    for (DWORD const reduction : {1u, 2u, 1000000u})
        for (int number = 1; number <= 2; ++number) {
            Restart();
            int count = 0;
            {
                CallHook const hook([&](Call const &call) {
                    if (call.moment == Moment::Before && Is(call, "WriteFile") && ++count == number)
                        *call.size -= std::min(*call.size, reduction);
                    return false;
                });
                (*session)->Flush();
            }
            EXPECT_GE(count, number);
            EXPECT_EQ(Stored(), old);
            EXPECT_FALSE(TemporaryLeft());
        }
}

TEST_F(FaultsCalls, A_file_that_comes_in_small_pieces_loads_whole) {
    for (DWORD const piece : {1u, 3u, 64u}) {
        session.reset();
        WriteBytes(folder->DatabaseFile(), old);
        CallHook const hook([&](Call const &call) {
            if (call.moment == Moment::Before && Is(call, "ReadFile"))
                *call.size = std::min(*call.size, piece);
            return false;
        });
        session.emplace(*folder);
        EXPECT_TRUE(SameGraph(session->Get(), model::Graph::Load(old, OwnStamp())));
    }
}

TEST_F(FaultsCalls, Each_call_of_a_load_that_fails_gives_a_database_and_keeps_the_file) {
    bool failed = true;
    for (int number = 1; failed; ++number) {
        SCOPED_TRACE(number);
        session.reset();
        WriteBytes(folder->DatabaseFile(), old);
        int count = 0;
        std::string service;
        {
            CallHook const hook([&](Call const &call) {
                if (call.moment == Moment::After || ++count != number)
                    return false;
                service = call.service;
                win::SetLastError(ERROR_ACCESS_DENIED);
                return true;
            });
            session.emplace(*folder);
        }
        failed = count >= number;
        bool const harmless = !failed || service == "CreateMutexA" || service == "CloseHandle";
        EXPECT_TRUE(SameGraph(session->Get(),
                              harmless ? model::Graph::Load(old, OwnStamp()) : model::Graph()))
            << service;
        EXPECT_TRUE(IsSound(session->Get()));
        session.reset();
        EXPECT_EQ(Stored(), old);
    }
}

TEST_F(FaultsCalls, Reading_that_breaks_off_keeps_the_objects_before_and_no_link) {
    for (DWORD cut = 0; cut < old.size(); ++cut) {
        session.reset();
        WriteBytes(folder->DatabaseFile(), old);
        DWORD left = cut;
        std::optional<CallHook> hook{std::in_place, [&](Call const &call) {
                                         if (call.moment == Moment::After || !Is(call, "ReadFile"))
                                             return false;
                                         *call.size = std::min(*call.size, left);
                                         left -= *call.size;
                                         return *call.size == 0;
                                     }};
        session.emplace(*folder);
        hook.reset();
        Bytes known(old.begin(), old.begin() + static_cast<std::ptrdiff_t>(cut));
        if (cut >= 4)
            image::FixLength(known);
        EXPECT_TRUE(SameGraph(session->Get(), model::Graph::Load(known, OwnStamp()))) << cut;
    }
}

TEST_F(FaultsCalls, Without_a_mutex_the_database_runs_unlocked) {
    session.reset();
    {
        CallHook const hook([&](Call const &call) {
            return call.moment == Moment::Before && Is(call, "CreateMutexA");
        });
        session.emplace(*folder);
    }
    EXPECT_TRUE(SameGraph(session->Get(), model::Graph::Load(old, OwnStamp())));
    EXPECT_TRUE(WorksOn(session->Get(), *folder));
}

TEST_F(FaultsCalls, A_file_beyond_4_GiB_is_not_written) {
    unsigned char data[1] = {0};
    CQVUObject *const object = (*session)->AddObject("big", OBJ_FILE, 0, 1, data, transient);
    CQVUObject *const other = (*session)->AddObject("big", OBJ_FILE, 0, 1, data, transient);
    // Sizes without the bytes behind them: nothing may be read for a file that can't be.
    object->dwDataSize = other->dwDataSize = 0xffffffff;
    (*session)->Flush();
    object->dwDataSize = other->dwDataSize = 1;
    EXPECT_EQ(Stored(), old);
    EXPECT_FALSE(TemporaryLeft());
}
