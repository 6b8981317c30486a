#ifndef XML_WRITER_HH
#define XML_WRITER_HH

// What the writers of channel descriptions and of environment dictionaries share. Both build their
// whole document in one string that starts as `begin_document`, append to it with the tag
// builders and `append_leaf`, complete it with `end_document` and hand it to their destinations:
// the text is never copied on its way to a file, a descriptor or, moved, a caller's empty string.
//
//     std::string document = begin_document(nullptr);
//     START_TAGN(document, "ROOT");
//     append_leaf(document, "INDEX", decimal(7));
//     END_TAGN(document, "ROOT");
//     end_document(document);
//     write_document(file, document);

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

#include "number_text.hh"

namespace zrt4::detail {

/// Appends `opening`, `name` and `closing`.
inline void append_tag(std::string& out, std::string_view opening, std::string_view name,
                       std::string_view closing) {
  out += opening;
  out += name;
  out += closing;
}

/// Appends the line "<name>text</name>\n". Nothing is escaped.
inline void append_leaf(std::string& out, std::string_view name, std::string_view text) {
  append_tag(out, "<", name, ">");
  out += text;
  append_tag(out, "</", name, ">\n");
}

/// The XML declaration: what every document starts with. `destination`, unless null, is the string
/// that the document is for. When it is empty, the document takes over its memory: a string that is
/// kept from one document to the next costs new memory but once.
std::string begin_document(std::string* destination);

/// Makes room for a document that will be so long, about: growing step by step would cost more than
/// writing it. It is a hint: where there is no such room, nothing happens.
void expect_length(std::string& document, std::size_t length);

/// Appends the empty line that every document ends with.
void end_document(std::string& document);

/// Writes the document to an open file, through to the system: a descriptor that comes next may be
/// the same file. Nothing tells whether it arrived: callers never did.
void write_document(std::FILE* file, const std::string& document);

/// Writes the document to a descriptor, in as many pieces as it takes; false when a write fails.
bool write_document(int descriptor, const std::string& document);

}  // namespace zrt4::detail

#endif
