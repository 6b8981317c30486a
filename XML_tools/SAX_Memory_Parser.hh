#ifndef SAX_MEMORY_PARSER_HH
#define SAX_MEMORY_PARSER_HH

/// Pull parser over an XML text in memory.

#include "SAX_pull_parser.hh"

/// One attribute of the current element, in the local code page; the texts belong to the handler.
struct attr {
  const char* name;
  const char* type;  ///< as the scanner reports it, for example "CDATA"
  const char* value;
};

class ZRT4_EXPORT MemParseHandlers : public zrt4::parse_handlers<zrt4::memory_variant> {
 public:
  MemParseHandlers();
  ~MemParseHandlers() override;
};

extern template class ZRT4_EXPORT zrt4::pull_parser<zrt4::memory_variant>;

class ZRT4_EXPORT SAX_Memory_Parser : public zrt4::pull_parser<zrt4::memory_variant> {
 public:
  /// Sets up the XML library and a scanner over `text`, a zero-terminated document in any encoding
  /// without zero bytes; null is taken as an empty text. The caller keeps the text, and keeps it
  /// alive and unchanged as long as the parser. A failure of the XML library is written to standard
  /// error ("Error during initialization! Message:", then the reason) and leaves `init_ok()` false.
  explicit SAX_Memory_Parser(char* text);
  ~SAX_Memory_Parser();

  /// Scans what stands before the root element; the first `parse` then yields the root. Returns
  /// false on success, true on failure, with a message on standard error: "scanFirst() failed",
  /// behind the XML error that is the reason and counts as such; or, uncounted, "Error during
  /// parsing memory stream:", "Exception message is:" and the reason. XML errors name the document
  /// "my_mem_info".
  bool start();
};

#endif
