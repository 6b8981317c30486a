#include "json_reading.hh"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <utility>

#include "bad_document.hh"
#include "given_value.hh"
#include "input_file.hh"
#include "json.hh"
#include "json_keys.hh"
#include "json_text.hh"
#include "message.hh"
#include "nearest.hh"
#include "terminal.hh"
#include "type_names.hh"

namespace {

class json_reader final : public nlohmann::json_sax<json> {
 public:
  enum class wanted { records, kinds, first_kind };

  json_reader(const std::string& file_name, json_place& from, wanted what)
      : file(file_name), place(from), sought(what) {}

  /// Reads all values, or up to the first kind.
  void read();
  /// Whether that ended early because records stand before the kind of their document.
  bool needs_kinds() const { return kinds_needed; }
  /// The documents; throws what was found wrong.
  std::vector<json_document> result();

  std::vector<std::optional<document_kind>> kinds;  ///< by document: found, or known before

  // What the parser tells.
  bool null() override { return take({given_value::kind::null}); }
  bool boolean(bool value) override { return take({given_value::kind::boolean, value}); }
  bool number_integer(std::int64_t value) override { return take(given_value::of_integer(value)); }
  bool number_unsigned(std::uint64_t value) override {
    return take({given_value::kind::integer, false, false, value});
  }
  bool number_float(double value, const std::string& digits) override {
    return take({given_value::kind::fraction, false, false, 0, value, digits});
  }
  bool string(std::string& value) override;
  bool binary(json::binary_t& /*value*/) override { return false; }  // JSON has none
  bool start_object(std::size_t /*size*/) override;
  bool key(std::string& name) override;
  bool end_object() override;
  bool start_array(std::size_t /*size*/) override;
  bool end_array() override;
  bool parse_error(std::size_t position, const std::string& token,
                   const nlohmann::detail::exception& reason) override;

 private:
  static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
  static constexpr std::size_t unknown = none - 1;
  static constexpr std::size_t most_told = 20;

  /// An object or a list that is being read.
  struct level {
    enum class kind { answer, documents, document, records, record };

    kind is;
    const known_keys* keys = nullptr;     ///< of an object
    std::size_t at = none;                ///< the key, or the number of the element
    std::uint64_t seen = 0;               ///< keys, a bit each
    const record_group* group = nullptr;  ///< whose records a list holds
    const record_type* type = nullptr;    ///< of a record
    void* record = nullptr;               ///< or the holder of a list's records

    bool has(std::size_t key) const { return (seen >> key & 1U) != 0; }
    /// The key of a field's name follows that of the field.
    bool has_name_of(std::size_t key) const {
      const std::size_t next = key + 1;
      return next < keys->size() && (*keys)[next].role == key_role::name_of_field && has(next);
    }
  };

  bool take(const given_value& value);
  void take_of_answer(const given_value& value);
  void take_of_document(const given_value& value);
  void take_field(void* record, const record_type& type, std::size_t position,
                  const given_value& value, bool was_named);
  void take_name(const level& of, std::size_t position, const given_value& value);
  void begin_records();
  void begin_record();
  void end_record(const level& ended);
  void end_document(const level& ended);
  bool found_kind() {
    if (kind) kinds.push_back(kind);
    return kind.has_value();
  }
  bool skip() {
    skipped = 1;
    return true;
  }

  const known_keys& keys_for(const record_type& type);
  std::string path() const;
  void wrong(const std::string& text, std::string_view unknown_key = {});
  void wrong_value(const std::string& expected, const std::string& found) {
    wrong(expected + " is expected here, not " + found);
  }
  void wrong_container(const std::string& found);
  std::string hint_for_no_number() const;
  void lost(const std::string& text);

  const std::string& file;
  json_place& place;
  const wanted sought;
  bool kinds_needed = false;
  std::vector<json_document> documents;
  std::vector<level> levels;
  std::size_t skipped = 0;  ///< depth inside a value that is of no use
  std::map<const record_type*, known_keys> keys;
  local_texts local;

  std::size_t document_number = 0;
  std::optional<document_kind> kind;
  int errors = 0;
  std::string unusable;
  std::optional<any_list> records;
  std::vector<std::string> lost_texts;

