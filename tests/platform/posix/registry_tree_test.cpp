// The tree of keys over its store: what its walks cost, transactions, names.
#include "registry_tree.h"

#include "courses.h"

#include <random>
#include <thread>

using namespace platform::registry;

namespace {

std::u16string Numbered(unsigned number) {
    std::string text = std::to_string(number);
    text.insert(0, 6 - text.size(), '0');
    return std::u16string(text.begin(), text.end());
}

// Many keys in one transaction.
void MakeMany(Tree &tree, std::u16string const &path, unsigned count) {
    ASSERT_EQ(0u, tree.Begin());
    OpenKey above, key;
    bool made = false;
    ASSERT_EQ(0u, tree.Create(*tree.RootKey(Root::LocalMachine), path, above, made));
    for (unsigned i = 0; i < count; ++i)
        ASSERT_EQ(0u, tree.Create(*above, Numbered(i), key, made));
    ASSERT_EQ(0u, tree.Commit());
}

// Statements' steps that a whole enumeration takes; `meanwhile` comes after each name.
template <class Work>
std::uint64_t StepsOfWalk(Tree &tree, Key &key, unsigned count, Work meanwhile) {
    std::uint64_t const before = tree.Steps();
    std::u16string name;
    for (unsigned i = 0; i < count; ++i) {
        EXPECT_EQ(0u, tree.EnumerateKey(key, i, name));
        if (name != Numbered(i)) {
            ADD_FAILURE() << i;
            return 0;
        }
        meanwhile(i);
    }
    EXPECT_EQ(259u, tree.EnumerateKey(key, count, name));
    return tree.Steps() - before;
}

} // namespace

TEST_F(RegistryTree, a_walk_over_100000_subkeys_takes_a_step_each) {
    unsigned const count = Courses(100000);
    Tree tree(Store(), {});
    MakeMany(tree, u"many", count);
    OpenKey const key = Opened(tree, u"HKLM\\many");
    EXPECT_LE(StepsOfWalk(tree, *key, count, [](unsigned) {}), count + 2u);
}

TEST_F(RegistryTree, a_walk_takes_no_more_while_others_write_elsewhere) {
    constexpr unsigned count = 2000;
    Tree tree(Store(), {});
    Tree other(Store(), {});
    MakeMany(tree, u"many", count);
    OpenKey const key = Opened(tree, u"HKLM\\many");
    std::uint64_t const before = other.Steps();
    std::uint64_t const steps = StepsOfWalk(tree, *key, count, [&](unsigned i) {
        if (i % 10 == 0) {
            EXPECT_EQ(0u, CreatePath(other, u"HKLM\\elsewhere\\" + Numbered(i)));
        }
    });
    EXPECT_LE(steps, count + 2u);
    EXPECT_LT(other.Steps() - before, 10u * count);
}

TEST_F(RegistryTree, deletion_of_the_first_subkey_again_and_again_takes_as_long_for_the_last) {
    constexpr unsigned count = 1000;
    Tree tree(Store(), {});
    MakeMany(tree, u"many", count);
    OpenKey const key = Opened(tree, u"HKLM\\many");
    std::uint64_t const before = tree.Steps();
    std::u16string name;
    ASSERT_EQ(0u, tree.Begin());
    for (unsigned i = 0; i < count; ++i) {
        ASSERT_EQ(0u, tree.EnumerateKey(*key, 0, name));
        ASSERT_EQ(0u, tree.Delete(*key, name));
    }
    ASSERT_EQ(0u, tree.Commit());
    EXPECT_LE(tree.Steps() - before, 12u * count);
    EXPECT_EQ(259u, tree.EnumerateKey(*key, 0, name));
}

TEST_F(RegistryTree, another_trees_changes_move_the_indices) {
    Tree tree(Store(), {});
    Tree other(Store(), {});
    MakeMany(tree, u"many", 10);
    OpenKey const key = Opened(tree, u"HKLM\\many");
    std::u16string name;
    ASSERT_EQ(0u, tree.EnumerateKey(*key, 0, name));
    ASSERT_EQ(0u, tree.EnumerateKey(*key, 1, name));
    ASSERT_EQ(0u, other.Delete(*Opened(other, u"HKLM\\many"), Numbered(0)));
    EXPECT_EQ(0u, tree.EnumerateKey(*key, 2, name));
    EXPECT_EQ(Numbered(3), name);
    ASSERT_EQ(0u, CreatePath(other, u"HKLM\\many\\000000"));
    EXPECT_EQ(0u, tree.EnumerateKey(*key, 3, name));
    EXPECT_EQ(Numbered(3), name);
}

