// Packs a list for the build.
// Usage: list_compiler TEXT STORED
#include "stored_list.h"

#include <fstream>
#include <iostream>
#include <iterator>

namespace {

void Compile(const char *textName, const char *storedName) {
    std::ifstream input(textName, std::ios::binary);
    std::string const text((std::istreambuf_iterator<char>(input)), {});
    if (!input)
        throw lists::ListError("it can't be read");
    std::string const stored = lists::Pack(text);
    std::ofstream output(storedName, std::ios::binary);
    output.write(stored.data(), static_cast<std::streamsize>(stored.size())).flush();
    if (!output)
        throw lists::ListError(std::string("can't write ") + storedName);
}

} // namespace

int main(int count, char **arguments) {
    if (count != 3) {
        std::cerr << "Usage: list_compiler TEXT STORED\n";
        return 2;
    }
    try {
        Compile(arguments[1], arguments[2]);
        return 0;
    } catch (std::exception const &error) {
        std::cerr << arguments[1] << ": " << error.what() << '\n';
        return 1;
    }
}
