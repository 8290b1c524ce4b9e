// The export macro: marks what the library offers to its clients.
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
