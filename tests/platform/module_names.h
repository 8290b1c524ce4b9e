// How modules are called on this system.
#pragma once

#ifdef _WIN32
#define MODULE_ENDING ""
#define MODULE_WITHOUT_TLS "kernel32.dll"
#define MODULE_LOAD_STRING "_ZN2ZK11LoadStringAEP11HINSTANCE__jPci"
#else
#define MODULE_ENDING ".so" // behind the name that Windows knows
#define MODULE_WITHOUT_TLS "platform_first.dll"
#define MODULE_LOAD_STRING "_ZN2ZK11LoadStringAEP16HINSTANCE_RECORDjPci"
#endif
