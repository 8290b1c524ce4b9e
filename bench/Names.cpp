#include "Names.h"

#include <algorithm>
#include <cctype>

namespace bench {
namespace {

std::vector<std::string> const WORDS = {
    "access", "alpha",  "audio",  "base",   "block",  "buffer", "cache",  "color",  "common",
    "config", "core",   "crypt",  "data",   "debug",  "device", "draw",   "edit",   "event",
    "field",  "file",   "filter", "font",   "format", "frame",  "game",   "glib",   "graph",
    "group",  "handle", "help",   "host",   "image",  "index",  "input",  "item",   "kernel",
    "key",    "layout", "light",  "list",   "local",  "manage", "map",    "media",  "memory",
    "menu",   "mesh",   "mode",   "mount",  "name",   "net",    "node",   "object", "open",
    "option", "output", "page",   "panel",  "parse",  "patch",  "pixel",  "plugin", "pool",
    "port",   "print",  "proc",   "query",  "queue",  "read",   "record", "render", "report",
    "scan",   "screen", "search", "server", "shell",  "sound",  "stream", "string", "sync",
    "system", "table",  "task",   "text",   "theme",  "thread", "time",   "tool",   "tree",
    "type",   "user",   "util",   "value",  "view",   "web",    "widget", "window", "write",
};
std::vector<std::string> const FOLDERS = {
    "src",    "include", "lib",  "doc",     "docs",  "test", "tests",    "share",
    "locale", "man",     "data", "scripts", "tools", "bin",  "examples", "node_modules",
};
std::vector<std::string> const DOCUMENTS = {
    "Makefile",  "__init__.py", "index.html",   "README",      "README.md",      "LICENSE",
    "COPYING",   "changelog",   "package.json", "index.js",    "setup.py",       "main.c",
    "config.h",  "utils.py",    "Kconfig",      "style.css",   "CMakeLists.txt", "default.conf",
    "copyright", "messages.mo", "desktop.ini",  "version.txt",
};
std::vector<std::string> const ENDINGS = {
    ".h",   ".c",   ".py",  ".pyc", ".html", ".png", ".txt", ".js",    ".json", ".xml", ".gz",
    ".svg", ".cpp", ".hpp", ".rst", ".conf", ".css", ".md",  ".cmake", ".pm",   ".el",  ".ko",
};

std::string LowerCased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

} // namespace

std::string NameMaker::Word() { return m_random.Pick(WORDS); }

std::string NameMaker::Draw(Role role) {
    switch (role) {
    case Role::Folder:
        return m_random.Chance(0.3) ? m_random.Pick(FOLDERS) : Word() + "-" + Word();
    case Role::Library:
        return "lib" + Word() + Word() + ".so." + std::to_string(m_random.Below(12));
    case Role::Program:
        return m_random.Chance(0.5) ? Word() + "-" + Word() : Word() + Word() + "d";
    case Role::Document:
        break;
    }
    if (m_random.Chance(0.15))
        return m_random.Pick(DOCUMENTS);
    return Word() + "_" + Word() + m_random.Pick(ENDINGS);
}

std::string NameMaker::Next(Role role) {
    for (unsigned attempt = 0;; ++attempt) {
        std::string name = Draw(role);
        if (attempt > 1)
            name.insert(name.find_last_of(".-_") == std::string::npos ? name.size()
                                                                      : name.find_last_of(".-_"),
                        std::to_string(m_random.Below(100000)));
        if (m_taken.insert(LowerCased(name)).second)
            return name;
    }
}

} // namespace bench
