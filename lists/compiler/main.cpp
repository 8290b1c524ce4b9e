// Packs a list for the build. A text that breaks the form of lists is refused.
// Usage: list_compiler TEXT STORED [WIN_FILES|WIN_REGS]
#include "list_text.h"
#include "stored_list.h"

#include <fstream>
#include <iostream>
#include <iterator>

namespace {

// The library of a family has a list that ends so, and its users know its answers.
constexpr std::string_view endsOpen = "105.txt";

bool IsKnown(std::string_view textName, lists::Finding const &finding) {
    return finding.message == lists::noLineEnd && textName.size() >= endsOpen.size() &&
           textName.substr(textName.size() - endsOpen.size()) == endsOpen;
}

lists::Kind KindOf(std::string_view type, std::string_view text) {
    if (type.empty())
        return lists::KindOf(text).value_or(lists::Kind::files);
    return type == "WIN_FILES" ? lists::Kind::files : lists::Kind::keys;
}

void Check(const char *textName, std::string_view text, lists::Kind kind) {
    std::size_t errors = 0;
    for (lists::Finding const &finding : lists::Check(text, kind)) {
        errors += finding.isError ? 1 : 0;
        if (!IsKnown(textName, finding))
            std::cerr << textName << ':' << finding.line
                      << (finding.isError ? ": error: " : ": warning: ") << finding.message << '\n';
    }
    if (errors > 0)
        throw lists::ListError(std::to_string(errors) + (errors == 1 ? " error" : " errors"));
}

void Compile(const char *textName, const char *storedName, std::string_view type) {
    std::ifstream input(textName, std::ios::binary);
    std::string const text((std::istreambuf_iterator<char>(input)), {});
    if (!input)
        throw lists::ListError("it can't be read");
    Check(textName, text, KindOf(type, text));
    std::string const stored = lists::Pack(text);
    std::ofstream output(storedName, std::ios::binary);
    output.write(stored.data(), static_cast<std::streamsize>(stored.size())).flush();
    if (!output)
        throw lists::ListError(std::string("can't write ") + storedName);
}

} // namespace

int main(int count, char **arguments) {
    std::string_view const type = count == 4 ? arguments[3] : "";
    if (count != 3 && type != "WIN_FILES" && type != "WIN_REGS") {
        std::cerr << "Usage: list_compiler TEXT STORED [WIN_FILES|WIN_REGS]\n";
        return 2;
    }
    try {
        Compile(arguments[1], arguments[2], type);
        return 0;
    } catch (std::exception const &error) {
        std::cerr << arguments[1] << ": " << error.what() << '\n';
        return 1;
    }
}
