#include "platform/posix/messagetexts.h"

#include <algorithm>
#include <iterator>

namespace platform {
namespace {

struct Row {
    DWORD code;
    const char *text;
};

// By number: what the services here set, and what callers know from elsewhere. Texts may
// have inserts, as on Windows.
constexpr Row rows[] = {
    {0, "The operation completed successfully."},
    {1, "Incorrect function."},
    {2, "The system cannot find the file specified."},
    {3, "The system cannot find the path specified."},
    {4, "The system cannot open the file."},
    {5, "Access is denied."},
    {6, "The handle is invalid."},
    {8, "Not enough memory resources are available to process this command."},
    {13, "The data is invalid."},
    {14, "Not enough memory resources are available to complete this operation."},
    {15, "The system cannot find the drive specified."},
    {17, "The system cannot move the file to a different disk drive."},
    {18, "There are no more files."},
    {19, "The media is write protected."},
    {21, "The device is not ready."},
    {23, "Data error (cyclic redundancy check)."},
    {24, "The program issued a command but the command length is incorrect."},
    {25, "The drive cannot locate a specific area or track on the disk."},
    {27, "The drive cannot find the sector requested."},
    {29, "The system cannot write to the specified device."},
    {30, "The system cannot read from the specified device."},
    {31, "A device attached to the system is not functioning."},
    {32, "The process cannot access the file because it is being used by another process."},
    {33, "The process cannot access the file because another process has locked a portion of the "
         "file."},
    {38, "Reached the end of the file."},
    {39, "The disk is full."},
    {50, "The request is not supported."},
    {53, "The network path was not found."},
    {80, "The file exists."},
    {82, "The directory or file cannot be created."},
    {87, "The parameter is incorrect."},
    {109, "The pipe has been ended."},
    {110, "The system cannot open the device or file specified."},
    {111, "The file name is too long."},
    {112, "There is not enough space on the disk."},
    {120, "This function is not supported on this system."},
    {122, "The data area passed to a system call is too small."},
    {123, "The filename, directory name, or volume label syntax is incorrect."},
    {126, "The specified module could not be found."},
    {127, "The specified procedure could not be found."},
    {131, "An attempt was made to move the file pointer before the beginning of the file."},
    {132, "The file pointer cannot be set on the specified device or file."},
    {145, "The directory is not empty."},
    {161, "The specified path is invalid."},
    {170, "The requested resource is in use."},
    {183, "Cannot create a file when that file already exists."},
    {193, "%1 is not a valid Win32 application."},
    {206, "The filename or extension is too long."},
    {223, "The file size exceeds the limit allowed and cannot be saved."},
    {234, "More data is available."},
    {235, "No work was done."},
    {258, "The wait operation timed out."},
    {259, "No more data is available."},
    {267, "The directory name is invalid."},
    {288, "Attempt to release mutex not owned by caller."},
    {317,
     "The system cannot find message text for message number 0x%1 in the message file for %2."},
    {487, "Attempt to access invalid address."},
    {587, "An attempt was made to acquire a mutant such that its maximum count would have been "
          "exceeded."},
    {995, "The I/O operation has been aborted because of either a thread exit or an application "
          "request."},
    {996, "Overlapped I/O event is not in a signaled state."},
    {997, "Overlapped I/O operation is in progress."},
    {998, "Invalid access to memory location."},
    {1004, "Invalid flags."},
    {1006, "The volume for a file has been externally altered so that the opened file is no longer "
           "valid."},
    {1008, "An attempt was made to reference a token that does not exist."},
    {1009, "The configuration registry database is corrupt."},
    {1010, "The configuration registry key is invalid."},
    {1011, "The configuration registry key could not be opened."},
    {1012, "The configuration registry key could not be read."},
    {1013, "The configuration registry key could not be written."},
    {1015,
     "The registry is corrupted. The structure of one of the files containing registry data is "
     "corrupted, or the system's memory image of the file is corrupted, or the file could not "
     "be recovered because the alternate copy or log was absent or corrupted."},
    {1016,
     "An I/O operation initiated by the registry failed unrecoverably. The registry could not "
     "read in, or write out, or flush, one of the files that contain the system's image of the "
     "registry."},
    {1018, "Illegal operation attempted on a registry key that has been marked for deletion."},
    {1021, "Cannot create a stable subkey under a volatile parent key."},
    {1112, "No media in drive."},
    {1113, "No mapping for the Unicode character exists in the target multi-byte code page."},
    {1117, "The request could not be performed because of an I/O device error."},
    {1151, "The specified program is not a Windows or MS-DOS program."},
    {1314, "A required privilege is not held by the client."},
    {1337, "The security ID structure is invalid."},
    {1392, "The file or directory is corrupted and unreadable."},
    {1450, "Insufficient system resources exist to complete the requested service."},
    {1605, "This action is only valid for products that are currently installed."},
    {1615, "SQL query syntax invalid or unsupported."},
    {1812, "The specified image file did not contain a resource section."},
    {1813, "The specified resource type cannot be found in the image file."},
    {1814, "The specified resource name cannot be found in the image file."},
    {1816, "Not enough quota is available to process this command."},
    {1921, "The name of the file cannot be resolved by the system."},
};

} // namespace

const char *ErrorText(DWORD code) {
    auto const *const found =
        std::lower_bound(std::begin(rows), std::end(rows), code,
                         [](Row const &row, DWORD wanted) { return row.code < wanted; });
    return found != std::end(rows) && found->code == code ? found->text : nullptr;
}

} // namespace platform
