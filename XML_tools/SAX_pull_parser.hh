#ifndef SAX_PULL_PARSER_HH
#define SAX_PULL_PARSER_HH

/// What the memory and the file variant of the pull parser share: the collecting handler and the
/// step-by-step interface. Use the two variants, `SAX_Memory_Parser` and `SAX_File_Parser`.
///
/// A parser turns a document into steps. Each step yields the name of the element that is open and,
/// where the step brought text, that text:
///
///     step that scans      yields for <ELEM>5</ELEM> and a line break
///     the start tag        (ELEM, null)
///     the text             (ELEM, "5")
///     the end tag          (null, null)
///     the line break       (null, null)
///
/// A tag without a text stays reported until the next tag: (ELEM, null) comes once for `<ELEM/>`,
/// twice for `<ELEM></ELEM>`, and once more for a comment in between. White space alone (blanks,
/// tabs and line ends) drops it, so that a container element is reported by its start tag only.
/// Where the document type declares that an element holds elements only, its white space is no text
/// and drops nothing.
///
/// Of a text that comes in pieces, one piece counts. Pieces of one step replace each other: in
/// "A&amp;B" a reference begins a new piece, so the text is "&B". Pieces of later steps are
/// dropped: what stands behind a comment that interrupts a text, or behind a child element, is
/// nobody's.
///
/// Names and texts are in the local 8-bit code page. What holds for the whole library stands in
/// docs/contract.md.

#include <cstdint>
#include <memory>
#include <vector>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>

#include "zrt4_export.hh"

XERCES_CPP_NAMESPACE_BEGIN
class XMLElementDecl;
XERCES_CPP_NAMESPACE_END

struct attr;
struct attrf;
class MemParseHandlers;
class FileParseHandlers;

namespace zrt4 {

enum class message_topic : std::uint32_t;

namespace detail {
template <class Attribute>
struct handler_texts;
template <class Handlers>
class direct_scanner;
struct place;
struct scan_place;
}  // namespace detail

/// What a handler counts since the start of its document.
struct parse_counters {
  std::uint32_t fElementCount = 0;    ///< start tags
  std::uint32_t fAttrCount = 0;       ///< attributes
  std::uint32_t fCharacterCount = 0;  ///< character units of text
  std::uint32_t fSpaceCount = 0;      ///< character units of ignorable white space
};

struct parse_counters_with_flag : parse_counters {
  bool fSawErrors = false;  ///< never set; cleared by resetErrors
};

/// What the two variants are made of; what they do differently is tabled in SAX_pull_parser.cc.
struct memory_variant {  // text in memory, handler on the heap
  using attribute = attr;
  using counters = parse_counters;
  using input_source = xercesc::MemBufInputSource*;
  using handler = MemParseHandlers*;
};

struct file_variant {  // file opened by the scanner, handler embedded in the parser
  using attribute = attrf;
  using counters = parse_counters_with_flag;
  struct input_source {};
  using handler = FileParseHandlers;
};

/// Document and error handler of a pull parser: holds the open element, its text and attributes,
/// counts, and reports XML errors on standard error. What it holds is in memory of its own: texts
/// and attributes that it gives out live until the next event or step.
template <class Variant>
class ZRT4_EXPORT parse_handlers : public xercesc::HandlerBase, protected Variant::counters {
 public:
  using attribute = typename Variant::attribute;

  parse_handlers();
  parse_handlers(const parse_handlers&) = delete;
  parse_handlers& operator=(const parse_handlers&) = delete;
  ~parse_handlers() override;

  /// Holds the element's name and attributes in place of those held before; keeps a held text.
  void startElement(const XMLCh* const name, xercesc::AttributeList& attributes) override;
  /// Marks the step: the next one drops what is held.
  void endElement(const XMLCh* const name) override;
  /// While an element is held: holds the text in place of the one held before, or, when it is only
  /// blanks, line ends and tabs, drops text and element. Counts `length` in every case.
  void characters(const XMLCh* const chars, const XMLSize_t length) override;
  /// Counts `length` units.
  void ignorableWhitespace(const XMLCh* const chars, const XMLSize_t length) override;
  /// Zeroes all counts, that of the errors, too, and drops the held text and element; attributes
  /// stay.
  void resetDocument() override;

  /// Each writes "\n<Kind> at (file <system id>, line <n>, char <n>): <message>\n" to standard
  /// error, kind being "Warning", "Error" or "Fatal Error", and adds one to the error count.
  void warning(const xercesc::SAXParseException& exception) override;
  void error(const xercesc::SAXParseException& exception) override;
  void fatalError(const xercesc::SAXParseException& exception) override;

