// The process is killed before, in and after each call of a Flush; the next load sees
// the old graph or the new one whole.
#include <gtest/gtest.h>

#include "call_hook.h"
#include "graph_compare.h"
#include "platform/process.h"
#include "roles.h"
#include "session.h"

namespace {

using Call = CallHook::Call;
using Moment = CallHook::Moment;

constexpr int killed = 99;
constexpr std::uint32_t largeSize = 5u << 19; // more than one write

// directory, number of the call, "before", "after" or "torn" (half a write goes through).
Role const dying("flush and die", [](Arguments const &arguments) {
    Session session(arguments.at(0));
    Bytes large(largeSize, 0xab);
    CQVUObject *const object = session->AddObject("large", OBJ_FILE, 0, largeSize, large.data(), 1);
    object->LinkTo(object, 8);
    int const number = std::stoi(arguments.at(1));
    bool const torn = arguments.at(2) == "torn";
    Moment const moment = arguments.at(2) == "before" ? Moment::Before : Moment::After;
    int count = 0;
    CallHook const hook([&](Call const &call) {
        count += call.moment == Moment::Before;
        if (count != number)
            return false;
        if (torn && !Is(call, "WriteFile"))
            return false;
        if (torn && call.moment == Moment::Before)
            *call.size /= 2;
        if (call.moment == moment)
            KillThisProcess(killed);
        return false;
    });
    session->Flush();
    session->SetSaveFlag(0);
    return count < number ? 0 : 1; // 0: there is no such call any more
});

class FaultsKill : public testing::TestWithParam<char const *> {
protected:
    TempFolder folder;
    Bytes old;

    FaultsKill() {
        image::File file;
        file.stamp = image::Foreign(OwnStamp());
        image::Object object;
        object.id = 2;
        object.type = OBJ_FILE | PERSISTENT_BIT;
        object.name = "old";
        object.from = object.to = {1};
        file.objects = {object};
        file.links = {{1, 2, 2, 8 | PERSISTENT_BIT}};
        old = image::Write(file);
    }

    // True if the new graph is there.
    bool NewGraphStands() {
        Bytes const now = ReadBytes(folder.DatabaseFile());
        if (now == old)
            return false;
        std::optional<image::File> const file = image::Read(now);
        EXPECT_TRUE(file && file->objects.size() == 3 && file->links.size() == 2 &&
                    file->objects[2].data == Bytes(largeSize, 0xab))
            << "neither the old file nor the new one";
        Session session(folder);
        EXPECT_TRUE(SameGraph(session.Get(), model::Graph::Load(now, OwnStamp())));
        return true;
    }
};

} // namespace

TEST_P(FaultsKill, At_each_call_the_old_graph_or_the_new_one_stands) {
    bool replaced = false;
    long result = killed;
    int number = 1;
    for (; result != 0 && !HasFailure(); ++number) {
        SCOPED_TRACE(number);
        std::filesystem::remove(folder.TemporaryFile());
        WriteBytes(folder.DatabaseFile(), old);
        result = RunRole("flush and die", {folder.Directory(), std::to_string(number), GetParam()});
        EXPECT_TRUE(result == killed || result == 0 ||
                    (result == 1 && std::string(GetParam()) == "torn"))
            << result;
        bool const stands = NewGraphStands();
        if (result == killed) {
            EXPECT_TRUE(stands || !replaced) << "the new graph has gone again";
            replaced = stands;
        } else {
            EXPECT_TRUE(stands);
        }
        // What was left behind is in nobody's way.
        Session next(folder);
        next.Add("next", OBJ_FILE, persistent);
        next->Flush();
        EXPECT_TRUE(image::Read(ReadBytes(folder.DatabaseFile())).has_value());
        EXPECT_FALSE(std::filesystem::exists(folder.TemporaryFile()));
    }
    EXPECT_GT(number, 8); // create, several writes, sync, close, move at the least
}

INSTANTIATE_TEST_SUITE_P(Moments, FaultsKill, testing::Values("before", "after", "torn"),
                         [](auto const &moment) { return std::string(moment.param); });
