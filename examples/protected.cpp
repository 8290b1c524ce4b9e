// protected PATH...: tells which files belong to the operating system. Paths are Windows' own,
// such as C:\windows\system32\kernel32.dll, also on other systems.
#include <QVLinkDB.h>

#include <cstdio>
#include <cstring>

int main(int count, char **arguments) {
    int found = 0;
    for (int i = 1; i < count; ++i) {
        const char *const path = arguments[i];
        if (std::strlen(path) >= 260) { // such a path would end this program
            std::fprintf(stderr, "too long: %s\n", path);
            continue;
        }
        // Asked once: a folder that leads to protected files answers 1 from the second time on.
        bool const isProtected = IsProtectedPath(path) == 1;
        std::printf("%s\t%s\n", isProtected ? "protected" : "not protected", path);
        found += isProtected ? 1 : 0;
    }
    return found > 0 ? 0 : 1;
}
