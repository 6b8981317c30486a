#ifndef MERGING_HH
#define MERGING_HH

#include "zrt4xml.hh"

/// Completes the channels of `base` with what those of `from` know (see
/// `extend_channel_description`), and moves those that it lacks behind them.
void merge_into(zrt4::channel_list& base, zrt4::channel_list& from, bool force);

#endif
