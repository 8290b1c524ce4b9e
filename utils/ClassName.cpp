#include "CSyncObject.h"

#include <cstdlib>
#include <cxxabi.h>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <string_view>

namespace UTILS {
namespace {

constexpr std::string_view keyword = "class ";
constexpr std::string_view ownScope = "UTILS::";

bool IsPartOfName(char c) {
    return c == ':' || c == '_' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
           (c >= 'a' && c <= 'z');
}

// Puts the keyword in front of the name and of each class of ours that it is made from.
std::string Told(std::string_view name) {
    std::string text(keyword);
    for (std::size_t at = 0; at < name.size(); ++at) {
        bool const begins = at > 0 && !IsPartOfName(name[at - 1]);
        if (begins && name.substr(at, ownScope.size()) == ownScope)
            text += keyword;
        text += name[at];
    }
    return text;
}

std::string Demangled(const char *mangled) {
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> const name(
        abi::__cxa_demangle(mangled, nullptr, nullptr, &status), &std::free);
    if (!name)
        throw std::bad_alloc();
    return Told(name.get());
}

// By a copy of the mangled name: a type's record goes with the module that it is in.
using Names = std::map<std::string, std::string, std::less<>>;

std::mutex namesMutex;
Names *names = nullptr; // never freed, since what was told is good for ever

} // namespace

const char *ClassName(const std::type_info &type) noexcept {
    try {
        std::lock_guard<std::mutex> const lock(namesMutex);
        if (!names)
            names = new Names;
        auto known = names->find(std::string_view(type.name()));
        if (known == names->end())
            known = names->emplace(type.name(), Demangled(type.name())).first;
        return known->second.c_str();
    } catch (...) {
        return "class ?";
    }
}

} // namespace UTILS
