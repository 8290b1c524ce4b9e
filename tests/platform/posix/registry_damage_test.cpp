// Stores and hives that are damaged, or were made by somebody else: codes, and no crash.
#include "hive_maker.h"
#include "registry_tree.h"

#include "courses.h"

#include <random>
#include <set>

#include <sqlite3.h>

using namespace platform::registry;

namespace {

namespace fs = std::filesystem;

// What an operation may say of damage.
std::set<Code> const codes{0, 2, 5, 8, 87, 112, 170, 259, 1011, 1015, 1016, 1018};

void ExpectCode(Code code) { EXPECT_EQ(1u, codes.count(code)) << code; }

// Reads all that is below a key, as far as it can be.
void ReadBelow(Tree &tree, Key &key, unsigned depth, unsigned &left) {
    Value value;
    Code code = 0;
    for (std::uint32_t i = 0; left > 0 && (code = tree.EnumerateValue(key, i, value)) == 0; ++i) {
        --left;
        ExpectCode(tree.ReadValue(key, value.name, value));
    }
    ExpectCode(code);
    std::u16string name;
    code = 0;
    for (std::uint32_t i = 0; left > 0 && (code = tree.EnumerateKey(key, i, name)) == 0; ++i) {
        --left;
        OpenKey below;
        Code const opened = tree.Open(key, name, below);
        ExpectCode(opened);
        if (opened == 0 && depth > 0)
            ReadBelow(tree, *below, depth - 1, left);
    }
    ExpectCode(code);
}

void ReadAll(Tree &tree) {
    unsigned left = 3000;
    ReadBelow(tree, *tree.RootKey(Root::LocalMachine), 30, left);
}

void UseAll(Tree &tree) {
    ReadAll(tree);
    OpenKey const &machine = tree.RootKey(Root::LocalMachine);
    OpenKey key;
    bool made = false;
    ExpectCode(tree.Create(*machine, u"Software\\new", key, made));
    ExpectCode(tree.Create(*machine, u"Other\\new", key, made));
    if (key)
        ExpectCode(tree.SetValue(*key, {u"value", 1, "x"}));
    ExpectCode(tree.Delete(*machine, u"Other\\new"));
    if (tree.Begin() == 0)
        ExpectCode(tree.Commit());
}

class RegistryDamage : public RegistryTree {
protected:
    fs::path File() const { return fs::path(Store()) / "store.db"; }

    // A store of some pages.
    Bytes UsualStore() const {
        {
            Tree tree(Store(), {});
            EXPECT_EQ(0u, tree.Begin());
            for (int i = 0; i < 60; ++i) {
                std::u16string const path =
                    u"HKLM\\Software\\k" + std::u16string(static_cast<std::size_t>(i % 7), u'x') +
                    u"\\b" + std::u16string(static_cast<std::size_t>(i), u'y');
                EXPECT_EQ(0u, CreatePath(tree, path));
                EXPECT_EQ(0u, tree.SetValue(
                                  *Opened(tree, path),
                                  {u"v", 3, std::string(static_cast<std::size_t>(100 * i), 'z')}));
            }
            EXPECT_EQ(0u, tree.Commit());
        }
        return ReadBytes(File());
    }

    void Replace(Bytes const &bytes) const {
        for (const char *const behind : {"", "-wal", "-shm"})
            fs::remove(File().string() + behind);
        fs::create_directories(Store());
        WriteBytes(File(), bytes);
    }

    void Run(const char *sql) const {
        sqlite3 *database = nullptr;
        fs::create_directories(Store());
        ASSERT_EQ(SQLITE_OK, sqlite3_open(File().c_str(), &database));
        EXPECT_EQ(SQLITE_OK, sqlite3_exec(database, sql, nullptr, nullptr, nullptr)) << sql;
        sqlite3_close(database);
    }

    void ExpectAll(Code code, const char *what) const {
        Tree tree(Store(), {});
        OpenKey const &machine = tree.RootKey(Root::LocalMachine);
        OpenKey key;
        std::u16string name;
        bool made = false;
        EXPECT_EQ(code, tree.Open(*machine, u"x", key)) << what;
        EXPECT_EQ(code, tree.Create(*machine, u"x", key, made)) << what;
        EXPECT_EQ(code, tree.EnumerateKey(*machine, 0, name)) << what;
        EXPECT_EQ(code, tree.SetValue(*machine, {u"x", 1, ""})) << what;
        EXPECT_EQ(code, tree.DeleteValue(*machine, u"x")) << what;
        EXPECT_EQ(code, tree.Delete(*machine, u"x")) << what;
        EXPECT_EQ(code, tree.Begin()) << what;
    }
};

} // namespace

TEST_F(RegistryDamage, what_is_no_store_is_1015) {
    Replace(BytesOf("this is no store, though it is long enough to be looked at by whoever opens"));
    ExpectAll(1015, "a text");
    Replace({});
    ExpectAll(1015, "an empty file");
    Replace({});
    Run("CREATE TABLE keys(parent)");
    ExpectAll(1015, "somebody else's");
    fs::remove(File());
    fs::create_directory(File());
    ExpectAll(1015, "a folder");
}