  std::vector<std::string> told;
  file_place first_told;
  std::size_t wrong_ones = 0;
};

const known_keys& json_reader::keys_for(const record_type& type) {
  const auto [found, is_new] = keys.try_emplace(&type);
  if (is_new) found->second = keys_of(type);
  return found->second;
}

std::string json_reader::path() const {
  std::string result;
  for (const level& each : levels) {
    if (each.at == none) continue;
    if (each.keys == nullptr) {
      result.append("[").append(std::to_string(each.at)).append("]");
    } else if (each.at != unknown) {
      if (!result.empty()) result += '.';
      result += (*each.keys)[each.at].name;
    }
  }
  return result;
}

void json_reader::wrong(const std::string& text, std::string_view unknown_key) {
  if (++wrong_ones > most_told) return;
  std::string where = path();
  if (!unknown_key.empty()) {
    where.append(where.empty() ? "" : ".").append(shortened(printable(unknown_key)));
  }
  const file_place here = place.in_file();
  if (told.empty()) first_told = here;
  told.push_back(here.shown() + ": " + (where.empty() ? text : where + ": " + text));
}

void json_reader::lost(const std::string& text) {
  lost_texts.push_back(message_line(file, path() + ": " + text));
}

std::vector<json_document> json_reader::result() {
  if (wrong_ones == 0 && documents.empty()) throw bad_document(file, "holds no document");
  if (wrong_ones == 0) return std::move(documents);
  // Each line is a message; the first and the last get their ends from whoever tells them.
  std::string text = told.front().substr(told.front().find(": ") + 2);
  for (std::size_t i = 1; i < told.size(); ++i) text += "\nzrt4xml: " + file + told[i];
  if (wrong_ones > told.size()) {
    text += "\nzrt4xml: " + file + ": and " + std::to_string(wrong_ones - told.size()) + " more";
  }
  throw bad_document(file, text, first_told);
}

void json_reader::wrong_container(const std::string& found) {
  const level& here = levels.back();
  switch (here.is) {
    case level::kind::answer:
      return wrong_value(here.at == documents_key ? "a list of documents" : "a number or a text",
                         found);
    case level::kind::documents:
      return wrong_value("a document, which is an object,", found);
    case level::kind::document:
      return wrong_value(here.at == records_key ? "a list of records" : "a number or a text",
                         found);
    case level::kind::records:
      return wrong_value(here.group->type->is_one_value()
                             ? "a text"
                             : "a " + std::string(here.group->one_name) + ", which is an object,",
                         found);
    case level::kind::record:
      break;
  }
  const known_key& key = (*here.keys)[here.at];
  const bool is_text =
      key.role == key_role::name_of_field ||
      (key.role == key_role::field && here.type->fields[key.position].holds == value_kind::text);
  wrong_value(key.role == key_role::group ? "a list" : is_text ? "a text" : "a number", found);
}

bool json_reader::start_object(std::size_t /*size*/) {
  if (skipped != 0) return ++skipped != 0;
  if (levels.empty()) {
    levels.push_back({level::kind::answer, &answer_keys()});
    return true;
  }
  level& here = levels.back();
  if (here.keys == nullptr) ++here.at;
  if (here.at == unknown) return skip();
  if (here.is == level::kind::documents) {
    levels.push_back({level::kind::document, &document_keys()});
    return true;
  }
  if (here.is == level::kind::records && !here.group->type->is_one_value()) {
    begin_record();
    return true;
  }
  wrong_container("an object");
  return skip();
}

void json_reader::begin_record() {
  const level& list = levels.back();
  level record{level::kind::record, &keys_for(*list.group->type)};
  record.type = list.group->type;
  record.record = list.group->add(list.record);
  tell_no_types(*record.type, record.record);
  levels.push_back(record);
}

bool json_reader::start_array(std::size_t /*size*/) {
  if (skipped != 0) return ++skipped != 0;
  if (levels.empty()) {
    levels.push_back({level::kind::documents});
    return true;
  }
  level& here = levels.back();
  if (here.keys == nullptr) ++here.at;
  if (here.at == unknown) return skip();
  if (here.is == level::kind::answer && here.at == documents_key) {
    levels.push_back({level::kind::documents});
    return true;
  }
  if (here.is == level::kind::document && here.at == records_key) {
    if (sought != wanted::records) return skip();
    if (!kind && document_number < kinds.size()) kind = kinds[document_number];
    if (!kind) {
      kinds_needed = kinds.empty();
      return !kinds_needed && skip();
    }
    begin_records();
    return true;
  }
  // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): a record has its keys
  if (here.is == level::kind::record && (*here.keys)[here.at].role == key_role::group) {
    level list{level::kind::records};
    list.group = &here.type->groups[(*here.keys)[here.at].position];
    list.record = here.record;
    levels.push_back(list);
    return true;
  }
  wrong_container("a list");
  return skip();
}

void json_reader::begin_records() {
  const held_records made = records_of(records.emplace(list_for(*kind)));
  level list{level::kind::records};
  list.group = made.group;
  list.record = made.holder;
  levels.push_back(list);
}

bool json_reader::key(std::string& name) {
  if (skipped != 0) return true;
  level& here = levels.back();
  const auto find = [&](const known_keys& all) {
    // As a rule they come in their order.
    std::size_t i = here.at < all.size() ? here.at + 1 : 0;
    for (std::size_t tried = 0; tried < all.size(); ++tried, ++i) {
      if (i == all.size()) i = 0;
      if (all[i].name == name) return i;
    }
    return unknown;
  };
  std::size_t found = find(*here.keys);
  if (found == unknown && here.is == level::kind::answer && levels.size() == 1 && here.seen == 0) {
    const std::size_t of_document = find(document_keys());
    if (of_document != unknown) {  // a document of an answer, alone
      here.is = level::kind::document;
      here.keys = &document_keys();
      found = of_document;
    }
  }
  if (found == unknown) {
    std::vector<std::string_view> known;
    for (const known_key& each : *here.keys) known.emplace_back(each.name);
    here.at = unknown;
    wrong("unknown key" + did_you_mean_or_all(name, known, "; known are "), name);
    return true;
  }
  here.at = found;
  const std::uint64_t bit = std::uint64_t{1} << found;
  if ((here.seen & bit) != 0) {
    wrong("this key stands here twice");
    here.at = unknown;
  }
  here.seen |= bit;
  return true;
}

bool json_reader::end_object() {
  if (skipped != 0) return --skipped, true;
  level ended = levels.back();
  levels.back().at = none;
  if (ended.is == level::kind::record) end_record(levels.back());
  if (ended.is == level::kind::document) end_document(ended);
  if (ended.is == level::kind::answer && !ended.has(documents_key)) {
    wrong("there is no key \"documents\" in it");
  }
  levels.pop_back();
  return true;
}

bool json_reader::end_array() {
  if (skipped != 0) return --skipped, true;
  levels.pop_back();
  return true;
}

// A record without its key is none.
void json_reader::end_record(const level& ended) {
  if (!ended.has(0) && !ended.has_name_of(0))
    wrong("there is no key " + in_quotes(ended.type->fields[0].name) + " in it");
}

void json_reader::end_document(const level& ended) {
  if (sought != wanted::records) {
    kinds.push_back(kind);
  } else if (ended.has(unusable_key)) {
    wrong("is about a file that could not be used: " + unusable);
  } else if (!ended.has(kind_key)) {
    wrong("there is no key \"kind\" in it");
  } else if (!ended.has(records_key)) {
    wrong("there is no key \"records\" in it");
  } else if (kind && records) {
    documents.push_back({*kind, errors, std::move(lost_texts), std::move(*records)});
  }
  ++document_number;
  kind.reset();
  records.reset();
  errors = 0;
  unusable.clear();
  lost_texts.clear();
}

bool json_reader::parse_error(std::size_t /*position*/, const std::string& token,
                              const nlohmann::detail::exception& reason) {
  constexpr int number_overflow = 406;
  if (reason.id == number_overflow) {
    wrong("the number " + shortened(token) + " is larger than any that is read");
    return false;
  }
  if (place.begins_no_number()) {
    wrong("not valid JSON: it has no NaN and no Infinity" + hint_for_no_number());
    return false;
  }
  std::string_view text = reason.what();
  // "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error ..."
  const std::size_t id = text.find("] ");
  if (id != text.npos) text.remove_prefix(id + 2);
  const std::size_t column = text.find(", column ");
  const std::size_t end = column == text.npos ? text.npos : text.find(": ", column);
  if (end != text.npos) text.remove_prefix(end + 2);
  text = text.substr(0, text.find("; last read"));  // which may be long
  wrong("not valid JSON: " + printable(text));
  return false;
}

// How a threshold is told that is none.
std::string json_reader::hint_for_no_number() const {
  if (levels.empty() || levels.back().is != level::kind::record) return {};
  const level& here = levels.back();
  if (skipped != 0 || here.at >= here.keys->size()) return {};
  const known_key& key = (*here.keys)[here.at];
  if (key.role != key_role::field) return {};
  const record_field& field = here.type->fields[key.position];
  if (field.holds != value_kind::threshold) return {};
  return "; the key " + in_quotes(std::string(field.name) + "_name") +
         " may say nan, -nan, inf or -inf instead";
}

bool json_reader::string(std::string& value) {
  if (skipped != 0) return true;
  std::string_view text;
  std::uint32_t lacked = 0;
  if (local.convert(value, text, lacked)) return take(given_value::of_text(text));
  if (!levels.empty() && levels.back().keys == nullptr) ++levels.back().at;
  char shown[sizeof "U+10FFFF"];
  std::snprintf(shown, sizeof shown, "U+%04X", lacked);
  wrong(std::string("the text holds ") + shown + ", which the code page of this locale lacks");
  return !levels.empty();
}

bool json_reader::take(const given_value& value) {
  if (skipped != 0) return true;
  if (levels.empty()) {
    wrong("an answer of 'show --json', which is an object, is expected here");
    return false;
  }
  level& here = levels.back();
  if (here.keys == nullptr) ++here.at;
  if (here.at == unknown) return true;
  switch (here.is) {
    case level::kind::answer:
      take_of_answer(value);
      break;
    case level::kind::documents:
      wrong_container(value.shown());
      break;
    case level::kind::document:
      take_of_document(value);
      return !(sought == wanted::first_kind && found_kind());
    case level::kind::records:
      if (here.group->type->is_one_value()) {
        take_field(here.group->add(here.record), *here.group->type, 0, value, false);
      } else {
        wrong_container(value.shown());
      }
      break;
    case level::kind::record: {
      // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): a record has its keys
      const known_key& current = (*here.keys)[here.at];
      if (current.role == key_role::group) {
        wrong_container(value.shown());
      } else if (current.role == key_role::name_of_field) {
        take_name(here, current.position, value);
      } else {
        take_field(here.record, *here.type, current.position, value, here.has_name_of(here.at));
      }
      break;
    }
  }
  return true;
}

void json_reader::take_of_answer(const given_value& value) {
  if (levels.back().at == documents_key) return wrong_container(value.shown());
  if (levels.back().at == format_version_key) {
    if (value.whole_number() != 1) wrong_value("1, the version that is known,", value.shown());
  } else if (value.is != given_value::kind::text ||
             (value.text != "show" && value.text != "list")) {
    wrong_value("\"show\" or \"list\", whose answers hold documents,", value.shown());
  }
}

void json_reader::take_of_document(const given_value& value) {
  const bool is_text = value.is == given_value::kind::text;
  switch (levels.back().at) {
    case kind_key: {
      if (value.is == given_value::kind::null) return;  // of a file that could not be used
      if (is_text) kind = kind_named(value.text);
      if (kind) return;
      const std::vector<std::string> names = kind_names();
      std::string all;
      for (const std::string& name : names) all += (all.empty() ? "" : ", ") + in_quotes(name);
      return wrong("one of " + all + " is expected here, not " + value.shown() +
                   (is_text ? did_you_mean(value.text, {names.begin(), names.end()}) : ""));
    }
    case errors_key: {
      const auto number = value.whole_number();
      if (!number || *number < 0 || *number > INT_MAX) {
        return wrong_value("the number of errors", value.shown());
      }
      errors = static_cast<int>(*number);
      return;
    }
    case records_key:
      return wrong_container(value.shown());
    case unusable_key:
      unusable = value.shown();
      return;
    default:
      if (!is_text) wrong_value("the name of a file", value.shown());
  }
}

void json_reader::take_field(void* record, const record_type& type, std::size_t position,
                             const given_value& value, bool was_named) {
  const record_field& field = type.fields[position];
  bool was_cut = false;
  const fitted_value found = fitted(field, value, was_cut);
  const std::string name_key = in_quotes(std::string(field.name) + "_name");
  if (!found.wrong.empty()) {
    const bool a_name = field.names != nullptr && value.is == given_value::kind::text;
    return wrong(found.wrong + (a_name ? "; a name goes into the key " + name_key : ""));
  }
  if (was_cut) lost("the text was cut inside a character, of which U+FFFD is left; it is left out");
  if (was_named && value.is == given_value::kind::null) return;
  const std::optional<cell> said =
      was_named ? agreed(field, found.value, type.get(record, position)) : found.value;
  if (!said) {
    return wrong("the key " + name_key + " says otherwise than " + value.shown() +
                 ": leave one of them out");
  }
  type.set(record, position, *said);
}

void json_reader::take_name(const level& of, std::size_t position, const given_value& value) {
  const record_field& field = of.type->fields[position];
  if (value.is != given_value::kind::text) return wrong_value("a name", value.shown());
  const bool has_number = of.has(of.at - 1);
  const cell current = of.type->get(of.record, position);
  std::optional<cell> said;
  if (field.holds == value_kind::threshold) {
    const float number = std::get<threshold>(current).value;
    const std::string name(value.text);
    const bool is_known = name == "nan" || name == "-nan" || name == "inf" || name == "-inf";
    if (!is_known) return wrong_value("nan, -nan, inf or -inf", value.shown());
    const bool agrees = !has_number || !std::isfinite(number);
    if (agrees) said = threshold{std::strtof(name.c_str(), nullptr)};
  } else if (has_number) {
    said = number_called(field, std::get<std::int64_t>(current), value.text);
  } else if (value.text == nameless) {
    return;
  } else {
    std::int64_t number = 0;
    if (!number_named(field, value.text, number)) {
      return wrong("there is no such name: " + in_quotes(value.text) +
                   did_you_mean(value.text, names_in(field)));
    }
    said = number;
  }
  if (said) return of.type->set(of.record, position, *said);
  wrong(in_quotes(value.text) + " is not the name of what the key " + in_quotes(field.name) +
        " says: leave one of them out");
}

void json_reader::read() {
  while (place.skip_blanks()) {
    if (!json::sax_parse(json_iterator(place), json_iterator(), this, json::input_format_t::json,
                         false)) {
      return;
    }
  }
}

// Of documents whose kind stands behind their records.
std::vector<json_document> read_with_kinds(const std::string& file, const json_text& text) {
  json_place place = text.start();
  json_reader first_pass(file, place, json_reader::wanted::kinds);
  first_pass.read();
  place = text.start();
  json_reader reader(file, place, json_reader::wanted::records);
  reader.kinds = std::move(first_pass.kinds);
  reader.read();
  return reader.result();
}

std::vector<json_document> read_all(const std::string& file, const json_text& text) {
  json_place place = text.start();
  json_reader reader(file, place, json_reader::wanted::records);
  reader.read();
  if (reader.needs_kinds()) return read_with_kinds(file, text);
  return reader.result();
}

}  // namespace

document_kind kind_of_json(input_file& file) {
  const json_text text(file);
  json_place place = text.start();
  json_reader reader(file.name(), place, json_reader::wanted::first_kind);
  reader.read();
  for (const auto& kind : reader.kinds) {
    if (kind) return *kind;
  }
  return read_json(file).front().kind;  // which tells what is wrong
}

std::vector<json_document> read_json(input_file& file) {
  return read_all(file.name(), json_text(file));
}

std::vector<json_document> read_json(const std::string& file, std::string text) {
  return read_all(file, json_text(std::move(text)));
}
