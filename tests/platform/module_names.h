// How modules are called on this system.
#pragma once

#ifdef _WIN32
#define MODULE_ENDING ""
#define MODULE_WITHOUT_TLS "kernel32.dll"
#else
#define MODULE_ENDING ".so" // behind the name that Windows knows
#define MODULE_WITHOUT_TLS "platform_first.dll"
#endif
