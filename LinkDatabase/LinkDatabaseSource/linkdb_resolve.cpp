// Resolve: from a bare file name to the located object of that name.
#include "linkdb.h"

#include "linkdb_state.h"
#include "mutex_guard.h"
#include "path_text.h"

#include <atomic>
#include <cstring>

namespace {

// A path put together in a buffer that is never overrun: too long a path is no path.
class PathBuffer {
public:
    void Append(char const *text) {
        std::size_t const length = std::strlen(text);
        m_fits = m_fits && m_length + length < PathBufferSize;
        if (m_fits)
            std::memcpy(m_text + m_length, text, length + 1);
        m_length += length;
    }
    void AppendSeparator() {
        if (!m_fits || m_length == 0 || m_text[m_length - 1] != '\\')
            Append("\\");
    }
    char const *Text() const { return m_fits ? m_text : nullptr; }

private:
    char m_text[PathBufferSize] = "";
    std::size_t m_length = 0;
    bool m_fits = true;
};

CQVUObject *FindIn(char const *folder, char const *subfolder, char const *name) {
    PathBuffer path;
    path.Append(folder);
    path.AppendSeparator();
    path.Append(subfolder);
    path.Append(name);
    return path.Text() ? g_pDatabase->GetObjectByPath(path.Text()) : nullptr;
}

} // namespace

CQVUObject *CQVUObject::Resolve(char *basePath) {
    if (!this || !g_pDatabase)
        return nullptr;
    MutexGuard const guard(g_pDatabase->m_hMutex);
    char name[PathBufferSize];
    if (GetType() != OBJ_VFILE || !GetName(name, sizeof name))
        return nullptr;
    if (basePath)
        if (CQVUObject *found = FindIn(basePath, "", name))
            return found;
    char folder[PathBufferSize] = "";
    win::GetSystemDirectoryA(folder, sizeof folder);
    if (CQVUObject *found = FindIn(folder, "", name))
        return found;
    folder[0] = '\0';
    win::GetWindowsDirectoryA(folder, sizeof folder);
    if (IsWindowsNT())
        if (CQVUObject *found = FindIn(folder, "SYSTEM\\", name))
            return found;
    return FindIn(folder, "", name);
}

// The answer is stored after the mark: a second thread may read the initial false
// during the first call.
bool IsWindowsNT() {
    static std::atomic<bool> done{false}, answer{false};
    if (!done.exchange(true)) {
        OSVERSIONINFOA version{};
        version.dwOSVersionInfoSize = sizeof version;
        if (win::GetVersionExA(&version) &&
            (version.dwPlatformId == 1 || version.dwPlatformId == 2) && version.dwMajorVersion >= 4)
            answer = version.dwPlatformId == 2;
    }
    return answer;
}
