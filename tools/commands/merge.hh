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
                const std::string& output);

/// `zrt4xml merge --dry-run`: prints the differences that merging would make to the first file.
exit_code merge_dry_run(const std::vector<std::string>& files, bool force, answer_format format);

#endif
