#ifndef EXIT_CODE_HH
#define EXIT_CODE_HH

// What the tool's exit code means.

enum exit_code {
  exit_fine = 0,
  exit_bad_document = 1,  ///< a document could not be read cleanly
  exit_no_use = 2         ///< wrong usage, or a file that cannot be opened or written
};

#endif
