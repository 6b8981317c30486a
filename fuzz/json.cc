#include <clocale>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>

#include "bad_document.hh"
#include "fuzz.hh"
#include "json_reading.hh"
#include "row_json.hh"
#include "rows.hh"

namespace {

constexpr document_kind kinds[] = {document_kind::events, document_kind::channels,
                                   document_kind::variables, document_kind::dictionary,
                                   document_kind::camera};

/// What is shown of the documents in `text`; nothing when it is refused.
std::optional<std::string> shown(const std::string& text) {
  try {
    json documents = json::array();
    for (json_document& each : read_json("a fuzzer's", text)) {
      json document{{"kind", traits_of(each.kind).name}, {"errors", each.errors}};
      json& list = document["records"] = json::array();
      const held_records records = records_of(each.records);
      for (std::size_t i = 0; i < records.size(); ++i) {
        list.push_back(to_json(row_of(records.type(), records[i])));
      }
      documents.push_back(std::move(document));
    }
    return json{{"documents", std::move(documents)}}.dump();
  } catch (const bad_document&) {
    return {};
  }
}

}  // namespace

// As it is, or as the records of a document of each kind.
const unsigned fuzz::ways = 1 + std::size(kinds);

void fuzz::read(const std::string& input, unsigned way) {
  static const char* const locale = std::setlocale(LC_CTYPE, "C.UTF-8");
  if (locale == nullptr) broken("there is UTF-8");
  const std::string text = way == 0
                               ? input
                               : R"({"kind": ")" + std::string(traits_of(kinds[way - 1]).name) +
                                     R"(", "records": [)" + input + "]}";
  const auto once = shown(text);
  if (once && shown(*once) != once) broken("what was read is shown as it was shown");
}
