#include "hostile_tags.hh"

#include <algorithm>
#include <stdexcept>

namespace cost {

std::string times(std::size_t count, const std::string& text) {
  std::string all;
  all.reserve(count * text.size());
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

std::string up_to(std::size_t size, const numbered_text& each) {
  std::string all;
  for (std::size_t i = 0; all.size() < size; ++i) all += each(i);
  return all;
}

std::string numbered(const std::string& before, std::size_t n, const std::string& after) {
  return before + std::to_string(n) + after;
}

std::string choice(std::size_t size, const numbered_text& name) {
  return name(0) + up_to(size, [&](std::size_t i) { return "|" + name(i + 1); });
}

std::string short_word(std::size_t i) {
  return numbered("w", i);
}

std::size_t colliding_in(std::size_t size, std::size_t more) {
  return std::max<std::size_t>(size / (colliding_name(0).size() + more), 1);
}

// Two letters of the same sum in the scanner's hash, as often as it takes.
std::string colliding_name(std::size_t n) {
  std::string name;
  for (unsigned bit = 0; bit < 17; ++bit) name += (n >> bit & 1U) != 0 ? "bA" : "ag";
  return name;
}

namespace {

dear_tag declared(const std::string& declarations) {
  return {"<!ELEMENT b ANY>" + declarations, ""};
}

dear_tag with_attributes(dear_tag tag, const std::string& same) {
  tag.attributes = [same](std::size_t) { return same; };
  return tag;
}

struct tag_family {
  const char* name;
  dear_tag (*make)(std::size_t size);
};

const tag_family by_tag[] = {
    {"plain", [](std::size_t) { return dear_tag{}; }},
    {"attribute without a declaration",
     [](std::size_t) { return with_attributes({}, " a=\"v\""); }},
    {"default of a long name",
     [](std::size_t n) { return declared("<!ATTLIST b " + std::string(n, 'n') + " CDATA 'v'>"); }},
    {"long default",
     [](std::size_t n) { return declared("<!ATTLIST b a CDATA '" + std::string(n, 'v') + "'>"); }},
    {"long default of name tokens",
     [](std::size_t n) {
       return declared("<!ATTLIST b a NMTOKENS '" + times(n / 2, "v ") + "'>");
     }},
    {"long default of white space",
     [](std::size_t n) {
       return declared("<!ATTLIST b a NMTOKENS 'v" + std::string(n, ' ') + "v'>");
     }},
    {"long fixed value",
     [](std::size_t n) {
       return with_attributes(declared("<!ATTLIST b a CDATA #FIXED '" + std::string(n, 'v') + "'>"),
                              " a=\"v\"");
     }},
    {"long enumeration",
     [](std::size_t n) {
       return declared("<!ATTLIST b a (" + choice(n, short_word) + "|z) 'z'>");
     }},
    {"long word of an enumeration",
     [](std::size_t n) { return declared("<!ATTLIST b a (" + std::string(n, 'w') + "|z) 'z'>"); }},
    {"value that is no word of a long enumeration",
     [](std::size_t n) {
       return with_attributes(declared("<!ATTLIST b a (" + choice(n, short_word) + ") #IMPLIED>"),
                              " a=\"z\"");
     }},
    {"long list of notations",
     [](std::size_t n) {
       return declared(
           up_to(n / 2, [](std::size_t i) { return numbered("<!NOTATION w", i, " PUBLIC 'p'>"); }) +
           "<!ATTLIST b a NOTATION (" + choice(n / 10, short_word) + ") 'w0'>");
     }},
    {"many defaults",
     [](std::size_t n) {
       return declared("<!ATTLIST b" +
                       up_to(n, [](std::size_t i) { return numbered(" a", i, " CDATA ''"); }) +
                       ">");
     }},
    {"many long defaults",
     [](std::size_t n) {
       return declared("<!ATTLIST b" +
                       up_to(n,
                             [](std::size_t i) {
                               return numbered(" a", i, " CDATA '" + std::string(1000, 'v') + "'");
                             }) +
                       ">");
     }},
    {"many optional attributes",
     [](std::size_t n) {
       return declared(
           "<!ATTLIST b" +
           up_to(n, [](std::size_t i) { return numbered(" a", i, " CDATA #IMPLIED"); }) + ">");
     }},
    {"many attributes that are missing",
     [](std::size_t n) {
       return declared(
           "<!ATTLIST b" +
           up_to(n, [](std::size_t i) { return numbered(" a", i, " CDATA #REQUIRED"); }) + ">");
     }},
    {"colliding attributes that are declared",
     [](std::size_t n) {
       std::string all = "<!ATTLIST b";
       const std::size_t count = colliding_in(n, 12);
       for (std::size_t i = 0; i < count; ++i) all += " " + colliding_name(i) + " CDATA #IMPLIED";
       return with_attributes(declared(all + ">"), " " + colliding_name(0) + "=\"v\"");
     }},
    {"long name of an element",
     [](std::size_t n) {
       dear_tag tag;
       tag.name = std::string(n, 'n');
       return tag;
     }},
    {"long name of an element that is declared",
     [](std::size_t n) {
       dear_tag tag;
       tag.name = std::string(n, 'n');
       tag.declarations = "<!ELEMENT " + tag.name + " ANY>";
       return tag;
     }},
    {"after colliding elements",
     [](std::size_t n) {
       dear_tag tag;
       const std::size_t count = colliding_in(n, 3);
       for (std::size_t i = 0; i < count; ++i) tag.content += "<" + colliding_name(i) + "/>";
       tag.name = colliding_name(0);
       return tag;
     }},
    {"after colliding elements that are declared",
     [](std::size_t n) {
       dear_tag tag;
       const std::size_t count = colliding_in(n, 16);
       for (std::size_t i = 0; i < count; ++i)
         tag.declarations += "<!ELEMENT " + colliding_name(i) + " ANY>";
       tag.name = colliding_name(0);
       return tag;
     }},
    {"after a tag of many attributes",
     [](std::size_t n) {
       dear_tag tag;
       tag.content = "<b" + up_to(n, [](std::size_t i) { return numbered(" a", i, "=''"); }) + "/>";
       return with_attributes(tag, " a=\"\"");
     }},
    {"after a tag of colliding attributes",
     [](std::size_t n) {
       dear_tag tag;
       const std::size_t count = colliding_in(n, 4);
       tag.content = "<b";
       for (std::size_t i = 0; i < count; ++i) tag.content += " " + colliding_name(i) + "=''";
       tag.content += "/>";
       return with_attributes(tag, " a=\"\"");
     }},
    {"each with another attribute",
     [](std::size_t) {
       dear_tag tag;
       tag.attributes = [](std::size_t i) { return numbered(" a", i, "=\"\""); };
       return tag;
     }},
    {"each with another value",
     [](std::size_t) {
       dear_tag tag;
       tag.attributes = [](std::size_t i) { return numbered(" a=\"", i, "\""); };
       return tag;
     }},
    {"after colliding identifiers",
     [](std::size_t n) {
       dear_tag tag = declared("<!ATTLIST b i ID #IMPLIED r IDREF #IMPLIED>");
       const std::size_t count = colliding_in(n, 9);
       for (std::size_t i = 0; i < count; ++i) tag.content += "<b i='" + colliding_name(i) + "'/>";
       return with_attributes(tag, " r=\"" + colliding_name(0) + "\"");
     }},
    {"lists of references after colliding identifiers",
     [](std::size_t n) {
       dear_tag tag = declared("<!ATTLIST b i ID #IMPLIED r IDREFS #IMPLIED>");
       const std::size_t count = colliding_in(n / 2, 9);
       for (std::size_t i = 0; i < count; ++i) tag.content += "<b i='" + colliding_name(i) + "'/>";
       return with_attributes(
           tag, " r=\"" + times(colliding_in(n / 2, 1), colliding_name(0) + " ") + "\"");
     }},
    {"identifiers",
     [](std::size_t) {
       dear_tag tag = declared("<!ATTLIST b i ID #IMPLIED>");
       tag.attributes = [](std::size_t i) { return numbered(" i=\"i", i, "\""); };
       return tag;
     }},
    {"colliding identifiers",
     [](std::size_t) {
       dear_tag tag = declared("<!ATTLIST b i ID #IMPLIED>");
       tag.attributes = [](std::size_t i) { return " i=\"" + colliding_name(i) + "\""; };
       return tag;
     }},
    {"entities as values",
     [](std::size_t n) {
       dear_tag tag = declared("<!NOTATION n PUBLIC 'p'><!ATTLIST b a ENTITIES #IMPLIED>");
       const std::size_t count = colliding_in(n / 2, 30);
       for (std::size_t i = 0; i < count; ++i)
         tag.declarations += "<!ENTITY " + colliding_name(i) + " SYSTEM 's' NDATA n>";
       return with_attributes(
           tag, " a=\"" + times(colliding_in(n / 4, 1), colliding_name(0) + " ") + "v\"");
     }},
    {"no name tokens",
     [](std::size_t n) {
       return with_attributes(declared("<!ATTLIST b a IDREFS #IMPLIED>"),
                              " a=\"" + times(n / 8, "1 ") + "\"");
     }},
    {"not declared",
     [](std::size_t) {
       dear_tag tag = declared("");
       tag.name = "c";
       return tag;
     }},
    {"long name that is not declared",
     [](std::size_t n) {
       dear_tag tag = declared("");
       tag.name = std::string(n, 'n');
       return tag;
     }},
    {"child that a long content model lacks",
     [](std::size_t n) {
       dear_tag tag = declared("<!ELEMENT p (" + choice(n, short_word) + ")*>");
       tag.name = "p";
       tag.inside = [](std::size_t) { return "<b/>"; };
       return tag;
     }},
    {"last child of a long content model",
     [](std::size_t n) {
       dear_tag tag = declared("<!ELEMENT p (" + choice(n, short_word) + "|b)*>");
       tag.name = "p";
       tag.inside = [](std::size_t) { return "<b/>"; };
       return tag;
     }},
    {"last child of long mixed content",
     [](std::size_t n) {
       dear_tag tag = declared("<!ELEMENT p (#PCDATA|" + choice(n, short_word) + "|b)*>");
       tag.name = "p";
       tag.inside = [](std::size_t) { return "<b/>"; };
       return tag;
     }},
    {"last of similar children of one element",
     [](std::size_t n) {
       const std::string name(200, 'n');
       dear_tag tag;
       tag.declarations = "<!ELEMENT p (" +
                          choice(n, [&](std::size_t i) { return numbered(name, i); }) + "|" + name +
                          ")*>";
       tag.content = "<p>";
       tag.name = name;
       return tag;
     }},
    {"references in a value",
     [](std::size_t n) {
       return with_attributes(declared("<!ENTITY v 'v'>"), " a=\"" + times(n / 8, "&v;") + "\"");
     }},
    {"references to a long entity in a value",
     [](std::size_t n) {
       return with_attributes(declared("<!ENTITY v '" + std::string(n, 'v') + "'>"),
                              " a=\"&v;&v;&v;&v;\"");
     }},
    {"references to colliding entities",
     [](std::size_t n) {
       dear_tag tag = declared("");
       const std::size_t count = colliding_in(n, 14);
       for (std::size_t i = 0; i < count; ++i)
         tag.declarations += "<!ENTITY " + colliding_name(i) + " ''>";
       tag.inside = [](std::size_t) { return "&" + colliding_name(0) + ";"; };
       return tag;
     }},
    {"character references in a value",
     [](std::size_t n) { return with_attributes({}, " a=\"" + times(n / 8, "&#65;&lt;") + "\""); }},
    {"long text",
     [](std::size_t n) {
       dear_tag tag;
       tag.inside = [text = std::string(n / 8, 't')](std::size_t) { return text; };
       return tag;
     }},
    {"sections, comments and instructions",
     [](std::size_t) {
       dear_tag tag;
       tag.inside = [](std::size_t) { return "<![CDATA[]]><!----><?p ?>"; };
       return tag;
     }},
    {"long comment",
     [](std::size_t n) {
       dear_tag tag;
       tag.inside = [text = "<!--" + std::string(n / 8, 't') + "-->"](std::size_t) { return text; };
       return tag;
     }},
    {"feature with a long name by default",
     [](std::size_t n) {
       dear_tag tag = declared("<!ATTLIST Float Name CDATA '" + std::string(n, 'v') + "'>");
       tag.name = "Float";
       return tag;
     }},
};

}  // namespace

std::vector<std::string> tag_families() {
  std::vector<std::string> all;
  for (const tag_family& each : by_tag) all.emplace_back(each.name);
  return all;
}

dear_tag make_tag(const std::string& family, std::size_t size) {
  for (const tag_family& each : by_tag) {
    if (each.name == family) return each.make(size);
  }
  throw std::invalid_argument(family);
}

}  // namespace cost
