#ifndef CHANNEL_READING_HH
#define CHANNEL_READING_HH

// Channel descriptions from literal documents, by both readers.

#include <memory>
#include <string>
#include <vector>

#include "support.hh"
#include "zrt4xml.hh"

namespace test {

enum flags { plain = 0, shift = 1, merge = 2 };

struct from_text {
  static int read(const std::string& document, zrt4::channel_list::pointers* list, int flags) {
    std::string text = document;
    return parse_descr_list_read(text.data(), list, (flags & shift) != 0, (flags & merge) != 0);
  }
};

struct from_file {
  static int read(const std::string& document, zrt4::channel_list::pointers* list, int flags) {
    temporary_file file(document);
    return parse_descr_list_readf(file.name(), list, (flags & shift) != 0, (flags & merge) != 0);
  }
};

/// What a document gives, held and released with the test.
class reading {
 public:
  template <class Reader>
  static std::unique_ptr<reading> by(const std::string& document, int flags) {
    auto made = std::make_unique<reading>();
    made->add<Reader>(document, flags);
    return made;
  }
  reading() = default;
  reading(const reading&) = delete;
  reading& operator=(const reading&) = delete;

  template <class Reader>
  void add(const std::string& document, int flags) {
    const auto output = captured([&] { result = Reader::read(document, &list, flags); });
    out = output.out;
    err = output.err;
  }

  std::string properties() const {
    std::string names;
    for (const chan_descr_2010* channel : list) names += std::string(channel->prop_name) + ";";
    return names;
  }

 private:
  zrt4::channel_list owner;

 public:
  zrt4::channel_list::pointers& list = *owner.get();
  int result = -99;
  std::string out, err;
};

inline std::unique_ptr<reading> memory(const std::string& document, int flags = plain) {
  return reading::by<from_text>(document, flags);
}
inline std::unique_ptr<reading> file(const std::string& document, int flags = plain) {
  return reading::by<from_file>(document, flags);
}

inline std::string elements(const std::string& body) {
  return "<CHANDESCRIPTIONS>" + body + "</CHANDESCRIPTIONS>";
}
inline std::string channel(const std::string& body) {
  return elements("<CHANNEL><PROP>P</PROP>" + body + "</CHANNEL>");
}
inline std::string variables(const std::string& body) {
  return "<DAQvariables>" + body + "</DAQvariables>";
}
inline std::string variable(const std::string& kind, const std::string& body) {
  return variables("<" + kind + "><vindo>P</vindo>" + body + "</" + kind + ">");
}

template <class Reader>
class ReadChannels : public testing::Test {
 protected:
  std::unique_ptr<reading> read(const std::string& document, int flags = plain) {
    return reading::by<Reader>(document, flags);
  }
};
using channel_readers = testing::Types<from_text, from_file>;

}  // namespace test

#endif
