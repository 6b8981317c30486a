#include "hostile_documents.hh"

#include <algorithm>

#include "hostile_tags.hh"

namespace cost {

namespace {

struct whole_family {
  const char* name;
  std::string (*declarations)(std::size_t size);
  std::string (*content)(std::size_t size);
};

std::string nothing(std::size_t) {
  return "";
}

std::string entities_in_a_row(std::size_t levels, const std::string& kind, const std::string& mark,
                              std::size_t repeats) {
  std::string all = "<!ENTITY " + kind + "e0 'x'>";
  if (!kind.empty()) all = "<!ENTITY " + kind + "e0 ''>";
  for (std::size_t i = 1; i <= levels; ++i) {
    all += numbered("<!ENTITY " + kind + "e", i,
                    " '" + times(repeats, numbered(mark + "e", i - 1, ";")) + "'>");
  }
  return all;
}

const whole_family as_a_whole[] = {
    {"text", nothing, [](std::size_t n) { return std::string(n, 't'); }},
    {"lines", nothing, [](std::size_t n) { return times(n / 2, "t\n"); }},
    {"value of one attribute", nothing,
     [](std::size_t n) { return "<b a='" + std::string(n, 'v') + "'/>"; }},
    {"name of one element", nothing,
     [](std::size_t n) { return "<" + std::string(n, 'n') + "/>"; }},
    {"name of one attribute", nothing,
     [](std::size_t n) { return "<b " + std::string(n, 'n') + "=''/>"; }},
    {"one comment", nothing, [](std::size_t n) { return "<!--" + std::string(n, 't') + "-->"; }},
    {"one instruction", nothing, [](std::size_t n) { return "<?p " + std::string(n, 't') + "?>"; }},
    {"one section", nothing,
     [](std::size_t n) { return "<![CDATA[" + std::string(n, 't') + "]]>"; }},
    {"brackets of a section", nothing,
     [](std::size_t n) { return "<![CDATA[" + std::string(n, ']') + "x]]>"; }},
    {"attributes of one tag", nothing,
     [](std::size_t n) {
       return "<b" + up_to(n, [](std::size_t i) { return numbered(" a", i, "=''"); }) + "/>";
     }},
    {"colliding attributes of one tag", nothing,
     [](std::size_t n) {
       std::string all = "<b";
       for (std::size_t i = 0; i < colliding_in(n, 4); ++i) all += " " + colliding_name(i) + "=''";
       return all + "/>";
     }},
    {"colliding attributes of a second tag", nothing,
     [](std::size_t n) {
       const std::size_t count = colliding_in(n / 2, 4);
       std::string all = "<b";
       for (std::size_t i = 0; i < count; ++i) all += numbered(" a", i, "=''");
       all += "/><b";
       for (std::size_t i = 0; i < count; ++i) all += " " + colliding_name(i) + "=''";
       return all + "/>";
     }},
    {"different elements", nothing,
     [](std::size_t n) { return up_to(n, [](std::size_t i) { return numbered("<x", i, "/>"); }); }},
    {"colliding elements", nothing,
     [](std::size_t n) {
       return up_to(n, [](std::size_t i) { return "<" + colliding_name(i) + "/>"; });
     }},
    {"long colliding elements", nothing,
     [](std::size_t n) {
       return up_to(n, [](std::size_t i) {
         return "<" + std::string(1000, 'n') + colliding_name(i) + "/>";
       });
     }},
    {"one reference list of colliding names",
     [](std::size_t) { return std::string("<!ELEMENT b ANY><!ATTLIST b r IDREFS #IMPLIED>"); },
     [](std::size_t n) {
       return "<b r='" + up_to(n, [](std::size_t i) { return colliding_name(i) + " "; }) + "'/>";
     }},
    {"declared elements",
     [](std::size_t n) {
       return up_to(n, [](std::size_t i) { return numbered("<!ELEMENT x", i, " ANY>"); });
     },
     nothing},
    {"declared entities",
     [](std::size_t n) {
       return up_to(n, [](std::size_t i) { return numbered("<!ENTITY x", i, " ''>"); });
     },
     nothing},
    {"declared notations",
     [](std::size_t n) {
       return up_to(n, [](std::size_t i) { return numbered("<!NOTATION x", i, " PUBLIC ''>"); });
     },
     nothing},
    {"colliding declarations",
     [](std::size_t n) {
       return up_to(n, [](std::size_t i) { return "<!ELEMENT " + colliding_name(i) + " ANY>"; });
     },
     nothing},
    {"colliding parameter entities",
     [](std::size_t n) {
       return up_to(n, [](std::size_t i) { return "<!ENTITY % " + colliding_name(i) + " ''>"; });
     },
     nothing},
    {"many long enumerations",
     [](std::size_t n) {
       return up_to(n, [](std::size_t i) {
         return numbered("<!ATTLIST b a", i, " (" + choice(4000, short_word) + ") #IMPLIED>");
       });
     },
     nothing},
    {"many long lists of notations",
     [](std::size_t n) {
       return up_to(n, [](std::size_t i) {
         return numbered("<!ATTLIST b", i,
                         " a NOTATION (" + choice(4000, short_word) + ") #IMPLIED>");
       });
     },
     nothing},
    {"one content model",
     [](std::size_t n) { return "<!ELEMENT c (" + choice(n, short_word) + ")*>"; }, nothing},
    {"one sequence",
     [](std::size_t n) {
       return "<!ELEMENT c (w" + up_to(n, [](std::size_t i) { return numbered(",w", i, "?"); }) +
              ")>";
     },
     [](std::size_t) { return std::string("<c/>"); }},
    {"ambiguous content model",
     [](std::size_t n) { return "<!ELEMENT c ((x|y)*,x" + times(n / 6, ",(x|y)") + ")>"; },
     [](std::size_t) { return std::string("<c/>"); }},
    {"many ambiguous content models",
     [](std::size_t n) {
       return up_to(n, [](std::size_t i) {
         return numbered("<!ELEMENT c", i, " ((x|y)*,x" + times(9, ",(x|y)") + ")>");
       });
     },
     [](std::size_t n) {
       return up_to(n / 10, [](std::size_t i) { return numbered("<c", i, "/>"); });
     }},
    {"parentheses to the left",
     [](std::size_t n) {
       return "<!ELEMENT c " + std::string(n / 4, '(') + "b" + times(n / 4, ",b)") + ">";
     },
     [](std::size_t) { return std::string("<c/>"); }},
    {"parentheses to the right",
     [](std::size_t n) {
       return "<!ELEMENT c " + times(n / 4, "(b,") + "b" + std::string(n / 4, ')') + ">";
     },
     [](std::size_t) { return std::string("<c/>"); }},
    {"open parentheses", [](std::size_t n) { return "<!ELEMENT c " + std::string(n, '('); },
     nothing},
    {"repetitions",
     [](std::size_t n) {
       return "<!ELEMENT c " + std::string(n / 3, '(') + "b" + times(n / 3, ")*") + ">";
     },
     [](std::size_t) { return std::string("<c/>"); }},
    {"comment among declarations",
     [](std::size_t n) { return "<!--" + std::string(n, 't') + "-->"; }, nothing},
    {"white space among declarations", [](std::size_t n) { return std::string(n, ' '); }, nothing},
    {"one entity", [](std::size_t n) { return "<!ENTITY e '" + std::string(n, 'x') + "'>"; },
     [](std::size_t) { return std::string("&e;&e;&e;&e;"); }},
    {"references to an entity", [](std::size_t) { return std::string("<!ENTITY e 'x'>"); },
     [](std::size_t n) { return times(n / 3, "&e;"); }},
    {"references to a long entity",
     [](std::size_t n) { return "<!ENTITY e '" + std::string(n / 2, 'x') + "'>"; },
     [](std::size_t n) { return times(n / 6, "&e;"); }},
    {"references to a long comment",
     [](std::size_t n) { return "<!ENTITY e '<!--" + std::string(n / 2, 'x') + "-->'>"; },
     [](std::size_t n) { return times(n / 6, "&e;"); }},
    {"references to a long entity in one value",
     [](std::size_t n) {
       return "<!ENTITY e '" + std::string(n / 2, 'x') + "'><!ATTLIST b a CDATA #IMPLIED>";
     },
     [](std::size_t n) { return "<b a='" + times(n / 6, "&e;") + "'/>"; }},
    {"default of references",
     [](std::size_t n) {
       return "<!ENTITY e '" + std::string(n / 2, 'x') + "'><!ATTLIST b a CDATA '" +
              times(n / 6, "&e;") + "'>";
     },
     [](std::size_t) { return std::string("<b/>"); }},
    {"nested entities", [](std::size_t n) { return entities_in_a_row(n / 24, "", "&", 1); },
     [](std::size_t n) { return numbered("&e", n / 24, ";"); }},
    {"doubling entities",
     [](std::size_t n) { return entities_in_a_row(std::min<std::size_t>(n / 32, 40), "", "&", 2); },
     [](std::size_t n) { return numbered("&e", std::min<std::size_t>(n / 32, 40), ";"); }},
    {"doubling entities in a value",
     [](std::size_t n) {
       return entities_in_a_row(std::min<std::size_t>(n / 32, 40), "", "&", 2) +
              "<!ATTLIST b a CDATA #IMPLIED>";
     },
     [](std::size_t n) {
       return "<b a='" + numbered("&e", std::min<std::size_t>(n / 32, 40), ";") + "'/>";
     }},
    {"nested parameter entities",
     [](std::size_t n) {
       return entities_in_a_row(n / 32, "% ", "&#37;", 1) + numbered("%e", n / 32, ";");
     },
     nothing},
    {"doubling parameter entities",
     [](std::size_t n) {
       const std::size_t levels = std::min<std::size_t>(n / 40, 60);
       return entities_in_a_row(levels, "% ", "&#37;", 2) + numbered("%e", levels, ";");
     },
     nothing},
    {"references to a parameter entity",
     [](std::size_t n) { return "<!ENTITY % e ' '>" + times(n / 3, "%e;"); }, nothing},
    {"declarations by parameter entities",
     [](std::size_t n) {
       return "<!ENTITY % e '" + times(n / 2 / 22, "<!ATTLIST b a CDATA #IMPLIED>") + "'>" +
              times(n / 6, "%e;");
     },
     nothing},
    {"one attribute declared often",
     [](std::size_t n) { return times(n / 23, "<!ATTLIST b a CDATA ''>"); }, nothing},
};

std::string empty_tag(const dear_tag& tag, std::size_t i) {
  if (tag.inside == nullptr) return "<" + tag.name + tag.attributes(i) + "/>";
  return "<" + tag.name + tag.attributes(i) + ">" + tag.inside(i) + "</" + tag.name + ">";
}

struct multiplier {
  const char* name;
  /// Adds to the declarations and to the content.
  void (*apply)(const dear_tag& tag, std::size_t size, std::string& declarations,
                std::string& content);
};

std::string tags_in(const dear_tag& tag, std::size_t size) {
  return up_to(size, [&](std::size_t i) { return empty_tag(tag, i); });
}

const multiplier multipliers[] = {
    {"written", [](const dear_tag& tag, std::size_t size, std::string&,
                   std::string& content) { content += tags_in(tag, size); }},
    {"by an entity",
     [](const dear_tag& tag, std::size_t size, std::string& declarations, std::string& content) {
       declarations += "<!ENTITY m '" + tags_in(tag, size / 2) + "'>";
       content += times(std::max<std::size_t>(size / 6, 1), "&m;");
     }},
    {"by nested entities",
     [](const dear_tag& tag, std::size_t size, std::string& declarations, std::string& content) {
       declarations += "<!ENTITY m0 '" + tags_in(tag, size / 2) + "'>";
       for (std::size_t i = 1; i < 8; ++i) {
         declarations +=
             numbered("<!ENTITY m", i, " '" + times(8, numbered("&m", i - 1, ";")) + "'>");
       }
       content += "&m7;";
     }},
    {"nested",
     [](const dear_tag& tag, std::size_t size, std::string&, std::string& content) {
       const std::string end = "</" + tag.name + ">";
       std::size_t count = 0;
       for (const std::size_t before = content.size(); content.size() - before < size; ++count) {
         content += "<" + tag.name + tag.attributes(count) + ">";
         if (tag.inside != nullptr) content += tag.inside(count);
         size -= std::min(size, end.size());
       }
       content += times(count, end);
     }},
    {"with text",
     [](const dear_tag& tag, std::size_t size, std::string&, std::string& content) {
       content += up_to(size, [&](std::size_t i) { return empty_tag(tag, i) + "t"; });
     }},
};

}  // namespace

std::vector<std::string> families() {
  std::vector<std::string> all = tag_families();
  for (const whole_family& each : as_a_whole) all.emplace_back(each.name);
  return all;
}

std::vector<std::string> multipliers_of(const std::string& family) {
  for (const whole_family& each : as_a_whole) {
    if (each.name == family) return {""};
  }
  std::vector<std::string> all;
  for (const multiplier& each : multipliers) all.emplace_back(each.name);
  return all;
}

hostile_document make(const std::string& family, const std::string& multiplied, std::size_t size,
                      const std::string& root) {
  std::string declarations;
  std::string content;
  for (const whole_family& each : as_a_whole) {
    if (each.name != family) continue;
    declarations = each.declarations(size);
    content = each.content(size);
    if (!declarations.empty() && declarations.find("<!ELEMENT b ") == std::string::npos) {
      declarations += "<!ELEMENT b ANY>";
    }
  }
  for (const multiplier& each : multipliers) {
    if (each.name != multiplied) continue;
    const dear_tag tag = make_tag(family, size / 2);
    const bool by_entity = std::string(each.name).find("entit") != std::string::npos;
    declarations = tag.declarations;
    if (declarations.empty() && by_entity) declarations = "<!ELEMENT b ANY>";
    content = tag.content;
    each.apply(tag, size / 2, declarations, content);
    if (content.compare(0, 3, "<p>") == 0) content += "</p>";
  }
  std::string text;
  if (!declarations.empty()) {
    text = "<!DOCTYPE " + root + " [<!ELEMENT " + root + " ANY>" + declarations + "]>";
  }
  return {family, multiplied, text + "<" + root + ">" + content + "</" + root + ">"};
}

}  // namespace cost
