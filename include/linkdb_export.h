// The export macros: mark what the library offers to its clients.
#pragma once

#if defined(QVLINKDB_STATIC)
#define QVLINKDB_API
#elif defined(_WIN32) && defined(QVLINKDB_BUILDING)
#define QVLINKDB_API __declspec(dllexport)
#elif defined(_WIN32)
#define QVLINKDB_API __declspec(dllimport)
#else
#define QVLINKDB_API __attribute__((visibility("default")))
#endif

// Class templates: what the library instantiates is exported; clients may instantiate
// others for themselves, so that on Windows nothing of a template is marked as imported.
#if defined(_WIN32) && !defined(QVLINKDB_BUILDING)
#define QVLINKDB_TEMPLATE
#else
#define QVLINKDB_TEMPLATE QVLINKDB_API
#endif
