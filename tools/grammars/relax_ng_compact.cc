#include "grammars.hh"
#include "pattern.hh"

namespace {

class compact_writer {
 public:
  std::string write(const relax_ng& grammar) {
    out += "# " + std::string(origin) + "\n\n";
    out += "default namespace = \"\"\n";
    out += "namespace xsi = \"http://www.w3.org/2001/XMLSchema-instance\"\n";
    out += "datatypes xsd = \"http://www.w3.org/2001/XMLSchema-datatypes\"\n\n";
    define("start", "", grammar.start);
    for (const definition& each : grammar.definitions) {
      define(each.name, each.documentation, each.what);
    }
    return out;
  }

 private:
  void define(const std::string& name, const std::string& documentation, const pattern& what) {
    document(documentation);
    out += name + " =";
    inner([&] { write(what); });
    out += '\n';
  }

  void document(const std::string& text) {
    if (text.empty()) return;
    out += "## " + text;
    new_line();
  }

  void new_line() {
    out += '\n';
    out.append(2 * depth, ' ');
  }

  template <class Write>
  void inner(Write write) {
    ++depth;
    new_line();
    write();
    --depth;
    new_line();
  }

  void write(const pattern& one) {
    switch (one.what) {
      case pattern::element:
        return write_named("element ", one);
      case pattern::attribute:
        return write_named("attribute ", one);
      case pattern::group:
        return write_all(one, ",");
      case pattern::interleave:
        return write_all(one, " &");
      case pattern::choice:
        return write_all(one, " |");
      case pattern::optional:
        return write_counted(one, "?");
      case pattern::zero_or_more:
        return write_counted(one, "*");
      case pattern::one_or_more:
        return write_counted(one, "+");
      case pattern::reference:
        out += one.name;
        return;
      case pattern::text:
        out += "text";
        return;
      case pattern::data:
        return write_data(one);
      case pattern::value:
        document(one.documentation);
        out += "xsd:" + one.name + " \"" + one.literal + "\"";
        return;
    }
  }

  void write_named(const char* what, const pattern& one) {
    document(one.documentation);
    out += what + one.name + " { ";
    for (const pattern& each : one.inside) write(each);
    out += " }";
  }

  void write_all(const pattern& one, const char* separator) {
    bool is_first = true;
    for (const pattern& each : one.inside) {
      if (!is_first) {
        out += separator;
        new_line();
      }
      is_first = false;
      write_operand(each);
    }
  }

  void write_counted(const pattern& one, const char* how_often) {
    write_operand(one.inside.front());
    out += how_often;
  }

  void write_operand(const pattern& one) {
    const bool has_operators = one.what == pattern::group || one.what == pattern::interleave ||
                               one.what == pattern::choice;
    if (!has_operators) return write(one);
    out += '(';
    inner([&] { write(one); });
    out += ')';
  }

  void write_data(const pattern& one) {
    out += "xsd:" + one.name;
    if (one.parameters.empty()) return;
    out += " {";
    for (const auto& [name, value] : one.parameters) {
      out.append(" ").append(name).append(" = \"").append(value).append("\"");
    }
    out += " }";
  }

  std::string out;
  std::size_t depth = 0;
};

}  // namespace

std::string relax_ng_compact(const document_grammar& grammar) {
  return compact_writer().write(patterns_of(grammar));
}
