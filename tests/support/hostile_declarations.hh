#ifndef HOSTILE_DECLARATIONS_HH
#define HOSTILE_DECLARATIONS_HH

// Documents whose declarations ask much of the scanner.

#include <cstddef>
#include <string>
#include <vector>
#include <xercesc/util/XMLString.hpp>

namespace test {

inline std::string times(std::size_t count, const std::string& text) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

/// "<before>0<after><before>1<after>..."
inline std::string numbered(std::size_t count, const std::string& before,
                            const std::string& after) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += before + std::to_string(i) + after;
  return all;
}

inline std::string with_declarations(const std::string& declarations,
                                     const std::string& content = "") {
  return "<!DOCTYPE R [<!ELEMENT R ANY><!ELEMENT b EMPTY>" + declarations + "]><R>" + content +
         "</R>";
}

inline std::string one_tag(const std::string& attributes) {
  return "<R><b" + attributes + "/></R>";
}

// The names have one and the same hash in the scanner.
inline std::string colliding_name(std::size_t n) {
  std::string name;
  for (unsigned bit = 0; bit < 17; ++bit) name += (n >> bit & 1U) != 0 ? "bA" : "ag";
  return name;
}

inline std::string colliding(std::size_t count, const std::string& before,
                             const std::string& after) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += before + colliding_name(i) + after;
  return all;
}

/// Names that lie in one slot of a table of so many slots, and all over other tables.
inline std::vector<std::string> names_in_a_slot(std::size_t slots, std::size_t count) {
  std::vector<std::string> names;
  for (std::size_t n = 0; names.size() < count; ++n) {
    const std::string name = "x" + std::to_string(n);
    const std::u16string units(name.begin(), name.end());
    if (xercesc::XMLString::hash(units.c_str(), slots) == 0) names.push_back(name);
  }
  return names;
}

inline std::string named(const std::vector<std::string>& names, const std::string& before,
                         const std::string& after) {
  std::string all;
  for (const std::string& name : names) all += before + name + after;
  return all;
}

inline std::string choice_of(std::size_t names) {
  return with_declarations(numbered(names, "<!ELEMENT x", " EMPTY>") + "<!ELEMENT c (x0" +
                               numbered(names, "|x", "").substr(3) + ")>",
                           "<c><x1/></c>");
}

inline std::string ambiguous(std::size_t names) {
  return with_declarations("<!ELEMENT c ((R|b)*,R" + times(names, ",(R|b)") + ")>");
}

/// A model of `before`, R and 19 times `each`: 2^20 states when every R before may be the last one.
inline std::string model(const std::string& before, const std::string& each) {
  return with_declarations("<!ELEMENT c (" + before + ",R" + times(19, "," + each) + ")>");
}

inline std::string attributes(std::size_t count) {
  return with_declarations("<!ATTLIST b" + numbered(count, " x", " CDATA #IMPLIED") + ">");
}

inline std::string words(std::size_t count) {
  return with_declarations("<!ATTLIST b x (w0" + numbered(count, "|w", "").substr(3) + ") 'w1'>",
                           "<b x='w0'/>");
}

inline std::string parameter_entity(std::size_t length) {
  return with_declarations("<!ENTITY % p '" + std::string(length, ' ') + "'>%p;");
}

inline std::string parameter_references(std::size_t count) {
  return with_declarations("<!ENTITY % p ' '>" + times(count, "%p;"));
}

inline std::string nested(std::size_t levels) {
  std::string declarations = "<!ENTITY e0 'x'>";
  for (std::size_t i = 1; i <= levels; ++i) {
    declarations += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
  }
  return with_declarations(declarations, "&e" + std::to_string(levels) + ";");
}

inline std::string references(std::size_t count, const std::string& entity = "x") {
  return with_declarations("<!ENTITY e '" + entity + "'>", times(count, "&e;"));
}

inline std::string defaults(std::size_t count, std::size_t length) {
  return with_declarations("<!ATTLIST b x CDATA '" + std::string(length, 'x') + "'>",
                           times(count, "<b/>"));
}

inline std::string doubling(std::size_t levels) {
  std::string declarations = "<!ENTITY % e0 ''>";
  for (std::size_t i = 1; i <= levels; ++i) {
    const std::string below = "&#37;e" + std::to_string(i - 1) + ";";
    declarations += "<!ENTITY % e" + std::to_string(i) + " '" + below + below + "'>";
  }
  return with_declarations(declarations + "%e" + std::to_string(levels) + ";");
}

inline std::string laughs(std::size_t levels) {
  std::string declarations = "<!ENTITY e0 'lol'>";
  for (std::size_t i = 1; i <= levels; ++i) {
    declarations += "<!ENTITY e" + std::to_string(i) + " '" +
                    times(10, "&e" + std::to_string(i - 1) + ";") + "'>";
  }
  return with_declarations(declarations, "&e" + std::to_string(levels) + ";");
}

inline std::string left_nested(std::size_t levels) {
  return with_declarations(
      "<!ELEMENT c " + std::string(levels, '(') + "b" + times(levels, ",b)") + ">", "<c/>");
}

}  // namespace test

#endif
