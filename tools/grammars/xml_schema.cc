#include <algorithm>
#include <stdexcept>

#include "grammars.hh"
#include "xml_text.hh"

namespace {

using member = element_group::member;
using attributes = xml_text::attributes;

bool is_required(const member& one) {
  return one.required;
}

bool is_leaf(const content_grammar& content) {
  return content.groups.empty() && !content.attribute;
}

/// Whether the schema lets the elements of a group follow one another in any order, any number of
/// times, and leaves it to a constraint that each is there once.
bool is_loose(const content_grammar& content, const element_group& group) {
  return !group.repeated && group.members.size() > 1 && content.groups.size() > 1;
}

class schema_writer {
 public:
  std::string write(const document_grammar& grammar) {
    out.comment(origin);
    out.open("xs:schema", {{"xmlns:xs", "http://www.w3.org/2001/XMLSchema"}});
    write(grammar.root, {});
    for (auto content = grammar.contents.rbegin(); content != grammar.contents.rend(); ++content) {
      write(*content);
    }
    for (const text_grammar& text : grammar.texts) {
      if (is_type(grammar, text)) write(text);
    }
    out.close();
    return out.text();
  }

 private:
  void document(const std::string& text) {
    out.open("xs:annotation");
    out.leaf("xs:documentation", {{"xml:lang", "en"}}, text);
    out.close();
  }

  void write(const element_grammar& element, const attributes& occurrence) {
    const content_grammar& content = *element.content;
    attributes given{{"name", element.name},
                     {"type", is_leaf(content) ? content.text->name : content.name}};
    given.insert(given.end(), occurrence.begin(), occurrence.end());
    out.open("xs:element", given);
    document(element.meaning);
    for (const element_group& group : content.groups) {
      if (is_loose(content, group)) write_once(element, group);
    }
    out.close();
  }

  // A field of a constraint is there at most once.
  void write_once(const element_grammar& element, const element_group& group) {
    out.open("xs:unique", {{"name", element.name + ".once"}});
    out.empty("xs:selector", {{"xpath", "."}});
    for (const member& each : group.members) {
      if (!each.required) out.empty("xs:field", {{"xpath", each.element.name}});
    }
    out.close();
  }

  void write(const content_grammar& content) {
    const bool is_mixed = content.text != nullptr && !content.groups.empty();
    if (is_mixed) {
      out.open("xs:complexType", {{"name", content.name}, {"mixed", "true"}});
    } else {
      out.open("xs:complexType", {{"name", content.name}});
    }
    if (content.text != nullptr && content.groups.empty()) {
      out.open("xs:simpleContent");
      out.open("xs:extension", {{"base", content.text->name}});
      if (content.attribute) write(*content.attribute);
      out.close();
      out.close();
    } else {
      if (content.groups.size() == 1 && !content.groups.front().repeated) {
        write_all(content.groups.front());
      } else {
        out.open("xs:sequence");
        for (const element_group& group : content.groups) write(content, group);
        out.close();
      }
      if (content.attribute) write(*content.attribute);
    }
    out.close();
  }

  void write(const attribute_grammar& attribute) {
    out.open("xs:attribute",
             {{"name", attribute.name}, {"type", attribute.text->name}, {"use", "required"}});
    document(attribute.meaning);
    out.close();
  }

  void write_all(const element_group& group) {
    out.open("xs:all");
    for (const member& each : group.members) write(each.element, once(each.required));
    out.close();
  }

  void write(const content_grammar& content, const element_group& group) {
    if (group.repeated) {
      const bool one_at_least =
          std::any_of(group.members.begin(), group.members.end(), is_required);
      return write_choice(group.members, one_at_least);
    }
    if (!is_loose(content, group)) {
      for (const member& each : group.members) write(each.element, once(each.required));
      return;
    }
    // What is required stands between the others.
    const auto wanted = std::find_if(group.members.begin(), group.members.end(), is_required);
    std::vector<member> others;
    std::remove_copy_if(group.members.begin(), group.members.end(), std::back_inserter(others),
                        is_required);
    if (group.members.size() - others.size() > 1) {
      throw std::logic_error(content.name + ": only one field of several groups can be required");
    }
    write_choice(others, false);
    if (wanted == group.members.end()) return;
    write(wanted->element, {});
    write_choice(others, false);
  }

  void write_choice(const std::vector<member>& members, bool one_at_least) {
    const attributes often{{"minOccurs", one_at_least ? "1" : "0"}, {"maxOccurs", "unbounded"}};
    if (members.size() == 1) return write(members.front().element, often);
    out.open("xs:choice", often);
    for (const member& each : members) write(each.element, {});
    out.close();
  }

  static attributes once(bool required) {
    return required ? attributes{} : attributes{{"minOccurs", "0"}};
  }

  void write(const text_grammar& text) {
    out.open("xs:simpleType", {{"name", text.name}});
    document(description_of(text));
    switch (text.what) {
      case text_grammar::number:
        out.empty("xs:restriction", {{"base", "xs:int"}});
        break;
      case text_grammar::count:
        write_union("xs:unsignedInt", "0x[0-9A-Fa-f]{1,8}");
        break;
      case text_grammar::fraction:
        write_union("xs:float", "-?(inf|nan)");
        break;
      case text_grammar::one_of:
        write_numbers(text);
        break;
      default:
        write_lengths(text);
    }
    out.close();
  }

  void write_union(const char* type, const char* expression) {
    out.open("xs:union", {{"memberTypes", type}});
    out.open("xs:simpleType");
    out.open("xs:restriction", {{"base", "xs:token"}});
    out.empty("xs:pattern", {{"value", expression}});
    out.close();
    out.close();
    out.close();
  }

  void write_numbers(const text_grammar& text) {
    out.open("xs:restriction", {{"base", "xs:int"}});
    for (const named_number& each : text.numbers) {
      out.open("xs:enumeration", {{"value", std::to_string(each.number)}});
      document(each.meaning);
      out.close();
    }
    out.close();
  }

  void write_lengths(const text_grammar& text) {
    out.open("xs:restriction", {{"base", "xs:string"}});
    if (text.shortest != 0) {
      out.empty("xs:minLength", {{"value", std::to_string(text.shortest)}});
    }
    if (text.longest != 0) out.empty("xs:maxLength", {{"value", std::to_string(text.longest)}});
    out.close();
  }

  xml_text out;
};

}  // namespace

std::string xml_schema(const document_grammar& grammar) {
  return schema_writer().write(grammar);
}
