// A small tree of files and a database to scan it into.
#pragma once

#include "graph_file.h"
#include "program_images.h"
#include "scan/scan.h"
#include "temp_folder.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

class Recorder : public qvlink::ScanObserver {
public:
    void Progress(std::string const &folder, qvlink::ScanSummary const &) override {
        folders.push_back(folder);
        if (onFolder) {
            onFolder();
        }
    }
    void Problem(qvlink::ScanProblem, std::string const &path, std::string const &why) override {
        problems.push_back(path + ": " + why);
    }

    std::vector<std::string> folders;
    std::vector<std::string> problems;
    std::function<void()> onFolder;
};

class ScanTest : public testing::Test {
protected:
    ScanTest();

    std::filesystem::path Path(std::string const &name) const { return m_tree / name; }
    // Files and folders of the tree; folders on the way are made.
    void Write(std::string const &name, std::string const &content);
    void MakeFolder(std::string const &name);
    // False, and the test is to be skipped, where links can't be made.
    bool Link(std::string const &name, std::string const &target);
    void Remove(std::string const &name);
    void SetTime(std::string const &name, int hours); // from some fixed day on

    // Scans the tree, or these paths below it.
    qvlink::ScanSummary Scan();
    qvlink::ScanSummary Scan(std::vector<std::string> const &names);
    // Scans keys of a registry, and paths below the tree before them.
    qvlink::ScanSummary ScanKeys(qvlink::Registry &registry, std::vector<std::string> const &keys,
                                 std::vector<std::string> const &names = {});
    // Scans the tree into another database of this test.
    qvlink::ScanSummary ScanInto(std::string const &database);
    // What a scan says that can't be done.
    std::string FailureOf(std::function<void()> const &scan);

    Bytes File(std::string const &database = "db") const;
    GraphFile Graph(std::string const &database = "db") const;
    std::string Database(std::string const &name = "db") const;

    Recorder m_observer;

private:
    TempFolder m_folder;
    std::filesystem::path m_tree;
};

// Bytes of a file without the stamp of the process that wrote it.
Bytes WithoutStamp(Bytes bytes);
