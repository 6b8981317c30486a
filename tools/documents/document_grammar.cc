#include "document_grammar.hh"

#include <algorithm>
#include <type_traits>
#include <utility>
#include <variant>

#include "channel_fields.hh"
#include "dictionary_fields.hh"
#include "dimension_parameters.hh"
#include "event_fields.hh"
#include "event_util.hh"
#include "type_masks.hh"

namespace {

namespace library = zrt4::detail;
namespace tables = zrt4::detail::tables;
using library::channel_field;
using library::field_role;

constexpr std::string_view no_name = "UNKNOWN";
constexpr int last_event_type = ZRT4_EV_EVMAX;
constexpr int last_data_type = ZRT4_BLOCK_MAX_2010;

// --- numbers with names

std::string class_of(int event_type) {
  switch (get_event_struct_type(event_type)) {
    case ZRT4_EV_STRUCT_GLOBAL:
      return ", global";
    case ZRT4_EV_STRUCT_LOCAL:
      return ", local";
    case ZRT4_EV_STRUCT_ML:
      return ", main linac";
    default:
      return "";
  }
}

std::vector<named_number> event_types() {
  std::vector<named_number> types;
  for (int type = 0; type <= last_event_type; ++type) {
    const char* const name = event_name_itoa(type);
    if (name != no_name) types.push_back({type, name + class_of(type)});
  }
  return types;
}

std::vector<named_number> data_types() {
  std::vector<named_number> types{{0, "none"}};
  for (int type = 1; type <= last_data_type; ++type) {
    const char* const name = block_name_itoa(type);
    if (name != no_name) types.push_back({type, name});
  }
  return types;
}

/// Adds the masks of the types, which dumps of records that were read as masks hold.
void add_masks(std::vector<named_number>& types, std::uint32_t (*mask_of)(const char*, bool),
               const char* (*name_of)(int), int first, int last) {
  for (int type = first; type <= last; ++type) {
    const auto mask = static_cast<std::int32_t>(mask_of(std::to_string(type).c_str(), true));
    if (name_of(type) == no_name || mask == 0) continue;
    const std::string meaning = std::string("the mask of ") + name_of(type);
    const auto known = std::find_if(types.begin(), types.end(),
                                    [&](const named_number& one) { return one.number == mask; });
    if (known != types.end()) {
      known->meaning += "; or " + meaning;
    } else {
      types.push_back({mask, meaning});
    }
  }
}

// --- what grammars are built of

class grammar_builder {
 public:
  const text_grammar* any(std::size_t shortest, std::size_t longest) {
    std::string name = shortest == 0 ? "text_" : "name_";
    name += longest == 0 ? "of_any_length" : std::to_string(longest);
    return text({std::move(name), text_grammar::any, shortest, longest, {}, {}});
  }
  const text_grammar* number() { return text({"number", text_grammar::number, 0, 0, {}, {}}); }
  const text_grammar* count() { return text({"count", text_grammar::count, 0, 0, {}, {}}); }
  const text_grammar* fraction() {
    return text({"fraction", text_grammar::fraction, 0, 0, {}, {}});
  }
  const text_grammar* one_of(std::string name, std::string meaning,
                             std::vector<named_number> numbers) {
    return text(
        {std::move(name), text_grammar::one_of, 0, 0, std::move(meaning), std::move(numbers)});
  }

  /// What an element with a text of its own holds.
  const content_grammar* only(const text_grammar* text) {
    for (const content_grammar& each : made.leaves) {
      if (each.text == text) return &each;
    }
    return &made.leaves.emplace_back(content_grammar{text->name, text, {}, {}});
  }

  const content_grammar* content(content_grammar wanted) {
    return &made.contents.emplace_back(std::move(wanted));
  }

  document_grammar finish(std::string root, const std::string& meaning,
                          std::vector<element_group> groups) {
    const content_grammar* all = content({"document", nullptr, {}, std::move(groups)});
    made.root = {std::move(root), meaning, all};
    return std::move(made);
  }

