#ifndef MERGE_HH
#define MERGE_HH

#include <string>
#include <vector>

#include "answer_format.hh"
#include "exit_code.hh"
#include "writing.hh"

/// `zrt4xml merge`: completes the channels of the first file with what the others know; with
/// `force`, the others win. Channels that the first lacks are added.
exit_code merge(const std::vector<std::string>& files, bool force, document_form to,
                const target& where);

/// `zrt4xml merge --dry-run`: prints the differences between the first file and what merging would
/// write, as it is read then. `to` is no table.
exit_code merge_dry_run(const std::vector<std::string>& files, bool force, document_form to,
                        bool lossy, answer_format format);

#endif
