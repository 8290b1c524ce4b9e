// A disk that is really full.
#include <gtest/gtest.h>

#include "platform/tiny_folder.h"
#include "session.h"

namespace {

class FaultsDiskFull : public testing::Test {
protected:
    TinyFolder tiny{256 * 1024};
    std::filesystem::path const file = tiny.Path() / "linkdb.dat";

    void SetUp() override {
        if (!tiny.Available())
            GTEST_SKIP() << tiny.WhyNot();
    }
};

void AddData(Session &session, std::uint32_t size) {
    ASSERT_NE(session->AddObject("data", OBJ_FILE, 0, size, nullptr, persistent), nullptr);
}

} // namespace

TEST_F(FaultsDiskFull, The_old_file_stays_and_no_temporary_is_left) {
    {
        Session session(tiny.Path().string());
        AddData(session, 100 * 1024);
    }
    Bytes const before = ReadBytes(file);
    ASSERT_TRUE(image::Read(before).has_value());
    {
        Session session(tiny.Path().string());
        AddData(session, 10 * 1024 * 1024);
        session->Flush();
        EXPECT_EQ(ReadBytes(file), before);
        EXPECT_FALSE(std::filesystem::exists(tiny.Path() / "linkdb.dat.tmp"));
    } // tried once more here
    EXPECT_EQ(ReadBytes(file), before);
    Session session(tiny.Path().string());
    EXPECT_NE(session->LookupObject(2), nullptr);
}

TEST_F(FaultsDiskFull, Every_size_around_the_limit_gives_the_old_file_or_the_new_one) {
    for (std::uint32_t size = 100 * 1024; size < 300 * 1024; size += 4096) {
        std::filesystem::remove(file);
        Session session(tiny.Path().string());
        AddData(session, 1024);
        session->Flush();
        Bytes const before = ReadBytes(file);
        AddData(session, size);
        session->Flush();
        Bytes const after = ReadBytes(file);
        EXPECT_TRUE(image::Read(after).has_value()) << size;
        EXPECT_TRUE(after == before || after.size() > size) << size;
        EXPECT_FALSE(std::filesystem::exists(tiny.Path() / "linkdb.dat.tmp"));
        session->SetSaveFlag(0);
    }
}
