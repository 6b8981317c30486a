#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "SAX_File_Parser.hh"
#include "SAX_Memory_Parser.hh"
#include "diagnostics.hh"
#include "element_names.hh"
#include "local_text.hh"

namespace zrt4 {

namespace detail {

template <class Attribute>
struct handler_texts {
  struct held_attribute {
    Attribute record{};
    local_text name, type, value;
  };

  // A record stays at its address: callers hold pointers into vattr's records within a step.
  Attribute* hold(std::size_t position, const xercesc::AttributeList& from) {
    if (position == attributes.size()) attributes.push_back(std::make_unique<held_attribute>());
    held_attribute& held = *attributes[position];
    held.record.name = held.name.assign(from.getName(position), page);
    held.record.type = held.type.assign(from.getType(position), page);
    held.record.value = held.value.assign(from.getValue(position), page);
    return &held.record;
  }

  message_topic topic = message_topic::xml;
  code_page page;
  local_text tag, value;
  element_names names;
  std::vector<std::unique_ptr<held_attribute>> attributes;
};

namespace {

constexpr const char* warning_kind = "Warning";
constexpr const char* error_kind = "Error";
constexpr const char* fatal_kind = "Fatal Error";

message_severity severity_of(std::string_view kind) {
  if (kind == warning_kind) return message_severity::warning;
  return kind == error_kind ? message_severity::error : message_severity::fatal_error;
}

// Carriage return is deliberately not blank: a text holding one is reported.
std::size_t leading_blanks(const char* text) {
  const char* end = text;
  while (*end == ' ' || *end == '\n' || *end == '\t') ++end;
  return static_cast<std::size_t>(end - text);
}

}  // namespace
}  // namespace detail

template <class Variant>
parse_handlers<Variant>::parse_handlers()
    : texts(std::make_unique<detail::handler_texts<attribute>>()) {}

template <class Variant>
parse_handlers<Variant>::~parse_handlers() = default;

template <class Variant>
void parse_handlers<Variant>::startElement(const XMLCh* const name,
                                           xercesc::AttributeList& attributes) {
  open(texts->tag.assign(name, texts->page), attributes);
}

template <class Variant>
void parse_handlers<Variant>::start_declared(const xercesc::XMLElementDecl& element,
                                             xercesc::AttributeList& attributes) {
  open(texts->names.of(element, texts->page), attributes);
}

template <class Variant>
void parse_handlers<Variant>::open(const char* name, const xercesc::AttributeList& attributes) {
  tag = name;
  const std::size_t count = attributes.getLength();
  ++this->fElementCount;
  this->fAttrCount += static_cast<std::uint32_t>(count);
  drop_attributes();
  for (std::size_t i = 0; i < count; ++i) vattr.push_back(texts->hold(i, attributes));
}

template <class Variant>
void parse_handlers<Variant>::endElement(const XMLCh* const) {
  end_flag = true;
}

template <class Variant>
void parse_handlers<Variant>::characters(const XMLCh* const chars, const XMLSize_t length) {
  if (tag != nullptr) {
    value = texts->value.assign(chars, length, texts->page);
    if (value != nullptr && detail::leading_blanks(value) == length) resetTagValue();
  }
  this->fCharacterCount += static_cast<std::uint32_t>(length);
}

template <class Variant>
void parse_handlers<Variant>::ignorableWhitespace(const XMLCh* const, const XMLSize_t length) {
  this->fSpaceCount += static_cast<std::uint32_t>(length);
}

template <class Variant>
void parse_handlers<Variant>::resetDocument() {
  this->fElementCount = 0;
  this->fAttrCount = 0;
  this->fCharacterCount = 0;
  this->fSpaceCount = 0;
  error_count = 0;
  resetTagValue();
  texts->names.forget();
}

template <class Variant>
void parse_handlers<Variant>::warning(const xercesc::SAXParseException& exception) {
  report(detail::warning_kind, exception);
}

template <class Variant>
void parse_handlers<Variant>::error(const xercesc::SAXParseException& exception) {
  report(detail::error_kind, exception);
}

template <class Variant>
void parse_handlers<Variant>::fatalError(const xercesc::SAXParseException& exception) {
  report(detail::fatal_kind, exception);
}

template <class Variant>
void parse_handlers<Variant>::report(const char* kind,
                                     const xercesc::SAXParseException& exception) {
  ++error_count;
  const detail::notice about{texts->topic, detail::severity_of(kind), stderr};
  const std::string document = detail::to_local(exception.getSystemId());
  const std::string text = detail::to_local(exception.getMessage());
  const XMLFileLoc line = exception.getLineNumber();
  const XMLFileLoc column = exception.getColumnNumber();
  if (detail::is_received()) return detail::deliver(about, {text}, {document, line, column});
  detail::say(stderr, {"\n", kind, " at (file ", document, ", line ", std::to_string(line),
                       ", char ", std::to_string(column), "): ", text, "\n"});
}

template <class Variant>
void parse_handlers<Variant>::set_topic(message_topic topic) {
  texts->topic = topic;
}

template <class Variant>
void parse_handlers<Variant>::reset_end_tag_flag() {
  if (!end_flag && value == nullptr) return;
  resetTagValue();
  drop_attributes();
  end_flag = false;
}

template <class Variant>
void parse_handlers<Variant>::getTagValue(const char** tag_out, const char** value_out) const {
  *tag_out = tag;
  *value_out = value;
}

template <class Variant>
const char* parse_handlers<Variant>::getAttr(const char* name) const {
  if (name == nullptr) return nullptr;
  for (const attribute* held : vattr) {
    if (held->name != nullptr && std::strcmp(held->name, name) == 0) return held->value;
  }
  return nullptr;
}

template <class Variant>
void parse_handlers<Variant>::resetTag() {
  tag = nullptr;
}

template <class Variant>
void parse_handlers<Variant>::resetValue() {
  value = nullptr;
}

template <class Variant>
void parse_handlers<Variant>::resetTagValue() {
  resetTag();
  resetValue();
}

template <class Variant>
void parse_handlers<Variant>::drop_attributes() {
  vattr.clear();
}

template class parse_handlers<memory_variant>;
template class parse_handlers<file_variant>;

}  // namespace zrt4
