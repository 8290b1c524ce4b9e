// Keys and values in a test's graph.
#pragma once

#include "test_graph.h"

#include "answer/value_data.h"

#include <initializer_list>
#include <string>

// Keys by their path, "HKLM\a\b", with all above them.
inline CQVUObject *Key(TestGraph &graph, std::string const &path) {
    CQVUDatabase &database = graph.Database();
    if (CQVUObject *const there = database.GetObjectByPath(path.c_str())) {
        return there;
    }
    std::size_t const slash = path.rfind('\\');
    bool const isHive = slash == std::string::npos;
    CQVUObject *const above = isHive ? database.GetRootObject() : Key(graph, path.substr(0, slash));
    CQVUObject *const object = database.AddObject(path.substr(slash + 1).c_str(),
                                                  isHive ? OBJ_HIVE : OBJ_KEY, 0, 0, nullptr, 1);
    above->LinkTo(object, LINK_PARENT);
    return object;
}

// A value of a key, and the files that it names.
inline CQVUObject *Value(TestGraph &graph, std::string const &key, std::string const &name,
                         std::initializer_list<CQVUObject *> files = {}) {
    std::string block = qvlink::BlockOf(3, "data");
    CQVUObject *const object = graph.Database().AddObject(
        name.c_str(), OBJ_VALUE, 0, static_cast<unsigned long>(block.size()), block.data(), 1);
    Key(graph, key)->LinkTo(object, LINK_PARENT);
    for (CQVUObject *const file : files) {
        object->LinkTo(file, qvlink::LINK_REFERS);
    }
    return object;
}
