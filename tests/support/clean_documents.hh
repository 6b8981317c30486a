#ifndef CLEAN_DOCUMENTS_HH
#define CLEAN_DOCUMENTS_HH

// Documents of every record format in which nothing is wrong or odd, in all the ways that the pages
// of docs/ let people write them.

#include <random>
#include <string>
#include <vector>

namespace test {

class clean_documents {
 public:
  enum format { event_list, elements, variables, dictionary, formats };

  explicit clean_documents(unsigned seed) : random(seed) {}

  std::string next(format kind) {
    last_key = 0;
    last_type = 0;
    encoding = one_of({"UTF-8", "ISO-8859-1", "us-ascii"});
    std::string text = "<?xml version=\"1.0\" encoding=\"" + encoding + "\" ?>\n";
    if (encoding == "UTF-8" && one_in(3)) text.clear();
    if (one_in(4)) text += "<!-- what this is for -->\n";
    const std::string root = roots[kind];
    text += "<" + root + (one_in(20) ? " xmlns:x=\"urn:x\" x:for='others'>" : ">") + between();
    if (kind == elements && one_in(3)) text += "<isodate>2026-11-22 05:00:00</isodate>" + between();
    for (unsigned i = below(12); i != 0; --i) text += record(kind) + between();
    return text + "</" + root + ">" + (one_in(2) ? "\n" : "");
  }

 private:
  static constexpr const char* roots[] = {"BMR", "CHANDESCRIPTIONS", "DAQvariables",
                                          "ENVINDEXDICT"};

  unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }
  bool one_in(unsigned n) { return below(n) == 0; }
  std::string one_of(const std::vector<std::string>& choices) {
    return choices[below(static_cast<unsigned>(choices.size()))];
  }

  /// What may stand between two elements.
  std::string between() {
    return one_of({"", "\n", "\n  ", "\r\n\t", " ", "\n<!-- then -->\n", "<?for others?>\n"});
  }
  /// The same directly behind a start tag, where a comment or an element may not stand everywhere.
  std::string blank() { return one_of({"\n", "\n\t", " ", "\r\n  "}); }

  /// A name that nothing else in the document has.
  std::string name(std::size_t limit) {
    std::string text = one_of({"LINAC.", "GUN.", "X/", "a", "\xc2\xb5.", "A-B_", "Z&amp;"});
    if (text == "Z&amp;") text = "&amp;Z";  // a reference at the beginning interrupts nothing
    if (text[0] == '\xc2' && encoding != "UTF-8") text = "M.";
    text += "N" + std::to_string(++last_key);
    while (one_in(2) && text.size() + 9 < limit) text += one_of({"/L0.01", ".TEMP", "_x", ".SP"});
    return text;
  }
  std::string text(std::size_t limit) {
    std::string all = one_of({"", "", "mm", "horizontal position", "%", "1", "a  b", "'x' \"y\""});
    while (one_in(3) && !all.empty() && all.size() + 8 < limit) all += " and on";
    if (all.size() > limit) all = "as long as can";
    return all;
  }

  std::string number(unsigned limit) {
    std::string digits = std::to_string(below(limit));
    if (one_in(12)) digits.insert(0, "00");
    if (one_in(12)) digits.insert(0, "+");
    if (one_in(8)) digits.insert(0, one_of({" ", "\n  "}));
    if (one_in(8)) digits.append(one_of({" ", "\n"}));
    return digits;
  }
  std::string event_type() {
    static const std::vector<std::string> types = {"0", "1", "2", "4", "6", "9", "20", "27"};
    return one_of(types);
  }
  std::string data_type() { return one_of({"0", "1", "13", "28", "31", "38", "41", "53", "60"}); }

  std::string leaf(const std::string& tag, const std::string& value) {
    const bool in_section = !value.empty() && value.find('&') == value.npos && one_in(10);
    const std::string held = in_section ? "<![CDATA[" + value + "]]>" : value;
    return "<" + tag + ">" + held + "</" + tag + ">" + between();
  }
  /// Nothing, half of the times.
  std::string maybe(const std::string& element) { return one_in(2) ? element : ""; }

  std::string shuffled(std::vector<std::string> all) {
    std::string joined;
    while (!all.empty()) {
      const auto at = all.begin() + static_cast<int>(below(static_cast<unsigned>(all.size())));
      joined += *at;
      all.erase(at);
    }
    return joined;
  }

  std::string record(format kind) {
    switch (kind) {
      case event_list:
        return event();
      case elements:
        return channel();
      case variables:
        return variable();
      default:
        return entry();
    }
  }

