// The registry's tree in the graph.
#include "made_up_registry.h"
#include "scan_fixture.h"
#include "system_acts.h"

#include "answer/file_check.h"
#include "answer/place.h"
#include "model.h"
#include "platform/host.h"

#include <random>

using namespace qvlink;

namespace {

class ScanKeysTest : public ScanTest {
protected:
    std::set<std::string> Keys() const {
        std::set<std::string> keys;
        for (auto const &[key, object] : Graph().objects) {
            if (key.compare(0, 2, "HK") == 0) {
                keys.insert(key);
            }
        }
        return keys;
    }
    std::string Findings() const {
        Bytes const bytes = File();
        std::string text;
        for (Finding const &finding :
             CheckFile({reinterpret_cast<const char *>(bytes.data()), bytes.size()}).problems) {
            text += finding.text + '\n';
        }
        return text;
    }

    MadeUpRegistry m_registry;
};

using Set = std::set<std::string>;

Bytes Block(std::uint32_t type, std::uint32_t size, std::string const &data) {
    Bytes bytes;
    image::AddWord(bytes, type);
    image::AddWord(bytes, size);
    for (char const c : data) {
        bytes.push_back(static_cast<std::uint8_t>(c));
    }
    return bytes;
}

} // namespace

TEST_F(ScanKeysTest, A_key_goes_in_with_all_below_it_and_the_way_to_it) {
    m_registry.Put("HKLM\\Software\\A\\B", "x", "1");
    m_registry.Put("HKLM\\Software\\A", "", "2");
    m_registry.Put("HKLM\\Software", "way", "3");
    m_registry.At("HKLM\\Software\\Other");
    ScanSummary const summary = ScanKeys(m_registry, {"HKLM\\Software\\A"});
    EXPECT_EQ(Keys(), (Set{"HKLM", "HKLM\\Software", "HKLM\\Software\\A", "HKLM\\Software\\A:@",
                           "HKLM\\Software\\A\\B", "HKLM\\Software\\A\\B:x"}));
    EXPECT_EQ(summary.keys, 2U);
    EXPECT_EQ(summary.values, 2U);
    EXPECT_EQ(summary.added, 6U);
    EXPECT_EQ(summary.objects, 7U) << "with the root";
    EXPECT_EQ(summary.links, 6U);
    EXPECT_TRUE(summary.saved);
    EXPECT_EQ(Findings(), "");
}

TEST_F(ScanKeysTest, Hives_keys_and_values_have_their_types_and_values_their_data) {
    m_registry.Put("HKCU\\A", "x", "data", 3);
    m_registry.Put("HKCU\\A", "empty", "", 0);
    ScanKeys(m_registry, {"HKCU"});
    GraphFile const graph = Graph();
    EXPECT_EQ(graph.objects.at("HKCU").type & ~PERSISTENT_BIT, OBJ_HIVE);
    EXPECT_EQ(graph.objects.at("HKCU\\A").type & ~PERSISTENT_BIT, OBJ_KEY);
    EXPECT_EQ(graph.objects.at("HKCU\\A").data, Bytes());
    EXPECT_EQ(graph.objects.at("HKCU\\A:x").type & ~PERSISTENT_BIT, OBJ_VALUE);
    EXPECT_EQ(graph.objects.at("HKCU\\A:x").data, Block(3, 4, "data"));
    EXPECT_EQ(graph.objects.at("HKCU\\A:empty").data, Block(0, 0, ""));
}

TEST_F(ScanKeysTest, Long_data_are_cut_and_their_size_is_kept) {
    m_registry.Put("HKCU\\A", "fits", std::string(1024, 'f'));
    m_registry.Put("HKCU\\A", "long", std::string(1025, 'l'));
    ScanKeys(m_registry, {"HKCU"});
    EXPECT_EQ(Graph().objects.at("HKCU\\A:fits").data, Block(3, 1024, std::string(1024, 'f')));
    EXPECT_EQ(Graph().objects.at("HKCU\\A:long").data, Block(3, 1025, std::string(1024, 'l')));
}

TEST_F(ScanKeysTest, A_root_may_be_named_short_or_long_in_any_case) {
    for (const char *const root : {"HKLM", "HKCU", "HKCR", "HKU", "HKCC"}) {
        m_registry.At(std::string(root) + "\\Key");
    }
    ScanKeys(m_registry, {"hkey_local_machine\\kEY", "HKEY_CURRENT_USER\\Key\\", "hkcr\\KEY",
                          "HKEY_USERS", "HkEy_CuRrEnT_CoNfIg"});
    EXPECT_EQ(Keys(), (Set{"HKLM", "HKLM\\Key", "HKCU", "HKCU\\Key", "HKCR", "HKCR\\Key", "HKU",
                           "HKU\\Key", "HKCC", "HKCC\\Key"}))
        << "names are spelled as the registry has them";
}

