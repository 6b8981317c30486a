#ifndef PATTERN_HH
#define PATTERN_HH

#include <string>
#include <utility>
#include <vector>

/// A pattern of RELAX NG, whatever the syntax that it is written in.
struct pattern {
  enum kind {
    element,
    attribute,
    group,
    interleave,
    choice,
    optional,
    zero_or_more,
    one_or_more,
    reference,
    text,
    data,
    value
  };

  kind what;
  std::string name = {};           ///< of an element, an attribute, a definition or a data type
  std::string documentation = {};  ///< for a person
  std::vector<pattern> inside = {};
  std::vector<std::pair<std::string, std::string>> parameters = {};  ///< of data
  std::string literal = {};                                          ///< of a value
};

struct definition {
  std::string name;
  std::string documentation;
  pattern what;
};

/// A whole grammar.
struct relax_ng {
  pattern start;
  std::vector<definition> definitions;
};

relax_ng patterns_of(const struct document_grammar& grammar);

#endif
