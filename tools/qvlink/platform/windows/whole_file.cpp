#include "platform/whole_file.h"

#include <algorithm>
#include <memory>
#include <windows.h>

#include "platform/windows/file_handle.h"
#include "platform/windows/text.h"

namespace qvlink {
namespace {

constexpr std::size_t MOST_AT_ONCE = std::size_t{1} << 30;

bool WriteAll(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        DWORD count = 0;
        auto const wanted = static_cast<DWORD>(std::min(bytes.size(), MOST_AT_ONCE));
        if (!::WriteFile(file, bytes.data(), wanted, &count, nullptr)) {
            return false;
        }
        bytes.remove_prefix(count);
    }
    return true;
}

} // namespace

std::optional<std::string> ReadWholeFile(std::string const &path, std::string &why) {
    FileHandle const file =
        OpenFile(LongPath(path), GENERIC_READ, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    std::string bytes;
    std::string piece(65536, '\0');
    DWORD count = 1;
    bool read = file != nullptr;
    while (read && count > 0) {
        read = ::ReadFile(file.get(), piece.data(), static_cast<DWORD>(piece.size()), &count,
                          nullptr) != 0;
        bytes.append(piece, 0, read ? count : 0);
    }
    if (!read && !(file && ::GetLastError() == ERROR_BROKEN_PIPE)) {
        why = LastErrorText();
        return std::nullopt;
    }
    return bytes;
}

bool WriteWholeFile(std::string const &path, std::string_view bytes, std::string &why) {
    std::wstring const target = LongPath(path);
    std::wstring const beside = target + L'.' + std::to_wstring(::GetCurrentProcessId()) + L".tmp";
    FileHandle file = OpenFile(beside, GENERIC_WRITE, CREATE_NEW, FILE_ATTRIBUTE_NORMAL);
    if (!file) {
        why = LastErrorText();
        return false;
    }
    bool const written = WriteAll(file.get(), bytes) && ::FlushFileBuffers(file.get());
    if (!written) {
        why = LastErrorText();
    }
    file.reset();
    if (written && ::MoveFileExW(beside.c_str(), target.c_str(),
                                 MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        return true;
    }
    why = written ? LastErrorText() : why;
    ::DeleteFileW(beside.c_str());
    return false;
}

} // namespace qvlink
