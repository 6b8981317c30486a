#include "pattern.hh"

#include "document_grammar.hh"

namespace {

/// A pattern of several others, or the one that there is.
pattern joined(pattern::kind how, std::vector<pattern> all) {
  if (all.size() == 1) return std::move(all.front());
  return {how, {}, {}, std::move(all)};
}

pattern around(pattern::kind how, pattern one) {
  return {how, {}, {}, {std::move(one)}};
}

pattern reference_to(const std::string& name) {
  return {pattern::reference, name};
}

pattern data(std::string type, std::vector<std::pair<std::string, std::string>> parameters = {}) {
  return {pattern::data, std::move(type), {}, {}, std::move(parameters)};
}

pattern pattern_of(const element_grammar& element) {
  const content_grammar& content = *element.content;
  const bool is_leaf = content.groups.empty() && !content.attribute;
  const std::string& name = is_leaf ? content.text->name : content.name;
  return {pattern::element, element.name, element.meaning, {reference_to(name)}};
}

pattern pattern_of(const element_group& group) {
  std::vector<pattern> members;
  bool one_at_least = false;
  for (const element_group::member& member : group.members) {
    pattern element = pattern_of(member.element);
    one_at_least = one_at_least || member.required;
    const bool is_optional = !group.repeated && !member.required;
    members.push_back(is_optional ? around(pattern::optional, std::move(element))
                                  : std::move(element));
  }
  if (!group.repeated) return joined(pattern::interleave, std::move(members));
  return around(one_at_least ? pattern::one_or_more : pattern::zero_or_more,
                joined(pattern::choice, std::move(members)));
}

pattern pattern_of(const attribute_grammar& attribute) {
  return {
      pattern::attribute, attribute.name, attribute.meaning, {reference_to(attribute.text->name)}};
}

// What is beside elements can only be any text: no data type applies to it.
pattern pattern_of(const content_grammar& content, bool is_root) {
  std::vector<pattern> all;
  if (is_root) {
    all.push_back(around(pattern::optional, {pattern::attribute,
                                             "xsi:noNamespaceSchemaLocation",
                                             "where an editor finds the XML Schema",
                                             {data("anyURI")}}));
  }
  if (content.attribute) all.push_back(pattern_of(*content.attribute));
  if (content.text != nullptr) {
    all.push_back(content.groups.empty() ? reference_to(content.text->name)
                                         : pattern{pattern::text});
  }
  for (const element_group& group : content.groups) all.push_back(pattern_of(group));
  return joined(pattern::group, std::move(all));
}

pattern pattern_of(const text_grammar& text) {
  switch (text.what) {
    case text_grammar::number:
      return data("int");
    case text_grammar::count:
      return joined(pattern::choice,
                    {data("unsignedInt"), data("token", {{"pattern", "0x[0-9A-Fa-f]{1,8}"}})});
    case text_grammar::fraction:
      return joined(pattern::choice, {data("float"), data("token", {{"pattern", "-?(inf|nan)"}})});
    case text_grammar::one_of: {
      std::vector<pattern> values;
      for (const named_number& each : text.numbers) {
        values.push_back(
            {pattern::value, "int", each.meaning, {}, {}, std::to_string(each.number)});
      }
      return joined(pattern::choice, std::move(values));
    }
    default:
      break;
  }
  pattern result = data("string");
  if (text.shortest != 0) {
    result.parameters.emplace_back("minLength", std::to_string(text.shortest));
  }
  if (text.longest != 0) {
    result.parameters.emplace_back("maxLength", std::to_string(text.longest));
  }
  return result;
}

}  // namespace

relax_ng patterns_of(const document_grammar& grammar) {
  relax_ng result{pattern_of(grammar.root), {}};
  for (auto content = grammar.contents.rbegin(); content != grammar.contents.rend(); ++content) {
    const bool is_root = &*content == grammar.root.content;
    result.definitions.push_back({content->name, "", pattern_of(*content, is_root)});
  }
  for (const text_grammar& text : grammar.texts) {
    if (!is_type(grammar, text)) continue;
    result.definitions.push_back({text.name, description_of(text), pattern_of(text)});
  }
  return result;
}
