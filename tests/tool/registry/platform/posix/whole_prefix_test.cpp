// A prefix as Wine itself makes it, brought in whole and compared with what another reading of
// its files says.
#include "registration_text.h"

#include "platform/process.h"
#include "platform/registry.h"
#include "registry/import.h"
#include "temp_folder.h"

#include <algorithm>
#include <chrono>
#include <codecvt>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <locale>
#include <map>
#include <regex>
#include <set>
#include <thread>

namespace {

struct PrefixFile {
    char const *name;
    char const *root;
};
constexpr PrefixFile prefixFiles[] = {
    {"system.reg", "HKLM"}, {"user.reg", "HKCU"}, {"userdef.reg", "HKU\\.Default"}};

// By key and name in lower case: type and data in hexadecimal.
using Values = std::map<std::string, std::string>;
struct Content {
    std::set<std::string> keys;
    Values values;
    std::vector<std::string> links;
};

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return text;
}

// The units of a text with the escapes that such a prefix has: \\, \", \0, \n and \xNNNN.
std::string UnitsOf(std::string const &text) {
    static const std::regex escape(R"(^\\(x([0-9a-f]{1,4})|0{1,3}|.))");
    std::string units;
    auto const put = [&](unsigned long unit) {
        units += static_cast<char>(unit & 255);
        units += static_cast<char>(unit >> 8);
    };
    for (std::size_t i = 0; i < text.size();) {
        std::smatch match;
        std::string const rest = text.substr(i, 6);
        if (!std::regex_search(rest, match, escape)) {
            put(static_cast<unsigned char>(text[i++]));
            continue;
        }
        i += match.length(0);
        std::string const what = match[1];
        put(what[0] == 'x'   ? std::stoul(match[2], nullptr, 16)
            : what[0] == '0' ? 0
            : what == "n"    ? 10
            : what == "r"    ? 13
            : what == "t"    ? 9
                             : static_cast<unsigned char>(what[0]));
    }
    return units;
}

std::string NameOf(std::string const &text) {
    std::string const bytes = UnitsOf(text);
    std::u16string units;
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        units += static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                       static_cast<unsigned char>(bytes[i + 1]) << 8);
    }
    std::wstring_convert<std::codecvt_utf8_utf16<char16_t>, char16_t> converter;
    return converter.to_bytes(units);
}

std::string DataOf(std::string const &text) {
    static const std::regex string(R"re(^(?:str\(([0-9a-f]+)\):)?"(.*)"$)re");
    static const std::regex bytes(R"(^hex(?:\(([0-9a-f]+)\))?:(.*)$)");
    std::smatch match;
    if (std::regex_match(text, match, string)) {
        std::string const type = match[1].matched ? match[1].str() : "1";
        return type + ':' + Hex(UnitsOf(match[2])) + "0000";
    }
    if (std::regex_match(text, match, bytes)) {
        std::string hex = match[2];
        hex.erase(std::remove(hex.begin(), hex.end(), ','), hex.end());
        return (match[1].matched ? match[1].str() : "3") + ':' + hex;
    }
    std::string const n = text.substr(text.size() - 8); // of a dword
    return "4:" + n.substr(6, 2) + n.substr(4, 2) + n.substr(2, 2) + n.substr(0, 2);
}

