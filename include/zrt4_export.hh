#ifndef ZRT4_EXPORT_HH
#define ZRT4_EXPORT_HH

/// Marks what the shared libraries of this project export; everything else stays inside them.
#define ZRT4_EXPORT __attribute__((visibility("default")))

/// Marks members of exported classes that only the library itself calls.
#define ZRT4_INTERNAL __attribute__((visibility("hidden")))

#endif
