#include "arrival.hh"

#include <algorithm>
#include <iterator>
#include <variant>

#include "channel_fields.hh"
#include "difference.hh"
#include "document_text.hh"
#include "terminal.hh"
#include "text_table.hh"

namespace {

namespace tables = zrt4::detail::tables;

template <class Fields>
bool is_read_in_variables(const Fields& fields, std::string_view name) {
  return std::any_of(std::begin(fields), std::end(fields), [&](const auto& field) {
    return field.row.name == name && field.variable && field.variable_is_read;
  });
}

// The title of a bit is its name.
bool variables_have(std::string_view owner, std::string_view name) {
  if (owner == "bit") return name == "name";
  if (owner == "dimension") return is_read_in_variables(tables::dimension, name);
  return owner == "channel" && is_read_in_variables(tables::channel, name);
}

std::string_view form_without(document_form form, std::string_view owner, std::string_view name) {
  if (form == document_form::variables && !variables_have(owner, name)) {
    return "the variable dialect has no place for it";
  }
  if (is_table(form) && !has_column(form, owner, name)) return "this table has no column for it";
  return {};
}

std::string key_of(const difference& each) {
  const row::field& key = each.record->key();
  const auto* text = std::get_if<std::string_view>(&key.value);
  return text != nullptr ? "'" + printable(*text) + "'" : described(key);
}

std::string property_of(const row& record) {
  for (const row::field& field : record.fields) {
    if (field.name == "property") return std::string(std::get<std::string_view>(field.value));
  }
  return {};
}

bool is_told_by_absence(const row::field& field) {
  const auto* text = std::get_if<std::string_view>(&field.value);
  return text != nullptr && text->empty();
}

class collector {
 public:
  explicit collector(document_form to) : form(to) {}

  void take(const difference& each) {
    property = property_of(*each.record);
    take(each, std::string(each.one_name) + " " + key_of(each), {});
  }

  std::vector<loss> all;

 private:
  void take(const difference& each, const std::string& name, const std::string& kind) {
    if (each.what == difference::kind::added) {
      add(kind + "added", name + " arrives, which is not there");
    } else if (each.what == difference::kind::removed) {
      add(kind.empty() ? std::string(each.one_name) : kind.substr(0, kind.size() - 1),
          name + " does not arrive" + reason_for_record(each), kind.empty());
    } else {
      for (const difference::field& field : each.fields)
        take_field(field, each.one_name, name, kind);
      for (const difference& inner : each.inside) {
        const std::string one(inner.one_name);
        take(inner, std::string(name).append(", ").append(one).append(" ").append(key_of(inner)),
             std::string(kind).append(one).append(" "));
      }
    }
  }

  void take_field(const difference::field& field, std::string_view owner, const std::string& name,
                  const std::string& kind) {
    std::string_view why = form_without(form, owner, field.before->name);
    const std::string held(field.before->name);
    std::string line = name + ": " + held + " " + described(*field.before);
    if (!why.empty() || is_told_by_absence(*field.after)) {
      line += " does not arrive";
    } else {
      line += " arrives as " + described(*field.after);
    }
    const auto* text = std::get_if<std::string_view>(&field.before->value);
    std::string reason(why);
    if (reason.empty() && text != nullptr) reason = why_altered(*text);
    if (!reason.empty()) line += ": " + reason;
    add(kind + held, line);
  }

  std::string why_altered(std::string_view text) const {
    if (!is_table(form)) return why_unwritable(text);
    return text.empty() ? "a table has no empty name" : "a record is one line of a table";
  }

  std::string reason_for_record(const difference& each) const {
    if (each.one_name == "statistic" && form == document_form::variables) {
      return ": the variable dialect has no place for it";
    }
    if (form == document_form::short_text && each.one_name != "channel") {
      return ": this table has no column for it";
    }
    if (form == document_form::variables && each.one_name == "bit") {
      return ": in the variable dialect a channel has no bits beside dimensions";
    }
    if (each.one_name == "channel" && form != document_form::xml) {
      return ": it has the property of another one before it, which this form holds once";
    }
    return {};
  }

  void add(std::string kind, std::string text, bool is_record = false) {
    all.push_back({std::move(kind), property, is_record, std::move(text)});
  }

  const document_form form;
  std::string property;
};

}  // namespace

std::vector<loss> losses_between(const row_list& sent, const row_list& arriving,
                                 std::string_view record_name, document_form form) {
  collector found(form);
  for_each_difference(sent, arriving, record_name,
                      [&](const difference& each) { found.take(each); });
  return std::move(found.all);
}
