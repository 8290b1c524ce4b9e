// Keys and values: their places, data, and the files that values lead to.
#include "test_keys.h"

#include "answer/file_check.h"
#include "answer/graph.h"
#include "answer/key_question.h"
#include "answer/protected_files.h"
#include "answer/protection.h"
#include "answer/value_walks.h"
#include "output/json.h"
#include "output/value_text.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

using namespace qvlink;

namespace {

std::string Parsed(std::string const &text, RootCase rootCase = RootCase::upper) {
    auto const place = ParseKeyPath(text, rootCase);
    return place ? DatabasePath(*place) : "none";
}

Texts Told(TestGraph &graph, std::vector<Dependency> const &dependencies) {
    Texts texts;
    for (Dependency const &dependency : dependencies) {
        Need const &need = dependency.need;
        texts.push_back(PathOf(graph.Database(), dependency.requester) + " -> " +
                        PathOf(graph.Database(), need.found ? need.found : need.asked));
    }
    return texts;
}

Texts Refs(TestGraph &graph, std::vector<CQVUObject *> const &targets, bool direct = false) {
    Texts texts;
    for (Referrer const &referrer : FindReferrers(graph.Database(), targets, direct)) {
        texts.push_back(PathOf(graph.Database(), referrer.object));
    }
    return texts;
}

std::string Units(std::u16string const &units) {
    std::string data;
    for (char16_t const unit : units) {
        data += static_cast<char>(unit & 0xff);
        data += static_cast<char>(unit >> 8);
    }
    return data;
}

} // namespace

TEST(KeyPlace, The_ten_names_of_roots_begin_a_path_of_a_key) {
    EXPECT_EQ(Parsed("HKLM\\A"), "HKLM\\A");
    EXPECT_EQ(Parsed("HKEY_LOCAL_MACHINE\\A"), "HKLM\\A");
    EXPECT_EQ(Parsed("HKCU\\A"), "HKCU\\A");
    EXPECT_EQ(Parsed("HKEY_CURRENT_USER\\A"), "HKCU\\A");
    EXPECT_EQ(Parsed("HKCR\\A"), "HKCR\\A");
    EXPECT_EQ(Parsed("HKEY_CLASSES_ROOT\\A"), "HKCR\\A");
    EXPECT_EQ(Parsed("HKU\\A"), "HKU\\A");
    EXPECT_EQ(Parsed("HKEY_USERS\\A"), "HKU\\A");
    EXPECT_EQ(Parsed("HKCC\\A"), "HKCC\\A");
    EXPECT_EQ(Parsed("HKEY_CURRENT_CONFIG\\A"), "HKCC\\A");
    EXPECT_EQ(Parsed("HKLM"), "HKLM");
    EXPECT_EQ(Parsed("HKLM\\"), "HKLM");
}

TEST(KeyPlace, Other_texts_and_other_cases_do_not) {
    for (const char *const text : {"", "hklm\\A", "Hkey_Local_Machine", "HKLMX", "HKL", "\\HKLM",
                                   "HKLM/A", "C:\\HKLM", "HKEY_LOCAL_MACHINES\\A", "HKDD"}) {
        EXPECT_EQ(Parsed(text), "none") << text;
    }
    EXPECT_EQ(Parsed("hklm\\A", RootCase::any), "HKLM\\A");
    EXPECT_EQ(Parsed("hkey_users", RootCase::any), "HKU");
    EXPECT_EQ(Parsed("hkey", RootCase::any), "none");
}

TEST(KeyPlace, Only_the_backslash_separates_and_no_name_is_special) {
    auto const place = ParseKeyPath("HKLM\\\\text/html\\.\\..\\a b\\");
    ASSERT_TRUE(place);
    EXPECT_EQ(place->names, (Texts{"text/html", ".", "..", "a b"}));
    EXPECT_TRUE(IsKeyPlace(*place));
    EXPECT_FALSE(IsKeyPlace({"C:", {"HKLM"}}));
}

TEST(KeyPlace, No_drive_of_the_host_is_taken_for_a_hive) {
    EXPECT_EQ(RootedPath({"HKLM", {"a"}}, {{'H', "/home"}}), std::nullopt);
}

