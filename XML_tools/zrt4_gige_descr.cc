#include "zrt4_gige_descr.hh"

#include <cstdio>
#include <optional>
#include <string>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include "feature_fields.hh"
#include "feature_parser.hh"
#include "feature_walk.hh"
#include "local_text.hh"

using xercesc::DOMException;
using xercesc::DOMNodeList;
using xercesc::XMLException;
using zrt4::detail::awaits_text;
using zrt4::detail::feature_fields;
using zrt4::detail::feature_parser;
using zrt4::detail::known_text;
using zrt4::detail::never_set;
using zrt4::detail::to_local;

ZRT4GigEFeature::ZRT4GigEFeature() : type(FEATURE_TYPE_UNDEF) {}
ZRT4GigEFeature::~ZRT4GigEFeature() = default;

namespace {

/// One use of the XML library, which counts them.
class library_use {
 public:
  library_use() { xercesc::XMLPlatformUtils::Initialize(); }
  library_use(const library_use&) = delete;
  library_use& operator=(const library_use&) = delete;
  ~library_use() { xercesc::XMLPlatformUtils::Terminate(); }
};

void print_parsing_error(const std::string& message) {
  std::printf("An error occurred during parsing  Message: %s\n", message.c_str());
}

// False, and a line on standard output, when there is no document. Exceptions end in here: their
// texts belong to the XML library and must be gone before this use of it ends.
bool parse(std::optional<feature_parser>& parser, const char* file_name) {
  try {
    parser.emplace().parse_file(file_name);
    // A file that cannot be read is reported rather than thrown.
    if (parser->getDocument() != nullptr) return true;
    print_parsing_error(parser->why_no_document());
  } catch (const xercesc::OutOfMemoryException&) {
    std::puts("OutOfMemoryException");
  } catch (const XMLException& exception) {
    print_parsing_error(to_local(exception.getMessage()));
  } catch (const DOMException& exception) {
    std::printf("\nDOM Error during parsing: '%s' DOMException code is: %d\n", file_name,
                exception.code);
    if (const auto known = known_text(exception)) std::printf("Message is: %s", known->c_str());
  } catch (...) {
    std::printf("An error occurred during parsing\n ");
  }
  return false;
}

void remove_markers(ZRT4GigEFeature& feature) {
  for (const auto& field : feature_fields) {
    std::string& text = feature.*field.text;
    if (text == never_set || text == awaits_text) text.clear();
  }
}

}  // namespace

bool dump_nodes(DOMNodeList* nodes, std::vector<ZRT4GigEFeature*>* out) {
  return nodes != nullptr && out != nullptr && zrt4::detail::walk_features(*nodes, *out);
}

bool zrt4_fill_gige_descr(char* file_name, std::vector<ZRT4GigEFeature*>* out) {
  if (file_name == nullptr || out == nullptr) return true;
  std::optional<library_use> library;
  try {
    library.emplace();
  } catch (const XMLException& exception) {
    std::printf("Error during Xerces-c Initialization.  Exception message: %s\n",
                to_local(exception.getMessage()).c_str());
    return true;
  }
  std::optional<feature_parser> parser;
  if (!parse(parser, file_name)) return true;
  out->clear();
  dump_nodes(parser->getDocument()->getChildNodes(), out);
  parser.reset();
  library.reset();
  for (ZRT4GigEFeature* feature : *out) remove_markers(*feature);
  return false;
}

void zrt4_dump_gige_descr(std::vector<ZRT4GigEFeature*>* out) {
  if (out == nullptr) return;
  int position = -1;
  for (const ZRT4GigEFeature* feature : *out) {
    ++position;
    if (feature == nullptr || feature->name.empty()) continue;
    std::printf("[%d] Name:'%s'", position, feature->name.c_str());
    if (!feature->extension.empty()) std::printf(" Extension:'%s'", feature->extension.c_str());
    std::printf(" type:%d ToolTip:'%s' Description:'%s'\n", feature->type, feature->tooltip.c_str(),
                feature->description.c_str());
  }
}

void zrt4_clean_gige_descr(std::vector<ZRT4GigEFeature*>* out) {
  if (out == nullptr) return;
  for (ZRT4GigEFeature* feature : *out) delete feature;
  out->clear();
}
