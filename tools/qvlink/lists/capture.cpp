#include "lists/capture.h"

#include "lists/folder_source.h"
#include "platform/list_source.h"

#include <stdexcept>

namespace qvlink {
namespace {

std::vector<std::string> FileLines(CaptureRequest const &request,
                                   std::vector<std::string> &skipped) {
    SystemFolders const folders =
        request.from.empty() ? SystemFoldersInUse() : SystemFoldersIn(request.from);
    return LinesOf(folders, LineFilter(request.without), skipped);
}

std::vector<std::string> KeyLines(CaptureRequest const &request,
                                  std::vector<std::string> &skipped) {
    KeyTree tree;
    if (request.from.empty()) {
        ReadKeysInUse(tree, skipped);
    } else {
        ReadKeysIn(request.from, tree, skipped);
    }
    return LinesOf(tree, LineFilter(request.without), skipped);
}

} // namespace

Capture CaptureList(CaptureRequest const &request) {
    Capture capture;
    bool const isFiles = request.kind == lists::Kind::files;
    for (std::string const &line :
         isFiles ? FileLines(request, capture.skipped) : KeyLines(request, capture.skipped)) {
        capture.text += line;
        capture.text += "\r\n";
    }
    return capture;
}

} // namespace qvlink
