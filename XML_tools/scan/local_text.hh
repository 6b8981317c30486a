#ifndef LOCAL_TEXT_HH
#define LOCAL_TEXT_HH

// Conversion of the scanner's UTF-16 text to the local 8-bit code page, or to UTF-8.

#include <cstddef>
#include <memory>
#include <string>
#include <xercesc/util/XercesDefs.hpp>

namespace zrt4::detail {

/// While it lives, the texts that its thread makes are UTF-8, whatever the locale: for a binding to
/// a language whose texts know no locale. The scanner's own converter cannot be asked for that,
/// since it keeps the code page of the process's first text.
class utf8_texts {
 public:
  utf8_texts();
  utf8_texts(const utf8_texts&) = delete;
  utf8_texts& operator=(const utf8_texts&) = delete;
  ~utf8_texts();

  static bool are_wanted();

 private:
  bool before;
};

/// The local code page, as far as it allows a short cut.
class code_page {
 public:
  /// True when the code page keeps every ASCII character as it is, so that ASCII text can be copied
  /// instead of transcoded. Asked of the transcoder once.
  bool keeps_ascii() {
    if (known == unknown) known = utf8_texts::are_wanted() || probe() ? yes : no;
    return known == yes;
  }

 private:
  static bool probe();
  enum { unknown, yes, no } known = unknown;
};

/// One converted text in memory that is kept for the next one.
class local_text {
 public:
  /// Converts `length` units (or up to the terminating zero) and returns the zero-terminated
  /// result, which lives until the next call; null when the transcoder cannot convert the text.
  const char* assign(const XMLCh* units, std::size_t length, code_page& page);
  const char* assign(const XMLCh* units, code_page& page);

  /// What the last call returned, unless that was null.
  const char* held() const { return bytes.get(); }

 private:
  char* room_for(std::size_t size);
  const char* transcode(const XMLCh* units, std::size_t length);

  std::unique_ptr<char[]> bytes;
  std::size_t capacity = 0;
};

/// A message or name for printing; empty when `units` is null or cannot be converted.
std::string to_local(const XMLCh* units);

}  // namespace zrt4::detail

#endif
