// Hive files mounted in the tree of keys, and what roots lead to.
#include "hive_maker.h"
#include "registry_tree.h"

using namespace platform::registry;

namespace {

class RegistryMounts : public RegistryTree {
protected:
    std::string Hive(std::string const &name) const { return (Folder() / name).string(); }

    // A hive with keys and values of many kinds.
    std::string UsualHive(std::string const &name = "usual") const {
        HiveMaker maker(Hive(name));
        maker.Key("b");
        maker.Key("C\\below\\deeper");
        maker.Key("a_");
        maker.Key("ab");
        maker.Values("", {{"", 1, Utf16(u"own")}, {"Number", 4, std::string("\1\2\3\4", 4)}});
        maker.Values("C\\below", {{"text", 1, Utf16(u"\u20ac")},
                                  {"many", 7, Utf16(u"one") + Utf16(u"")},
                                  {"odd", 99, "x"},
                                  {"empty", 3, ""}});
        return Hive(name);
    }
};

} // namespace

TEST_F(RegistryMounts, a_mounted_hive_is_read) {
    Tree tree(Store(), {{u"HKLM\\SOFTWARE", UsualHive()}});
    OpenKey const top = Opened(tree, u"HKLM\\Software");
    EXPECT_EQ((Names{u"ab", u"a_", u"b", u"C"}), Subkeys(tree, *top));
    EXPECT_EQ((Names{u"", u"Number"}), ValueNames(tree, *top));
    EXPECT_EQ((Found{0, 1, Utf16(u"own")}), Read(tree, *top, u""));
    EXPECT_EQ((Found{0, 4, std::string("\1\2\3\4", 4)}), Read(tree, *top, u"NUMBER"));
    EXPECT_EQ((Found{2, 0, ""}), Read(tree, *top, u"missing"));
    OpenKey const below = Opened(tree, u"hklm\\sOFTWARE\\c\\BELOW");
    EXPECT_EQ((Found{0, 1, Utf16(u"\u20ac")}), Read(tree, *below, u"text"));
    EXPECT_EQ((Found{0, 7, Utf16(u"one") + Utf16(u"")}), Read(tree, *below, u"many"));
    EXPECT_EQ((Found{0, 99, "x"}), Read(tree, *below, u"odd"));
    EXPECT_EQ((Found{0, 3, ""}), Read(tree, *below, u"empty"));
    EXPECT_EQ((Names{u"deeper"}), Subkeys(tree, *below));
    OpenKey key;
    EXPECT_EQ(2u, tree.Open(*below, u"missing", key));
    EXPECT_EQ(2u, tree.Open(*below, u"missing\\more", key));
    EXPECT_FALSE(std::filesystem::exists(Store()));
}

TEST_F(RegistryMounts, names_in_a_hive_are_found_in_any_case_of_any_letters) {
    {
        HiveMaker maker(Hive("names"));
        maker.Key("\xc3\x84rger\\\xd0\x96\xd0\xb6"); // Ä, Ж, ж
        maker.Values("\xc3\x84rger", {{"\xc3\x96l", 1, Utf16(u"oil")}});
    }
    Tree tree(Store(), {{u"HKLM\\SOFTWARE", Hive("names")}});
    OpenKey const key = Opened(tree, u"HKLM\\SOFTWARE\\\u00e4RGER");
    EXPECT_EQ((Found{0, 1, Utf16(u"oil")}), Read(tree, *key, u"\u00f6L"));
    Opened(tree, u"HKLM\\SOFTWARE\\\u00c4rger\\\u0436\u0416");
}

TEST_F(RegistryMounts, what_would_change_a_hive_is_5) {
    std::string const file = UsualHive();
    Bytes const before = ReadBytes(file);
    Tree tree(Store(), {{u"HKLM\\SOFTWARE", file}});
    OpenKey const top = Opened(tree, u"HKLM\\SOFTWARE");
    OpenKey key;
    bool made = true;
    EXPECT_EQ(0u, tree.Create(*top, u"C\\below", key, made));
    EXPECT_FALSE(made) << "what is there is opened";
    EXPECT_EQ(5u, tree.Create(*top, u"new", key, made));
    EXPECT_EQ(5u, tree.Create(*top, u"C\\new\\more", key, made));
    EXPECT_EQ(5u, tree.SetValue(*top, {u"new", 1, "x"}));
    EXPECT_EQ(5u, tree.SetValue(*top, {u"Number", 1, "x"}));
    EXPECT_EQ(5u, tree.DeleteValue(*top, u"Number"));
    EXPECT_EQ(5u, tree.Delete(*top, u"ab"));
    EXPECT_EQ(5u, tree.Delete(*tree.RootKey(Root::LocalMachine), u"SOFTWARE"));
    EXPECT_EQ(before, ReadBytes(file));
}

