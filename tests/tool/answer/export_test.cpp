#include "output/export.h"
#include "test_graph.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <map>
#include <set>
#include <sstream>

using namespace qvlink;

namespace {

using Edges = std::set<std::tuple<std::uint32_t, std::uint32_t, std::string>>;

// A graph with names that each format has to quote somewhere.
struct Awkward : TestGraph {
    CQVUObject *p = Program("C:\\a \"b\" <c> & d,e");
    CQVUObject *x = Program("C:\\line\nbreak\tand ]]>");
    CQVUObject *foreign = Program("C:\\\xff\x01");
    Awkward() { Found(p, x); }

    std::map<std::uint32_t, std::string> Paths() {
        std::map<std::uint32_t, std::string> paths{{1, ""}};
        for (CQVUObject *const object : {Folder("C:"), p, x, foreign}) {
            paths[object->dwID] = PathOf(Database(), object);
        }
        return paths;
    }
    Edges Links() {
        std::uint32_t const drive = Folder("C:")->dwID;
        return {{1, drive, "parent"},        {drive, p->dwID, "parent"},
                {drive, x->dwID, "parent"},  {drive, foreign->dwID, "parent"},
                {p->dwID, x->dwID, "needs"}, {p->dwID, x->dwID, "found-cache"}};
    }
};

std::string Exported(TestGraph &graph, void (*format)(std::ostream &, Names const &)) {
    std::ostringstream out;
    format(out, Names(graph.Database(), true));
    return out.str();
}

// Records of fields, quoted ones as in RFC 4180, ended by line feeds.
std::vector<Texts> ParseCsv(std::string const &text) {
    std::vector<Texts> records{{""}};
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char const c = text[i];
        if (quoted && c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
            records.back().back() += text[++i];
        } else if (c == '"') {
            quoted = !quoted;
        } else if (!quoted && c == ',') {
            records.back().emplace_back();
        } else if (!quoted && c == '\n') {
            records.push_back({""});
        } else {
            records.back().back() += c;
        }
    }
    EXPECT_FALSE(quoted);
    EXPECT_EQ(records.back(), Texts{""});
    records.pop_back();
    return records;
}

// The tokens of a DOT text: quoted strings without their quotes and escapes, behind a
// quotation mark; words; signs.
Texts DotTokens(std::string const &text) {
    Texts tokens;
    for (std::size_t i = 0; i < text.size();) {
        char const c = text[i];
        if (c == '"') {
            std::string token = "\"";
            for (++i; text.at(i) != '"'; ++i) {
                i += text[i] == '\\' && (text[i + 1] == '"' || text[i + 1] == '\\');
                token += text[i];
            }
            tokens.push_back(token);
            ++i;
        } else if (std::isalnum(static_cast<unsigned char>(c))) {
            std::size_t end = i;
            while (std::isalnum(static_cast<unsigned char>(text.at(end)))) {
                ++end;
            }
            tokens.push_back(text.substr(i, end - i));
            i = end;
        } else {
            std::size_t const size = text.compare(i, 2, "->") == 0 ? 2 : 1;
            if (!std::isspace(static_cast<unsigned char>(c))) {
                tokens.push_back(text.substr(i, size));
            }
            i += size;
        }
    }
    return tokens;
}

std::uint32_t NodeId(std::string const &word) {
    EXPECT_EQ(word.at(0), 'n');
    return static_cast<std::uint32_t>(std::stoul(word.substr(1)));
}

} // namespace

TEST(Export, Jsonl_has_every_object_and_link_a_line) {
    Awkward graph;
    std::istringstream lines(Exported(graph, ExportJsonl));
    std::map<std::uint32_t, std::string> paths;
    Edges edges;
    for (std::string line; std::getline(lines, line);) {
        nlohmann::json const record = nlohmann::json::parse(line);
        if (record["record"] == "object") {
            EXPECT_TRUE(edges.empty()) << "objects come first";
            paths[record["id"]] = record.value("path", "");
        } else {
            edges.emplace(record["from"], record["to"], record["type"]);
        }
    }
    auto expected = graph.Paths();
    // The byte 0xff is no character by itself, or the one that the code page has for it.
    std::string &foreign = expected[graph.foreign->dwID];
    foreign = paths[graph.foreign->dwID];
    EXPECT_TRUE(foreign == "C:\\\xef\xbf\xbd\x01" || foreign == "C:\\\xc3\xbf\x01") << foreign;
    EXPECT_EQ(paths, expected);
    EXPECT_EQ(edges, graph.Links());
}

