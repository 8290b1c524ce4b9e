// Duplicate ids are reported: each process looks for the receiver at its first report.
#include <gtest/gtest.h>

#include "call_hook.h"
#include "roles.h"
#include "session.h"

namespace {

// Exit code: how often the receiver was looked for while the file in a folder was loaded.
Role const loader("load and count", [](Arguments const &arguments) {
    Session warm(arguments.at(0) + "\\nothing here");
    warm.Release();
    int count = 0;
    CallHook const hook([&](CallHook::Call const &call) {
        count += call.moment == CallHook::Moment::Before && Is(call, "LoadLibraryA") &&
                 call.path == std::string("QVDebug.dll");
        return false;
    });
    Session session(arguments.at(0));
    return count;
});

long LoadsFor(std::vector<std::uint32_t> const &ids) {
    TempFolder folder;
    image::File file;
    file.stamp = image::Foreign(OwnStamp());
    for (std::uint32_t const id : ids) {
        image::Object object;
        object.id = id;
        object.type = OBJ_FILE | PERSISTENT_BIT;
        object.from = {1};
        file.objects.push_back(object);
    }
    WriteBytes(folder.DatabaseFile(), image::Write(file));
    return RunRole("load and count", {folder.Directory()});
}

} // namespace

TEST(FaultsReport, A_file_with_a_duplicate_id_is_reported_and_another_is_not) {
    EXPECT_EQ(LoadsFor({2, 3, 4}), 0);
    EXPECT_EQ(LoadsFor({2, 3, 2}), 1);
    EXPECT_EQ(LoadsFor({2, 2, 2}), 1);
}
