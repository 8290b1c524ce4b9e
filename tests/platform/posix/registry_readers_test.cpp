// Hive files through the registry's calls, beside what another reader tells of the whole file.
#include "../registry_keys.h"
#include "hive_maker.h"

#include "platform/code_page.h"
#include "settings_keeper.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

namespace {

// A file's keys by their paths, each with its values' types and data.
struct Stored {
    int type;
    std::string data;

    bool operator==(Stored const &other) const { return type == other.type && data == other.data; }
};
using Values = std::map<std::string, Stored>;
using Tree = std::map<std::string, Values>;

class Prefix {
public:
    explicit Prefix(std::string const &hive) {
        WriteBytes(m_folder.Path() / "platform.ini", BytesOf("hive.HKLM\\MOUNTED=" + hive + "\n"));
        const char *const before = std::getenv("QVPREFIX");
        m_before = before ? before : "";
        setenv("QVPREFIX", m_folder.Directory().c_str(), 1);
        TellRegistryDirectory(m_folder.Directory() + "/registry");
    }
    ~Prefix() {
        if (m_before.empty())
            unsetenv("QVPREFIX");
        else
            setenv("QVPREFIX", m_before.c_str(), 1);
    }
    Prefix(Prefix const &) = delete;
    Prefix &operator=(Prefix const &) = delete;

private:
    SettingsKeeper m_keeper;
    TempFolder m_folder;
    std::string m_before;
};

void ReadByCalls(HKEY key, std::string const &path, Tree &tree) {
    Values &values = tree[path];
    for (std::string const &name : ValueNames(key)) {
        Answer const answer = Query(key, name.c_str());
        EXPECT_EQ(0, answer.status) << path << ' ' << name;
        values[name] = {static_cast<int>(answer.type), answer.data};
    }
    for (std::string const &name : Subkeys(key)) {
        ScopedKey below;
        EXPECT_EQ(0, OpenKey(key, name, below)) << path << ' ' << name;
        ReadByCalls(below, std::string(path).append("\\").append(name), tree);
    }
}

std::string Text(std::string line, std::string const &attribute) {
    std::size_t const start = line.find(' ' + attribute + "=\"");
    if (start == std::string::npos)
        return {};
    line.erase(0, start + attribute.size() + 3);
    line.resize(line.find('"'));
    return line;
}

// What hivexml tells, of the elements <node> and <value> alone. Data are left out, but for
// texts and numbers.
Tree ReadByXml(std::string const &file) {
    std::string xml;
    std::array<char, 4096> buffer;
    FILE *const pipe = popen(("hivexml '" + file + "'").c_str(), "r");
    while (std::size_t const got = std::fread(buffer.data(), 1, buffer.size(), pipe))
        xml.append(buffer.data(), got);
    EXPECT_EQ(0, pclose(pipe)) << "is hivexml installed?";
    Tree tree;
    std::vector<std::string> path;
    for (std::size_t at = xml.find('<'); at != std::string::npos; at = xml.find('<', at + 1)) {
        std::string const element = xml.substr(at, xml.find('>', at) - at);
        if (element.compare(0, 6, "<node ") == 0) {
            path.push_back(path.empty() ? "" : path.back() + '\\' + Text(element, "name"));
            tree[path.back()];
        } else if (element == "</node") {
            path.pop_back();
        } else if (element.compare(0, 7, "<value ") == 0) {
            std::map<std::string, int> const types{
                {"string", 1}, {"expand", 2}, {"binary", 3}, {"int32", 4}, {"string-list", 7}};
            auto const type = types.find(Text(element, "type"));
            int const number = type == types.end() ? 0 : type->second;
            tree[path.back()][Text(element, "key")] = {number, Text(element, "value")};
        }
    }
    return tree;
}

// The same keys and values, of the same types, and the same texts.
void ExpectSame(std::string const &file) {
    Prefix const prefix(file);
    ScopedKey top;
    ASSERT_EQ(0, OpenKey(HKEY_LOCAL_MACHINE, "MOUNTED", top));
    Tree ours;
    ReadByCalls(top, "", ours);
    Tree const others = ReadByXml(file);
    ASSERT_EQ(others.size(), ours.size());
    for (auto const &[path, values] : others) {
        ASSERT_EQ(1u, ours.count(path)) << path;
        Values const &found = ours[path];
        EXPECT_EQ(values.size(), found.size()) << path;
        for (auto const &[name, value] : values) {
            auto const place = found.find(name);
            ASSERT_NE(found.end(), place) << path << ' ' << name;
            EXPECT_EQ(value.type, place->second.type) << path << ' ' << name;
            if (value.type == 1) {
                EXPECT_STREQ(value.data.c_str(), place->second.data.c_str()) << path << ' ' << name;
            }
        }
    }
}

} // namespace

TEST(RegistryHives, that_another_program_wrote_are_read_as_another_reader_reads_them) {
    ExpectSame(REGISTRY_HIVES "/registry_tools.hive");
}

TEST(RegistryHives, of_many_keys_are_read_as_another_reader_reads_them) {
    TempFolder const folder;
    std::string const file = (folder.Path() / "many").string();
    {
        HiveMaker maker(file);
        for (int i = 0; i < 300; ++i) {
            std::string const name = std::to_string(i * 7919 % 1000);
            std::string const path = "k" + std::to_string(i % 9) + "\\\xc3\xa4" + name;
            maker.Values(path, {{"text", 1, Utf16(std::u16string(name.begin(), name.end()))},
                                {"number", 4, std::string("\1\2\3\4", 4)},
                                {"bytes", 3, name},
                                {"texts", 7, Utf16(u"a") + Utf16(u"")},
                                {"open", 2, Utf16(u"%x%")}});
        }
    }
    ExpectSame(file);
}

TEST(RegistryHives, have_their_texts_in_the_settings_code_page) {
    TempFolder const folder;
    std::string const file = (folder.Path() / "texts").string();
    {
        HiveMaker maker(file);
        maker.Values("\xc3\xa4", {{"\xe2\x82\xac", 1, Utf16(u"\u20ac \u00e4")}});
    }
    Prefix const prefix(file);
    CodePageNow const now(1252);
    ScopedKey key;
    ASSERT_EQ(0, OpenKey(HKEY_LOCAL_MACHINE, "mounted\\\xc4", key));
    EXPECT_EQ((Answer{0, REG_SZ, std::string("\x80 \xe4\0", 4)}), Query(key, "\x80"));
    EXPECT_EQ(std::vector<std::string>{"\x80"}, ValueNames(key));
}

TEST(RegistryHives, are_opened_with_the_usual_rights_and_written_with_5) {
    Prefix const prefix(REGISTRY_HIVES "/registry_tools.hive");
    ScopedKey key, other;
    ASSERT_EQ(0, OpenKey(HKEY_LOCAL_MACHINE, "MOUNTED", key));
    DWORD disposition = 0;
    EXPECT_EQ(0, MakeKey(key, "Software", other, &disposition));
    EXPECT_EQ(2u, disposition);
    EXPECT_EQ(5, MakeKey(key, "new"));
    EXPECT_EQ(5, SetBytes(key, "text", REG_SZ, "x"));
    EXPECT_EQ(5, win::RegDeleteValueA(key, "text"));
    EXPECT_EQ(5, win::RegDeleteKeyA(key, "Deep"));
    EXPECT_EQ((Answer{0, REG_SZ, std::string("hello\0", 6)}), Query(key, "TEXT"));
}
