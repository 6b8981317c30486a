#ifndef MERGING_HH
#define MERGING_HH

#include <cstdint>

#include "merged_origins.hh"
#include "told_lines.hh"
#include "zrt4xml.hh"

/// What merging did, for whoever tells of it.
struct merge_report {
  std::uint32_t document = 0;  ///< that was merged last; 0 is the one that all are merged into
  merged_origins origins;
  told_lines contradictions;  ///< where both records know a value, and not the same
};

/// Completes the records of `base` with what those of `from` know, and adds those that it lacks.
/// Channels are the same when their property is, bits, dimensions and statistics when their number
/// is; of several, first those of the same name, the others in their order. A record keeps what it
/// knows and takes what it does not (see `known_values.hh`); with `force` it takes all that the
/// other knows. Nothing else is lost: unlike `extend_channel_description`, which drops bits,
/// dimensions and statistics, this completes each of them.
void merge_into(zrt4::channel_list& base, zrt4::channel_list& from, bool force,
                merge_report* report = nullptr);

#endif
