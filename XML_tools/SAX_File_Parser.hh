#ifndef SAX_FILE_PARSER_HH
#define SAX_FILE_PARSER_HH

/// Pull parser over an XML file.

#include "SAX_pull_parser.hh"

/// One attribute of the current element, in the local code page; the texts belong to the handler.
struct attrf {
  const char* name;
  const char* type;  ///< as the scanner reports it, for example "CDATA"
  const char* value;
};

class ZRT4_EXPORT FileParseHandlers : public zrt4::parse_handlers<zrt4::file_variant> {
 public:
  FileParseHandlers();
  ~FileParseHandlers() override;

  /// Clears `fSawErrors`; the error count stays.
  void resetErrors() override;
};

extern template class ZRT4_EXPORT zrt4::pull_parser<zrt4::file_variant>;

class ZRT4_EXPORT SAX_File_Parser : public zrt4::pull_parser<zrt4::file_variant> {
 public:
  /// Sets up the XML library and a scanner. A failure of the XML library is written to standard
  /// error ("Error during initialization! Message:", then the reason) and leaves `init_ok()` false.
  SAX_File_Parser();
  ~SAX_File_Parser();

  /// Opens `file` (null: an empty name; a URL is fetched, see docs/contract.md) and scans what
  /// stands before the root element; the first `parse` then yields the root. Returns false on
  /// success, true on failure, with a message on standard error: "scanFirst() failed", behind the
  /// XML error that is the reason and counts as such; or, uncounted, "Error during parsing memory
  /// stream:", "Exception message is:" and the reason, for a file that cannot be opened or read.
  /// (Both variants say "memory stream".) XML errors name the document by the system id that the
  /// scanner makes of `file`: its absolute path.
  bool start(char* file);
};

#endif
