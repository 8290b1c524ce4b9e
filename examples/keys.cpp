// keys KEY...: prints registry keys with their values, and the keys below them. A KEY begins with
// a root's name: HKCU\Software.
#include <QVLinkDB.h>

#include <cstdio>
#include <exception>

namespace {

constexpr unsigned long withRoot = 2;

void Print(char const *path) {
    UTILS::UtilsRegistry key(path, 0, 0); // throws if there is no such key
    UTILS::UtilsString name;
    UTILS::UtilsString text;
    std::printf("%s\n", key.GetRegistryPath(1).c_str());
    for (unsigned long i = 0; key.EnumValue(i, name, text, 0); ++i)
        std::printf("  %s = %s\n", name.size() != 0 ? name.c_str() : "(default)", text.c_str());
    for (unsigned long i = 0; key.EnumKey(i, name, withRoot); ++i)
        std::printf("  %s\n", name.c_str());
}

} // namespace

int main(int count, char **arguments) {
    int failures = 0;
    for (int i = 1; i < count; ++i) {
        try {
            Print(arguments[i]);
        } catch (std::exception const &failure) {
            std::fprintf(stderr, "%s\n", failure.what());
            ++failures;
        }
    }
    return failures == 0 ? 0 : 1;
}
