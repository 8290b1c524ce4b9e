#include "output/export.h"

#include "model.h"
#include "output/json.h"
#include "output/time.h"
#include "output/utf8.h"
#include "platform/host.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <ostream>

namespace qvlink {
namespace {

std::vector<CQVUObject *> AllObjects(CQVUDatabase &database) {
    std::vector<CQVUObject *> objects = FindObjects(database, "*", AnyObject);
    if (CQVUObject *const root = database.GetRootObject()) {
        objects.insert(objects.begin(), root);
    }
    return objects;
}

template <class Object, class Link>
void ForEach(CQVUDatabase &database, Object const &onObject, Link const &onLink) {
    std::vector<CQVUObject *> const objects = AllObjects(database);
    for (CQVUObject *const object : objects) {
        onObject(*object);
    }
    for (CQVUObject *const object : objects) {
        for (Edge const &edge : LinksFrom(database, *object, AnyLink)) {
            onLink(*edge.link);
        }
    }
}

// A text for formats that must be UTF-8.
std::string Utf8(std::string_view text) { return ReplaceNonUtf8(ToUtf8(text)); }

std::string DotText(std::string const &text) {
    std::string quoted = "\"";
    for (char const c : text) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
        }
        quoted += c == '\n' || c == '\r' ? std::string("\\n") : std::string(1, c);
    }
    return quoted + '"';
}

// One character for XML; U+FFFD for those that it has no place for.
std::string XmlCharacter(std::string_view character) {
    if (character == "&") {
        return "&amp;";
    }
    if (character == "<") {
        return "&lt;";
    }
    if (character == ">") {
        return "&gt;";
    }
    if (character == "\t" || character == "\n" || character == "\r") {
        return "&#" + std::to_string(static_cast<int>(character[0])) + ";";
    }
    bool const isForbidden = static_cast<unsigned char>(character[0]) < 0x20 ||
                             character == "\xef\xbf\xbe" || character == "\xef\xbf\xbf";
    return std::string(isForbidden ? "\xef\xbf\xbd" : character);
}

std::string XmlText(std::string_view utf8) {
    std::string escaped;
    for (std::size_t size = 0; !utf8.empty(); utf8.remove_prefix(size)) {
        size = Utf8Length(utf8);
        escaped += XmlCharacter(utf8.substr(0, size));
    }
    return escaped;
}

std::string CsvText(std::string const &text) {
    std::string quoted = "\"";
    for (char const c : text) {
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    }
    return quoted + '"';
}

struct FileFields {
    std::string size;
    std::string modified;
};

FileFields FieldsOf(CQVUObject &object) {
    std::optional<FileData> const data = FileDataOf(object);
    if (!data || TypeOf(object) != OBJ_FILE) {
        return {};
    }
    return {std::to_string((std::uint64_t{data->dwSizeHigh} << 32) | data->dwSizeLow),
            TimeText((std::uint64_t{data->dwTimeHigh} << 32) | data->dwTimeLow)};
}

// `value` is UTF-8.
void GraphmlData(std::ostream &out, const char *key, std::string const &value) {
    if (!value.empty()) {
        out << "<data key=\"" << key << "\">" << XmlText(value) << "</data>";
    }
}

} // namespace

void ExportDot(std::ostream &out, Names const &names) {
    out << "digraph links {\n  node [shape=box];\n";
    ForEach(
        names.Database(),
        [&](CQVUObject &object) {
            out << "  n" << object.dwID << " [label=" << DotText(Utf8(names.Of(object)))
                << ", kind=" << DotText(KindWord(object)) << "];\n";
        },
        [&](CQVULink const &link) {
            out << "  n" << link.dwSource << " -> n" << link.dwTarget
                << " [label=" << DotText(LinkWord(TypeOf(link))) << "];\n";
        });
    out << "}\n";
}

void ExportGraphml(std::ostream &out, Names const &names) {
    out << R"(<?xml version="1.0" encoding="UTF-8"?>
<graphml xmlns="http://graphml.graphdrawing.org/xmlns">
  <key id="type" for="all" attr.name="type" attr.type="string"/>
  <key id="kind" for="node" attr.name="kind" attr.type="string"/>
  <key id="name" for="node" attr.name="name" attr.type="string"/>
  <key id="path" for="node" attr.name="path" attr.type="string"/>
  <key id="size" for="node" attr.name="size" attr.type="long"/>
  <key id="modified" for="node" attr.name="modified" attr.type="string"/>
  <graph id="links" edgedefault="directed">
)";
    ForEach(
        names.Database(),
        [&](CQVUObject &object) {
            FileFields const fields = FieldsOf(object);
            out << "    <node id=\"n" << object.dwID << "\">";
            GraphmlData(out, "type", TypeWord(TypeOf(object)));
            GraphmlData(out, "kind", KindWord(object));
            GraphmlData(out, "name", Utf8(NameOf(object)));
            GraphmlData(out, "path", Utf8(names.PathOf(object).value_or("")));
            GraphmlData(out, "size", fields.size);
            GraphmlData(out, "modified", fields.modified);
            out << "</node>\n";
        },
        [&](CQVULink const &link) {
            out << "    <edge id=\"e" << link.dwID << "\" source=\"n" << link.dwSource
                << "\" target=\"n" << link.dwTarget << "\">";
            GraphmlData(out, "type", LinkWord(TypeOf(link)));
            out << "</edge>\n";
        });
    out << "  </graph>\n</graphml>\n";
}

void ExportJsonl(std::ostream &out, Names const &names) {
    auto const write = [&](const char *record, Json const &fields) {
        Json line = Json::object();
        line["record"] = record;
        line.update(fields);
        out << Dump(line, false);
    };
    ForEach(
        names.Database(),
        [&](CQVUObject &object) { write("object", JsonOfWholeObject(names, object)); },
        [&](CQVULink const &link) { write("link", JsonOfLink(link)); });
}

void ExportCsv(std::ostream &nodes, std::ostream &edges, Names const &names) {
    nodes << "id:ID,name,path,kind,size:long,modified,:LABEL\n";
    edges << ":START_ID,:END_ID,id:long,:TYPE\n";
    ForEach(
        names.Database(),
        [&](CQVUObject &object) {
            FileFields const fields = FieldsOf(object);
            nodes << object.dwID << ',' << CsvText(Utf8(NameOf(object))) << ','
                  << CsvText(Utf8(names.PathOf(object).value_or(""))) << ',' << KindWord(object)
                  << ',' << fields.size << ',' << fields.modified << ',' << TypeWord(TypeOf(object))
                  << '\n';
        },
        [&](CQVULink const &link) {
            edges << link.dwSource << ',' << link.dwTarget << ',' << link.dwID << ','
                  << LinkWord(TypeOf(link)) << '\n';
        });
}

} // namespace qvlink
