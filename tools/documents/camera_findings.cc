#include "camera_findings.hh"

#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>
#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "input_file.hh"
#include "local_text.hh"
#include "lost_characters.hh"
#include "scan.hh"
#include "terminal.hh"

using zrt4::detail::to_local;

namespace {

/// One pass over the elements of a document.
class camera_pass : public xercesc::HandlerBase {
 public:
  explicit camera_pass(finding_list& into) : found(into) {}

  void setDocumentLocator(const xercesc::Locator* const given) override { locator = given; }
  void startElement(const XMLCh* const name, xercesc::AttributeList& /*attributes*/) override {
    open.push_back({to_local(name), {locator->getLineNumber(), locator->getColumnNumber()}});
  }
  void endElement(const XMLCh* const /*name*/) override { open.pop_back(); }
  void characters(const XMLCh* const chars, const XMLSize_t length) override {
    std::string lost = lost_character(open.back().name, chars, length);
    if (!lost.empty()) found.add(rule::character_lost, open.back().place, std::move(lost));
  }
  void warning(const xercesc::SAXParseException& exception) override { error(exception); }
  void error(const xercesc::SAXParseException& exception) override {
    found.add(rule::damage, {exception.getLineNumber(), exception.getColumnNumber()},
              to_local(exception.getMessage()));
  }
  void fatalError(const xercesc::SAXParseException& exception) override { error(exception); }

 private:
  struct element {
    std::string name;
    file_place place;
  };

  finding_list& found;
  const xercesc::Locator* locator = nullptr;
  std::vector<element> open;
};

std::string_view name_of(const row& feature) {
  for (const row::field& field : feature.fields) {
    if (field.name == "name") return std::get<std::string_view>(field.value);
  }
  return {};
}

void find_duplicates(const row_list& features, finding_list& found) {
  std::map<std::string_view, int> names;
  for (const row& feature : features) ++names[name_of(feature)];
  for (const auto& [name, number] : names) {
    if (number == 1 || name.empty()) continue;
    found.add(rule::duplicate_feature, {},
              "feature '" + printable(name) + "' stands here " + std::to_string(number) + " times");
  }
}

}  // namespace

void find_in_camera(input_file& file, const loaded_document& document, finding_list& found) {
  camera_pass pass(found);
  const std::string thrown = scan_document(file.path(), pass, xercesc::SAXParser::Val_Never, true);
  if (!thrown.empty()) found.add(rule::damage, {}, thrown);
  find_duplicates(document.rows, found);
}
