// Any bytes as a list in the library. The first byte says how the rest is taken: bit 0 packs it
// as a text first, bit 1 takes it for keys, and bit 2 reads texts in a page of double bytes. What
// is loaded is compared with what the list's own reader makes of it.
#include "protect_load.h"
#include "stored_list.h"

#include "list_resource.h"
#include "platform/code_page.h"
#include "platform/testing.h"
#include "platform/winapi.h"

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <vector>

namespace {

constexpr WORD listId = 101;
constexpr unsigned oneBytePage = 1252, doubleBytePage = 932;

using Lines = std::vector<std::string>;

// It stays loaded, which spares each input the work.
void KeepDecompressor() {
    static HMODULE const module = win::LoadLibraryA("ziplib.dll");
    if (!module)
        std::abort();
}

void Check(bool holds) {
    if (!holds)
        std::abort();
}

Lines &LinesSeen() {
    static Lines lines;
    return lines;
}

void SeeLine(char *line, unsigned long length) {
    Check(std::strlen(line) == length);
    LinesSeen().emplace_back(line, length);
    std::memset(line, '#', length);
}

bool IsSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// Lines where each byte is a character.
Lines LinesOf(std::string text) {
    Lines lines;
    text = text.substr(0, text.find('\0'));
    std::size_t start = 0;
    for (std::size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
        std::size_t last = end, first = start;
        while (last > start && IsSpace(text[last - 1]))
            --last;
        while (first < last && IsSpace(text[first]))
            ++first;
        lines.push_back(text.substr(first, last - first));
    }
    return lines;
}

// Nothing if the bytes aren't a list by its own reader, which is more particular.
std::optional<std::string> TextOf(std::string const &stored) {
    try {
        return lists::Unpack(stored);
    } catch (lists::ListError const &) {
        return std::nullopt;
    }
}

// Each list twice: the second time there is nothing new.
void LoadIntoTree(ProtectNode &tree, const char *type, LineCallback callback) {
    LoadListResource(listId, type, callback);
    for (int round = 0; round < 2; ++round)
        for (auto const &[name, child] : tree.children)
            Check(ProtectFind(tree, name.Text(), nullptr) || round == 0);
    LoadListResource(listId, type, callback);
    ProtectClear(tree);
    tree.marked = 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size == 0)
        return 0;
    KeepDecompressor();
    bool const isText = data[0] & 1, isKeys = data[0] & 2, hasPairs = data[0] & 4;
    std::string stored(reinterpret_cast<const char *>(data + 1), size - 1);
    if (isText)
        stored = lists::Pack(stored);
    const char *const type = isKeys ? "WIN_REGS" : "WIN_FILES";
    std::vector<char> const exact(stored.begin(), stored.end());
    testing_hooks::Resource const told{type, listId, exact.data(),
                                       static_cast<DWORD>(exact.size())};
    testing_hooks::SetResources(&told, 1);
    CodePageNow const now(hasPairs ? doubleBytePage : oneBytePage);
    LinesSeen().clear();
    LoadListResource(listId, type, SeeLine);
    if (std::optional<std::string> const text = TextOf(stored); text && !hasPairs && now.Set())
        Check(LinesSeen() == LinesOf(*text));
    CaptureSystemDirs();
    LoadIntoTree(isKeys ? ProtectedRegTree : ProtectedFileTree, type,
                 isKeys ? LoadRegListCallback : LoadFileListCallback);
    testing_hooks::SetResources(nullptr, 0);
    return 0;
}
