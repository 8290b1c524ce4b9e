// A folder with a copy of the test program in it, beside which the receiver of diagnostics
// may lie, and the process that is run there.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "temp_folder.h"

class DiagFolder {
public:
    DiagFolder();

    // Puts a module from bin/receiver/ into the folder, under the receiver's name.
    void Place(std::string const &module) const;
    // Runs the program there through these steps, and gives what it found:
    //   report     calls Diag
    //   threads    calls Diag from eight threads, ten times each
    //   throw1 throw2 throw0   has the receiver throw, or not
    //   hide show  makes GetModuleHandleA fail, or not
    //   delete restore   takes the receiver's file away and brings it back
    // The facts: loads, handles and entries are how often the system was asked for the
    // receiver, for its handle and its entry; reports is how many the receiver got, and
    // the last one's fields have their own names.
    std::map<std::string, std::string> Run(std::vector<std::string> const &steps) const;

    std::filesystem::path Program() const;

private:
    TempFolder m_folder;
};
