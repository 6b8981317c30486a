#ifndef EXIT_CODE_HH
#define EXIT_CODE_HH

/// The tool's exit code; of several the worst counts.
enum exit_code {
  exit_fine = 0,
  /// A document could not be read or written cleanly, documents differ, a channel was not found or
  /// not selected, or `check` found something.
  exit_not_fine = 1,
  /// Wrong usage, or a file that cannot be opened, used or written.
  exit_trouble = 2
};

constexpr exit_code fine_if(bool all_well) {
  return all_well ? exit_fine : exit_not_fine;
}

#endif