 private:
  // One name, one text.
  const text_grammar* text(text_grammar wanted) {
    for (const text_grammar& each : made.texts) {
      if (each.name == wanted.name) return &each;
    }
    return &made.texts.emplace_back(std::move(wanted));
  }

  document_grammar made;
};

element_group one(element_grammar element) {
  return {{{std::move(element), true}}, false};
}
element_group at_most_one(element_grammar element) {
  return {{{std::move(element), false}}, false};
}
element_group any_number_of(element_grammar element) {
  return {{{std::move(element), false}}, true};
}
element_group one_or_more(element_grammar element) {
  return {{{std::move(element), true}}, true};
}

element_grammar date(grammar_builder& build) {
  return {"isodate", "date of writing, for people: no reader takes it",
          build.only(build.any(0, 0))};
}

// --- event lists

document_grammar make_events() {
  namespace names = library::event_names;
  grammar_builder build;
  element_group numbers;
  for (const auto& field : library::event_numbers) {
    numbers.members.push_back({{std::string(field.element),
                                std::string(field.meaning) + " (decimal, or hexadecimal behind 0x)",
                                build.only(build.count())}});
  }
  const element_grammar type{
      names::type, "event type; comes first",
      build.only(build.one_of("event_type", "an event type", event_types()))};
  const element_grammar channel{names::channel, "a wanted channel of the server block",
                                build.only(build.any(1, 0))};
  const element_grammar channels{names::channels,
                                 "the wanted channels; without it, all of the server block",
                                 build.content({"channels", nullptr, {}, {one_or_more(channel)}})};
  const element_grammar block{
      names::server_block,
      "a wanted server block, whose name stands directly after the tag; without any, the full "
      "event",
      build.content({"server_block",
                     build.any(1, library::longest_block_name),
                     {},
                     {at_most_one(channels)}})};
  const element_grammar event{
      names::event, "an event type that the consumer wants",
      build.content({"event", nullptr, {}, {one(type), std::move(numbers), any_number_of(block)}})};
  return build.finish(names::root, "event list: which events a consumer wants",
                      {any_number_of(event)});
}

// --- channel descriptions

template <class Member, class Record>
using held_by = std::remove_reference_t<decltype(std::declval<Record&>().*std::declval<Member>())>;

/// The text of a field.
template <class Record>
const text_grammar* text_of(const channel_field<Record>& field, grammar_builder& build) {
  if (field.role == field_role::event_type) {
    std::vector<named_number> types = event_types();
    add_masks(types, library::event_type_of, event_name_itoa, 0, last_event_type - 1);
    return build.one_of("event_type", "an event type", std::move(types));
  }
  if (field.role == field_role::data_type) {
    std::vector<named_number> types = data_types();
    add_masks(types, library::data_type_of, block_name_itoa, 1, last_data_type);
    return build.one_of("data_type", "a data type", std::move(types));
  }
  return std::visit(
      [&](auto member) {
        using held = held_by<decltype(member), Record>;
        if constexpr (std::is_array_v<held>) {
          // Without its property a channel is left out.
          return build.any(field.role == field_role::property ? 1 : 0, sizeof(held) - 1);
        } else {
          return build.number();
        }
      },
      field.member);
}

/// An element of a channel, or of what belongs to it.
template <class Record>
element_group::member member_of(std::string_view name, const channel_field<Record>& field,
                                grammar_builder& build) {
  std::string meaning(field.meaning);
  const bool is_last_index = field.role == field_role::size && name == field.variable.name;
  if (is_last_index) meaning += ", less one";
  return {{std::string(name), std::move(meaning), build.only(text_of(field, build))},
          field.role == field_role::property};
}

/// Bits, dimensions and statistics: the element that holds the number of the record, and in it the
/// fields, then `more`.
template <class Record, std::size_t Count>
element_grammar numbered(std::string name, const channel_field<Record> (&fields)[Count],
                         grammar_builder& build, std::vector<element_group> more = {}) {
  element_grammar result;
  std::vector<element_group> groups(1);
  for (const auto& field : fields) {
    if (field.role == field_role::number_of_record) {
      result.name = field.element;
      result.meaning = std::string(field.meaning) + "; its number stands directly after the tag";
    } else {
      groups.front().members.push_back(member_of(field.element, field, build));
    }
  }
  std::move(more.begin(), more.end(), std::back_inserter(groups));
  result.content = build.content({std::move(name), build.number(), {}, std::move(groups)});
  return result;
}

/// Adds the parameters that are not there yet.
template <class Record, std::size_t Count>
void add_parameters(element_group& group,
                    const library::dimension_parameter<Record> (&parameters)[Count],
                    grammar_builder& build) {
  for (const auto& each : parameters) {
    const auto known = std::find_if(
        group.members.begin(), group.members.end(),
        [&](const element_group::member& one) { return one.element.name == each.element; });
    if (known != group.members.end()) continue;
    const bool is_fraction = std::holds_alternative<float Record::*>(each.value);
    group.members.push_back(
        {{std::string(each.element), std::string(each.meaning) + "; no reader takes it",
          build.only(is_fraction ? build.fraction() : build.number())}});
  }
}

document_grammar make_channels() {
  namespace names = library::element_dialect_names;
  grammar_builder build;
  element_group fields;
  for (const auto& field : tables::channel) {
    fields.members.push_back(member_of(field.element, field, build));
  }
  element_group parameters{{}, true};
  add_parameters(parameters, tables::spectrum_parameters, build);
  add_parameters(parameters, tables::image_parameters, build);
  const element_grammar statistic = numbered("statistic", tables::statistic, build);
  element_grammar channel{
      names::channel, "a channel",
      build.content(
          {"channel",
           nullptr,
           {},
           {std::move(fields), any_number_of(numbered("bit", tables::bit, build)),
            any_number_of(numbered("dimension", tables::dimension, build,
                                   {any_number_of(statistic), std::move(parameters)}))}})};
  return build.finish(names::root, "channel descriptions, element dialect",
                      {at_most_one(date(build)), any_number_of(std::move(channel))});
}

element_grammar bit_title(grammar_builder& build) {
  namespace names = library::variable_dialect_names;
  // Written from the description, which may be longer than the name that it is read as.
  const text_grammar* title = text_of(*library::field_of<&bit_descr::bit_desc>(), build);
  return {
      names::bit_title, "a bit of the channel: its name",
      build.content({"bit",
                     title,
                     attribute_grammar{names::bit_attribute, "number of the bit", build.number()},
                     {}})};
}

element_grammar variable_dimension(grammar_builder& build) {
  namespace names = library::variable_dialect_names;
  element_group fields;
  for (const auto* field :
       library::in_order<&channel_field<dim_descr>::variable>(tables::dimension)) {
    fields.members.push_back(member_of(field->variable.name, *field, build));
  }
  return {names::dimension, "a dimension of the channel",
          build.content({"dimension",
                         nullptr,
                         attribute_grammar{names::dimension_attribute, "number of the dimension",
                                           build.number()},
                         {std::move(fields)}})};
}

document_grammar make_variables() {
  namespace names = library::variable_dialect_names;
  grammar_builder build;
  const auto whole_number = [&](const char* name, const char* meaning) {
    return element_grammar{name, meaning, build.only(build.number())};
  };
  element_group fields;
  for (const auto* field :
       library::in_order<&channel_field<chan_descr_2010>::variable>(tables::channel)) {
    if (field->role == field_role::size) {
      fields.members.push_back({whole_number(names::first_index, "always 0; no reader takes it")});
    }
    fields.members.push_back(member_of(field->variable.name, *field, build));
  }
  const content_grammar* variable =
      build.content({"variable",
                     nullptr,
                     {},
                     {std::move(fields),
                      any_number_of(bit_title(build)),
                      any_number_of(variable_dimension(build)),
                      {{{whole_number(names::frequency,
                                      "-1 for local event types, else 1; no reader takes it")}}}}});
  element_group variables{{{{names::number, "a channel of plain values", variable}},
                           {{names::bits, "a channel of bits", variable}},
                           {{names::matrix, "a channel of arrays with dimensions", variable}}},
                          true};
  return build.finish(names::root, "channel descriptions, variable dialect",
                      {std::move(variables)});
}

// --- dictionaries

// The wider records, so that every name is one that some record keeps.
using dictionary_entry = zrt4_env_index_dictionary_entry_2010;

element_group::member member_of(const library::dictionary_field<dictionary_entry>& field,
                                grammar_builder& build) {
  return std::visit(
      [&](auto member) -> element_group::member {
        using held = std::remove_reference_t<decltype(member(std::declval<dictionary_entry&>()))>;
        std::string name(field.element);
        std::string meaning(field.meaning);
        if constexpr (std::is_array_v<held>) {
          using older = decltype(zrt4_env_index_dictionary_entry::data.env_prop);
          meaning +=
              "; the older records keep " + std::to_string(sizeof(older) - 1) + " characters";
          return {{name, meaning, build.only(build.any(1, sizeof(held) - 1))}, true};
        } else if constexpr (std::is_same_v<held, float>) {
          return {{name, meaning, build.only(build.fraction())}, false};
        } else {
          return {{name, meaning, build.only(build.number())}, true};
        }
      },
      field.member);
}

document_grammar make_dictionary() {
  constexpr auto& names = library::env_index_names;
  grammar_builder build;
  element_group fields;
  for (const auto& field : library::dictionary_fields<dictionary_entry>) {
    fields.members.push_back(member_of(field, build));
  }
  element_grammar entry{names[ENV_INDX_CHAN], "an entry: a slow value and its thresholds",
                        build.content({"entry", nullptr, {}, {std::move(fields)}})};
  return build.finish(names[ENV_INDX_ROOT],
                      "environment index dictionary: slow properties and their thresholds",
                      {at_most_one(date(build)), any_number_of(std::move(entry))});
}

}  // namespace