TEST_F(RegistryDamage, a_store_of_another_version_or_with_other_tables_is_1015) {
    Bytes const store = UsualStore();
    for (const char *const sql :
         {"PRAGMA user_version=2", "PRAGMA application_id=1", "DROP TABLE vals",
          "CREATE TABLE more(x)", "CREATE VIEW more AS SELECT * FROM keys",
          "CREATE TRIGGER more AFTER INSERT ON keys BEGIN DELETE FROM keys; END",
          "ALTER TABLE ids ADD COLUMN more INTEGER", "DROP INDEX vals_by_name"}) {
        Replace(store);
        Run(sql);
        ExpectAll(1015, sql);
    }
    Replace(store);
    Tree tree(Store(), {});
    OpenKey key;
    EXPECT_EQ(0u, OpenPath(tree, u"HKLM\\Software", key)) << "the store itself is good";
}

TEST_F(RegistryDamage, rows_that_make_no_sense_do_no_harm) {
    Bytes const store = UsualStore();
    for (const char *const sql :
         {"DELETE FROM ids", "UPDATE ids SET next=1", "DELETE FROM keys WHERE parent=0",
          "UPDATE keys SET id=1", "UPDATE keys SET parent=id WHERE parent<>0",
          "UPDATE keys SET name=''", "UPDATE keys SET name='a\\b'",
          "UPDATE keys SET folded=x'00' WHERE id=1",
          "UPDATE keys SET folded=CAST(folded||x'00' AS BLOB)", "UPDATE keys SET generation=-1",
          "UPDATE keys SET generation=9223372036854775807",
          "UPDATE vals SET place=place-10, type=-1", "UPDATE vals SET data=zeroblob(3), name=''",
          "UPDATE vals SET place=9223372036854775807"}) {
        Replace(store);
        Run(sql);
        Tree tree(Store(), {});
        UseAll(tree);
    }
}

TEST_F(RegistryDamage, bytes_that_changed_anywhere_in_a_store_do_no_harm) {
    Bytes const store = UsualStore();
    ASSERT_GT(store.size(), 20000u);
    std::mt19937 random(1);
    for (std::uint32_t course = Courses(80); course-- > 0;) {
        Bytes damaged = store;
        for (std::size_t count = 1 + random() % 20; count-- > 0;) {
            // Half of them where pages tell of themselves.
            std::size_t const at = random() % 2
                                       ? random() % damaged.size()
                                       : random() % (damaged.size() / 4096) * 4096 + random() % 120;
            damaged[at] = static_cast<std::uint8_t>(random());
        }
        Replace(damaged);
        Tree tree(Store(), {});
        UseAll(tree);
    }
}

TEST_F(RegistryDamage, a_store_that_was_cut_does_no_harm) {
    Bytes const store = UsualStore();
    std::mt19937 random(2);
    for (std::uint32_t course = Courses(60); course-- > 0;) {
        Replace(Bytes(store.begin(),
                      store.begin() + static_cast<std::ptrdiff_t>(random() % store.size())));
        Tree tree(Store(), {});
        UseAll(tree);
    }
}

TEST_F(RegistryDamage, a_store_that_is_cut_while_it_is_open_does_no_harm) {
    UsualStore();
    Tree tree(Store(), {});
    OpenKey const key = Opened(tree, u"HKLM\\Software");
    fs::resize_file(File(), 5000);
    UseAll(tree);
    fs::resize_file(File(), 0);
    UseAll(tree);
}

TEST_F(RegistryDamage, bytes_that_changed_anywhere_in_a_hive_do_no_harm) {
    fs::path const file = Folder() / "hive";
    {
        HiveMaker maker(file);
        for (int i = 0; i < 40; ++i) {
            std::string const path =
                "k" + std::to_string(i % 5) + "\\b\xc3\xa4" + std::to_string(i);
            maker.Values(path, {{"v", 3, std::string(static_cast<std::size_t>(50 * i), 'z')},
                                {"\xe2\x82\xac", 1, Utf16(u"text")}});
        }
        maker.Values("Select", {{"Current", 4, std::string("\1\0\0\0", 4)}});
        maker.Key("ControlSet001\\below");
    }
    Bytes const hive = ReadBytes(file);
    std::mt19937 random(3);
    for (std::uint32_t course = Courses(300); course-- > 0;) {
        Bytes damaged = hive;
        if (course % 4 == 0)
            damaged.resize(random() % damaged.size());
        for (std::size_t count = 1 + random() % 10; count-- > 0 && !damaged.empty();)
            damaged[random() % damaged.size()] = static_cast<std::uint8_t>(random());
        WriteBytes(file, damaged);
        Tree tree(Store(), {{u"HKLM\\Software", file.string()}});
        ReadAll(tree);
    }
}

TEST_F(RegistryDamage, a_hive_that_leads_in_circles_ends_somewhere) {
    fs::path const file = Folder() / "hive";
    {
        HiveMaker maker(file);
        maker.Key("one\\two");
    }
    // The list of the last key's subkeys is that of the root.
    Bytes hive = ReadBytes(file);
    auto const fields = [&hive](const char *name) -> std::uint8_t * {
        std::string const text(hive.begin(), hive.end());
        return &hive[text.find(std::string("nk"), text.find(name) - 80)];
    };
    std::uint8_t *const root = fields("root");
    std::uint8_t *const two = fields("two");
    std::copy(root + 20, root + 36, two + 20);
    WriteBytes(file, hive);
    Tree tree(Store(), {{u"HKLM\\x", file.string()}});
    std::u16string path = u"HKLM\\x";
    OpenKey key;
    Code code = 0;
    unsigned depth = 0;
    for (; code == 0 && depth < 1000; ++depth) {
        path += depth % 2 ? u"\\two" : u"\\one";
        code = OpenPath(tree, path, key);
    }
    EXPECT_EQ(87u, code);
    EXPECT_EQ(512u, depth);
}
