#include "arrival.hh"

#include <algorithm>
#include <cstdint>
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

class teller {
 public:
  teller(document_form to, const std::function<void(const loss&)>& with) : form(to), use(with) {}

  void tell(const difference& each) {
    current = {{}, property_of(*each.record), {}, {}, merged_origins::itself, each.before};
    tell(each, std::string(each.one_name) + " " + shown_key(*each.record), {});
  }

 private:
  void tell(const difference& each, const std::string& name, const std::string& kind) {
    if (each.what == difference::kind::added) {
      return tell_one(kind + "added", name + " arrives, which is not there");
    }
    current.records.push_back(each.record->record);
    if (each.what == difference::kind::removed) {
      tell_one(kind.empty() ? std::string(each.one_name) : kind.substr(0, kind.size() - 1),
               name + " does not arrive" + reason_for_record(each));
    } else {
      for (const difference::field& field : each.fields) {
        current.field = field_set{1} << (field.before - each.record->fields.data());
        tell_field(field, each.one_name, name, kind);
      }
      current.field = merged_origins::itself;
      for (const difference& inner : each.inside) {
        const std::string one(inner.one_name);
        tell(
            inner,
            std::string(name).append(", ").append(one).append(" ").append(shown_key(*inner.record)),
            std::string(kind).append(one).append(" "));
      }
    }
    current.records.pop_back();
  }

  void tell_field(const difference::field& field, std::string_view owner, const std::string& name,
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
    tell_one(kind + held, line);
  }

  std::string why_altered(std::string_view text) const {
    if (!is_table(form)) return why_unwritable(text);
    return text.empty() ? "a table has no empty name" : "a record is one line of a table";
  }

  std::string reason_for_record(const difference& each) const {
    const bool is_named =
        property_of(*each.record).find_first_not_of(" \t\r\n") != std::string::npos;
    if (each.one_name == "channel" && !is_named) {
      return ": a channel without a property is not read";
    }
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

  void tell_one(const std::string& kind, const std::string& text) {
    current.kind = kind;
    current.text = text;
    use(current);
  }

  const document_form form;
  const std::function<void(const loss&)>& use;
  loss current;
};

}  // namespace

std::optional<record_origin> origin_of(const loss& lost, merged_origins* origins) {
  if (lost.records.empty()) return {};
  if (origins != nullptr) {
    field_set wanted = lost.field;
    for (auto each = lost.records.rbegin(); each != lost.records.rend(); ++each) {
      if (const auto from = origins->of(*each, wanted)) return from;
      wanted = merged_origins::itself;
    }
  }
  return record_origin{0, static_cast<std::uint32_t>(lost.before)};
}

void for_each_loss(const row_list& sent, const row_list& arriving, std::string_view record_name,
                   document_form form, const std::function<void(const loss&)>& use) {
  teller told(form, use);
  for_each_difference(
      sent, arriving, record_name, [&](const difference& each) { told.tell(each); },
      matching::in_order);
}