TEST_F(RegistryMounts, a_mount_hides_what_the_store_has_there) {
    Make(u"HKLM\\SOFTWARE\\stored");
    Make(u"HKLM\\other");
    Tree tree(Store(), {{u"HKLM\\Software", UsualHive()}});
    EXPECT_EQ((Names{u"ab", u"a_", u"b", u"C"}), Subkeys(tree, *Opened(tree, u"HKLM\\SOFTWARE")));
    OpenKey key;
    EXPECT_EQ(2u, OpenPath(tree, u"HKLM\\SOFTWARE\\stored", key));
    EXPECT_EQ((Names{u"other", u"Software"}), Subkeys(tree, *tree.RootKey(Root::LocalMachine)));
    Tree without(Store(), {});
    Opened(without, u"HKLM\\SOFTWARE\\stored");
}

TEST_F(RegistryMounts, keys_above_a_deep_mount_are_there_with_what_the_store_has_beside) {
    Make(u"HKLM\\x\\m");
    Make(u"HKLM\\x\\z\\other");
    Tree tree(Store(), {{u"HKLM\\X\\y\\Deep", UsualHive()}});
    EXPECT_EQ((Names{u"x"}), Subkeys(tree, *tree.RootKey(Root::LocalMachine))) << "once, as stored";
    EXPECT_EQ((Names{u"m", u"y", u"z"}), Subkeys(tree, *Opened(tree, u"HKLM\\x")));
    EXPECT_EQ((Names{u"Deep"}), Subkeys(tree, *Opened(tree, u"HKLM\\x\\Y")));
    EXPECT_EQ((Names{u"ab", u"a_", u"b", u"C"}), Subkeys(tree, *Opened(tree, u"HKLM\\x\\y\\deep")));
    EXPECT_EQ(5u, tree.Delete(*tree.RootKey(Root::LocalMachine), u"x\\y"));
    // What is made beside a mount makes those above it in the store.
    OpenKey const above = Opened(tree, u"HKLM\\x\\y");
    OpenKey made;
    bool fresh = false;
    EXPECT_EQ(0u, tree.Create(*above, u"beside\\more", made, fresh));
    EXPECT_TRUE(fresh);
    EXPECT_EQ((Names{u"beside", u"Deep"}), Subkeys(tree, *above));
    EXPECT_EQ(0u, tree.SetValue(*above, {u"v", 3, "x"}));
    EXPECT_EQ((Found{0, 3, "x"}), Read(tree, *above, u"V"));
    Tree without(Store(), {});
    Opened(without, u"HKLM\\x\\y\\beside\\more");
}

TEST_F(RegistryMounts, a_value_makes_the_key_above_a_mount_in_the_store) {
    Tree tree(Store(), {{u"HKLM\\x\\Deep", UsualHive()}});
    OpenKey const above = Opened(tree, u"HKLM\\x");
    EXPECT_EQ(Names{}, ValueNames(tree, *above));
    EXPECT_EQ(2u, Read(tree, *above, u"v").code);
    EXPECT_EQ(2u, tree.DeleteValue(*above, u"v"));
    EXPECT_FALSE(std::filesystem::exists(Store()));
    EXPECT_EQ(0u, tree.SetValue(*above, {u"v", 3, "x"}));
    EXPECT_EQ((Found{0, 3, "x"}), Read(tree, *above, u"v"));
    EXPECT_EQ(0u, tree.DeleteValue(*above, u"v"));
    EXPECT_EQ((Names{u"Deep"}), Subkeys(tree, *above));
}

TEST_F(RegistryMounts, one_lies_in_another) {
    Tree tree(Store(), {{u"HKLM\\SOFTWARE", UsualHive("outer")},
                        {u"HKLM\\SOFTWARE\\C\\inner", UsualHive("inner")}});
    EXPECT_EQ((Names{u"below", u"inner"}), Subkeys(tree, *Opened(tree, u"HKLM\\SOFTWARE\\C")));
    EXPECT_EQ((Names{u"below"}), Subkeys(tree, *Opened(tree, u"HKLM\\SOFTWARE\\C\\INNER\\c")));
    OpenKey key;
    EXPECT_EQ(2u, OpenPath(tree, u"HKLM\\SOFTWARE\\b\\inner", key));
}

TEST_F(RegistryMounts, one_may_be_a_root_itself) {
    Tree tree(Store(), {{u"HKEY_CURRENT_USER", UsualHive()}});
    OpenKey const &user = tree.RootKey(Root::CurrentUser);
    EXPECT_EQ((Names{u"ab", u"a_", u"b", u"C"}), Subkeys(tree, *user));
    EXPECT_EQ((Found{0, 1, Utf16(u"own")}), Read(tree, *user, u""));
    EXPECT_EQ(5u, tree.SetValue(*user, {u"v", 3, "x"}));
    EXPECT_EQ((Names{u"S-1-5-21-0-0-0-1000"}), Subkeys(tree, *tree.RootKey(Root::Users)));
}

TEST_F(RegistryMounts, a_line_that_names_no_root_is_passed_over) {
    Tree tree(Store(), {{u"SOFTWARE", UsualHive()}, {u"HKXX\\SOFTWARE", UsualHive()}, {u"", ""}});
    EXPECT_EQ(Names{}, Subkeys(tree, *tree.RootKey(Root::LocalMachine)));
}

