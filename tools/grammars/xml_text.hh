#ifndef XML_TEXT_HH
#define XML_TEXT_HH

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A document in the making, a line for each tag, indented.
class xml_text {
 public:
  using attributes = std::vector<std::pair<std::string_view, std::string>>;

  void open(const std::string& name, const attributes& given = {});
  void close();
  void empty(const std::string& name, const attributes& given = {});
  /// An element with a text, on one line.
  void leaf(const std::string& name, const attributes& given, std::string_view content);

  void comment(std::string_view content);

  /// The whole document.
  const std::string& text() const { return made; }

 private:
  void start(const std::string& name, const attributes& given, std::string_view end);

  std::string made = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  std::vector<std::string> opened;
};

#endif
