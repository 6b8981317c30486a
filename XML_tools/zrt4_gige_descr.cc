#include "zrt4_gige_descr.hh"

#include <cstdio>
#include <optional>
#include <string>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "diagnostics.hh"
#include "feature_fields.hh"
#include "feature_parser.hh"
#include "feature_walk.hh"
#include "local_text.hh"
#include "scan_place.hh"
#include "xml_library.hh"

using xercesc::DOMException;
using xercesc::DOMNodeList;
using xercesc::XMLException;
using zrt4::message_severity;
using zrt4::message_topic;
using zrt4::detail::awaits_text;
using zrt4::detail::deliver;
using zrt4::detail::feature_fields;
using zrt4::detail::feature_parser;
using zrt4::detail::is_received;
using zrt4::detail::known_text;
using zrt4::detail::never_set;
using zrt4::detail::notice;
using zrt4::detail::place;
using zrt4::detail::say;
using zrt4::detail::scans;
using zrt4::detail::tell;
using zrt4::detail::to_local;
using zrt4::detail::topic_of_start;

ZRT4GigEFeature::ZRT4GigEFeature() : type(FEATURE_TYPE_UNDEF) {}
ZRT4GigEFeature::~ZRT4GigEFeature() = default;

namespace {

class library_use {
 public:
  library_use() { zrt4::begin_xml_library_use(); }
  library_use(const library_use&) = delete;
  library_use& operator=(const library_use&) = delete;
  ~library_use() { zrt4::end_xml_library_use(); }
};

void tell_not_parsed(message_topic topic, const std::string& reason, const char* file_name) {
  const notice about{topic, message_severity::error, stdout, false};
  if (is_received()) return deliver(about, {reason}, {file_name});
  say(about.stream, {"An error occurred during parsing  Message: ", reason, "\n"},
      about.is_flushed);
}

void tell_dom_error(const DOMException& exception, const char* file_name) {
  const notice about{message_topic::not_read, message_severity::error, stdout, false};
  const std::string code = std::to_string(exception.code);
  const auto known = known_text(exception);
  tell(about,
       {"\nDOM Error during parsing: '", file_name, "' DOMException code is: ", code, "\n",
        known ? "Message is: " : "", known ? *known : ""},
       [&] { return place{file_name}; });
}

// False, and a message, when there is no document. Exceptions of the XML library end in here: their
// texts belong to it and must be gone before this use of it ends.
bool parse(std::optional<feature_parser>& parser, const char* file_name) {
  const notice about{message_topic::not_read, message_severity::error, stdout, false};
  const auto where = [file_name] { return place{file_name}; };
  bool done = false;
  try {
    parser.emplace();
    done = scans(*parser, [&] {
      parser->parse_file(file_name);
      return !parser->has_thrown();
    });
  } catch (const xercesc::OutOfMemoryException&) {
    tell({message_topic::out_of_memory, message_severity::error, stdout, false},
         {"OutOfMemoryException\n"}, where);
    return false;
  } catch (const XMLException& exception) {
    tell_not_parsed(topic_of_start(exception.getCode()), to_local(exception.getMessage()),
                    file_name);
    return false;
  } catch (const DOMException& exception) {
    tell_dom_error(exception, file_name);
    return false;
  } catch (...) {
    tell(about, {"An error occurred during parsing\n "}, where);
    return false;
  }
  parser->release_thrown();
  // A file that cannot be read is reported rather than thrown.
  if (done && parser->getDocument() != nullptr) return true;
  tell_not_parsed(parser->topic_of_no_document(), parser->why_no_document(), file_name);
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
    tell({message_topic::library, message_severity::fatal_error, stdout, false},
         {"Error during Xerces-c Initialization.  Exception message: ",
          to_local(exception.getMessage()), "\n"});
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