TEST(KeyLookup, Keys_and_values_are_found_at_their_places_in_any_case) {
    TestGraph graph;
    CQVUObject *const key = Key(graph, "HKLM\\Software\\text/html");
    CQVUObject *const value = Value(graph, "HKLM\\Software\\text/html", "Extension");
    auto const at = [&](std::string const &path) {
        return FindAt(graph.Database(), *ParseKeyPath(path));
    };
    EXPECT_EQ(at("HKLM"), graph.Database().GetObjectByPath("HKLM"));
    EXPECT_EQ(at("HKLM\\software\\TEXT/html"), key);
    EXPECT_EQ(at("HKEY_LOCAL_MACHINE\\Software\\text/html\\extension"), value);
    EXPECT_EQ(at("HKLM\\Software\\text\\html"), nullptr);
    EXPECT_EQ(at("HKCU"), nullptr);
    EXPECT_EQ(PathOf(graph.Database(), value), "HKLM\\Software\\text/html\\Extension");
}

TEST(KeyLookup, A_key_comes_before_a_value_of_its_name) {
    TestGraph graph;
    CQVUObject *const value = Value(graph, "HKLM\\A", "same");
    auto const at = [&](std::string const &path) {
        return FindAt(graph.Database(), *ParseKeyPath(path));
    };
    EXPECT_EQ(at("HKLM\\A\\same"), value);
    CQVUObject *const key = graph.Database().AddObject("Same", OBJ_KEY, 0, 0, nullptr, 1);
    Key(graph, "HKLM\\A")->LinkTo(key, LINK_PARENT);
    EXPECT_EQ(at("HKLM\\A\\same"), key);
    EXPECT_EQ(at("HKLM\\A\\SAME"), key);
}

TEST(KeyCheck, A_key_and_a_value_of_one_name_are_sound_and_two_values_are_not) {
    TestGraph graph;
    Value(graph, "HKLM\\A", "same");
    Key(graph, "HKLM\\A")
        ->LinkTo(graph.Database().AddObject("same", OBJ_KEY, 0, 0, nullptr, 1), LINK_PARENT);
    auto const problems = [&] {
        graph.Flush();
        Bytes const bytes = ReadBytes(graph.DatabaseFile());
        return CheckFile({reinterpret_cast<const char *>(bytes.data()), bytes.size()}).problems;
    };
    EXPECT_EQ(problems().size(), 0U);
    Value(graph, "HKLM\\A", "same");
    ASSERT_EQ(problems().size(), 1U);
    EXPECT_EQ(problems()[0].check, "twin-names");
}

TEST(ValueData, A_block_tells_type_size_and_the_beginning_of_the_data) {
    TestGraph graph;
    auto const made = [&](std::string block) {
        return ValueDataOf(*graph.Database().AddObject(
            "v", OBJ_VALUE, 0, static_cast<unsigned long>(block.size()), block.data(), 1));
    };
    auto const whole = made(BlockOf(7, "abc"));
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->type, 7U);
    EXPECT_EQ(whole->size, 3U);
    EXPECT_EQ(whole->data, "abc");
    auto const cut = made(BlockOf(3, std::string(5000, 'x')));
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut->size, 5000U);
    EXPECT_EQ(cut->data, std::string(1024, 'x'));
    EXPECT_FALSE(made("")) << "another writer's value without data";
    EXPECT_FALSE(made("1234567"));
    EXPECT_FALSE(made(BlockOf(3, "") + "more than told"));
    EXPECT_FALSE(ValueDataOf(*graph.File("C:\\a", 0, 8)));
}

TEST(ValueData, Texts_end_at_their_zeros) {
    std::string const two = Units({u'a', 0, u'b', u'c', 0, 0});
    EXPECT_EQ(TextsOf(1, two), Texts{"a"});
    EXPECT_EQ(TextsOf(2, two), Texts{"a"});
    EXPECT_EQ(TextsOf(7, two), (Texts{"a", "bc"}));
    EXPECT_EQ(TextsOf(7, Units({u'a', 0, 0, u'b', 0})), Texts{"a"}) << "an empty text is the end";
    EXPECT_EQ(TextsOf(7, Units(u"ab")), Texts{"ab"}) << "no zero at the end";
    EXPECT_EQ(TextsOf(1, Units(u"ab")), Texts{"ab"});
    EXPECT_EQ(TextsOf(1, ""), Texts{""});
    EXPECT_EQ(TextsOf(7, ""), Texts{});
    EXPECT_EQ(TextsOf(1, "a"), Texts{""}) << "half a unit";
    for (std::uint32_t const type : {0U, 3U, 4U, 6U, 11U, 99U}) {
        EXPECT_EQ(TextsOf(type, two), Texts{}) << type;
    }
}

