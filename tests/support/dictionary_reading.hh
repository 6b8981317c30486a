#ifndef DICTIONARY_READING_HH
#define DICTIONARY_READING_HH

// Dictionaries from literal documents, by the readers of both generations.

#include "dictionary_support.hh"

namespace test {

template <class Generation>
struct from_text : Generation {
  static constexpr bool is_text = true;
  static int take(std::string document, std::vector<typename Generation::entry*>* list) {
    return Generation::read(document.data(), list);
  }
};

template <class Generation>
struct from_file : Generation {
  static constexpr bool is_text = false;
  static int take(const std::string& document, std::vector<typename Generation::entry*>* list) {
    temporary_file file(document);
    return Generation::readf(file.name(), list);
  }
};

struct reader_names {
  template <class Reader>
  static std::string GetName(int) {
    return std::string(Reader::title) + (Reader::is_text ? "_text" : "_file");
  }
};

template <class Entry>
struct reading {
  int code = -1;
  output said;
  zrt4::basic_env_dictionary<Entry> list;
};

template <class Reader>
reading<typename Reader::entry> read(const std::string& document) {
  reading<typename Reader::entry> result;
  result.said = captured([&] { result.code = Reader::take(document, result.list.get()); });
  return result;
}

// Reads `content` as the content of the root; nothing may be printed.
template <class Reader>
reading<typename Reader::entry> read_content(const std::string& content) {
  auto result = read<Reader>("<ENVINDEXDICT>" + content + "</ENVINDEXDICT>");
  EXPECT_EQ(result.code, 0) << content;
  EXPECT_EQ(result.said.out, "");
  EXPECT_EQ(result.said.err, "");
  return result;
}

template <class Entry>
void expect_entry(const Entry& entry, int index, const std::string& property, float absolute,
                  float relative) {
  EXPECT_EQ(entry.index, index);
  std::string field(sizeof entry.data.env_prop, '\0');
  property.copy(field.data(), property.size());
  EXPECT_EQ(std::string(entry.data.env_prop, sizeof entry.data.env_prop), field);
  EXPECT_EQ(entry.data.env_ch_abs_delta, absolute);
  EXPECT_EQ(entry.data.env_ch_rel_delta, relative);
}

template <class Reader>
struct EnvIndexDictRead : testing::Test {};
using dictionary_readers =
    testing::Types<from_text<older>, from_file<older>, from_text<y2010>, from_file<y2010>>;

}  // namespace test

#endif
