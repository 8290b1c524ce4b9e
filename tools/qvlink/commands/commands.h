// The commands, one file each. A result is an exit code; what goes wrong is thrown as
// CommandError, NothingFound or another standard exception.
#pragma once

#include "commands/request.h"

namespace qvlink {

// The words that the user calls a command by.
const char *CommandWord(Command command);
int RunCommand(Request const &request);

int RunScan(Request const &request);
int RunDeps(Request const &request);
int RunRefs(Request const &request);
int RunFind(Request const &request);
int RunShow(Request const &request);
int RunMissing(Request const &request);
int RunWhy(Request const &request);
int RunStats(Request const &request);
int RunVerify(Request const &request);
int RunExport(Request const &request);
int RunProtected(Request const &request);
int RunListsCapture(Request const &request);
int RunListsPack(Request const &request);
int RunListsUnpack(Request const &request);
int RunListsCheck(Request const &request);
int RunListsDiff(Request const &request);
int RunRegImport(Request const &request);
int RunRegExport(Request const &request);

} // namespace qvlink