TEST(ValueData, Texts_come_in_utf8) {
    EXPECT_EQ(TextsOf(1, Units(u"\u00e4\u20ac\U0001f600\uffff")),
              Texts{"\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80\xef\xbf\xbf"});
    EXPECT_EQ(TextsOf(1, Units({0xd83d, u'x'})), Texts{"\xef\xbf\xbdx"});
    EXPECT_EQ(TextsOf(1, Units({0xde00, 0xd83d})), Texts{"\xef\xbf\xbd\xef\xbf\xbd"});
}

TEST(ValueData, Numbers_have_their_own_sizes_and_orders) {
    EXPECT_EQ(NumberOf(4, {"\x78\x56\x34\x12", 4}), 0x12345678U);
    EXPECT_EQ(NumberOf(5, {"\x12\x34\x56\x78", 4}), 0x12345678U);
    EXPECT_EQ(NumberOf(11, {"\xff\0\0\0\0\0\0\x80", 8}), 0x80000000000000ffU);
    EXPECT_EQ(NumberOf(4, "123"), std::nullopt);
    EXPECT_EQ(NumberOf(11, "1234"), std::nullopt);
    EXPECT_EQ(NumberOf(3, "1234"), std::nullopt);
}

TEST(ValueData, Values_are_shown_by_their_types) {
    EXPECT_EQ(LinesOf({4, 4, std::string("\x2a\0\0\0", 4)}), Texts{"0x2a (42)"});
    EXPECT_EQ(LinesOf({7, 10, Units({u'a', 0, u'b', 0, 0})}), (Texts{"a", "b"}));
    EXPECT_EQ(LinesOf({1, 99, Units(u"ab")}), Texts{"ab..."}) << "cut";
    EXPECT_EQ(LinesOf({3, 2, "\x01\xff"}), Texts{"01 ff"});
    EXPECT_EQ(LinesOf({3, 0, ""}), Texts{});
    std::string const shown = LinesOf({3, 65, std::string(65, '\x10')}).front();
    EXPECT_EQ(shown.size(), 64 * 3 + 3U);
    EXPECT_EQ(shown.substr(shown.size() - 6), "10 ...");
    EXPECT_EQ(ValueTypeText(1), "REG_SZ");
    EXPECT_EQ(ValueTypeText(2), "REG_EXPAND_SZ");
    EXPECT_EQ(ValueTypeText(7), "REG_MULTI_SZ");
    EXPECT_EQ(ValueTypeText(11), "REG_QWORD");
    EXPECT_EQ(ValueTypeText(12), "type 12");
}

TEST(ValueWalks, A_value_needs_the_files_that_it_names_and_what_they_need) {
    TestGraph graph;
    CQVUObject *const lib = graph.Program("Z:\\lib");
    CQVUObject *const p = graph.Program("Z:\\p");
    CQVUObject *const text = graph.File("Z:\\text");
    graph.Found(p, lib);
    CQVUObject *const value = Value(graph, "HKLM\\A", "v", {p, text});
    EXPECT_EQ(Told(graph, FindValueDependencies(graph.Database(), *value, false)),
              (Texts{"Z:\\p -> Z:\\lib", "HKLM\\A\\v -> Z:\\p", "HKLM\\A\\v -> Z:\\text"}));
    EXPECT_EQ(Told(graph, FindValueDependencies(graph.Database(), *value, true)),
              (Texts{"HKLM\\A\\v -> Z:\\p", "HKLM\\A\\v -> Z:\\text"}));
}

TEST(ValueWalks, A_key_needs_what_the_values_below_it_name) {
    TestGraph graph;
    CQVUObject *const a = graph.File("Z:\\a");
    CQVUObject *const b = graph.File("Z:\\b");
    Value(graph, "HKLM\\A\\B", "v", {a, b});
    Value(graph, "HKLM\\A", "w", {b});
    Value(graph, "HKLM\\C", "x", {graph.File("Z:\\c")});
    auto const told = [&](std::string const &key) {
        return Told(graph, FindValueDependencies(graph.Database(), *Key(graph, key), false));
    };
    EXPECT_EQ(told("HKLM\\A"), (Texts{"HKLM\\A\\B\\v -> Z:\\a", "HKLM\\A\\B\\v -> Z:\\b"}));
    EXPECT_EQ(told("HKLM").size(), 3U);
    EXPECT_EQ(told("HKLM\\D"), Texts{});
}

