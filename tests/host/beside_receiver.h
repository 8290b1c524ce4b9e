// This program beside the receiver of diagnostics: a report goes to what lies there.
#pragma once

#include "receiver.h"
#include "temp_folder.h"

#include <filesystem>
#include <string>

#include "platform/module_file.h"
#include "platform/process.h"

// Where the receiver lies if it lies beside this program.
inline std::filesystem::path ReceiverHere() {
    return std::filesystem::path(ProgramPath()).replace_filename(RECEIVER_FILE);
}

// Runs a role from a folder in which the receiver lies beside the program.
inline long RunBesideReceiver(char const *role) {
    TempFolder const folder;
    std::filesystem::path const own(ProgramPath());
    std::filesystem::path const program = folder.Path() / own.filename();
    std::filesystem::copy_file(own, program);
    std::filesystem::path const built = std::filesystem::path(own).replace_filename("receiver");
    std::filesystem::copy_file(built / (std::string("QVDebug") + MODULE_ENDING),
                               folder.Path() / RECEIVER_FILE);
    // What the program itself needs is looked for in the current directory too.
    std::filesystem::path const start = std::filesystem::current_path();
    std::filesystem::current_path(own.parent_path());
    long const code = RunProgram(program.string(), {"--role", role});
    std::filesystem::current_path(start);
    return code;
}
