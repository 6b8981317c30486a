#ifndef CONVERT_HH
#define CONVERT_HH

#include <string>
#include <vector>

#include "answer_format.hh"
#include "exit_code.hh"

/// What `--to` accepts.
enum class output_format { same, xml, variables, text, short_text };

/// `zrt4xml convert`: reads channel descriptions or a dictionary and writes them in another form.
/// `wide` selects the 256-character record of a dictionary.
exit_code convert(const std::string& file, output_format to, bool wide, const std::string& output);

/// `zrt4xml merge`: completes the channels of the first file with what the others know; with
/// `force`, the others win. Channels that the first lacks are added.
exit_code merge(const std::vector<std::string>& files, bool force, output_format to,
                const std::string& output);

/// `zrt4xml merge --dry-run`: prints the differences that merging would make to the first file.
exit_code merge_dry_run(const std::vector<std::string>& files, bool force, answer_format wanted);

#endif