TEST_F(RegistryTree, values_are_told_in_the_order_in_which_they_were_made) {
    Tree tree(Store(), {});
    ASSERT_EQ(0u, CreatePath(tree, u"HKCU\\key"));
    OpenKey const key = Opened(tree, u"HKCU\\key");
    for (const char16_t *const name : {u"c", u"a", u"", u"b"})
        ASSERT_EQ(0u, tree.SetValue(*key, {name, 3, "x"}));
    EXPECT_EQ((Names{u"c", u"a", u"", u"b"}), ValueNames(tree, *key));
    ASSERT_EQ(0u, tree.SetValue(*key, {u"A", 3, "y"}));
    EXPECT_EQ((Names{u"c", u"a", u"", u"b"}), ValueNames(tree, *key)) << "it keeps its place";
    ASSERT_EQ(0u, tree.DeleteValue(*key, u"c"));
    ASSERT_EQ(0u, tree.SetValue(*key, {u"C", 3, "z"}));
    EXPECT_EQ((Names{u"a", u"", u"b", u"C"}), ValueNames(tree, *key));
}

TEST_F(RegistryTree, a_transaction_shows_its_changes_to_others_when_it_is_committed) {
    Tree tree(Store(), {});
    Tree other(Store(), {});
    ASSERT_EQ(0u, CreatePath(tree, u"HKLM\\first"));
    ASSERT_EQ(0u, tree.Begin());
    EXPECT_EQ(170u, tree.Begin()) << "there is one already";
    ASSERT_EQ(0u, CreatePath(tree, u"HKLM\\second"));
    OpenKey key;
    EXPECT_EQ(0u, OpenPath(tree, u"HKLM\\second", key));
    EXPECT_EQ(2u, OpenPath(other, u"HKLM\\second", key));
    ASSERT_EQ(0u, tree.Commit());
    EXPECT_EQ(0u, OpenPath(other, u"HKLM\\second", key));
    EXPECT_EQ(87u, tree.Commit()) << "there is none";
}

TEST_F(RegistryTree, what_is_rolled_back_never_was) {
    Tree tree(Store(), {});
    ASSERT_EQ(0u, CreatePath(tree, u"HKLM\\first"));
    ASSERT_EQ(0u, tree.Begin());
    ASSERT_EQ(0u, CreatePath(tree, u"HKLM\\second\\third"));
    ASSERT_EQ(0u, tree.Delete(*tree.RootKey(Root::LocalMachine), u"first"));
    tree.Rollback();
    tree.Rollback();
    EXPECT_EQ((Names{u"first"}), Subkeys(tree, *tree.RootKey(Root::LocalMachine)));
    // Numbers that were reserved within it aren't given to two keys.
    ASSERT_EQ(0u, CreatePath(tree, u"HKLM\\second\\third"));
    {
        Tree other(Store(), {});
        ASSERT_EQ(0u, CreatePath(other, u"HKLM\\other\\below"));
    }
    EXPECT_EQ((Names{u"third"}), Subkeys(tree, *Opened(tree, u"HKLM\\second")));
    EXPECT_EQ((Names{u"below"}), Subkeys(tree, *Opened(tree, u"HKLM\\other")));
}

TEST_F(RegistryTree, a_transaction_that_is_dropped_with_its_tree_never_was) {
    {
        Tree tree(Store(), {});
        ASSERT_EQ(0u, tree.Begin());
        ASSERT_EQ(0u, CreatePath(tree, u"HKLM\\first"));
    }
    Tree tree(Store(), {});
    EXPECT_EQ(Names{}, Subkeys(tree, *tree.RootKey(Root::LocalMachine)));
}

TEST_F(RegistryTree, a_refused_change_leaves_the_transaction_as_it_is) {
    Tree tree(Store(), {});
    OpenKey const &machine = tree.RootKey(Root::LocalMachine);
    ASSERT_EQ(0u, tree.Begin());
    ASSERT_EQ(0u, CreatePath(tree, u"HKLM\\a\\b"));
    EXPECT_EQ(5u, tree.Delete(*machine, u"a"));
    EXPECT_EQ(2u, tree.Delete(*machine, u"missing"));
    EXPECT_EQ(2u, tree.DeleteValue(*machine, u"missing"));
    EXPECT_EQ(0u, tree.Commit());
    EXPECT_EQ((Names{u"a"}), Subkeys(tree, *machine));
}

