#include "graph_file.h"

#include "model.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr std::uint32_t typeMask = 0x7fffffff;

using Parents = std::map<std::uint32_t, std::uint32_t>;
using ById = std::map<std::uint32_t, image::Object const *>;

std::string PathOf(std::uint32_t id, ById const &objects, Parents const &parents) {
    std::string path;
    for (auto at = objects.find(id); at != objects.end();) {
        image::Object const &object = *at->second;
        path.insert(0, path.empty() ? object.name : object.name + '\\');
        auto const parent = parents.find(object.id);
        if ((object.type & (OBJ_DRIVE | OBJ_HIVE)) || parent == parents.end()) {
            break;
        }
        at = objects.find(parent->second);
    }
    return path;
}

std::string KeyOf(image::Object const &object, std::string const &top, ById const &objects,
                  Parents const &parents) {
    switch (object.type & typeMask) {
    case OBJ_VFILE:
        return "name:" + object.name;
    case qvlink::OBJ_RUNPATH:
        return "runpath:" + (object.data.empty()
                                 ? object.name
                                 : std::string(object.data.begin(), object.data.end()));
    case OBJ_HIVE:
    case OBJ_KEY:
        return PathOf(object.id, objects, parents);
    case OBJ_VALUE: {
        std::string path = PathOf(object.id, objects, parents);
        path[path.size() - object.name.size() - 1] = ':';
        return path;
    }
    case OBJ_FILE: {
        std::string path = PathOf(object.id, objects, parents);
        if (path == top) {
            return "";
        }
        if (path.compare(0, top.size() + 1, top + '\\') == 0) {
            path.erase(0, top.size() + 1);
            std::replace(path.begin(), path.end(), '\\', '/');
            return path;
        }
        return path;
    }
    default:
        return "other:" + std::to_string(object.id);
    }
}

std::string NameOfType(std::uint32_t type) {
    for (qvlink::TypeName const &known : qvlink::LINK_TYPE_NAMES) {
        if (known.bit == type) {
            return known.name;
        }
    }
    return std::to_string(type);
}

} // namespace

std::set<std::string> GraphFile::From(std::string const &key) const {
    std::set<std::string> found;
    for (std::string const &link : links) {
        if (link.compare(0, key.size() + 2, key + " -") == 0) {
            found.insert(link.substr(key.size() + 1));
        }
    }
    return found;
}

GraphFile ReadGraph(Bytes const &bytes, std::string const &top) {
    GraphFile graph;
    auto const file = image::Read(bytes);
    EXPECT_TRUE(file) << "no well-formed file";
    if (!file) {
        return graph;
    }
    ById objects;
    for (image::Object const &object : file->objects) {
        objects[object.id] = &object;
        EXPECT_TRUE(object.type & PERSISTENT_BIT) << object.name;
        EXPECT_FALSE(object.from.empty() && object.to.empty()) << object.name;
    }
    Parents parents;
    for (image::Link const &link : file->links) {
        EXPECT_TRUE(link.type & PERSISTENT_BIT);
        if ((link.type & typeMask) == LINK_PARENT) {
            EXPECT_TRUE(parents.emplace(link.target, link.source).second) << "two parents";
        }
    }
    std::map<std::uint32_t, std::string> keys;
    for (image::Object const &object : file->objects) {
        std::string const key = KeyOf(object, top, objects, parents);
        keys[object.id] = key;
        EXPECT_TRUE(graph.objects.emplace(key, object).second) << "twice: " << key;
    }
    for (image::Link const &link : file->links) {
        if ((link.type & typeMask) != LINK_PARENT) {
            std::string const text = keys[link.source] + " -" + NameOfType(link.type & typeMask) +
                                     "-> " + keys[link.target];
            EXPECT_TRUE(graph.links.insert(text).second) << "twice: " << text;
        }
    }
    return graph;
}