TEST(ValueWalks, A_program_is_started_from_its_own_folder_whoever_names_it) {
    TestGraph graph;
    CQVUObject *const p = graph.Windows("Z:\\app\\p.exe");
    CQVUObject *const beside = graph.Windows("Z:\\app\\x.dll");
    graph.Asks(p, "x.dll");
    CQVUObject *const value = Value(graph, "HKLM\\A", "v", {p});
    Value(graph, "HKLM\\A", "x.dll");
    EXPECT_EQ(Told(graph, FindValueDependencies(graph.Database(), *value, false)),
              (Texts{"HKLM\\A\\v -> Z:\\app\\p.exe", "Z:\\app\\p.exe -> Z:\\app\\x.dll"}));
    EXPECT_EQ(Refs(graph, {beside}), (Texts{"HKLM\\A\\v", "Z:\\app\\p.exe"}));
}

TEST(ValueWalks, Values_are_among_the_referrers_of_a_file) {
    TestGraph graph;
    CQVUObject *const lib = graph.Program("Z:\\lib");
    CQVUObject *const link = graph.Symlink("Z:\\link", lib);
    CQVUObject *const p = graph.Program("Z:\\p");
    graph.Found(p, lib);
    Value(graph, "HKLM\\A", "lib", {lib});
    Value(graph, "HKLM\\A", "link", {link});
    Value(graph, "HKLM\\A", "p", {p});
    Value(graph, "HKLM\\A", "none");
    EXPECT_EQ(Refs(graph, {lib}), (Texts{"HKLM\\A\\lib", "HKLM\\A\\link", "HKLM\\A\\p", "Z:\\p"}));
    EXPECT_EQ(Refs(graph, {lib}, true), (Texts{"HKLM\\A\\lib", "HKLM\\A\\link", "Z:\\p"}));
    Referrer const first = FindReferrers(graph.Database(), {lib}, true).front();
    EXPECT_EQ(first.need.rule, Rule::value);
    EXPECT_EQ(first.need.linkType, LINK_REFERS);
    EXPECT_EQ(first.need.found, lib);
}

TEST(ValueWalks, A_value_is_told_once_though_it_names_several_files) {
    TestGraph graph;
    CQVUObject *const a = graph.File("Z:\\d\\a");
    CQVUObject *const b = graph.File("Z:\\d\\b");
    Value(graph, "HKLM\\A", "v", {a, b});
    EXPECT_EQ(Refs(graph, {a, b}), Texts{"HKLM\\A\\v"});
}

TEST(ValueWalks, The_tree_of_a_value_has_its_files_at_the_top) {
    TestGraph graph;
    CQVUObject *const lib = graph.Program("Z:\\lib");
    CQVUObject *const p = graph.Program("Z:\\p");
    graph.Found(p, lib);
    std::vector<TreeLine> const lines =
        ValueTree(graph.Database(), *Value(graph, "HKLM\\A", "v", {p}));
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].depth, 0U);
    EXPECT_EQ(lines[0].dependency.need.found, p);
    EXPECT_EQ(lines[1].depth, 1U);
    EXPECT_EQ(lines[1].dependency.need.found, lib);
}

TEST(ValueWalks, The_shortest_chain_leads_through_the_file_that_is_nearest) {
    TestGraph graph;
    CQVUObject *const goal = graph.Program("Z:\\goal");
    CQVUObject *const close = graph.Program("Z:\\close");
    CQVUObject *const distant = graph.Program("Z:\\distant");
    graph.Found(distant, close);
    graph.Found(close, goal);
    CQVUObject *const value = Value(graph, "HKLM\\A", "v", {distant, close});
    EXPECT_EQ(Told(graph, FindValueChain(graph.Database(), *value, *goal)),
              (Texts{"HKLM\\A\\v -> Z:\\close", "Z:\\close -> Z:\\goal"}));
    EXPECT_EQ(Told(graph, FindValueChain(graph.Database(), *value, *distant)),
              Texts{"HKLM\\A\\v -> Z:\\distant"});
    CQVUObject *const other = graph.Program("Z:\\other");
    EXPECT_EQ(Told(graph, FindValueChain(graph.Database(), *value, *other)), Texts{});
}

