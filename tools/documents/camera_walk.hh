#ifndef CAMERA_WALK_HH
#define CAMERA_WALK_HH

// Who gets which name and which text in a camera's file. The library walks through a tree, which
// has no places; this follows the same document with them.

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>
#include <xercesc/framework/XMLDocumentHandler.hpp>
#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/sax/Locator.hpp>

#include "finding_list.hh"

/// An element `PvRename`, `ToolTip` or `Description`, which opens a text of the feature that began
/// last.
struct opened_text {
  enum class source { none, itself, name_attribute, another_text, another_name };

  std::string element;
  file_place place;
  std::string parent;   ///< as a person calls it
  bool is_own = false;  ///< its parent is the feature whose text it opens
  file_place replaces;  ///< one before it in the same feature
  std::string written;
  bool has_section = false;  ///< of character data
  source filled_by = source::none;
  std::string read;
  std::string filler;  ///< another element, as a person calls it
};

/// A feature as the reader sees it.
struct camera_feature {
  struct text {
    std::string value;
    std::shared_ptr<opened_text> last;  ///< what opened it
    std::shared_ptr<opened_text> own;   ///< the last that the feature has itself
  };

  std::string element;
  file_place place;
  std::string name;
  bool has_name = false;  ///< an attribute of its own
  std::string written_name;
  std::string named_by;  ///< the element whose name it took, as a person calls it
  file_place named_at;
  std::array<text, 3> texts;  ///< in the order in which they are filled

  /// As a person calls it.
  std::string shown() const;
};

/// An element that has begun.
struct camera_element {
  std::string name;
  std::string shown;  ///< as a person calls it
  std::string name_attribute;
  file_place place;
  std::shared_ptr<camera_feature> feature;  ///< null when it is none
  std::shared_ptr<opened_text> text;        ///< what it opens, null when nothing
  bool is_in_feature = false;
  bool holds_feature = false;
  bool holds_elements = false;
  std::string dropped_text;  ///< the first that no feature takes, directly within it
  file_place dropped_place;
  bool keeps_text = false;  ///< where somebody asks for it
  std::string kept_text;
};

/// Whether a text is one with which the reader marks a field that has none yet.
bool is_mark_of_reader(std::string_view text);

class camera_walk : public xercesc::HandlerBase, public xercesc::XMLDocumentHandler {
 public:
  /// What becomes clear only at the end.
  void finish();

 protected:
  /// Nothing can change `feature` any more.
  virtual void feature_ended(const camera_feature& feature) = 0;
  /// Called when `element` is the last of `open_elements`.
  virtual void element_began(camera_element& element, xercesc::AttributeList& attributes) = 0;
  virtual void element_ended(const camera_element& element) = 0;

  const std::vector<camera_element>& open_elements() const { return open; }
  file_place here() const { return {locator->getLineNumber(), locator->getColumnNumber()}; }

 private:
  void setDocumentLocator(const xercesc::Locator* const given) override { locator = given; }
  void startElement(const XMLCh* const name, xercesc::AttributeList& attributes) override;
  void endElement(const XMLCh* const name) override;

  // What only this kind of handler is told.
  void docCharacters(const XMLCh* const text, const XMLSize_t length,
                     const bool is_section) override;
  void docComment(const XMLCh* const /*text*/) override { end_text(); }
  void docPI(const XMLCh* const /*target*/, const XMLCh* const /*data*/) override { end_text(); }
  void endDocument() override {}
  void endElement(const xercesc::XMLElementDecl& /*element*/, const unsigned int /*uri*/,
                  const bool /*is_root*/, const XMLCh* const /*prefix*/) override {}
  void endEntityReference(const xercesc::XMLEntityDecl& /*entity*/) override {}
  void ignorableWhitespace(const XMLCh* const /*text*/, const XMLSize_t /*length*/,
                           const bool /*is_section*/) override {}
  void ignorableWhitespace(const XMLCh* const /*text*/, const XMLSize_t /*length*/) override {}
  void resetDocument() override {}
  void startDocument() override {}
  void startElement(const xercesc::XMLElementDecl& /*element*/, const unsigned int /*uri*/,
                    const XMLCh* const /*prefix*/,
                    const xercesc::RefVectorOf<xercesc::XMLAttr>& /*attributes*/,
                    const XMLSize_t /*count*/, const bool /*is_empty*/,
                    const bool /*is_root*/) override {}
  void startEntityReference(const xercesc::XMLEntityDecl& /*entity*/) override {}
  void XMLDecl(const XMLCh* const /*version*/, const XMLCh* const /*encoding*/,
               const XMLCh* const /*standalone*/, const XMLCh* const /*found*/) override {}

  void begin_feature(camera_element& element);
  void open_text(camera_element& element);
  void take_name(const camera_element& element, const std::string& name);
  void end_text();
  void drop_text(const std::string& text, file_place place);
  void keep(const std::string& text);
  void end_feature();

  const xercesc::Locator* locator = nullptr;
  std::vector<camera_element> open;
  std::vector<std::shared_ptr<opened_text>> open_texts;
  std::shared_ptr<camera_feature> latest;
  std::basic_string<XMLCh> run;  // the text at hand, up to the next tag, comment or section
  file_place run_place;          // where it begins, line 0 while it is blank
};

#endif
