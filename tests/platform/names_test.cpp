// Attributes, deleting and moving, on both systems by the documented results and codes.
#include "services.h"

#include "temp_folder.h"

namespace {

class Names : public testing::Test {
protected:
    Names() {
        WriteBytes(m_folder.Path() / "file", BytesOf("first"));
        WriteBytes(m_folder.Path() / "other", BytesOf("second"));
        std::filesystem::create_directory(m_folder.Path() / "folder");
    }
    ~Names() override {
        for (const char *name : {"file", "other"})
            win::SetFileAttributesA(At(name).c_str(), FILE_ATTRIBUTE_NORMAL);
    }

    std::string At(std::string const &name) const { return m_folder.Directory() + "\\" + name; }
    DWORD Attributes(std::string const &name) const {
        return win::GetFileAttributesA(At(name).c_str());
    }
    BOOL Move(std::string const &from, std::string const &to, DWORD flags) const {
        return win::MoveFileExA(At(from).c_str(), At(to).c_str(), flags);
    }
    BOOL Delete(std::string const &name) const { return win::DeleteFileA(At(name).c_str()); }
    bool Exists(std::string const &name) const {
        return std::filesystem::exists(m_folder.Path() / name);
    }
    std::string Text(std::string const &name) const {
        Bytes const bytes = ReadBytes(m_folder.Path() / name);
        return std::string(bytes.begin(), bytes.end());
    }
    void MakeReadOnly(std::string const &name) const {
        ASSERT_TRUE(win::SetFileAttributesA(At(name).c_str(), FILE_ATTRIBUTE_READONLY));
    }

    TempFolder m_folder;
};

} // namespace

TEST_F(Names, attributes_tell_files_and_folders_apart) {
    EXPECT_EQ(0u, Attributes("file") & FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(16u, Attributes("folder") & FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(16u, Attributes("folder\\") & FILE_ATTRIBUTE_DIRECTORY);
}

TEST_F(Names, attributes_of_what_is_missing_are_none) {
    win::SetLastError(0);
    EXPECT_EQ(0xffffffffu, Attributes("missing"));
    EXPECT_EQ(2u, win::GetLastError());
    EXPECT_EQ(0xffffffffu, Attributes("missing\\file"));
    EXPECT_EQ(3u, win::GetLastError());
    EXPECT_EQ(0xffffffffu, Attributes("file\\below"));
    EXPECT_EQ(3u, win::GetLastError());
}

TEST_F(Names, read_only_is_set_and_taken_away) {
    EXPECT_EQ(0u, Attributes("file") & FILE_ATTRIBUTE_READONLY);
    MakeReadOnly("file");
    EXPECT_EQ(1u, Attributes("file") & FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(win::SetFileAttributesA(At("file").c_str(), FILE_ATTRIBUTE_NORMAL));
    EXPECT_EQ(0u, Attributes("file") & FILE_ATTRIBUTE_READONLY);
}

TEST_F(Names, setting_attributes_of_what_is_missing_fails) {
    EXPECT_FAILS_WITH(2, win::SetFileAttributesA(At("missing").c_str(), FILE_ATTRIBUTE_NORMAL));
    EXPECT_FAILS_WITH(3, win::SetFileAttributesA(At("missing\\a").c_str(), FILE_ATTRIBUTE_NORMAL));
}

TEST_F(Names, a_deleted_file_is_gone) {
    EXPECT_TRUE(Delete("file"));
    EXPECT_FALSE(Exists("file"));
    EXPECT_FAILS_WITH(2, Delete("file"));
    EXPECT_FAILS_WITH(3, Delete("missing\\file"));
}

TEST_F(Names, folders_and_read_only_files_arent_deleted) {
    EXPECT_FAILS_WITH(5, Delete("folder"));
    MakeReadOnly("file");
    EXPECT_FAILS_WITH(5, Delete("file"));
    EXPECT_TRUE(Exists("file"));
}

TEST_F(Names, a_moved_file_bears_the_new_name_only) {
    EXPECT_TRUE(Move("file", "moved", 0));
    EXPECT_FALSE(Exists("file"));
    EXPECT_EQ("first", Text("moved"));
    EXPECT_TRUE(Move("moved", "folder\\back", MOVEFILE_WRITE_THROUGH));
    EXPECT_EQ("first", Text("folder/back"));
}

TEST_F(Names, a_move_onto_a_file_fails_with_183_unless_it_may_replace) {
    EXPECT_FAILS_WITH(183, Move("file", "other", 0));
    EXPECT_EQ("second", Text("other"));
    EXPECT_TRUE(Move("file", "other", MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
    EXPECT_EQ("first", Text("other"));
    EXPECT_FALSE(Exists("file"));
}

TEST_F(Names, a_move_replaces_no_folder) {
    EXPECT_FAILS_WITH(5, Move("file", "folder", MOVEFILE_REPLACE_EXISTING));
}

TEST_F(Names, a_move_replaces_no_read_only_file_and_puts_no_folder_over_a_file) {
    if (UnderWine())
        GTEST_SKIP() << "Wine leaves this to the host, which replaces them";
    EXPECT_FAILS_WITH(5, Move("folder", "file", MOVEFILE_REPLACE_EXISTING));
    MakeReadOnly("other");
    EXPECT_FAILS_WITH(5, Move("file", "other", MOVEFILE_REPLACE_EXISTING));
    EXPECT_EQ("second", Text("other"));
    EXPECT_EQ("first", Text("file"));
}

TEST_F(Names, a_move_onto_a_folder_without_replacing_is_183) {
    EXPECT_FAILS_WITH(183, Move("file", "folder", 0));
}

TEST_F(Names, a_read_only_file_can_be_moved) {
    MakeReadOnly("file");
    EXPECT_TRUE(Move("file", "moved", 0));
    EXPECT_EQ(1u, Attributes("moved") & FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(win::SetFileAttributesA(At("moved").c_str(), FILE_ATTRIBUTE_NORMAL));
}

TEST_F(Names, a_move_from_or_to_nowhere_fails) {
    EXPECT_FAILS_WITH(2, Move("missing", "moved", 0));
    EXPECT_FAILS_WITH(2, Move("missing", "other", MOVEFILE_REPLACE_EXISTING));
    EXPECT_FAILS_WITH(3, Move("missing\\file", "moved", 0));
    EXPECT_FAILS_WITH(3, Move("file", "missing\\moved", 0));
    EXPECT_FAILS_WITH(3, Move("file", "missing\\moved", MOVEFILE_REPLACE_EXISTING));
    EXPECT_EQ("first", Text("file"));
}

TEST_F(Names, a_folder_moves_with_what_it_holds) {
    WriteBytes(m_folder.Path() / "folder" / "inner", BytesOf("x"));
    EXPECT_TRUE(Move("folder", "moved", 0));
    EXPECT_EQ("x", Text("moved/inner"));
    EXPECT_FALSE(Exists("folder"));
}
