#include "attr_tags_functions.hh"

#include "xml_writer.hh"

namespace {

using zrt4::detail::append_tag;

using texts = std::vector<const char*>;

void append_attributes(std::string& a, const texts& names, const texts& values) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i != 0) a += ' ';
    a += names[i];
    a += "=\"";
    a += values.at(i);
    a += '"';
  }
}

void append_tag_with_attributes(std::string& a, const char* name, const texts* names,
                                const texts* values, const char* closing) {
  append_tag(a, "<", name, " ");
  append_attributes(a, *names, *values);
  a += closing;
}

}  // namespace

void START_TAG(std::string& a, const char* b) {
  append_tag(a, "<", b, ">");
}

void START_TAGN(std::string& a, const char* b) {
  append_tag(a, "<", b, ">\n");
}

void END_TAG(std::string& a, const char* b) {
  append_tag(a, "</", b, ">");
}

void END_TAGN(std::string& a, const char* b) {
  append_tag(a, "</", b, ">\n");
}

void START_TAG_ATTR(std::string& a, const char* b, const texts* at, const texts* v) {
  append_tag_with_attributes(a, b, at, v, "/>");
}

void START_TAG_ATTRN(std::string& a, const char* b, const texts* at, const texts* v) {
  append_tag_with_attributes(a, b, at, v, "/>\n");
}

void START_TAG_ATTRNS(std::string& a, const char* b, const texts* at, const texts* v) {
  append_tag_with_attributes(a, b, at, v, ">");
}

void START_TAG_ATTRNNS(std::string& a, const char* b, const texts* at, const texts* v) {
  append_tag_with_attributes(a, b, at, v, ">\n");
}
