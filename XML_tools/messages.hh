#ifndef MESSAGES_HH
#define MESSAGES_HH

/// The library's messages as records: what readers, writers, the selector and the pull parsers
/// would print arrives at a receiver instead, as long as one lives in the thread. Listings and
/// documents are no messages. Without a receiver everything is printed, as docs/contract.md says.
///
///     class log_of_server : public zrt4::message_receiver {
///       void receive(const zrt4::message& m) override { log(m.document, m.line, m.text); }
///     };
///
/// `zrt4xml.hh` has one that keeps messages in a list, and readers that return them.

#include <cstddef>
#include <cstdint>

#include "zrt4_export.hh"

namespace zrt4 {

namespace detail {
struct message_delivery;
}  // namespace detail

/// How bad it is. XML errors are as the scanner judges them. Values stay; later releases may add.
enum class message_severity : std::uint32_t {
  remark = 0,       ///< worth knowing: a file was created, a text is empty
  warning = 1,      ///< an XML warning; readers count it as an error
  error = 2,        ///< something is wrong, or was not done
  fatal_error = 3,  ///< a document is not well-formed, or beyond a limit: reading ends there
};

/// What a message is about. Values stay; later releases may add.
enum class message_topic : std::uint32_t {
  xml = 1,          ///< the XML of a document
  limit = 2,        ///< a document asks for more than docs/security.md grants
  library = 3,      ///< the XML library cannot be set up
  cannot_open = 4,  ///< a file cannot be opened, to be read or written; why stands in the text
  not_started = 5,  ///< a document cannot be started
  wrong_root = 6,   ///< a document has another root element than its reader's
  missing_attribute = 7,  ///< an element lacks an attribute that it must have
  empty_text = 8,         ///< an element has no text, where one is usual: a remark
  out_of_memory = 9,      ///< there was no memory; the rest of an entry, or a file, was not read
  not_read = 10,          ///< the document of a dump, or a part of a camera file, was not read
  invalid_argument = 11,  ///< a dump was called with what it cannot use
  cannot_write = 12,      ///< a write to a descriptor failed
  file_created = 13,      ///< a remark
  file_closed = 14,       ///< a remark
  not_found = 15,         ///< a selector has no channel of that name
  nothing_loaded = 16,    ///< a selector has no descriptions
  unowned_records = 17,   ///< records that their counter does not count are not released
};

/// One message. It and its texts live until `receive` returns. Texts are in the local code page,
/// never null.
struct message {
  message_severity severity;
  message_topic topic;
  /// Where: the line and column behind what was read, from 1; 0 where they are not known.
  std::uint64_t line;
  std::uint64_t column;
  /// A document in memory is "my_mem_info", one that is read from a file its absolute path; a file
  /// that cannot be opened, or is written, is named as the caller did. Empty where there is none.
  const char* document;
  /// What is said, without the document and the position, and without a line end behind it.
  const char* text;
  std::uint64_t reserved;  ///< 0
};

static_assert(sizeof(message) == 32 + 2 * sizeof(void*));
static_assert(offsetof(message, document) == 24);

/// For its lifetime, the messages of the thread that made it arrive here and are not printed.
/// Receivers nest: the one made last gets them. They are destroyed by the thread that made them.
class ZRT4_EXPORT message_receiver {
 public:
  message_receiver();
  message_receiver(const message_receiver&) = delete;
  message_receiver& operator=(const message_receiver&) = delete;
  virtual ~message_receiver();

  /// Called by the library's function, in its thread, for each message. While it runs, messages of
  /// library functions that it calls itself go to the receiver outside this one.
  ///
  /// It may throw. The exception then ends the function of the library and arrives at its caller
  /// (of a pull parser's step, too, which ends the document): what was being built is released,
  /// records that are in a list stay there, a file that was being written is closed.
  /// `clean_chan_desr_list` releases everything first; in a destructor it goes nowhere.
  virtual void receive(const message& met) = 0;

 private:
  ZRT4_INTERNAL static void deliver(const message& met);
  friend struct detail::message_delivery;

  message_receiver* outer;
};

}  // namespace zrt4

#endif
