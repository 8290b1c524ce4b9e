// What a stored graph says, read from linkdb.dat without the library.
#pragma once

#include "linkdb_image.h"

#include <map>
#include <set>
#include <string>

// Objects by their path below a folder ("" for the folder itself, "sub/file"), names and run
// paths by "name:TEXT" and "runpath:TEXT", hives and keys by their path ("HKLM\a"), values by
// that of their key and "HKLM\a:NAME", all else by "other:ID". Links as
// "SOURCE -TYPE-> TARGET", parent links apart.
struct GraphFile {
    std::map<std::string, image::Object> objects;
    std::set<std::string> links;

    bool Has(std::string const &key) const { return objects.count(key) != 0; }
    bool Linked(std::string const &link) const { return links.count(link) != 0; }
    // The links that leave an object.
    std::set<std::string> From(std::string const &key) const;
};

// `top` is the path of a folder in the database's form, without a separator at its end.
// Fails the running test if the bytes aren't a well-formed file.
GraphFile ReadGraph(Bytes const &bytes, std::string const &top);
