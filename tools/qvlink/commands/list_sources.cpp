#include "commands/list_sources.h"

#include "commands/session.h"
#include "platform/whole_file.h"
#include "stored_list.h"

#include <iostream>

namespace qvlink {
namespace {

std::string Read(std::string const &path) {
    std::string why;
    std::optional<std::string> bytes = ReadWholeFile(path, why);
    if (!bytes) {
        throw CommandError("cannot read " + path + ": " + why);
    }
    return std::move(*bytes);
}

} // namespace

std::string ListName(lists::Kind kind, std::uint32_t id) {
    return std::string(ResourceType(kind)) + ' ' + std::to_string(id);
}

ListFile::ListFile(std::string const &path) : m_path(path), m_bytes(Read(path)) {
    if (IsLibrary(m_bytes)) {
        m_form = Form::library;
        m_library = FindLists(m_bytes);
        return;
    }
    try {
        m_text = lists::Unpack(m_bytes);
        m_form = Form::stored;
    } catch (lists::ListError const &error) {
        m_whyNotStored = error.what();
        m_text = m_bytes;
    }
}

std::string ListFile::Name(LibraryList const &list) const {
    return m_path + '(' + std::to_string(list.id) + ')';
}

std::string ListFile::WhatThereIs() const {
    std::string ids;
    for (LibraryList const &list : m_library.lists) {
        ids += (ids.empty() ? "It has " : ", ") + ListName(list.kind, list.id);
    }
    std::string const why =
        m_library.malformed.empty() ? "" : "It can't be read to its end: " + m_library.malformed;
    return (ids.empty() ? "" : '\n' + ids + '.') + (why.empty() ? "" : '\n' + why + '.');
}

std::vector<ListSource> ListFile::Lists(std::optional<std::uint32_t> id) const {
    if (m_form != Form::library) {
        return {{m_path, lists::KindOf(m_text), std::nullopt, m_text, ""}};
    }
    std::vector<ListSource> sources;
    for (LibraryList const &list : m_library.lists) {
        if (id && list.id != *id) {
            continue;
        }
        ListSource source{Name(list), list.kind, list.id, "", ""};
        try {
            source.text = lists::Unpack(list.stored);
        } catch (lists::ListError const &error) {
            source.damage = error.what();
        }
        sources.push_back(std::move(source));
    }
    if (sources.empty()) {
        throw CommandError(m_path + (id ? " has no list " + std::to_string(*id) : " has no lists") +
                           WhatThereIs());
    }
    return sources;
}

ListSource ListFile::TheList(std::optional<std::uint32_t> id) const {
    std::vector<ListSource> sources = Lists(id);
    if (sources.size() > 1) {
        throw CommandError(m_path + " has " + std::to_string(sources.size()) + " lists" +
                           WhatThereIs() + "\nName one with --id.");
    }
    if (!sources.front().damage.empty()) {
        throw CommandError(sources.front().name + " is damaged: " + sources.front().damage);
    }
    return std::move(sources.front());
}

void RequireNoJson(Request const &request) {
    if (request.json) {
        throw CommandError("the answer is a list, and --json has no form for it\nUse --json with "
                           "`qvlink lists check` or `qvlink lists diff`.");
    }
}

void WriteList(std::string const &output, std::string_view bytes) {
    if (output.empty()) {
        std::cout << bytes;
        return;
    }
    std::string why;
    if (!WriteWholeFile(output, bytes, why)) {
        throw CommandError("cannot write " + output + ": " + why +
                           "\nName another place with --output.");
    }
}

} // namespace qvlink
