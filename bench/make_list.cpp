// Writes a list of registry keys as large as the largest: 33,086 lines, 2,528,435 bytes, and
// about as repetitive. The same on every machine.
// Usage: qvlinkdb_make_list FILE
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "Random.h"

namespace {

constexpr std::size_t lineCount = 33086;
constexpr std::size_t byteCount = 2528435;

// Sorted as lists are: a key in front of those below it.
using Keys = std::set<std::string>;

std::string Hexadecimal(std::uint32_t number, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "%0*X", digits, number);
    return text;
}

std::string ClassId(std::uint32_t number, bench::Random &random) {
    std::string id = "{" + Hexadecimal(0x10000u + number, 8);
    for (char const *const before : {"-", "-", "-8E5D-00C0", ""}) {
        id += before;
        id += Hexadecimal(random.Below(0x10000), 4);
    }
    return id + "}";
}

void AddClasses(Keys &keys, bench::Random &random) {
    std::string const classes = "HKLM\\SOFTWARE\\Classes";
    std::vector<std::string> const below{"\\InprocServer32", "\\ProgID", "\\TypeLib", "\\Version",
                                         "\\VersionIndependentProgID"};
    keys.insert({"HKLM\\SOFTWARE", classes, classes + "\\CLSID", classes + "\\Interface"});
    for (std::uint32_t i = 0; keys.size() < lineCount * 2 / 5; ++i) {
        std::string const key = classes + (i % 3 ? "\\Interface\\" : "\\CLSID\\") +
                                ClassId(i * 16 + random.Below(16), random);
        keys.insert(key);
        for (std::string const &name : below)
            if (random.Below(3) > 0)
                keys.insert(key + name);
    }
}

void AddServices(Keys &keys, bench::Random &random) {
    std::string const control = "HKLM\\SYSTEM\\CurrentControlSet";
    std::string const services = control + "\\Services";
    keys.insert({"HKLM\\SYSTEM", control, services});
    for (std::uint32_t i = 0; keys.size() < lineCount - 2; ++i) {
        std::string path =
            services + "\\Service" + std::to_string(random.Below(1000000000)) + std::to_string(i);
        keys.insert(path);
        for (std::uint32_t depth = random.Below(4); depth > 0 && keys.size() < lineCount - 2;
             --depth)
            keys.insert(path += depth % 2 ? "\\Parameters" : "\\Linkage");
    }
}

std::size_t BytesOf(Keys const &keys) {
    std::size_t bytes = 0;
    for (std::string const &key : keys)
        bytes += key.size() + 2;
    return bytes;
}

// With the empty line and one key in the second block.
std::string TextOf(Keys const &keys) {
    std::string text;
    for (std::string const &key : keys)
        text += key + "\r\n";
    std::string const last = "HKCU\\";
    std::size_t const rest = byteCount - text.size() - 2 - last.size() - 2;
    return text + "\r\n" + last + std::string(rest, 'x') + "\r\n";
}

// Services become longer until the size is right but for the last line.
void Lengthen(Keys &keys) {
    constexpr std::size_t lastLine = 64;
    std::size_t missing = byteCount - lastLine - BytesOf(keys);
    std::vector<std::string> const all(keys.begin(), keys.end());
    for (std::size_t i = 0; i < all.size() && missing > 0; ++i) {
        std::string const &key = all[i];
        // What is below another key would come before it with a longer name.
        bool const isLeaf = i + 1 == all.size() || all[i + 1].compare(0, key.size(), key) != 0;
        std::size_t const more = std::min<std::size_t>(missing, 40);
        if (!isLeaf || key.find("\\Services\\") == std::string::npos)
            continue;
        keys.erase(key);
        keys.insert(key + std::string(more, 's'));
        missing -= more;
    }
}

} // namespace

int main(int count, char **arguments) {
    if (count != 2)
        return 2;
    bench::Random random(1);
    Keys keys;
    AddClasses(keys, random);
    AddServices(keys, random);
    Lengthen(keys);
    std::string const text = TextOf(keys);
    std::ofstream file(arguments[1], std::ios::binary);
    file << text << std::flush;
    std::printf("%zu lines, %zu bytes\n", keys.size() + 2, text.size());
    return file && keys.size() + 2 == lineCount && text.size() == byteCount ? 0 : 1;
}