TEST_F(ScanKeysTest, A_key_that_is_given_twice_or_lies_below_another_is_read_once) {
    m_registry.At("HKLM\\A\\B");
    m_registry.At("HKLM\\AB");
    ScanSummary const summary =
        ScanKeys(m_registry, {"HKLM\\A\\B", "hklm\\a", "HKEY_LOCAL_MACHINE\\A", "HKLM\\AB"});
    EXPECT_EQ(summary.keys, 3U);
    EXPECT_EQ(summary.added, 4U);
}

TEST_F(ScanKeysTest, What_is_no_path_of_a_key_is_refused) {
    for (const char *const path : {"", "HKXX\\A", "C:\\A", "HKLM/A", "\\HKLM", "Software"}) {
        std::string const why = FailureOf([&] { ScanKeys(m_registry, {path}); });
        EXPECT_NE(why.find("is no path of a key"), std::string::npos) << path << ": " << why;
    }
    EXPECT_TRUE(File().empty());
}

TEST_F(ScanKeysTest, A_key_that_is_nowhere_is_refused_and_one_that_was_leaves_the_graph) {
    m_registry.Put("HKLM\\A\\B", "x", "1");
    m_registry.At("HKLM\\A\\C");
    ScanKeys(m_registry, {"HKLM\\A"});
    Bytes const before = File();
    m_registry.Remove("HKLM\\A\\B");
    EXPECT_NE(FailureOf([&] {
                  ScanKeys(m_registry, {"HKLM\\A\\B", "HKLM\\Z"});
              }).find("there is no HKLM\\Z"),
              std::string::npos);
    EXPECT_EQ(File(), before);
    ScanSummary const summary = ScanKeys(m_registry, {"HKLM\\a\\b"});
    EXPECT_EQ(summary.removed, 2U);
    EXPECT_EQ(Keys(), (Set{"HKLM", "HKLM\\A", "HKLM\\A\\C"}));
}

TEST_F(ScanKeysTest, A_root_that_cannot_be_read_is_refused) {
    m_registry.At("HKLM\\A").code = 5;
    EXPECT_NE(FailureOf([&] { ScanKeys(m_registry, {"HKLM\\A"}); }).find("access is denied"),
              std::string::npos);
}

TEST_F(ScanKeysTest, An_unchanged_registry_leaves_the_file_alone) {
    m_registry.Put("HKLM\\A\\B", "x", "1");
    m_registry.Put("HKLM\\A\\B", "", "1");
    ScanKeys(m_registry, {"HKLM"});
    Bytes const before = File();
    ScanSummary const summary = ScanKeys(m_registry, {"HKLM"});
    EXPECT_FALSE(summary.saved);
    EXPECT_EQ(summary.unchanged, 4U);
    EXPECT_EQ(summary.added + summary.changed + summary.removed, 0U);
    EXPECT_EQ(File(), before);
}

TEST_F(ScanKeysTest, Changes_of_data_type_and_spelling_are_stored_in_the_same_objects) {
    m_registry.Put("HKLM\\A\\Key", "x", "1");
    m_registry.Put("HKLM\\A\\Key", "y", "1");
    m_registry.Put("HKLM\\A\\Key", "z", "1");
    ScanKeys(m_registry, {"HKLM"});
    std::uint32_t const id = Graph().objects.at("HKLM\\A\\Key:x").id;
    m_registry.Put("HKLM\\A\\Key", "x", "longer than before");
    m_registry.Put("HKLM\\A\\Key", "y", "1", 4);
    m_registry.Put("HKLM\\A\\Key", "Z", "1");
    m_registry.At("HKLM\\A\\Key").name = "KEY";
    ScanSummary const summary = ScanKeys(m_registry, {"HKLM"});
    EXPECT_EQ(summary.changed, 4U);
    EXPECT_EQ(summary.unchanged, 1U);
    EXPECT_TRUE(summary.saved);
    GraphFile const graph = Graph();
    EXPECT_EQ(graph.objects.at("HKLM\\A\\KEY:x").id, id);
    EXPECT_EQ(graph.objects.at("HKLM\\A\\KEY:x").data, Block(3, 18, "longer than before"));
    EXPECT_EQ(graph.objects.at("HKLM\\A\\KEY:y").data, Block(4, 1, "1"));
    EXPECT_TRUE(graph.Has("HKLM\\A\\KEY:Z"));
}

TEST_F(ScanKeysTest, What_went_leaves_the_graph_with_all_below_it) {
    m_registry.Put("HKLM\\A\\B\\C", "x", "1");
    m_registry.Put("HKLM\\A\\B", "y", "1");
    m_registry.Put("HKLM\\A", "z", "1");
    m_registry.Put("HKLM\\A", "stays", "1");
    ScanKeys(m_registry, {"HKLM"});
    m_registry.Remove("HKLM\\A\\B");
    m_registry.DeleteValue("HKLM\\A", "z");
    ScanSummary const summary = ScanKeys(m_registry, {"HKLM"});
    EXPECT_EQ(summary.removed, 5U);
    EXPECT_EQ(Keys(), (Set{"HKLM", "HKLM\\A", "HKLM\\A:stays"}));
}