  std::string event() {
    // Each type once.
    if (last_type == 27) return "";
    std::string all = "<EVENT>" + between() + leaf("TYPE", std::to_string(++last_type));
    std::string blocks;
    for (unsigned i = below(3); i != 0; --i) blocks += block();
    all += shuffled({maybe(leaf("TMASK", one_of({"0x1F", "31", "0xffffFFFF", "0", " 0x1f "}))),
                     maybe(leaf("MINTIMESEC", number(100))),
                     maybe(leaf("MINTIMEUSEC", number(1'000'000))),
                     maybe(leaf("PRIORITY", number(10))), blocks});
    return all + "</EVENT>";
  }
  std::string block() {
    std::string all = "<SBLOCK>" + name(254);
    if (one_in(2)) {
      all += "<CHLIST>" + between();
      for (unsigned i = 1 + below(4); i != 0; --i) all += leaf("CHAN", name(300));
      all += "</CHLIST>" + maybe("\n");
    }
    return all + "</SBLOCK>" + between();
  }

  std::string channel() {
    std::string bits;
    for (unsigned i = 0; i != 4; ++i) {
      if (one_in(6)) bits += part("BIT", 8 * i + below(8), {"NAME", "DESCR"}, "");
    }
    std::string dimensions;
    for (unsigned i = 0; i != 3 && one_in(3); ++i) {
      std::string statistics;
      for (unsigned j = 0; j != 3 && one_in(2); ++j) {
        statistics += part("STAT", j, {"NAME", "DESCR", "UNITS"}, "");
      }
      dimensions += part("DIM", i, {"NAME", "DESCR", "UNITS"}, statistics);
    }
    return "<CHANNEL>" + between() +
           shuffled({leaf("PROP", name(255)), leaf("NAME", name(255)), leaf("EVTYPE", event_type()),
                     maybe(leaf("STREAM", number(16))), maybe(leaf("DTYPE", data_type())),
                     maybe(leaf("DESC", text(255))), maybe(leaf("UNITS", text(15))),
                     maybe(leaf("SIZE", number(100'000))), maybe(leaf("SB_NAME", text(255))),
                     maybe(leaf("DB_KEY", "-1")), maybe(leaf("COUNT", number(9))),
                     maybe(leaf("SETPOINT", number(2))), maybe(leaf("SUBSYSTEM", text(63))), bits,
                     dimensions}) +
           "</CHANNEL>";
  }
  /// Its elements within it, or behind it.
  std::string part(const std::string& tag, unsigned number, std::vector<std::string> fields,
                   const std::string& parts) {
    std::string held;
    for (const std::string& field : fields) {
      if (one_in(2)) held += leaf(tag + "_" + field, text(field == "UNITS" ? 15 : 63));
    }
    const std::string start = "<" + tag + ">" + std::to_string(number) + maybe("\n");
    const std::string end = "</" + tag + ">";
    return one_in(4) ? start + end + between() + held + parts : start + held + parts + end;
  }

  std::string variable() {
    const unsigned kind = below(3);
    static const char* const tags[] = {"DaqFloat", "DaqBits", "DaqFloatMatrix"};
    const std::string tag = tags[kind];
    std::string all =
        "<" + tag + ">" + between() +
        shuffled({leaf("vindo", name(255)), leaf("daqName", name(255)),
                  leaf("evType", event_type()), maybe(leaf("subSystem", text(63))),
                  maybe(leaf("setPoint", number(2))), maybe(leaf("description", text(255))),
                  maybe(leaf("units", text(15))), maybe(leaf("lastIndex", number(5000)))});
    for (unsigned i = 0; i != 3 && kind == 1; ++i) {
      if (one_in(2)) {
        all += "<bitTitle bit=\"" + std::to_string(10 * i + below(10)) + "\">" + text(63) +
               "</bitTitle>" + between();
      }
    }
    for (unsigned i = 0; i != 3 && kind == 2; ++i) {
      all += "<dimension id='" + std::to_string(i) + "'>" + blank() +
             shuffled({maybe(leaf("name", text(63))), maybe(leaf("description", text(79))),
                       maybe(leaf("units", text(15)))}) +
             "</dimension>" + between();
    }
    return all + maybe(leaf("freq", "-1")) + "</" + tag + ">";
  }

  std::string entry() {
    return "<CHANNEL>" + between() +
           shuffled({leaf("INDEX", std::to_string(last_key)), leaf("PROP", name(79)),
                     maybe(leaf("DABS", threshold())), maybe(leaf("DREL", threshold()))}) +
           "</CHANNEL>";
  }
  std::string threshold() {
    return one_of({"0", "0.05", "1e-3", ".5", "2.", "100", "0.000000", " 1.5", "1E+2\n"});
  }

  std::mt19937 random;
  unsigned last_key = 0;
  unsigned last_type = 0;
  std::string encoding;
};

}  // namespace test

#endif
