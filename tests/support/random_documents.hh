#ifndef RANDOM_DOCUMENTS_HH
#define RANDOM_DOCUMENTS_HH

// Documents of every record format with everything that readers stumble over: elements in any order
// and nesting, odd numbers, long and empty texts, comments, references, damage.

#include <random>
#include <string>
#include <vector>

namespace test {

class random_documents {
 public:
  enum format { event_list, elements, variables, dictionary, formats };

  explicit random_documents(unsigned seed) : random(seed) {}

  unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }
  bool one_in(unsigned n) { return below(n) == 0; }

  std::string next(format kind) {
    static const std::string roots[] = {"BMR", "CHANDESCRIPTIONS", "DAQvariables", "ENVINDEXDICT"};
    const std::string root = one_in(40) ? one_of({"X", "bmr", "CHANDESCRIPTIONS"}) : roots[kind];
    std::string text = one_in(3) ? "" : "<?xml version='1.0' encoding='UTF-8'?>\n";
    if (one_in(8)) {
      text += "<!DOCTYPE " + root + " [<!ENTITY e 'ent'><!ELEMENT " + root + " ANY>" +
              (one_in(2) ? "<!ATTLIST bitTitle bit CDATA '9'>" : "") + "]>\n";
    }
    text += "<" + root + ">";
    std::vector<std::string> open;
    for (unsigned i = below(60); i != 0; --i) {
      append_element(text, open, kind);
      if (one_in(2)) text += one_of({"\n", "\n\t", " ", "<!-- x -->"});
      while (!open.empty() && one_in(3)) close(text, open);
    }
    while (!open.empty()) close(text, open);
    text += "</" + root + ">\n";
    if (one_in(10)) text.resize(below(static_cast<unsigned>(text.size()) + 1));
    if (one_in(12) && !text.empty()) {
      text[below(static_cast<unsigned>(text.size()))] = "<>&'\"\x01 \xff\n/"[below(10)];
    }
    return text;
  }

 private:
  std::string one_of(const std::vector<std::string>& choices) {
    return choices[below(static_cast<unsigned>(choices.size()))];
  }

  std::string number() {
    return one_of({"-1", "  7", "0x1F", "0X1F", "12x", "99999999999", "-99999999999999999999", "31",
                   "32", "63", "+5", "3\n", "1e3", "0.25", "abc", std::to_string(below(64)),
                   std::to_string(below(64)), std::to_string(below(64))});
  }
  std::string fraction() {
    return one_of({"nan", "-inf", "1e400", "0x1p3", ".5", "1e", "-0.000001", "16777217", " 2.5 ",
                   std::to_string(below(100000) / 1000.0)});
  }
  std::string content() {
    return one_of({"", " ", "\n\t ", std::string(below(320), 'a'), "caf\xc3\xa9", "a&amp;b",
                   "x<!-- c -->y", "<![CDATA[cd]]>", "&#13;", "<?pi x?>z", " lead", "\xce\xa9mega",
                   one_in(4) ? "e&e;f" : "e", "P" + std::to_string(below(4)),
                   "P" + std::to_string(below(3)), "P" + std::to_string(below(3))});
  }

  static void close(std::string& text, std::vector<std::string>& open) {
    text += "</" + open.back() + ">";
    open.pop_back();
  }

  void append_element(std::string& text, std::vector<std::string>& open, format kind) {
    static const std::vector<std::string> names[] = {
        {"EVENT", "TYPE", "TYPE", "TMASK", "MINTIMESEC", "MINTIMEUSEC", "PRIORITY", "SBLOCK",
         "CHLIST", "CHAN", "CHAN", "FOO"},
        {"CHANNEL",   "EVTYPE", "STREAM",    "PROP",       "PROP",       "SB_NAME",  "DTYPE",
         "DB_KEY",    "COUNT",  "SETPOINT",  "NAME",       "SUBSYSTEM",  "DESC",     "UNITS",
         "SIZE",      "BIT",    "BIT_NAME",  "BIT_DESCR",  "DIM",        "DIM_NAME", "DIM_DESCR",
         "DIM_UNITS", "STAT",   "STAT_NAME", "STAT_DESCR", "STAT_UNITS", "FOO"},
        {"DaqFloat", "DaqBits", "DaqFloatMatrix", "evType", "vindo", "vindo", "daqName",
         "subSystem", "setPoint", "description", "units", "lastIndex", "bitTitle", "dimension",
         "name", "freq"},
        {"CHANNEL", "INDEX", "PROP", "DABS", "DREL", "isodate"}};
    const std::string name = one_of(names[kind]);
    std::string start = "<" + name;
    if (name == "bitTitle" && !one_in(5)) start += " bit='" + std::to_string(below(40)) + "x'";
    if (name == "dimension" && !one_in(5)) start += " id=' " + std::to_string(below(9)) + "'";
    if (one_in(20)) start += " other='1'";
    const bool holds_others =
        name == "EVENT" || name == "CHANNEL" || name == "CHLIST" || name.rfind("Daq", 0) == 0;
    if (holds_others && !one_in(8)) {
      text += start + (one_in(2) ? ">" : ">\n  ");
      open.push_back(name);
    } else if (one_in(15)) {
      text += start + "/>";
    } else {
      text += start + ">" + value_of(name);
      open.push_back(name);
      if (!one_in(8)) close(text, open);
    }
  }

  std::string value_of(const std::string& name) {
    static const std::string numeric =
        " TYPE TMASK EVTYPE DTYPE INDEX evType STREAM BIT DIM STAT lastIndex PRIORITY SIZE ";
    if (one_in(8)) return content();
    if (name == "DABS" || name == "DREL") return fraction();
    return numeric.find(" " + name + " ") != numeric.npos ? number() : content();
  }

  std::mt19937 random;
};

}  // namespace test

#endif
