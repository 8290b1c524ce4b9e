// A path with what derived classes see laid open, and short ways to ask it.
#pragma once

#include <string>

#include "CUtilsPath.h"

struct OpenPath : UTILS::CUtilsPath {
    using UTILS::CUtilsPath::CUtilsPath;
    using UTILS::CUtilsPath::operator=;
    OpenPath() = default;
    explicit OpenPath(std::string const &text, int throwing = 0)
        : CUtilsPath(UTILS::UtilsString(text), 0, 0, throwing) {}

    using UTILS::CUtilsPath::Clear;
    using UTILS::CUtilsPath::CopyData;
    using UTILS::CUtilsPath::MakeFullPath;
    using UTILS::CUtilsPath::MakeUNCName;
    using UTILS::CUtilsPath::SetPath;
    using UTILS::CUtilsPath::UpperDirParse;

    using UTILS::CUtilsPath::automate;
    using UTILS::CUtilsPath::dirList;
    using UTILS::CUtilsPath::dirPosition;
    using UTILS::CUtilsPath::dirSize;
    using UTILS::CUtilsPath::exceptionHandling;
    using UTILS::CUtilsPath::fileFlag;
    using UTILS::CUtilsPath::fileList;
    using UTILS::CUtilsPath::filePosition;
    using UTILS::CUtilsPath::installer;
    using UTILS::CUtilsPath::InstallerCalls;
    using UTILS::CUtilsPath::InstallerEntry;
    using UTILS::CUtilsPath::msiAvailable;
    using UTILS::CUtilsPath::MsiDecomposeDescriptorA;
    using UTILS::CUtilsPath::msiModule;
    using UTILS::CUtilsPath::parentLevel;
    using UTILS::CUtilsPath::path;
    using UTILS::CUtilsPath::pathUNC;
    using UTILS::CUtilsPath::persistFile;
    using UTILS::CUtilsPath::regFlag;
    using UTILS::CUtilsPath::scanRO;
    using UTILS::CUtilsPath::shellLink;
    using UTILS::CUtilsPath::shellLinkDataList;
    using UTILS::CUtilsPath::totalFiles;
    using UTILS::CUtilsPath::totalSubDirs;
    using UTILS::CUtilsPath::uncFlag;

    std::string Text() const { return GetDir(); }
    std::string Network() const { return GetDirUNC(); }
};

// The path that comes of a text and a base.
inline std::string Completed(std::string const &text, std::string const &base) {
    OpenPath path;
    path.SetPath(text, base);
    return path.Text();
}

// The ancestor at the present level, or "-" if there is none.
template <typename Path> std::string ParentOf(Path const &path) {
    UTILS::UtilsString parent("untouched");
    if (path.GetParentDir(parent))
        return parent.Retrieve();
    return parent == "untouched" ? "-" : "touched";
}