TEST_F(RegistryMounts, a_file_that_cant_be_read_has_its_code_and_its_name_still) {
    std::filesystem::create_directory(Folder() / "folder");
    WriteBytes(Folder() / "rubbish", BytesOf("this is no hive"));
    WriteBytes(Folder() / "nothing", {});
    Bytes cut = EmptyHive();
    cut.resize(5000);
    WriteBytes(Folder() / "cut", cut);
    struct {
        const char *file;
        Code code;
    } const rows[] = {
        {"missing", 1011}, {"folder", 1011}, {"rubbish", 1015}, {"nothing", 1015}, {"cut", 1015}};
    for (auto const &row : rows) {
        Tree tree(Store(), {{u"HKLM\\SOFTWARE", Hive(row.file)}});
        OpenKey key;
        EXPECT_EQ(row.code, OpenPath(tree, u"HKLM\\SOFTWARE", key)) << row.file;
        EXPECT_EQ(row.code, OpenPath(tree, u"HKLM\\SOFTWARE\\x", key)) << row.file;
        EXPECT_EQ(row.code, CreatePath(tree, u"HKLM\\SOFTWARE\\x")) << row.file;
        EXPECT_EQ((Names{u"SOFTWARE"}), Subkeys(tree, *tree.RootKey(Root::LocalMachine)));
        EXPECT_EQ(0u, CreatePath(tree, u"HKLM\\other")) << "all else goes on";
        EXPECT_EQ(0u, tree.Delete(*tree.RootKey(Root::LocalMachine), u"other"));
    }
}

TEST_F(RegistryMounts, a_file_that_comes_later_is_read_then) {
    Tree tree(Store(), {{u"HKLM\\SOFTWARE", Hive("usual")}});
    OpenKey key;
    EXPECT_EQ(1011u, OpenPath(tree, u"HKLM\\SOFTWARE", key));
    UsualHive();
    EXPECT_EQ(0u, OpenPath(tree, u"HKLM\\SOFTWARE", key));
}

TEST_F(RegistryMounts, a_file_that_is_cut_while_it_is_open_is_read_as_it_was) {
    std::string const file = UsualHive();
    Tree tree(Store(), {{u"HKLM\\SOFTWARE", file}});
    Opened(tree, u"HKLM\\SOFTWARE");
    std::filesystem::resize_file(file, 0);
    OpenKey const below = Opened(tree, u"HKLM\\SOFTWARE\\C\\below");
    EXPECT_EQ((Found{0, 1, Utf16(u"\u20ac")}), Read(tree, *below, u"text"));
}

TEST_F(RegistryMounts, the_current_control_set_is_that_which_Select_names) {
    {
        HiveMaker maker(Hive("system"));
        maker.Values("Select", {{"Current", 4, std::string("\2\0\0\0", 4)}});
        maker.Key("ControlSet001\\one");
        maker.Key("ControlSet002\\two");
        maker.Key("ControlSet002\\Hardware Profiles\\Current\\profile");
    }
    Tree tree(Store(), {{u"HKLM\\SYSTEM", Hive("system")}});
    EXPECT_EQ((Names{u"ControlSet001", u"ControlSet002", u"CurrentControlSet", u"Select"}),
              Subkeys(tree, *Opened(tree, u"HKLM\\SYSTEM")));
    EXPECT_EQ((Names{u"Hardware Profiles", u"two"}),
              Subkeys(tree, *Opened(tree, u"HKLM\\system\\currentcontrolset")));
    EXPECT_EQ((Names{u"profile"}), Subkeys(tree, *tree.RootKey(Root::CurrentConfig)));
}

TEST_F(RegistryMounts, a_hive_without_a_usable_Select_has_no_current_control_set) {
    struct {
        int type;
        std::string data;
    } const rows[] = {{4, std::string("\7\0\0\0", 4)}, {3, std::string("\1\0\0\0", 4)}, {4, "\1"}};
    for (auto const &row : rows) {
        {
            HiveMaker maker(Hive("system"));
            maker.Values("Select", {{"Current", row.type, row.data}});
            maker.Key("ControlSet001");
        }
        Tree tree(Store(), {{u"HKLM\\SYSTEM", Hive("system")}});
        EXPECT_EQ((Names{u"ControlSet001", u"Select"}),
                  Subkeys(tree, *Opened(tree, u"HKLM\\SYSTEM")));
    }
}

TEST_F(RegistryMounts, are_told_by_the_prefixs_file) {
    WriteBytes(Folder() / "platform.ini",
               BytesOf("version=2.5.0\nhive.HKLM\\SOFTWARE = /mnt/config/SOFTWARE\n"
                       "hive.HKLM\\SAM=config/SAM\nhive.HKLM\\empty=\nhives=x\n"));
    std::vector<Mount> const mounts = ReadMounts(Folder().string());
    ASSERT_EQ(2u, mounts.size());
    EXPECT_EQ(u"HKLM\\SAM", mounts[0].key);
    EXPECT_EQ((std::filesystem::canonical(Folder()) / "config/SAM").string(), mounts[0].file);
    EXPECT_EQ(u"HKLM\\SOFTWARE", mounts[1].key);
    EXPECT_EQ("/mnt/config/SOFTWARE", mounts[1].file);
}
