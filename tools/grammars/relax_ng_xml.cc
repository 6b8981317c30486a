#include "grammars.hh"
#include "pattern.hh"
#include "xml_text.hh"

namespace {

class relax_ng_writer {
 public:
  std::string write(const relax_ng& grammar) {
    out.comment(origin);
    out.open("grammar", {{"xmlns", "http://relaxng.org/ns/structure/1.0"},
                         {"xmlns:a", "http://relaxng.org/ns/compatibility/annotations/1.0"},
                         {"xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance"},
                         {"datatypeLibrary", "http://www.w3.org/2001/XMLSchema-datatypes"}});
    out.open("start");
    write(grammar.start);
    out.close();
    for (const definition& each : grammar.definitions) {
      out.open("define", {{"name", each.name}});
      document(each.documentation);
      write(each.what);
      out.close();
    }
    out.close();
    return out.text();
  }

 private:
  void document(const std::string& text) {
    if (!text.empty()) out.leaf("a:documentation", {}, text);
  }

  void write(const pattern& one) {
    switch (one.what) {
      case pattern::element:
        return write_inside("element", {{"name", one.name}}, one);
      case pattern::attribute:
        return write_inside("attribute", {{"name", one.name}}, one);
      case pattern::group:
        return write_inside("group", {}, one);
      case pattern::interleave:
        return write_inside("interleave", {}, one);
      case pattern::choice:
        return write_inside("choice", {}, one);
      case pattern::optional:
        return write_inside("optional", {}, one);
      case pattern::zero_or_more:
        return write_inside("zeroOrMore", {}, one);
      case pattern::one_or_more:
        return write_inside("oneOrMore", {}, one);
      case pattern::reference:
        return out.empty("ref", {{"name", one.name}});
      case pattern::text:
        return out.empty("text");
      case pattern::data:
        return write_data(one);
      case pattern::value:
        out.leaf("value", {{"type", one.name}}, one.literal);
        return document(one.documentation);  // a value has no room for it
    }
  }

  void write_inside(const std::string& name, const xml_text::attributes& attributes,
                    const pattern& one) {
    out.open(name, attributes);
    document(one.documentation);
    for (const pattern& each : one.inside) write(each);
    out.close();
  }

  void write_data(const pattern& one) {
    if (one.parameters.empty()) return out.empty("data", {{"type", one.name}});
    out.open("data", {{"type", one.name}});
    for (const auto& [name, value] : one.parameters) out.leaf("param", {{"name", name}}, value);
    out.close();
  }

  xml_text out;
};

}  // namespace

std::string relax_ng_xml(const document_grammar& grammar) {
  return relax_ng_writer().write(patterns_of(grammar));
}
