#include "full_path.h"

#include "build_stamp.h"
#include "path_text.h"

#include "Diag.h"
#include "platform/winapi.h"

#include <cstring>
#include <new>

namespace {

constexpr int DepthLimit = 260; // what stops a cycle of parent links
constexpr std::size_t LongClimb = 1024;

} // namespace

FullPathWriter::Outcome FullPathWriter::Climb(DBObject &object, int depth) {
    if (depth >= DepthLimit) {
        Diag(1, "linkdb", "CQVUDatabase::SafeGetFullPath", 790, BuildStamp, "%s - %lu", "0",
             static_cast<unsigned long>(win::GetLastError()));
        return Outcome::None;
    }
    switch (object.dwType & ~PERSISTENT_BIT) {
    case OBJ_DRIVE:
    case OBJ_HIVE:
        m_length = 0;
        return Append("", object.pszName ? object.pszName : "");
    case OBJ_PINNED:
    case OBJ_FILE:
    case OBJ_KEY:
    case OBJ_VALUE:
        return ClimbToParent(object, depth);
    default:
        return Outcome::None;
    }
}

// The first parent whose own chain is complete counts.
FullPathWriter::Outcome FullPathWriter::ClimbToParent(DBObject &object, int depth) {
    if (KnownToFail(object, depth))
        return Outcome::None;
    for (std::uint32_t i = 0, count = object.dwLinksTo & LINK_ENTRY_ID_MASK; i < count; ++i) {
        DBLink const *link = m_links.Find(object.pdwLinksTo[i] & LINK_ENTRY_ID_MASK);
        if (!link || (link->dwType & ~PERSISTENT_BIT) != LINK_PARENT)
            continue;
        DBObject *const parent = m_objects.Find(link->dwSource);
        if (!parent)
            continue;
        ++m_steps;
        Outcome const outcome = Climb(*parent, depth + 1);
        if (outcome == Outcome::Found)
            return Append("\\", object.pszName ? object.pszName : "");
        if (outcome == Outcome::TooLong)
            return outcome;
    }
    NoteFailure(object, depth);
    return Outcome::None;
}

FullPathWriter::Outcome FullPathWriter::Append(char const *separator, char const *name) {
    std::size_t const separatorLength = std::strlen(separator);
    std::size_t const nameLength = std::strlen(name);
    if (m_length + separatorLength + nameLength >= PathBufferSize)
        return Outcome::TooLong;
    std::memcpy(m_buffer + m_length, separator, separatorLength);
    std::memcpy(m_buffer + m_length + separatorLength, name, nameLength + 1);
    m_length += separatorLength + nameLength;
    return Outcome::Found;
}

bool FullPathWriter::KnownToFail(DBObject &object, int depth) const {
    if (m_failures.empty())
        return false;
    auto const known = m_failures.find(&object);
    return known != m_failures.end() && known->second <= depth;
}

void FullPathWriter::NoteFailure(DBObject &object, int depth) {
    if (m_steps < LongClimb)
        return;
    try {
        m_failures[&object] = depth; // lower than what was known, or the climb had ended above
    } catch (std::bad_alloc const &) {
    }
}
