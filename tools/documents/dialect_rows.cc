#include "dialect_rows.hh"

#include <algorithm>
#include <string_view>
#include <variant>

#include "channel_fields.hh"

namespace {

namespace library = zrt4::detail;
namespace tables = zrt4::detail::tables;

// The number stands in an attribute.
template <class Record>
constexpr bool is_read(const library::channel_field<Record>& field) {
  return field.role == library::field_role::number_of_record ||
         (field.variable && field.variable_is_read);
}

// A title is read as the name.
constexpr bool is_read(const library::channel_field<bit_descr>& field) {
  return field.role == library::field_role::number_of_record ||
         &field == library::field_of<&bit_descr::bit_name>();
}

template <class Record, std::size_t Count>
std::vector<std::string_view> unread(const library::channel_field<Record> (&fields)[Count]) {
  std::vector<std::string_view> names;
  for (const auto* field : library::in_order<&library::channel_field<Record>::row>(fields)) {
    if (!is_read(*field)) names.push_back(field->row.name);
  }
  return names;
}

constexpr std::string_view bits = "bits";
constexpr std::string_view dimensions = "dimensions";
constexpr std::string_view statistics = "statistics";  // which the dialect does not have at all

void leave_out(row& record, const std::vector<std::string_view>& names) {
  const auto is_unread = [&](const row::field& field) {
    return std::find(names.begin(), names.end(), field.name) != names.end();
  };
  record.fields.erase(std::remove_if(record.fields.begin(), record.fields.end(), is_unread),
                      record.fields.end());
}

}  // namespace

void keep_what_variables_have(row& channel) {
  static const auto of_channel = unread(tables::channel);
  static const auto of_bit = unread(tables::bit);
  static const auto of_dimension = unread(tables::dimension);
  leave_out(channel, of_channel);
  for (row_group& group : channel.groups) {
    for (row& each : group.rows) {
      leave_out(each, group.name == bits ? of_bit : of_dimension);
      each.groups.erase(
          std::remove_if(each.groups.begin(), each.groups.end(),
                         [](const row_group& inner) { return inner.name == statistics; }),
          each.groups.end());
    }
  }
}

std::vector<std::string> missing_in_variables() {
  std::vector<std::string> names;
  const auto add = [&](std::string_view of, const std::vector<std::string_view>& fields) {
    for (const std::string_view field : fields) {
      names.push_back((of.empty() ? "" : std::string(of) + ".") + std::string(field));
    }
  };
  add({}, unread(tables::channel));
  add(bits, unread(tables::bit));
  add(dimensions, unread(tables::dimension));
  add(dimensions, {statistics});
  return names;
}

std::vector<std::string> keep_what_both_have(row_list& before, row_list& after) {
  before = {before, keep_what_variables_have};
  after = {after, keep_what_variables_have};
  return missing_in_variables();
}
