#ifndef DOCUMENT_GRAMMAR_HH
#define DOCUMENT_GRAMMAR_HH

// What a document of a kind is made of, as the library's writers lay it out: a grammar in terms of
// its own. The grammars for editors are written from it, and `check --strict` holds documents
// against it. It follows the tables that the readers follow.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document_kind.hh"

/// A number that a text may be, and what it stands for.
struct named_number {
  std::int32_t number;
  std::string meaning;
};

/// What a text may be.
struct text_grammar {
  enum kind {
    any,       // within its lengths, in characters
    number,    // decimal, of 32 bits, with a sign or without
    count,     // decimal or hexadecimal behind 0x, of 32 bits, without sign
    fraction,  // as C reads and writes a float
    one_of,    // one of `numbers`
  };

  std::string name;  ///< of the type
  kind what = any;
  std::size_t shortest = 0;
  std::size_t longest = 0;  ///< 0: any length
  std::string meaning;      ///< of the numbers
  std::vector<named_number> numbers;
};

struct content_grammar;

struct element_grammar {
  std::string name;
  std::string meaning;  ///< for a person who writes a document
  const content_grammar* content;
};

/// An attribute that must be there.
struct attribute_grammar {
  std::string name;
  std::string meaning;
  const text_grammar* text;
};

/// Elements that stand in any order: each at most once, or, when repeated, any number of times.
struct element_group {
  struct member {
    element_grammar element;
    bool required = false;  ///< of a group that is repeated: one of its elements at least
  };

  std::vector<member> members;
  bool repeated = false;
};

/// What is in an element: a text, then groups of elements, one behind the other.
struct content_grammar {
  std::string name;
  const text_grammar* text = nullptr;  ///< null: none
  std::optional<attribute_grammar> attribute;
  std::vector<element_group> groups;
};

struct document_grammar {
  std::string meaning;
  element_grammar root;
  std::deque<text_grammar> texts;        ///< in the order of their first use
  std::deque<content_grammar> contents;  ///< that are more than a text, the innermost first
  std::deque<content_grammar> leaves;    ///< that are only a text
};

/// Whether a text is all that some element or attribute holds: no type is known to editors of what
/// stands beside elements.
bool is_type(const document_grammar& grammar, const text_grammar& text);

/// What a text may be, for a person: "a whole number from 0 to 31".
std::string description_of(const text_grammar& text);

/// The grammar of a kind of document; null when it has none, as those of cameras.
const document_grammar* grammar_of(document_kind kind);

#endif
