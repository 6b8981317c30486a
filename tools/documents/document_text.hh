#ifndef DOCUMENT_TEXT_HH
#define DOCUMENT_TEXT_HH

// An XML document in the making, each text in the form in which the library's readers take it
// whole.

#include <cstdint>
#include <string>
#include <string_view>

/// Why no form of a text reaches a record as it is, and what helps; empty when one does. Texts are
/// in the local code page.
std::string why_unwritable(std::string_view text);

/// The declaration says ISO-8859-1, as in the library's own documents, unless a text holds what
/// that lacks: then UTF-8.
class document_text {
 public:
  explicit document_text(const char* of);

  void begin(std::string_view element);  ///< with a line end behind it, as each of the following
  void begin(std::string_view element, std::int32_t number);
  void begin(std::string_view element, std::string_view attribute, std::int32_t number);
  void end(std::string_view element);

  void leaf(std::string_view element, std::int32_t number);
  void leaf(std::string_view element, std::uint32_t number);
  /// In so many digits that it is the same when it is read.
  void leaf(std::string_view element, float number);
  void leaf(std::string_view element, const char* held);
  /// A leaf with an attribute.
  void leaf(std::string_view element, std::string_view attribute, std::int32_t number,
            const char* held);
  void date();

  /// The whole document; nothing is left here.
  std::string finish();

 private:
  void start_tag(std::string_view element, std::string_view attribute, std::int32_t number);
  void text(std::string_view local);
  void character(char32_t code);
  void characters(std::u32string_view codes);
  void become_utf8();

  std::string body;
  const char* root;
  bool is_utf8 = false;
};

#endif
