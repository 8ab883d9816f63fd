// Symbol visibility for the shared library. Everything is built with hidden
// visibility; only declarations marked NORVIK50_EXPORT are part of the ABI.
#ifndef NORVIK50_EXPORT_H_
#define NORVIK50_EXPORT_H_

#if defined(_WIN32)
#if defined(NORVIK50_BUILDING)
#define NORVIK50_EXPORT __declspec(dllexport)
#else
#define NORVIK50_EXPORT __declspec(dllimport)
#endif
#else
#define NORVIK50_EXPORT __attribute__((visibility("default")))
#endif

#endif  // NORVIK50_EXPORT_H_