TEST_F(ScanKeysTest, A_key_and_a_value_may_have_one_name) {
    m_registry.Put("HKLM\\A", "same", "1");
    m_registry.Put("HKLM\\A\\Same", "x", "1");
    EXPECT_EQ(ScanKeys(m_registry, {"HKLM"}).unrepresentable, 0U);
    EXPECT_EQ(Keys(), (Set{"HKLM", "HKLM\\A", "HKLM\\A:same", "HKLM\\A\\Same", "HKLM\\A\\Same:x"}));
    EXPECT_EQ(Findings(), "");
    m_registry.Remove("HKLM\\A\\Same");
    ScanKeys(m_registry, {"HKLM"});
    EXPECT_EQ(Keys(), (Set{"HKLM", "HKLM\\A", "HKLM\\A:same"}));
}

TEST_F(ScanKeysTest, Names_that_the_database_cannot_hold_are_told_and_left_out) {
    m_registry.At("HKLM\\A\\" + std::string(250, 'k'));
    m_registry.Put("HKLM\\A\\" + std::string(251, 'l'), "below", "1");
    m_registry.Put("HKLM\\A", std::string(250, 'v'), "1");
    m_registry.Put("HKLM\\A", std::string(251, 'w'), "1");
    m_registry.Put("HKLM\\A", "C:\\a.dll", "1");
    m_registry.Put("HKLM\\A", std::string("a\0b", 3), "1");
    m_registry.Put("HKLM\\A", "@", "1");
    m_registry.Put("HKLM", "top", "1");
    ScanSummary const summary = ScanKeys(m_registry, {"HKLM"});
    EXPECT_EQ(summary.unrepresentable, 6U);
    EXPECT_EQ(m_observer.problems.size(), 6U);
    EXPECT_EQ(Keys(), (Set{"HKLM", "HKLM\\A", "HKLM\\A\\" + std::string(250, 'k'),
                           "HKLM\\A:" + std::string(250, 'v')}));
}

TEST_F(ScanKeysTest, Names_that_the_code_page_lacks_are_told_and_others_are_kept) {
    std::string const name = "a\xc3\xa4\xe6\x97\xa5"; // letters of two scripts
    bool lossless = true;
    std::string const held = FromUtf8(name, lossless);
    m_registry.Put("HKLM\\A\\" + name, "x", "1");
    m_registry.Put("HKLM\\A", "plain", "1");
    EXPECT_EQ(ScanKeys(m_registry, {"HKLM"}).unrepresentable, lossless ? 0U : 1U);
    EXPECT_EQ(Graph().Has("HKLM\\A\\" + held + ":x"), lossless);
    EXPECT_TRUE(Graph().Has("HKLM\\A:plain"));
}

TEST_F(ScanKeysTest, A_path_has_room_for_999_bytes) {
    std::string path = "HKLM";
    while (path.size() + 201 <= 990) {
        path += '\\' + std::string(200, 'p');
    }
    path += '\\' + std::string(989 - path.size(), 'q'); // 990 bytes
    m_registry.Put(path, "12345678", "1");              // 999
    m_registry.Put(path, "123456789", "1");
    m_registry.At(path + "\\123456789");
    EXPECT_EQ(ScanKeys(m_registry, {"HKLM"}).unrepresentable, 2U);
    EXPECT_TRUE(Graph().Has(path + ":12345678"));
    EXPECT_EQ(Findings(), "");
}

TEST_F(ScanKeysTest, A_path_has_room_for_259_names) {
    std::string path = "HKLM";
    for (int i = 0; i < 259; ++i) {
        path += "\\a";
    }
    m_registry.Put(path, "v", "1");
    m_registry.At(path + "\\k");
    EXPECT_EQ(ScanKeys(m_registry, {"HKLM"}).unrepresentable, 2U);
    EXPECT_TRUE(Graph().Has(path));
    EXPECT_EQ(Findings(), "");
}

TEST_F(ScanKeysTest, A_key_that_cannot_be_read_is_told_and_keeps_what_the_graph_has_of_it) {
    m_registry.Put("HKLM\\A\\B", "x", "1");
    m_registry.At("HKLM\\A\\C");
    ScanKeys(m_registry, {"HKLM"});
    m_registry.At("HKLM\\A\\B").code = 5;
    m_registry.Put("HKLM\\A\\C", "y", "1");
    ScanSummary const summary = ScanKeys(m_registry, {"HKLM"});
    EXPECT_EQ(summary.unreadable, 1U) << "once";
    EXPECT_EQ(summary.removed, 0U);
    ASSERT_EQ(m_observer.problems.size(), 1U);
    EXPECT_EQ(m_observer.problems[0], "HKLM\\A\\B: access is denied");
    EXPECT_TRUE(Graph().Has("HKLM\\A\\B:x"));
    EXPECT_TRUE(Graph().Has("HKLM\\A\\C:y"));
}

