#include "xml_text.hh"

namespace {

void append_escaped(std::string& to, std::string_view text) {
  for (const char c : text) {
    switch (c) {
      case '&':
        to += "&amp;";
        break;
      case '<':
        to += "&lt;";
        break;
      case '"':
        to += "&quot;";
        break;
      default:
        to += c;
    }
  }
}

}  // namespace

void xml_text::start(const std::string& name, const attributes& given, std::string_view end) {
  made.append(2 * opened.size(), ' ');
  made.append("<").append(name);
  for (const auto& [attribute, value] : given) {
    made.append(" ").append(attribute).append("=\"");
    append_escaped(made, value);
    made += '"';
  }
  made += end;
}

void xml_text::open(const std::string& name, const attributes& given) {
  start(name, given, ">\n");
  opened.push_back(name);
}

void xml_text::close() {
  const std::string name = std::move(opened.back());
  opened.pop_back();
  made.append(2 * opened.size(), ' ');
  made.append("</").append(name).append(">\n");
}

void xml_text::empty(const std::string& name, const attributes& given) {
  start(name, given, "/>\n");
}

void xml_text::leaf(const std::string& name, const attributes& given, std::string_view content) {
  start(name, given, ">");
  append_escaped(made, content);
  made.append("</").append(name).append(">\n");
}

void xml_text::comment(std::string_view content) {
  made.append(2 * opened.size(), ' ').append("<!-- ").append(content).append(" -->\n");
}