  /// Starts a step: when an end tag was seen or a text is held, drops the held element, text and
  /// attributes; otherwise does nothing, so that a start tag without text stays reported.
  void reset_end_tag_flag();

  int getErrorCount() const { return error_count; }
  unsigned int getElementCount() const { return this->fElementCount; }
  unsigned int getAttrCount() const { return this->fAttrCount; }
  unsigned int getCharacterCount() const { return this->fCharacterCount; }
  unsigned int getSpaceCount() const { return this->fSpaceCount; }

  /// The held element and text, null when there is none. They belong to the handler.
  const char* getTag() const { return tag; }
  const char* getValue() const { return value; }
  void getTagValue(const char** tag_out, const char** value_out) const;  ///< Neither may be null.

  /// Value of the first attribute of exactly that name, null when there is none (or `name` is
  /// null). It belongs to the handler.
  const char* getAttr(const char* name) const;

  /// Drop the held element, the held text, or both.
  void resetTag();
  void resetValue();
  void resetTagValue();

 protected:
  const char* tag = nullptr;
  const char* value = nullptr;
  std::vector<attribute*> vattr;
  std::int32_t error_count = 0;
  bool end_flag = false;

 private:
  template <class Handlers>
  friend class detail::direct_scanner;

  /// As `startElement` with the name of `element`, which is converted once in a document.
  ZRT4_INTERNAL void start_declared(const xercesc::XMLElementDecl& element,
                                    xercesc::AttributeList& attributes);
  ZRT4_INTERNAL void open(const char* name, const xercesc::AttributeList& attributes);
  void drop_attributes();
  void report(const char* kind, const xercesc::SAXParseException& exception);
  /// What the error is about that is reported next.
  ZRT4_INTERNAL void set_topic(message_topic topic);

  /// The memory behind `tag`, `value` and `vattr`, kept from step to step.
  std::unique_ptr<detail::handler_texts<attribute>> texts;
};

extern template class ZRT4_EXPORT parse_handlers<memory_variant>;
extern template class ZRT4_EXPORT parse_handlers<file_variant>;

/// The step-by-step interface. Construct a variant, check `init_ok`, `start` it, then call `parse`
/// until it returns non-zero. To call `parse` or `get_attr` without a `start` that succeeded is a
/// caller error. A parser reads one document: behind its end, `parse` returns -1 for good. Used by
/// one thread; each parser holds one use of the XML library from its constructor to its destructor,
/// also when `init_ok` is false.
template <class Variant>
class ZRT4_EXPORT pull_parser {
 public:
  pull_parser(const pull_parser&) = delete;
  pull_parser& operator=(const pull_parser&) = delete;

  /// True when the constructor completed. When false the parser can only be destroyed.
  bool init_ok() const { return init; }

  /// Takes one step. `*tag` and `*val` (either pointer may be null) get the held element and text,
  /// or null; they belong to the parser and live until its next step.
  /// Returns 0 for a step without any error so far, that to the end of the document included; -1,
  /// with both null, when an earlier step reached the end; otherwise, with both null, the number of
  /// XML errors and warnings so far. An error in the step is written to standard error (see
  /// `parse_handlers`).
  int parse(char** tag, char** val);

  /// Number of XML errors, fatal errors and warnings so far.
  int get_error_counter() const;

  /// Looks up an attribute of the current element, also in the step of its text. Returns 0 and its
  /// value in `*res` (it belongs to the parser and lives as long as the element is current), or -1
  /// and null when `name` is null, when no attribute has exactly that name, or after any XML error.
  /// An empty value is a value. Do not pass a null `res`.
  int get_attr(char* name, char** res);

 private:
  friend struct detail::scan_place;
  ZRT4_INTERNAL void find_place(detail::place& found) const;
  // Apart from the step, which is what a scan has most of: within it, each step would cost more.
  [[gnu::noinline]] ZRT4_INTERNAL void finish();

 protected:
  pull_parser();
  ~pull_parser();

  void set_up(char* text);
  bool begin(char* file);

  bool init = false;
  bool gotMore = true;
  typename Variant::input_source memBufIS{};
  xercesc::SAXParser* parser = nullptr;
  xercesc::XMLPScanToken token;
  typename Variant::handler handler{};
};

}  // namespace zrt4

#endif