void ReadLines(std::string const &file, std::string const &root, Content &content) {
    static const std::regex keyLine(R"(^\[(.*)\] [0-9]+$)");
    static const std::regex valueLine(R"re(^(@|"((?:[^"\\]|\\.)*)")=(.*)$)re");
    std::ifstream stream(file);
    std::string line, key;
    for (std::smatch match; std::getline(stream, line);) {
        for (std::string more; line.size() > 1 && line.substr(line.size() - 2) == ",\\";) {
            std::getline(stream, more);
            line = line.substr(0, line.size() - 1) + more.substr(2);
        }
        if (std::regex_match(line, match, keyLine)) {
            key = Lower(root + '\\' + NameOf(match[1]));
            for (std::size_t end = key.size(); end != std::string::npos;
                 end = key.rfind('\\', end - 1)) {
                content.keys.insert(key.substr(0, end));
            }
        } else if (line == "#link") {
            content.links.push_back(key);
        } else if (std::regex_match(line, match, valueLine) &&
                   line.find("\"SymbolicLinkValue\"") != 0) {
            content.values[key + ": " + Lower(NameOf(match[2]))] = DataOf(match[3]);
        }
    }
}

void Walk(qvlink::Registry &registry, std::string const &key, Content &content) {
    content.keys.insert(Lower(key));
    std::vector<qvlink::RegistryValue> values;
    ASSERT_EQ(0u, registry.ReadValues(key, values)) << key;
    for (qvlink::RegistryValue const &value : values) {
        std::ostringstream type;
        type << std::hex << value.type;
        content.values[Lower(key) + ": " + Lower(value.name)] = type.str() + ':' + Hex(value.data);
    }
    std::vector<std::string> names;
    ASSERT_EQ(0u, registry.ReadKeys(key, names)) << key;
    for (std::string const &name : names) {
        Walk(registry, std::string(key).append("\\").append(name), content);
    }
}

bool IsBelowLink(std::string const &key, Content const &content) {
    return std::any_of(content.links.begin(), content.links.end(), [&](std::string const &link) {
        return key.compare(0, link.size(), link) == 0 &&
               (key.size() == link.size() || key[link.size()] == '\\' || key[link.size()] == ':');
    });
}

// Of what is below links only the keys that the files have themselves count.
void RemoveCopies(Content &content, Content const &files) {
    for (auto key = content.keys.begin(); key != content.keys.end();) {
        key = IsBelowLink(*key, files) ? content.keys.erase(key) : std::next(key);
    }
    for (auto value = content.values.begin(); value != content.values.end();) {
        value = IsBelowLink(value->first, files) ? content.values.erase(value) : std::next(value);
    }
}

template <typename Set> Set Without(Set const &all, Set const &known) {
    Set rest;
    std::set_difference(all.begin(), all.end(), known.begin(), known.end(),
                        std::inserter(rest, rest.end()));
    return rest;
}

// Wine's server writes its files when it ends, or every half minute.
bool IsWritten(std::filesystem::path const &prefix) {
    for (int tenths = 0; tenths < 1200; ++tenths) {
        if (std::all_of(std::begin(prefixFiles), std::end(prefixFiles), [&](auto const &file) {
                return std::filesystem::exists(prefix / file.name);
            }))
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return false;
}

} // namespace

TEST(WholePrefix, All_that_Wine_keeps_is_brought_in) {
    // Makes the prefix if need be, and fails where there is no Wine.
    if (RunProgram(WINE_SCRIPT, {"cmd", "/c", "exit"}) != 0) {
        GTEST_SKIP() << "there is no Wine to make a prefix";
    }
    const char *const named = std::getenv("WINEPREFIX");
    std::filesystem::path const prefix = named && *named ? named : WINE_PREFIX;
    ASSERT_TRUE(IsWritten(prefix)) << prefix;
    TempFolder folder;
    TellRegistryDirectory((folder.Path() / "registry").string());
    auto const registry = qvlink::OpenRegistry();
    Content files, found;
    std::size_t count = 0;
    for (auto const &[name, root] : prefixFiles) {
        // Wine may write it meanwhile.
        std::filesystem::copy_file(prefix / name, folder.Path() / name);
        ReadLines((folder.Path() / name).string(), root, files);
        Bytes const bytes = ReadBytes(folder.Path() / name);
        TestPage const page;
        auto const told = qvlink::ImportRegistration(
            *registry, std::string(bytes.begin(), bytes.end()), page, "");
        EXPECT_EQ("", told.failure);
        EXPECT_TRUE(told.faults.empty()) << name << ' ' << told.faults[0].message;
        EXPECT_EQ(root, told.root);
        count += told.values;
    }
    EXPECT_GT(files.keys.size(), 1000u);
    EXPECT_EQ(files.values.size(), count);
    Walk(*registry, "HKLM", found);
    Walk(*registry, "HKCU", found);
    Walk(*registry, "HKU\\.Default", found);
    found.keys.insert("hku");
    RemoveCopies(found, files);
    RemoveCopies(files, files);
    EXPECT_EQ(std::set<std::string>{}, Without(files.keys, found.keys));
    EXPECT_EQ(std::set<std::string>{}, Without(found.keys, files.keys));
    EXPECT_EQ(Values{}, Without(files.values, found.values));
    EXPECT_EQ(Values{}, Without(found.values, files.values));
}