TEST_F(ScanKeysTest, A_request_to_stop_leaves_the_stored_graph_as_it_was) {
    m_registry.At("HKLM\\A");
    m_registry.At("HKLM\\B");
    ScanKeys(m_registry, {"HKLM"});
    Bytes const before = File();
    m_registry.At("HKLM\\C");
    bool asked = false;
    m_observer.onFolder = [&] { asked = asked || AskToStop(); };
    bool interrupted = false;
    try {
        ScanKeys(m_registry, {"HKLM"});
    } catch (ScanInterrupted const &) {
        interrupted = true;
    }
    m_observer.onFolder = nullptr;
    if (!asked) {
        GTEST_SKIP() << "a program without a console can't be asked to stop on this system";
    }
    EXPECT_TRUE(interrupted);
    EXPECT_EQ(File(), before);
}

TEST_F(ScanKeysTest, Files_and_keys_share_a_graph_and_do_not_touch_each_other) {
    Write("a", "1");
    m_registry.Put("HKLM\\A", "x", "1");
    ScanSummary const both = ScanKeys(m_registry, {"HKLM"}, {""});
    EXPECT_EQ(both.files, 1U);
    EXPECT_EQ(both.keys, 2U);
    Scan();
    EXPECT_TRUE(Graph().Has("HKLM\\A:x"));
    ScanKeys(m_registry, {"HKLM"});
    EXPECT_TRUE(Graph().Has("a"));
    EXPECT_EQ(Findings(), "");
}

// What the graph has to hold of a registry, and random changes to it.
class ScanKeysModelTest : public ScanKeysTest {
protected:
    static void Expect(MadeUpRegistry::Key const &key, std::string const &path, Set &keys) {
        keys.insert(path);
        for (auto const &value : key.values) {
            keys.insert(path + ':' + (value.name.empty() ? "@" : value.name));
        }
        for (auto const &[folded, below] : key.keys) {
            Expect(*below, path + '\\' + below->name, keys);
        }
    }

    std::size_t Below(std::size_t limit) { return m_random() % limit; }

    std::string Path() {
        std::string path = "HKCU\\top";
        for (std::size_t depth = Below(4); depth > 0; --depth) {
            path += '\\' + std::string(1, "abcABC"[Below(6)]);
        }
        return path;
    }

    void Change() {
        std::string const path = Path();
        std::string const name(Below(2), "xyX"[Below(3)]);
        switch (Below(5)) {
        case 0:
            m_registry.At(path);
            break;
        case 1:
            m_registry.DeleteValue(path, name);
            break;
        case 2:
            m_registry.Remove(path + "\\a");
            break;
        default:
            m_registry.Put(path, name, std::string(Below(30), 'd'), 3);
        }
    }

    std::mt19937 m_random{4};
};

TEST_F(ScanKeysModelTest, After_each_scan_the_graph_is_the_registry) {
    m_registry.At("HKCU\\top");
    for (int round = 0; round < 60; ++round) {
        for (std::size_t changes = Below(12); changes > 0; --changes) {
            Change();
        }
        ScanSummary const summary = ScanKeys(m_registry, {"HKCU"});
        Set expected;
        Expect(m_registry.At("HKCU"), "HKCU", expected);
        ASSERT_EQ(Keys(), expected) << "round " << round;
        ASSERT_EQ(summary.keys + summary.values, expected.size());
        ASSERT_EQ(Findings(), "") << "round " << round;
        for (auto const &value : m_registry.At("HKCU\\top").values) {
            std::string const key = "HKCU\\top:" + (value.name.empty() ? "@" : value.name);
            ASSERT_EQ(Graph().objects.at(key).data,
                      Block(3, static_cast<std::uint32_t>(value.data.size()), value.data));
        }
    }
}

TEST_F(ScanKeysTest, Each_key_of_100000_is_read_twice_and_no_more) {
    for (int i = 0; i < 100'000; ++i) {
        m_registry.At("HKLM\\A\\k" + std::to_string(i / 1000 * 1000) + "\\" + std::to_string(i));
    }
    std::size_t const before = m_registry.Reads();
    ScanSummary const summary = ScanKeys(m_registry, {"HKLM\\A"});
    EXPECT_EQ(summary.keys, 100'101U);
    // Beside that the root is looked for, its spelling, and the variables.
    EXPECT_LE(m_registry.Reads() - before, 2 * 100'101U + 10U);
}