bool is_type(const document_grammar& grammar, const text_grammar& text) {
  const auto has_only_it = [&](const content_grammar& content) {
    return content.groups.empty() && content.text == &text;
  };
  const auto has_it_as_attribute = [&](const content_grammar& content) {
    return content.attribute && content.attribute->text == &text;
  };
  return std::any_of(grammar.leaves.begin(), grammar.leaves.end(), has_only_it) ||
         std::any_of(grammar.contents.begin(), grammar.contents.end(), has_only_it) ||
         std::any_of(grammar.contents.begin(), grammar.contents.end(), has_it_as_attribute);
}

std::string description_of(const text_grammar& text) {
  switch (text.what) {
    case text_grammar::number:
      return "a whole number from -2147483648 to 2147483647";
    case text_grammar::count:
      return "a whole number from 0 to 4294967295, or 0x and up to 8 hexadecimal digits";
    case text_grammar::fraction:
      return "a number, with a decimal point where it has decimals";
    case text_grammar::one_of:
      return "the number of " + text.meaning;
    default:
      break;
  }
  std::string description = "a text";
  if (text.longest != 0) {
    description += " of " + std::string(text.shortest == 0 ? "at most " : "1 to ") +
                   std::to_string(text.longest) + " characters";
  } else if (text.shortest != 0) {
    description += " that is not empty";
  }
  return description;
}

const document_grammar* grammar_of(document_kind kind) {
  switch (kind) {
    case document_kind::events: {
      static const document_grammar events = make_events();
      return &events;
    }
    case document_kind::channels: {
      static const document_grammar channels = make_channels();
      return &channels;
    }
    case document_kind::variables: {
      static const document_grammar variables = make_variables();
      return &variables;
    }
    case document_kind::dictionary: {
      static const document_grammar dictionary = make_dictionary();
      return &dictionary;
    }
    default:
      return nullptr;
  }
}