TEST(ValueJson, A_value_has_what_the_registry_stores) {
    TestGraph graph;
    Names const names(graph.Database(), true);
    auto const json = [&](std::uint32_t type, std::string const &data) {
        std::string block = BlockOf(type, data);
        CQVUObject *const object = graph.Database().AddObject(
            "v", OBJ_VALUE, 0, static_cast<unsigned long>(block.size()), block.data(), 1);
        return JsonOfWholeObject(names, *object)["value"].dump();
    };
    EXPECT_EQ(json(1, Units({u'a', 0})),
              R"({"type":1,"typeName":"REG_SZ","size":4,"texts":["a"],"data":"61000000"})");
    EXPECT_EQ(json(4, std::string("\x01\0\0\0", 4)),
              R"({"type":4,"typeName":"REG_DWORD","size":4,"number":1,"data":"01000000"})");
    EXPECT_EQ(json(77, "a"), R"({"type":77,"size":1,"data":"61"})");
    EXPECT_FALSE(JsonOfWholeObject(names, *Key(graph, "HKLM\\A")).contains("value"));
}

TEST(ProtectedKeys, Lines_of_a_list_of_keys_are_taken_as_they_stand) {
    ProtectedFiles const keys =
        ProtectedFiles::OfKeys("HKLM\\System\r\nHKLM\\System\\A b\r\n\r\nHKCU\\X\r\nHKCU\\last");
    ASSERT_NE(keys.LineOf("hklm\\SYSTEM\\"), nullptr);
    EXPECT_EQ(*keys.LineOf("hklm\\SYSTEM\\"), "HKLM\\System");
    EXPECT_NE(keys.LineOf("HKCU\\x"), nullptr);
    EXPECT_EQ(keys.LineOf("HKCU\\last"), nullptr) << "no line end";
    EXPECT_EQ(keys.LineOf(""), nullptr) << "the empty line names no key";
    EXPECT_EQ(keys.CountBelow("HKLM"), 2U);
    EXPECT_EQ(keys.CountBelow("HKLM\\System"), 1U);
}

TEST(ProtectedKeys, The_librarys_own_list_of_keys_is_read_from_its_file) {
    OwnList const list = ReadOwnList(lists::Kind::keys);
    ASSERT_NE(list.family, nullptr);
    EXPECT_EQ(list.problem, "");
    EXPECT_EQ(list.Id(), list.family->keys);
    ASSERT_NE(list.files.LineOf("HKLM\\SYSTEM"), nullptr);
    EXPECT_GE(list.files.CountBelow("HKLM\\System"), 1U);
}

TEST(ProtectedKeys, The_library_is_asked_about_keys_that_are_in_no_graph) {
    KeyQuestion ask(ReadOwnList(lists::Kind::keys).library);
    EXPECT_TRUE(ask(*ParseKeyPath("HKLM\\SYSTEM")));
    EXPECT_TRUE(ask(*ParseKeyPath("HKLM\\system")));
    EXPECT_TRUE(ask(*ParseKeyPath("HKEY_LOCAL_MACHINE\\SYSTEM")));
    EXPECT_FALSE(ask(*ParseKeyPath("HKLM\\SYSTEM\\no such key")));
    EXPECT_FALSE(ask(*ParseKeyPath("HKEY_USERS\\.Default")));
    EXPECT_FALSE(ask(*ParseKeyPath("HKCR\\CLSID")));
    EXPECT_TRUE(ask(*ParseKeyPath("HKLM\\SYSTEM"))) << "again";
}

TEST(ProtectedKeys, A_question_leaves_the_next_database_alone) {
    { KeyQuestion(ReadOwnList().library)(*ParseKeyPath("HKLM\\SYSTEM")); }
    TestGraph graph;
    EXPECT_EQ(graph.Database().GetObjectByPath("HKLM"), nullptr);
}

TEST(ProtectedKeys, An_objects_own_way_to_ask_is_taken_once_for_each_path) {
    Protection protection;
    int asked = 0;
    auto const ask = [&] { return ++asked == 1; };
    EXPECT_EQ(protection.Of("HKLM\\A", ask), true);
    EXPECT_EQ(protection.Of("hklm\\a\\", ask), true);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(protection.Of("HKLM\\" + std::string(255, 'x'), ask), std::nullopt);
    EXPECT_EQ(asked, 1);
}
