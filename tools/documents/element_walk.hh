#ifndef ELEMENT_WALK_HH
#define ELEMENT_WALK_HH

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/Locator.hpp>

#include "SAX_pull_parser.hh"
#include "finding_list.hh"
#include "known_elements.hh"
#include "local_text.hh"

/// An element as a walk meets it.
struct walked_element {
  std::string_view name;
  const known_element* meaning = nullptr;  ///< null: no reader knows it
  file_place place;
  std::uint64_t number = 0;  ///< of the start tag in the document
  std::size_t within = 0;    ///< depth of the innermost element around it that is known

  /// The text before the first element in it, as a person reads it, and how many bytes it has: of a
  /// very long one only the beginning is kept.
  std::string text;
  std::size_t length = 0;
  std::string late_text;   ///< the first behind an element in it
  file_place stray_place;  ///< where that begins, or the text of an element that has none

  // What a reader gets.
  bool is_taken = false;
  bool is_whole = false;    ///< and what it got is all there is
  std::string taken_piece;  ///< if not
  unsigned steps = 0;       ///< how often it got the element without a text

  bool has_elements = false;
};

/// A walk over the elements of a document, with what a reader of the library gets of each: the walk
/// is on the same handler, and takes the same steps. It ends where a reader's ends. Damage, and
/// characters that get lost, are found on the way.
class element_walk : public zrt4::parse_handlers<zrt4::file_variant> {
 public:
  void walk(const char* path);

  // What the scanner tells.
  void start_declared(const xercesc::XMLElementDecl& element, xercesc::AttributeList& attributes);
  void endElement(const XMLCh* name) override;
  void characters(const XMLCh* chars, XMLSize_t length) override;
  void setDocumentLocator(const xercesc::Locator* given) override { locator = given; }
  void warning(const xercesc::SAXParseException& exception) override { damage(exception); }
  void error(const xercesc::SAXParseException& exception) override { damage(exception); }
  void fatalError(const xercesc::SAXParseException& exception) override { damage(exception); }
  void set_topic(zrt4::message_topic /*topic*/) {}

 protected:
  element_walk(const known_elements& all, finding_list& into) : known(all), found(into) {}

  virtual void opened(walked_element& element, const xercesc::AttributeList& attributes) = 0;
  /// A reader gets the element, its text not yet or not at all.
  virtual void seen(walked_element& element) = 0;
  /// A reader gets the element with a text.
  virtual void taken(walked_element& element, const char* text) = 0;
  virtual void closed(walked_element& element) = 0;

  /// The elements that are open, from the root's.
  const walked_element& at(std::size_t depth) const { return elements[depth]; }
  std::size_t depth() const { return open; }
  bool is_damaged() const { return error_count != 0; }

  const known_elements& known;
  finding_list& found;

 private:
  struct known_name {
    std::string name;
    const known_element* meanings[2] = {};
  };

  const known_name& name_of(const xercesc::XMLElementDecl& element);
  void add_text(walked_element& to, const XMLCh* chars, XMLSize_t length);
  static void end_taken(walked_element& element);
  void damage(const xercesc::SAXParseException& exception);
  void end_step();
  void take(walked_element& element);

  const xercesc::Locator* locator = nullptr;
  std::unordered_map<const xercesc::XMLElementDecl*, known_name> names;
  std::vector<walked_element> elements;  // those beyond `open` are kept for their memory
  std::size_t open = 0;
  bool is_ending = false;  // the innermost of them, with the step at hand
  std::uint64_t start_tags = 0;
  bool is_begun = false;  // a reader got the root, before which an error is counted once more
  file_place first_damage;
  zrt4::detail::code_page page;
  zrt4::detail::local_text converted;
};

#endif
