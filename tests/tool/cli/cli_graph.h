// A database on the disk for the tests of the command line.
#pragma once

#include "schema.h"
#include "tool.h"

#include "../answer/test_graph.h"

#include <fstream>

// C:-free, so that the host's paths of both systems lead there: on drive Z:
//   Z:\opt\app\bin\p     needs liba (by the cache), asks in vain for libgone
//   Z:\opt\app\bin\q     a symbolic link to p
//   Z:\opt\lib\liba      a symbolic link to liba.1, which needs libb (by its run path)
//   Z:\opt\lib\liba.1, Z:\opt\lib\libb
//   Z:\win\w.exe         asks for x.dll beside it and at first use for gone.dll
//   Z:\win\X.DLL, Z:\opt\text
struct StoredGraph : TestGraph {
    CQVUObject *p = Program("Z:\\opt\\app\\bin\\p");
    CQVUObject *liba1 = Program("Z:\\opt\\lib\\liba.1");
    CQVUObject *libb = Program("Z:\\opt\\lib\\libb");
    StoredGraph() {
        CQVUObject *const liba = Symlink("Z:\\opt\\lib\\liba", liba1);
        Symlink("Z:\\opt\\app\\bin\\q", p);
        Found(p, liba);
        Found(liba1, libb, qvlink::LINK_FOUND_RUNPATH);
        Asks(p, "libgone", qvlink::LINK_MISSING);
        CQVUObject *const w = Windows("Z:\\win\\w.exe");
        Windows("Z:\\win\\X.DLL");
        Asks(w, "x.dll");
        Asks(w, "gone.dll", qvlink::LINK_DELAYED);
        File("Z:\\opt\\text", 0, 24);
        Flush();
    }

    // Runs the tool on this database with paths in the database's form.
    Outcome Ask(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--db", Directory(), "--db-paths"});
        return RunTool(arguments);
    }
};

inline nlohmann::json Schema() {
    std::ifstream stream(FileBesideTest("qvlink.schema.json"));
    return nlohmann::json::parse(stream);
}
