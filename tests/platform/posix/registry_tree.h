// The tree of keys, without handles, on a store in a folder of the test's own.
#pragma once

#include "platform/posix/registry/tree.h"
#include "temp_folder.h"

#include <filesystem>
#include <vector>

#include <gtest/gtest.h>

using Names = std::vector<std::u16string>;

struct Found {
    platform::registry::Code code;
    std::uint32_t type;
    std::string data;

    bool operator==(Found const &other) const {
        return code == other.code && type == other.type && data == other.data;
    }
};

class RegistryTree : public ::testing::Test {
protected:
    using Tree = platform::registry::Tree;
    using Key = platform::registry::Key;
    using OpenKey = platform::registry::OpenKey;
    using Code = platform::registry::Code;

    std::filesystem::path const &Folder() const { return m_folder.Path(); }
    std::string Store() const { return (m_folder.Path() / "registry").string(); }

    static Code OpenPath(Tree &tree, std::u16string_view path, OpenKey &key) {
        auto const root = platform::registry::TakeRoot(path);
        return root ? tree.Open(*tree.RootKey(*root), path, key) : 87;
    }
    static OpenKey Opened(Tree &tree, std::u16string_view path) {
        OpenKey key;
        EXPECT_EQ(0u, OpenPath(tree, path, key));
        return key ? key : tree.RootKey(platform::registry::Root::LocalMachine);
    }
    static Code CreatePath(Tree &tree, std::u16string_view path) {
        OpenKey key;
        bool made = false;
        auto const root = platform::registry::TakeRoot(path);
        return tree.Create(*tree.RootKey(*root), path, key, made);
    }
    // By a tree of its own.
    void Make(std::u16string_view path) const {
        Tree tree(Store(), {});
        EXPECT_EQ(0u, CreatePath(tree, path));
    }

    static Names Subkeys(Tree &tree, Key &key) {
        Names names;
        std::u16string name;
        Code code = 0;
        while ((code = tree.EnumerateKey(key, static_cast<std::uint32_t>(names.size()), name)) == 0)
            names.push_back(name);
        EXPECT_EQ(259u, code);
        return names;
    }
    static Names ValueNames(Tree &tree, Key &key) {
        Names names;
        platform::registry::Value value;
        Code code = 0;
        while ((code = tree.EnumerateValue(key, static_cast<std::uint32_t>(names.size()), value)) ==
               0)
            names.push_back(value.name);
        EXPECT_EQ(259u, code);
        return names;
    }
    static Found Read(Tree &tree, Key &key, std::u16string_view name) {
        platform::registry::Value value;
        Code const code = tree.ReadValue(key, name, value);
        return {code, value.type, value.data};
    }

private:
    TempFolder m_folder;
};
