#ifndef ZRT4_EXPORT_HH
#define ZRT4_EXPORT_HH

/// Marks what the shared libraries of this project export; everything else stays inside them.
#define ZRT4_EXPORT __attribute__((visibility("default")))

#endif