TEST(Export, Jsonl_keeps_the_bytes_of_names_that_are_no_utf8) {
    Awkward graph;
    if (nlohmann::json::accept("\"\xff\"")) {
        FAIL() << "the parser must refuse what is no UTF-8";
    }
    std::istringstream lines(Exported(graph, ExportJsonl));
    for (std::string line; std::getline(lines, line);) {
        nlohmann::json const record = nlohmann::json::parse(line);
        if (record["record"] == "object" && record["id"] == graph.foreign->dwID &&
            record.contains("nameBytes")) {
            EXPECT_EQ(record["nameBytes"], "ff01");
            EXPECT_EQ(record["pathBytes"], "433a5cff01");
            return;
        }
    }
    GTEST_SKIP() << "the system's code page has a character for this byte";
}

TEST(Export, Csv_is_two_tables_that_name_their_columns_for_graph_databases) {
    Awkward graph;
    std::ostringstream nodes;
    std::ostringstream edges;
    ExportCsv(nodes, edges, Names(graph.Database(), true));
    std::vector<Texts> const nodeRows = ParseCsv(nodes.str());
    std::vector<Texts> const edgeRows = ParseCsv(edges.str());
    EXPECT_EQ(nodeRows.at(0),
              (Texts{"id:ID", "name", "path", "kind", "size:long", "modified", ":LABEL"}));
    EXPECT_EQ(edgeRows.at(0), (Texts{":START_ID", ":END_ID", "id:long", ":TYPE"}));
    std::map<std::uint32_t, std::string> paths;
    for (std::size_t i = 1; i < nodeRows.size(); ++i) {
        ASSERT_EQ(nodeRows[i].size(), 7U);
        paths[static_cast<std::uint32_t>(std::stoul(nodeRows[i][0]))] = nodeRows[i][2];
    }
    paths[graph.foreign->dwID] = graph.Paths()[graph.foreign->dwID];
    EXPECT_EQ(paths, graph.Paths());
    Edges links;
    for (std::size_t i = 1; i < edgeRows.size(); ++i) {
        ASSERT_EQ(edgeRows[i].size(), 4U);
        links.emplace(std::stoul(edgeRows[i][0]), std::stoul(edgeRows[i][1]), edgeRows[i][3]);
    }
    EXPECT_EQ(links, graph.Links());
}

TEST(Export, Dot_is_a_directed_graph_of_labelled_nodes_and_edges) {
    Awkward graph;
    Texts const tokens = DotTokens(Exported(graph, ExportDot));
    ASSERT_EQ(Texts(tokens.begin(), tokens.begin() + 3), (Texts{"digraph", "links", "{"}));
    ASSERT_EQ(tokens.back(), "}");
    std::map<std::uint32_t, std::string> labels;
    Edges edges;
    for (std::size_t i = 3; i + 1 < tokens.size();) {
        std::size_t end = i;
        while (tokens.at(end) != ";") {
            ++end;
        }
        Texts const s(tokens.begin() + static_cast<std::ptrdiff_t>(i),
                      tokens.begin() + static_cast<std::ptrdiff_t>(end));
        if (s.at(1) == "->") {
            ASSERT_EQ(s.size(), 8U);
            edges.emplace(NodeId(s[0]), NodeId(s[2]), s[6].substr(1));
        } else if (s[0] != "node") {
            ASSERT_EQ(s.at(2), "label");
            labels[NodeId(s[0])] = s.at(4).substr(1);
        }
        i = end + 1;
    }
    auto expected = graph.Paths();
    // A line break is written as the sequence that stands for one.
    std::string &broken = expected[graph.x->dwID];
    EXPECT_EQ(labels[graph.x->dwID], "C:\\line\\nbreak\tand ]]>");
    broken = labels[graph.x->dwID];
    expected[graph.foreign->dwID] = labels[graph.foreign->dwID];
    EXPECT_EQ(labels, expected);
    EXPECT_EQ(edges, graph.Links());
}

TEST(Export, Graphml_has_no_character_that_xml_forbids) {
    Awkward graph;
    std::string const text = Exported(graph, ExportGraphml);
    for (char const c : text) {
        EXPECT_TRUE(static_cast<unsigned char>(c) >= 0x20 || c == '\n');
    }
    EXPECT_NE(text.find("<data key=\"name\">a \"b\" &lt;c&gt; &amp; d,e</data>"),
              std::string::npos);
    EXPECT_NE(text.find("line&#10;break&#9;and ]]&gt;<"), std::string::npos);
    auto const count = [&](std::string const &piece) {
        std::size_t n = 0;
        for (std::size_t at = text.find(piece); at != std::string::npos;
             at = text.find(piece, at + 1)) {
            ++n;
        }
        return n;
    };
    EXPECT_EQ(count("<node "), graph.Paths().size());
    EXPECT_EQ(count("<edge "), graph.Links().size());
}
