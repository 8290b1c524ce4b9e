#include "model.h"
#include "output/text.h"
#include "output/time.h"
#include "output/value_text.h"

namespace qvlink {
namespace {

std::uint64_t Wide(std::uint32_t high, std::uint32_t low) {
    return (std::uint64_t{high} << 32) | low;
}

std::string AttributesText(std::uint32_t attributes) {
    std::string text;
    auto const add = [&](std::uint32_t bit, const char *word) {
        if (attributes & bit) {
            text += text.empty() ? word : std::string(", ") + word;
        }
    };
    add(ATTRIBUTE_READONLY, "read-only");
    add(ATTRIBUTE_DIRECTORY, "folder");
    add(ATTRIBUTE_DEVICE, "device");
    add(ATTRIBUTE_REPARSE_POINT, "symbolic link");
    add(ATTRIBUTE_NORMAL, "normal");
    return text;
}

std::string ProgramText(std::uint32_t flags) {
    std::string text = flags & FLAG_ELF ? "ELF" : "PE";
    text += flags & FLAG_64BIT ? ", 64 bits" : ", 32 bits";
    text += flags & FLAG_BIG_ENDIAN ? ", big-endian" : "";
    text += flags & FLAG_LIBRARY ? ", library" : ", program";
    text += ", machine " + std::to_string((flags & FLAG_MACHINE_MASK) >> FLAG_MACHINE_SHIFT);
    text += flags & FLAG_NODEFLIB ? ", no default folders" : "";
    text += flags & FLAG_MALFORMED ? ", malformed" : "";
    text += flags & FLAG_UNREADABLE ? ", unreadable" : "";
    return text;
}

void PrintFields(Screen &screen, Names const &names, CQVUObject &object) {
    Table table(screen);
    auto const field = [&](const char *name, std::string const &value) {
        table.Row({{name, Colour::dim}, {value}});
    };
    field("name", std::string(NameOf(object)));
    if (std::optional<std::string> const path = names.PathOf(object)) {
        field("path", *path);
    }
    field("id", std::to_string(object.dwID));
    field("type", KindWord(object));
    field("kept", object.IsPersistent() ? "persistent" : "transient");
    field("flags", std::to_string(object.dwFlags));
    std::optional<FileData> const data = FileDataOf(object);
    if (TypeOf(object) == OBJ_FILE && data) {
        std::uint64_t const size = Wide(data->dwSizeHigh, data->dwSizeLow);
        field("size", ReadableCount(size) + " bytes (" + ReadableSize(size) + ")");
        field("modified", TimeText(Wide(data->dwTimeHigh, data->dwTimeLow)));
        field("attributes", AttributesText(data->dwAttributes));
    } else if (std::optional<ValueData> const value = ValueDataOf(object)) {
        field("data", ValueTypeText(value->type) + ", " + ReadableSize(value->size));
        for (std::string const &line : LinesOf(*value)) {
            field("", line);
        }
    } else if (object.dwDataSize) {
        field("data", ReadableSize(object.dwDataSize));
    }
    if (TypeOf(object) == OBJ_FILE && (object.dwFlags & (FLAG_PROGRAM_MASK | FLAG_UNREADABLE))) {
        field("program",
              object.dwFlags & FLAG_PROGRAM_MASK ? ProgramText(object.dwFlags) : "unreadable");
    }
    table.Print();
}

void PrintLinks(Screen &screen, Names const &names, const char *title,
                std::vector<Edge> const &edges) {
    screen.Line(screen.Painted(title + (" (" + ReadableCount(edges.size()) + ")"), Colour::strong));
    Table table(screen);
    for (Edge const &edge : edges) {
        table.Row({{LinkWord(TypeOf(*edge.link)), Colour::dim}, {names.Of(*edge.other)}});
    }
    table.Print(2);
}

} // namespace

void PrintObjects(Screen &screen, Names const &names, std::vector<CQVUObject *> const &objects,
                  bool verbose) {
    Table table(screen);
    for (CQVUObject *const object : objects) {
        std::vector<Table::Cell> row{{names.Of(*object)}};
        if (verbose) {
            std::optional<FileData> const data = FileDataOf(*object);
            bool const isFile = KindOf(object) == FileKind::file && data;
            row.push_back({KindWord(*object), Colour::dim});
            row.push_back({isFile ? std::to_string(Wide(data->dwSizeHigh, data->dwSizeLow)) : "-",
                           Colour::dim, true});
        }
        table.Row(std::move(row));
    }
    table.Print();
}

void PrintObject(Screen &screen, Names const &names, CQVUObject &object) {
    PrintFields(screen, names, object);
    PrintLinks(screen, names, "links out", LinksFrom(names.Database(), object, AnyLink));
    PrintLinks(screen, names, "links in", LinksTo(names.Database(), object, AnyLink));
}

} // namespace qvlink
