#include "bits.hh"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <map>

#include "document_kind.hh"
#include "each_file.hh"
#include "reading.hh"
#include "terminal.hh"
#include "zrt4xml.hh"

namespace {

constexpr int word_size = 32;
constexpr int bits_of_line = 16;
constexpr int bits_of_byte = 8;
constexpr int width_of_bit = 3;

using named_bits = std::map<int, const bit_descr*>;

bool is_set(std::uint32_t value, int bit) {
  return (value >> bit & 1U) != 0;
}

std::string binary(std::uint32_t value) {
  std::string digits;
  for (int bit = word_size - 1; bit >= 0; --bit) {
    if (is_set(value, bit) || !digits.empty() || bit == 0) digits += is_set(value, bit) ? '1' : '0';
  }
  return digits;
}

// Where a bit stands in its line: its last character.
std::size_t column_of(int top, int bit) {
  const auto before = static_cast<std::size_t>(top - bit);
  return before * width_of_bit + 2 + before / bits_of_byte * 2;
}

std::string title_of(const bit_descr& bit) {
  std::string title = std::to_string(bit.bit) + " " + printable(bit.bit_name);
  if (bit.bit_desc[0] != '\0') title += ": " + printable(bit.bit_desc);
  return title;
}

// The numbers, what is set, and a line from each bit to its name.
void print_line(int top, const named_bits& named, std::optional<std::uint32_t> value) {
  const int last = top - bits_of_line + 1;
  std::string numbers(column_of(top, last) + 1, ' ');
  std::string signs = numbers;
  for (int bit = top; bit >= last; --bit) {
    const std::string number = std::to_string(bit);
    const std::size_t column = column_of(top, bit);
    numbers.replace(column + 1 - number.size(), number.size(), number);
    signs[column] = value ? (is_set(*value, bit) ? '1' : '0') : named.count(bit) != 0 ? '#' : '.';
  }
  std::printf("%s\n%s\n", coloured(colour::bold, numbers).c_str(), signs.c_str());
  for (int bit = last; bit <= top; ++bit) {
    const auto one = named.find(bit);
    if (one == named.end()) continue;
    std::string line(column_of(top, last) + 1, ' ');
    for (int above = bit + 1; above <= top; ++above) {
      if (named.count(above) != 0) line[column_of(top, above)] = '|';
    }
    const std::size_t column = column_of(top, bit);
    std::fill(line.begin() + static_cast<std::ptrdiff_t>(column), line.end(), '-');
    line[column] = '`';
    std::string title = title_of(*one->second);
    if (value) title += is_set(*value, bit) ? "  [set]" : "";
    const bool is_marked = value && is_set(*value, bit);
    std::printf("%s- %s\n", line.c_str(),
                is_marked ? coloured(colour::green, title).c_str() : title.c_str());
  }
}

void print(const chan_descr_2010& channel, std::optional<std::uint32_t> value) {
  std::printf("%s  %s\n", coloured(colour::bold, printable(channel.daq_name)).c_str(),
              printable(channel.prop_name).c_str());
  if (channel.prop_desc[0] != '\0') std::printf("%s\n", printable(channel.prop_desc).c_str());
  named_bits named;
  for (const bit_descr* bit : channel.bits) {
    if (bit->bit >= 0 && bit->bit < word_size) named.emplace(bit->bit, bit);
  }
  if (value) std::printf("0x%X = %u = 0b%s\n", *value, *value, binary(*value).c_str());
  const bool has_upper_half = (!named.empty() && named.rbegin()->first >= bits_of_line) ||
                              (value && *value >> bits_of_line);
  if (has_upper_half) {
    print_line(word_size - 1, named, value);
    std::printf("\n");
  }
  print_line(bits_of_line - 1, named, value);
  for (const bit_descr* bit : channel.bits) {
    const bool is_drawn = bit->bit >= 0 && bit->bit < word_size && named.at(bit->bit) == bit;
    if (!is_drawn) std::printf("also: %s\n", title_of(*bit).c_str());
  }
}

struct loaded_channels {
  std::string file;
  reading how;
  zrt4::channel_list list;
};

loaded_channels load(input_file& file) {
  const document_kind kind = kind_of(file);
  if (!is_channels(kind)) throw wrong_kind(file, kind, "channel descriptions");
  loaded_channels loaded{file.name(), {}, {}};
  loaded.how = read_into(loaded.list, file, dialect_of(kind), zrt4::types::numbers);
  return loaded;
}

bool bears(const chan_descr_2010& channel, const std::string& name) {
  return channel.daq_name == name || channel.prop_name == name;
}

}  // namespace

exit_code show_bits(const std::vector<std::string>& files, const std::string& name,
                    std::optional<std::uint32_t> value) {
  bool is_searched = false;
  bool is_found = false;
  bool has_bits = false;
  const exit_code read = for_each_file(
      files, 1, load,
      [&](const loaded_channels& one) {
        is_searched = true;
        report_reading(one.file, one.how, "what could be read is searched");
        for (const chan_descr_2010& channel : one.list) {
          if (has_bits || !bears(channel, name)) continue;
          is_found = true;
          has_bits = !channel.bits.empty();
          if (has_bits) print(channel, value);
        }
        return fine_if(one.how.errors == 0);
      },
      [](const unusable_file&) {});
  if (is_searched && !is_found) report(name, "no channel has this DAQ name or property");
  if (is_found && !has_bits) report(name, "this channel has no bits");
  return std::max(read, fine_if(has_bits));
}

std::optional<std::uint32_t> word_of(const std::string& text) {
  const bool is_negative = text.substr(0, 1) == "-";
  const std::string prefix = text.substr(0, 2);
  const int base = prefix == "0x" || prefix == "0X"   ? 16
                   : prefix == "0b" || prefix == "0B" ? 2
                                                      : 10;
  const char* const begin = text.data() + (base != 10 ? 2 : is_negative ? 1 : 0);
  const char* const end = text.data() + text.size();
  std::uint32_t word = 0;
  const auto [stop, error] = std::from_chars(begin, end, word, base);
  if (error != std::errc() || stop != end) return {};
  if (!is_negative) return word;
  if (word > 0x80000000U) return {};
  return ~word + 1U;
}
