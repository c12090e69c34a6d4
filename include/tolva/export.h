// Symbol visibility of the public API. The shared libraries are built with
// hidden visibility, so only what is marked here reaches a host's link: the
// component, the host types and events, the platform interfaces and their
// factories. The private families, POCO, SQLite and Qt stay inside.
//
// Marking a declaration "default" is harmless in a static build and in a host
// compiled with its own -fvisibility=hidden, so the macros need no switch.
#ifndef TOLVA_EXPORT_H_
#define TOLVA_EXPORT_H_

#if defined(__GNUC__) || defined(__clang__)
#define TOLVA_EXPORT __attribute__((visibility("default")))
#else
#define TOLVA_EXPORT
#endif

// tolva-qt, the Qt binding, is a library of its own with the same rule.
#define TOLVA_QT_EXPORT TOLVA_EXPORT

#endif  // TOLVA_EXPORT_H_
