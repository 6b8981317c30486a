#ifndef DICTIONARY_DUMPING_HH
#define DICTIONARY_DUMPING_HH

// What the tests of dumped dictionaries share.

#include <fcntl.h>
#include <unistd.h>

#include "dictionary_support.hh"

namespace test {

inline const std::string head =
    "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n"
    "<ENVINDEXDICT>\n"
    "\t<isodate>DATE</isodate>\n";
inline const std::string tail = "</ENVINDEXDICT>\n\n";
inline const std::string empty_document = head + tail;

// What ENV/TEMP.1 at index 7 with the deltas 0.5 and 0.01 is written as.
inline const std::string sample_channel =
    "<CHANNEL>\n"
    "<INDEX>7</INDEX>\n"
    "<PROP>ENV/TEMP.1</PROP>\n"
    "<DABS>0.500000</DABS>\n"
    "<DREL>0.010000</DREL>\n"
    "</CHANNEL>\n";
inline const std::string sample_line = "7\tENV/TEMP.1\t0.500000\t0.010000\n";
inline const std::string sample_listing =
    "-------------- 1 -----------------\n"
    " Index : 7\n"
    " Channel: ENV/TEMP.1 DABS 0.5 DREL 0.01\n";

inline char no_file[] = "";

// Puts DATE in place of the date, when there is one in its form.
inline std::string dateless(std::string document) {
  const std::size_t at = head.find("DATE");
  const std::string form = "9999-99-99T99:99:99";
  if (document.size() < at + form.size()) return document;
  std::string shape = document.substr(at, form.size());
  for (char& c : shape) {
    if (c >= '0' && c <= '9') c = '9';
  }
  return shape == form ? document.replace(at, form.size(), "DATE") : document;
}

inline std::string created_and_closed(const std::string& function, const std::string& name) {
  return function + "  file: '" + name + "' has been created\n" + function + "  file: '" + name +
         "' has been closed\n";
}

template <class Generation>
typename Generation::list one_entry() {
  typename Generation::list list;
  list.get()->push_back(new_entry<typename Generation::entry>(7, "ENV/TEMP.1", 0.5F, 0.01F));
  return list;
}

// A descriptor of an empty file of its own.
class open_file {
 public:
  open_file() : file(""), number(open(file.name(), O_RDWR)) {}
  open_file(const open_file&) = delete;
  open_file& operator=(const open_file&) = delete;
  ~open_file() { close(number); }
  int descriptor() const { return number; }
  std::string content() const { return file.content(); }

 private:
  temporary_file file;
  int number;
};

template <class Generation>
struct EnvIndexDictDump : testing::Test {
  // Dumps and expects the result and everything printed.
  void expect(int result, const std::string& printed,
              std::vector<typename Generation::entry*>* from, char* path, int mode, int descriptor,
              std::string* into) {
    int code = -1;
    const auto said =
        captured([&] { code = Generation::dump(from, path, mode, descriptor, into); });
    EXPECT_EQ(code, result);
    EXPECT_EQ(said.out, printed);
    EXPECT_EQ(said.err, "");
  }

  void expect_from_text(int result, const std::string& printed, std::string document, char* path,
                        int mode, int descriptor) {
    int code = -1;
    const auto said =
        captured([&] { code = Generation::dump(document.data(), path, mode, descriptor); });
    EXPECT_EQ(code, result);
    EXPECT_EQ(said.out, printed);
  }

  typename Generation::list list = one_entry<Generation>();
  temporary_file file{"old content"};
  std::string text = "canary";
  const std::string name = Generation::dump_name;
  const std::string opened_and_closed = created_and_closed(Generation::dump_name, file.path());
};

}  // namespace test

#endif
