#include "peers.hh"

#include <expat.h>
#include <libxml/xmlreader.h>
#include <tinyxml2.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <pugixml.hpp>
#include <string_view>

#include "name_table.hh"

namespace bench {

namespace {

using chan = chan_descr_2010;

template <auto Field>
void number(chan& channel, const char* text) {
  using value = std::decay_t<decltype(channel.*Field)>;
  channel.*Field = static_cast<value>(std::strtol(text, nullptr, 10));
}

template <auto Field>
void text(chan& channel, const char* text) {
  std::strncpy(channel.*Field, text, sizeof(channel.*Field) - 1);
}

using setter = void (*)(chan& channel, const char* text);

constexpr zrt4::detail::named<setter> fields[] = {
    {"STREAM", number<&chan::stream>},      {"EVTYPE", number<&chan::ev_type>},
    {"DTYPE", number<&chan::dtype>},        {"DB_KEY", number<&chan::db_key>},
    {"COUNT", number<&chan::count>},        {"SB_NAME", text<&chan::sb_name>},
    {"PROP", text<&chan::prop_name>},       {"NAME", text<&chan::daq_name>},
    {"SETPOINT", number<&chan::set_point>}, {"SUBSYSTEM", text<&chan::subsystem>},
    {"UNITS", text<&chan::units>},          {"DESC", text<&chan::prop_desc>},
    {"SIZE", number<&chan::max_size>},
};
constexpr zrt4::detail::name_table setters(fields);

void set(chan& channel, std::string_view name, const char* value) {
  if (const setter* found = setters.find(name)) (*found)(channel, value);
}

chan& add(channel_list& channels) {
  channels.push_back(new chan);
  return *channels.back();
}

const char* chars(const xmlChar* text) {
  return reinterpret_cast<const char*>(text);
}

struct expat_reader {
  channel_list& channels;
  std::string text;

  static expat_reader& of(void* self) { return *static_cast<expat_reader*>(self); }
  static void start(void* self, const char* name, const char** /*attributes*/) {
    of(self).text.clear();
    if (std::strcmp(name, "CHANNEL") == 0) add(of(self).channels);
  }
  static void characters(void* self, const char* part, int length) {
    of(self).text.append(part, static_cast<std::size_t>(length));
  }
  static void end(void* self, const char* name) {
    if (!of(self).channels.empty()) set(*of(self).channels.back(), name, of(self).text.c_str());
  }
};

}  // namespace

bool read_by_libxml2_reader(std::string& text, channel_list& channels) {
  xmlTextReaderPtr reader = xmlReaderForMemory(text.data(), static_cast<int>(text.size()),
                                               "benchmark", nullptr, XML_PARSE_NONET);
  chan* channel = nullptr;
  std::string name;
  int more = xmlTextReaderRead(reader);
  for (; more == 1; more = xmlTextReaderRead(reader)) {
    switch (xmlTextReaderNodeType(reader)) {
      case XML_READER_TYPE_ELEMENT:
        name = chars(xmlTextReaderConstName(reader));
        if (name == "CHANNEL") channel = &add(channels);
        break;
      case XML_READER_TYPE_TEXT:
        if (channel != nullptr) set(*channel, name, chars(xmlTextReaderConstValue(reader)));
        break;
      default:
        break;
    }
  }
  xmlFreeTextReader(reader);
  return more == 0;
}

bool read_by_pugixml(std::string& text, channel_list& channels) {
  pugi::xml_document document;
  if (!document.load_buffer(text.data(), text.size())) return false;
  for (const pugi::xml_node node : document.child("CHANDESCRIPTIONS").children("CHANNEL")) {
    chan& channel = add(channels);
    for (const pugi::xml_node field : node.children())
      set(channel, field.name(), field.child_value());
  }
  return true;
}

bool read_by_tinyxml2(std::string& text, channel_list& channels) {
  tinyxml2::XMLDocument document;
  if (document.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS) return false;
  const auto* node = document.FirstChildElement("CHANDESCRIPTIONS")->FirstChildElement("CHANNEL");
  for (; node != nullptr; node = node->NextSiblingElement("CHANNEL")) {
    chan& channel = add(channels);
    for (const auto* field = node->FirstChildElement(); field != nullptr;
         field = field->NextSiblingElement()) {
      if (field->GetText() != nullptr) set(channel, field->Name(), field->GetText());
    }
  }
  return true;
}

bool read_by_expat(std::string& text, channel_list& channels) {
  XML_Parser parser = XML_ParserCreate(nullptr);
  expat_reader reader{channels, {}};
  XML_SetUserData(parser, &reader);
  XML_SetElementHandler(parser, expat_reader::start, expat_reader::end);
  XML_SetCharacterDataHandler(parser, expat_reader::characters);
  const auto status = XML_Parse(parser, text.data(), static_cast<int>(text.size()), XML_TRUE);
  XML_ParserFree(parser);
  return status == XML_STATUS_OK;
}

}  // namespace bench
