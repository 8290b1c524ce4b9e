// How the receiver's file is called on this system.
#pragma once

#ifdef _WIN32
#define MODULE_ENDING ".dll"
#else
#define MODULE_ENDING ".dll.so"
#endif

#define RECEIVER_FILE "QVDebug" MODULE_ENDING