TEST_F(RegistryTree, names_differ_that_differ_in_upper_case) {
    Tree tree(Store(), {});
    // One letter each, but for the pairs: these have the same upper case, one to one.
    for (const char16_t *const name : {u"i", u"\u0131", u"s", u"\u017f", u"\u00b5", u"\u03bc",
                                       u"\u00df", u"ss", u"\u01c5", u"\u01c6"})
        ASSERT_EQ(0u, CreatePath(tree, std::u16string(u"HKLM\\") + name));
    EXPECT_EQ(10u, Subkeys(tree, *tree.RootKey(Root::LocalMachine)).size());
    ASSERT_EQ(0u, CreatePath(tree, u"HKLM\\\u00e4\u0436\u03b1\u00ff"));
    ASSERT_EQ(0u, CreatePath(tree, u"HKLM\\\u00c4\u0416\u0391\u0178"));
    EXPECT_EQ(11u, Subkeys(tree, *tree.RootKey(Root::LocalMachine)).size());
}

TEST_F(RegistryTree, names_that_are_no_text_come_back) {
    Tree tree(Store(), {});
    std::u16string const half{u'a', char16_t{0xd800}, u'b', char16_t{0xdfff}};
    std::u16string const nul{u'a', u'\0', u'b'};
    for (std::u16string const &name : {half, nul}) {
        ASSERT_EQ(0u, CreatePath(tree, u"HKCU\\" + name));
        OpenKey const key = Opened(tree, u"HKCU\\" + name);
        ASSERT_EQ(0u, tree.SetValue(*key, {name, 3, std::string("\0x", 2)}));
        EXPECT_EQ((Names{name}), ValueNames(tree, *key));
        EXPECT_EQ((Found{0, 3, std::string("\0x", 2)}), Read(tree, *key, name));
    }
    EXPECT_EQ((Names{nul, half}), Subkeys(tree, *tree.RootKey(Root::CurrentUser)));
}

TEST_F(RegistryTree, roots_are_known_by_both_names_in_any_case) {
    struct {
        std::u16string_view path;
        Root root;
        std::u16string_view rest;
    } const rows[] = {{u"HKLM", Root::LocalMachine, u""},
                      {u"hkey_local_machine\\a\\b", Root::LocalMachine, u"a\\b"},
                      {u"Hkcu\\a", Root::CurrentUser, u"a"},
                      {u"HKEY_CURRENT_USER", Root::CurrentUser, u""},
                      {u"HKCR\\", Root::ClassesRoot, u""},
                      {u"HKEY_CLASSES_ROOT\\.txt", Root::ClassesRoot, u".txt"},
                      {u"HKU\\x", Root::Users, u"x"},
                      {u"HKEY_USERS\\x", Root::Users, u"x"},
                      {u"HKCC\\x", Root::CurrentConfig, u"x"},
                      {u"HKEY_CURRENT_CONFIG\\x", Root::CurrentConfig, u"x"}};
    for (auto const &row : rows) {
        std::u16string_view path = row.path;
        EXPECT_EQ(row.root, TakeRoot(path));
        EXPECT_EQ(row.rest, path);
    }
    for (std::u16string_view path : {u"", u"HK", u"HKLMx\\a", u"a\\HKLM", u"\\HKLM"}) {
        std::u16string_view const before = path;
        EXPECT_EQ(std::nullopt, TakeRoot(path));
        EXPECT_EQ(before, path);
    }
}

TEST_F(RegistryTree, keys_lie_512_deep_at_most) {
    Tree tree(Store(), {});
    std::u16string path = u"HKCU";
    for (int i = 0; i < 512; ++i)
        path += u"\\k";
    EXPECT_EQ(0u, CreatePath(tree, path));
    EXPECT_EQ(87u, CreatePath(tree, path + u"\\k"));
    OpenKey key;
    EXPECT_EQ(0u, OpenPath(tree, path, key));
    EXPECT_EQ(87u, OpenPath(tree, path + u"\\k", key));
}

TEST_F(RegistryTree, threads_share_one_key) {
    Tree tree(Store(), {});
    MakeMany(tree, u"many", 200);
    OpenKey const key = Opened(tree, u"HKLM\\many");
    auto const work = [&](unsigned seed) {
        std::mt19937 random(seed);
        std::u16string name;
        for (int i = 0; i < 300; ++i) {
            auto const index = static_cast<unsigned>(random() % 200);
            ASSERT_EQ(0u, tree.EnumerateKey(*key, index, name));
            ASSERT_EQ(Numbered(index), name);
            ASSERT_EQ(0u, tree.SetValue(*key, {name, 3, "x"}));
        }
    };
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < 3; ++i)
        threads.emplace_back(work, i);
    for (std::thread &thread : threads)
        thread.join();
}
