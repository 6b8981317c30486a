#ifndef GRAMMAR_PASS_HH
#define GRAMMAR_PASS_HH

#include <cstddef>
#include <functional>
#include <string>
#include <vector>
#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/sax/Locator.hpp>

#include "document_grammar.hh"
#include "finding_list.hh"

/// One pass over a document that tells where it deviates from a grammar: at the start tag, behind
/// which line and column are, of the element that is wrong or in which something is.
class grammar_pass : public xercesc::HandlerBase {
 public:
  using teller = std::function<void(file_place place, std::string text)>;

  grammar_pass(const document_grammar& to, teller use) : grammar(to), tell(std::move(use)) {}

  void setDocumentLocator(const xercesc::Locator* const given) override { locator = given; }
  void startElement(const XMLCh* const given, xercesc::AttributeList& attributes) override;
  void endElement(const XMLCh* const name) override;
  void characters(const XMLCh* const chars, const XMLSize_t length) override;
  // XML errors are for others to tell.
  void fatalError(const xercesc::SAXParseException& /*exception*/) override {}

 private:
  using xml_string = std::basic_string<XMLCh>;

  struct open_element {
    const element_grammar* grammar = nullptr;  ///< null: what is in it is not judged
    file_place place = {};
    std::size_t group = 0;  ///< of its content, which the last of its elements belongs to
    std::string group_begun_by = {};
    std::vector<const element_group::member*> seen = {};
    bool has_elements = false;
    xml_string text = {};   ///< what stands before its elements
    xml_string rest = {};   ///< and behind the first of them
    file_place stray = {};  ///< the first text that does not belong there
  };

  void tell_here(std::string text) { tell(open.back().place, std::move(text)); }
  const element_grammar* judge_place(const std::string& name, std::string& wrong);
  void judge_attributes(xercesc::AttributeList& attributes);
  void judge_text();
  void judge_text(const std::string& holder, const text_grammar& text, const xml_string& found);
  void find_missing();
  std::string stranger(const std::string& name) const;

  const document_grammar& grammar;
  const teller tell;
  const xercesc::Locator* locator = nullptr;
  std::vector<open_element> open;
};

#endif
