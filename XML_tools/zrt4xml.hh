#ifndef ZRT4XML_HH
#define ZRT4XML_HH

/// The library for new C++ code: lists that own their records, readers that take `std::string`, and
/// a session that keeps the XML library ready. Header-only, over the exported functions.
///
///     const zrt4::xml_session session;
///     zrt4::channel_list channels;
///     if (channels.read_file("channels.xml") != 0) std::puts("not read cleanly");
///     for (const chan_descr_2010& channel : channels) std::puts(channel.prop_name);
///
/// Readers append; each returns what the function that it calls returns, 0 for a document read
/// without an error, a positive count for any other, and what was read before an error stays. What
/// they print, what they keep unreleased, and the locale that texts are in, are those of that
/// function. A text ends at its first zero byte. A list is moved, not copied; what would dangle
/// after the statement (an element or an iterator of a temporary list) does not compile. Any number
/// of threads may read at once, each into a list of its own.
///
/// Channel descriptions and dictionaries are also written, as a text or to a file. `write_text`
/// returns the document that the dump function makes: texts stand in it as they are in the records,
/// neither escaped nor converted, under a declaration that says ISO-8859-1 (docs/writing.md tells
/// what of them reads back). `write_file` writes that document and replaces a file as a whole or
/// not at all. It returns 0, or else the system's number of the error (`ENOENT`, `ENOSPC`, ...) and
/// the file is what it was, with nothing left beside it. Behind a link, the file that it names is
/// replaced, with its mode, or made; a file that must not be written stays; a device or a pipe
/// takes what it can. Nothing is printed. `write_file_or_throw` throws the error as a
/// `std::system_error`, whose code that is. What is thrown when memory runs out passes, before
/// anything was written.

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "messages.hh"
#include "parse_chan_descr.hh"
#include "parse_env_index_dictionary.hh"
#include "parse_ev_list.hh"
#include "xml_library.hh"
#include "zrt4_gige_descr.hh"

namespace zrt4 {

/// Holds one use of the XML library for its lifetime. Every reader begins and ends a use of its
/// own; only the first and the last are dear, so a program that reads many small documents keeps a
/// session around them. Lists may outlive it. Throws what `XMLPlatformUtils::Initialize` throws.
/// Any thread may make and end one at any time.
class xml_session {
 public:
  [[nodiscard]] xml_session() { begin_xml_library_use(); }
  xml_session(const xml_session&) = delete;
  xml_session& operator=(const xml_session&) = delete;
  ~xml_session() { end_xml_library_use(); }
};

/// A message that outlives its receiver (see `message`).
struct kept_message {
  message_severity severity{};
  message_topic topic{};
  std::string document;
  std::uint64_t line = 0;
  std::uint64_t column = 0;
  std::string text;
};

/// Keeps the messages of its thread for its lifetime, in the order in which they came.
class message_list : public message_receiver {
 public:
  using const_iterator = std::vector<kept_message>::const_iterator;

  std::size_t size() const noexcept { return kept.size(); }
  bool empty() const noexcept { return kept.empty(); }
  const kept_message& operator[](std::size_t position) const& { return kept[position]; }
  const_iterator begin() const& { return kept.begin(); }
  const_iterator end() const& { return kept.end(); }

  /// Hands the messages over and is empty then.
  [[nodiscard]] std::vector<kept_message> release() { return std::exchange(kept, {}); }

 private:
  void receive(const message& met) override {
    kept.push_back({met.severity, met.topic, met.document, met.line, met.column, met.text});
  }

  std::vector<kept_message> kept;
};

/// What was met while a document was read.
struct read_report {
  int count = 0;  ///< what the reader returned: 0 for a document read without an error
  std::vector<kept_message> messages;

  bool is_clean() const noexcept { return count == 0; }

  /// The first message that is more than a remark, as "document:line:column: text".
  std::string summary() const {
    const auto first = std::find_if(messages.begin(), messages.end(), [](const auto& met) {
      return met.severity != message_severity::remark;
    });
    if (first == messages.end()) return "not read cleanly";
    std::string where = first->document;
    if (first->line != 0) {
      where += ":" + std::to_string(first->line) + ":" + std::to_string(first->column);
    }
    return where.empty() ? first->text : where + ": " + first->text;
  }
};

/// A document that was not read without an error.
class document_error : public std::runtime_error {
 public:
  explicit document_error(read_report of)
      : std::runtime_error(of.summary()), met(std::make_shared<const read_report>(std::move(of))) {}

  const read_report& report() const noexcept { return *met; }

 private:
  std::shared_ptr<const read_report> met;  // an exception is copied without throwing
};

namespace detail {

// What `write_file` is made of; not to be called by others. Each returns 0 or the error's number.

inline int write_and_close(std::FILE* file, const std::string& content) {
  const bool is_written = std::fwrite(content.data(), 1, content.size(), file) == content.size();
  int reason = is_written ? 0 : errno;
  if (std::fclose(file) != 0 && reason == 0) reason = errno;
  return reason;
}

/// Where in `name` that of the file begins, behind its folder's.
inline std::size_t folder_end(const std::string& name) {
  return name.rfind('/') + 1;
}

/// Creates a file beside `name` that nobody else has, and puts its name into `beside`. It says
/// nothing of `name`, which may be as long as names can be.
inline int create_beside(const std::string& name, std::string& beside, std::FILE*& file) {
  static std::atomic<unsigned> number{0};
  constexpr int most_attempts = 1000;
  for (int attempt = 0; attempt < most_attempts; ++attempt) {
    beside = name.substr(0, folder_end(name)) + ".zrt4xml." + std::to_string(number++) + ".new";
    file = std::fopen(beside.c_str(), "wxe");
    if (file != nullptr) return 0;
    if (errno != EEXIST) break;
  }
  return errno;
}

/// `mode` is that of the file which is there, null when there is none.
inline int replace_regular_file(const std::string& name, const ::mode_t* mode,
                                const std::string& content) {
  std::string beside;
  std::FILE* file = nullptr;
  if (const int failure = create_beside(name, beside, file)) return failure;
  int reason = mode != nullptr && ::chmod(beside.c_str(), *mode & 07777U) != 0 ? errno : 0;
  const int not_written = write_and_close(file, content);
  if (reason == 0) reason = not_written;
  if (reason == 0 && std::rename(beside.c_str(), name.c_str()) != 0) reason = errno;
  if (reason != 0) (void)std::remove(beside.c_str());
  return reason;
}

using owned_path = std::unique_ptr<char, void (*)(void*)>;

/// What stands behind the links of `name`; null, with `errno`, when nothing does.
inline owned_path behind_links(const std::string& name) {
  return {::realpath(name.c_str(), nullptr), std::free};
}

/// `name` is a link to what is not there: that is made, and removed unless it is written.
inline int make_behind_link(const std::string& name, const std::string& content) {
  std::FILE* const made = std::fopen(name.c_str(), "ae");
  if (made == nullptr) return errno;
  (void)std::fclose(made);
  const owned_path target = behind_links(name);
  if (target == nullptr) return errno;
  const int reason = replace_regular_file(target.get(), nullptr, content);
  if (reason != 0) (void)std::remove(target.get());
  return reason;
}

inline int make_file(const std::string& name, const std::string& content) {
  struct ::stat entry {};
  const bool is_link = ::lstat(name.c_str(), &entry) == 0 && S_ISLNK(entry.st_mode);
  return is_link ? make_behind_link(name, content) : replace_regular_file(name, nullptr, content);
}

inline int replace_file(const std::string& name, const std::string& content) {
  struct ::stat old {};
  if (::stat(name.c_str(), &old) != 0) return errno == ENOENT ? make_file(name, content) : errno;
  const bool is_regular = S_ISREG(old.st_mode);
  std::FILE* const there = std::fopen(name.c_str(), is_regular ? "r+e" : "we");
  if (there == nullptr) return errno;
  if (!is_regular) return write_and_close(there, content);
  (void)std::fclose(there);  // it may be written
  const owned_path target = behind_links(name);
  if (target == nullptr) return errno;
  return replace_regular_file(target.get(), &old.st_mode, content);
}

inline void throw_unless_written(int reason, const std::string& name) {
  if (reason != 0) throw std::system_error(reason, std::generic_category(), name);
}

}  // namespace detail

/// Walks the records behind a vector of pointers.
template <class Record, class Pointers>
class record_iterator {
 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = Record;
  using difference_type = std::ptrdiff_t;
  using pointer = Record*;
  using reference = Record&;

  record_iterator() = default;
  explicit record_iterator(Pointers place) : at(place) {}
  reference operator*() const { return **at; }
  pointer operator->() const { return *at; }
  record_iterator& operator++() {
    ++at;
    return *this;
  }
  record_iterator operator++(int) {  // NOLINT(cert-dcl21-cpp): as all iterators
    const record_iterator before = *this;
    ++at;
    return before;
  }
  friend bool operator==(record_iterator a, record_iterator b) { return a.at == b.at; }
  friend bool operator!=(record_iterator a, record_iterator b) { return a.at != b.at; }

 private:
  Pointers at{};
};

/// What all lists share. `Kind::release_records(vector)` releases the records of a vector; what it
/// leaves in the vector does not matter.
template <class Record, class Kind>
class owned_list {
 public:
  using value_type = Record;
  using pointers = std::vector<Record*>;
  using iterator = record_iterator<Record, typename pointers::const_iterator>;
  using const_iterator = record_iterator<const Record, typename pointers::const_iterator>;

  owned_list() = default;
  /// Takes over the records of `from`, which were made by the library's functions or as they make
  /// them, and leaves `from` empty.
  explicit owned_list(pointers&& from) noexcept : records(std::move(from)) {}
  owned_list(owned_list&& from) noexcept : records(std::exchange(from.records, {})) {}
  owned_list& operator=(owned_list&& from) noexcept {
    pointers taken = std::exchange(from.records, {});
    clear();
    records.swap(taken);
    return *this;
  }
  ~owned_list() { clear(); }

  std::size_t size() const noexcept { return records.size(); }
  bool empty() const noexcept { return records.empty(); }

  /// Records; the position has to be less than `size`. One record can stand at two places, one
  /// behind the other, where its document names its key twice.
  Record& operator[](std::size_t position) & { return *records[position]; }
  const Record& operator[](std::size_t position) const& { return *records[position]; }
  const Record& operator[](std::size_t position) const&& = delete;

  iterator begin() & { return iterator(records.begin()); }
  iterator end() & { return iterator(records.end()); }
  const_iterator begin() const& { return const_iterator(records.begin()); }
  const_iterator end() const& { return const_iterator(records.end()); }
  const_iterator begin() const&& = delete;
  const_iterator end() const&& = delete;

  /// The list as the library's functions take it: `dump_chan_desr(channels.get(), ...)`. It stays
  /// this list's.
  pointers* get() & noexcept { return &records; }
  pointers* get() const&& = delete;

  /// Hands the records over: from now on the caller releases them.
  [[nodiscard]] pointers release() noexcept { return std::exchange(records, {}); }

  /// As `read_file` and `read_text`, with the same options. The messages come with the result and
  /// go nowhere else; whoever reads on after an error looks at the report.
  template <class... Options>
  [[nodiscard]] read_report read_file_reported(const std::string& name, Options... options) {
    return reported([&] { return self().read_file(name, options...); });
  }
  template <class... Options>
  [[nodiscard]] read_report read_text_reported(const std::string& xml, Options... options) {
    return reported([&] { return self().read_text(xml, options...); });
  }

  /// The same, throwing a `document_error` when the document is not read without an error. What was
  /// read before it stays. A damaged camera file is no error: its report alone tells.
  template <class... Options>
  read_report read_file_or_throw(const std::string& name, Options... options) {
    return thrown_unless_clean(read_file_reported(name, options...));
  }
  template <class... Options>
  read_report read_text_or_throw(const std::string& xml, Options... options) {
    return thrown_unless_clean(read_text_reported(xml, options...));
  }

  /// Releases the records.
  void clear() noexcept {
    Kind::release_records(records);
    records.clear();
  }

 protected:
  /// The first record that `is` wanted, null when there is none.
  template <class Is>
  Record* first(Is is) const {
    const auto found = std::find_if(records.begin(), records.end(), [&](const Record* record) {
      return record != nullptr && is(*record);
    });
    return found != records.end() ? *found : nullptr;
  }

  pointers records;

 private:
  Kind& self() { return static_cast<Kind&>(*this); }

  template <class Read>
  static read_report reported(Read read) {
    message_list met;
    read_report report;
    report.count = read();
    report.messages = met.release();
    return report;
  }

  static read_report thrown_unless_clean(read_report report) {
    if (!report.is_clean()) throw document_error(std::move(report));
    return report;
  }
};

/// What the numbers of event types and data types become when channels are read: themselves, or the
/// masks that `chan_selector` and the listing expect (see `parse_descr_list_read`).
enum class types { numbers, masks };

/// What the element dialect does with a channel whose property is in the list already: `keep` lists
/// it again, `merge` merges it where its reader can, which is in texts. The variable dialect always
/// merges (see `parse_descr_list_read`, `parse_descr_list_readf`).
enum class duplicates { keep, merge };

/// The dialects of channel descriptions, to write.
enum class dialect { elements = ZRT4_FORMAT, variables = MORV_FORMAT };

/// Channel descriptions, either dialect.
class channel_list : public owned_list<chan_descr_2010, channel_list> {
 public:
  using owned_list::owned_list;

  [[nodiscard]] int read_file(const std::string& name, types as = types::numbers,
                              duplicates when = duplicates::keep) {
    return parse_descr_list_readf(const_cast<char*>(name.c_str()), &records, as == types::masks,
                                  when == duplicates::merge);
  }
  [[nodiscard]] int read_text(const std::string& xml, types as = types::numbers,
                              duplicates when = duplicates::keep) {
    return parse_descr_list_read(const_cast<char*>(xml.c_str()), &records, as == types::masks,
                                 when == duplicates::merge);
  }

  /// The document in that dialect; each property once (see `dump_chan_desr`).
  [[nodiscard]] std::string write_text(dialect as = dialect::elements) const {
    std::string xml;
    dump_chan_desr(const_cast<pointers*>(&records), nullptr, DUMP_XML_FILE, static_cast<int>(as),
                   -1, &xml, nullptr);
    return xml;
  }
  /// Writes it to a file (see above).
  [[nodiscard]] int write_file(const std::string& name, dialect as = dialect::elements) const {
    return detail::replace_file(name, write_text(as));
  }
  void write_file_or_throw(const std::string& name, dialect as = dialect::elements) const {
    detail::throw_unless_written(write_file(name, as), name);
  }

  /// The first channel of that property, null when there is none. Each lookup walks the list: who
  /// has many makes a `chan_selector`.
  chan_descr_2010* find(const std::string& property) & {
    return find_chan_entry(&records, property.c_str());
  }
  const chan_descr_2010* find(const std::string& property) const& {
    return find_chan_entry(const_cast<pointers*>(&records), property.c_str());
  }
  const chan_descr_2010* find(const std::string& property) const&& = delete;

  /// The first channel of that DAQ name, null when there is none.
  chan_descr_2010* find_by_daq_name(const std::string& name) & { return first_named(name); }
  const chan_descr_2010* find_by_daq_name(const std::string& name) const& {
    return first_named(name);
  }
  const chan_descr_2010* find_by_daq_name(const std::string& name) const&& = delete;

 private:
  friend owned_list;
  chan_descr_2010* first_named(const std::string& name) const {
    return first([&](const chan_descr_2010& channel) { return name == channel.daq_name; });
  }
  static void release_records(pointers& records) noexcept {
    try {
      clean_chan_desr_list(&records);
    } catch (...) {  // of a receiver of messages: the records are released
    }
  }
};

/// Event lists.
class event_list : public owned_list<zrt4_ev_entry, event_list> {
 public:
  using owned_list::owned_list;

  [[nodiscard]] int read_file(const std::string& name) {
    return zrt4_parse_ev_list_readf(const_cast<char*>(name.c_str()), &records);
  }
  [[nodiscard]] int read_text(const std::string& xml) {
    return zrt4_parse_ev_list_read(const_cast<char*>(xml.c_str()), &records);
  }

  /// The first event of that type, null when there is none.
  zrt4_ev_entry* find(ZRT4_EVTYPE type) & { return first_of(type); }
  const zrt4_ev_entry* find(ZRT4_EVTYPE type) const& { return first_of(type); }
  const zrt4_ev_entry* find(ZRT4_EVTYPE type) const&& = delete;

 private:
  friend owned_list;
  zrt4_ev_entry* first_of(ZRT4_EVTYPE type) const {
    return first([&](const zrt4_ev_entry& entry) { return entry.evtype == type; });
  }
  // The library's release leaves two things to whoever made them, which is this list: entries
  // without server-block vector, and empty channel vectors.
  static void release_records(pointers& records) noexcept {
    const auto full_events =
        std::partition(records.begin(), records.end(),
                       [](const zrt4_ev_entry* entry) { return entry->sb_list != nullptr; });
    std::for_each(full_events, records.end(), [](const zrt4_ev_entry* entry) { delete entry; });
    records.erase(full_events, records.end());
    for (const zrt4_ev_entry* entry : records) {
      for (zrt4_ev_sb_list* block : *entry->sb_list) {
        if (block->ch_list == nullptr || !block->ch_list->empty()) continue;
        delete block->ch_list;
        block->ch_list = nullptr;
      }
    }
    zrt4_clean_ev_list(&records);
  }
};

/// The functions of the two record widths of dictionaries: two that read, one that writes.
template <class Entry>
struct env_dictionary_readers;
template <>
struct env_dictionary_readers<zrt4_env_index_dictionary_entry> {
  static constexpr auto* file = parse_env_index_dict_readf;
  static constexpr auto* text = parse_env_index_dict_list_read;
  static int dump(std::vector<zrt4_env_index_dictionary_entry*>* list, std::string* xml) {
    return dump_env_index_dict(list, nullptr, ENV_INDX_DUMP_XML_STRING, -1, xml);
  }
};
template <>
struct env_dictionary_readers<zrt4_env_index_dictionary_entry_2010> {
  static constexpr auto* file = parse_env_index_dict_readf_2010;
  static constexpr auto* text = parse_env_index_dict_list_read_2010;
  static int dump(std::vector<zrt4_env_index_dictionary_entry_2010*>* list, std::string* xml) {
    return dump_env_index_dict_2010(list, nullptr, ENV_INDX_DUMP_XML_STRING, -1, xml);
  }
};

/// Environment index dictionaries; `Entry` is the record of one of the two widths.
template <class Entry>
class basic_env_dictionary : public owned_list<Entry, basic_env_dictionary<Entry>> {
 public:
  using base = owned_list<Entry, basic_env_dictionary>;
  using base::base;

  [[nodiscard]] int read_file(const std::string& name) {
    return env_dictionary_readers<Entry>::file(const_cast<char*>(name.c_str()), &this->records);
  }
  [[nodiscard]] int read_text(const std::string& xml) {
    return env_dictionary_readers<Entry>::text(const_cast<char*>(xml.c_str()), &this->records);
  }

  /// The document (see `dump_env_index_dict`).
  [[nodiscard]] std::string write_text() const {
    std::string xml;
    env_dictionary_readers<Entry>::dump(const_cast<typename base::pointers*>(&this->records), &xml);
    return xml;
  }
  /// Writes it to a file (see above).
  [[nodiscard]] int write_file(const std::string& name) const {
    return detail::replace_file(name, write_text());
  }
  void write_file_or_throw(const std::string& name) const {
    detail::throw_unless_written(write_file(name), name);
  }

  /// The first entry of that index, or of that property; null when there is none.
  Entry* find(std::int32_t index) & { return first_of(index); }
  const Entry* find(std::int32_t index) const& { return first_of(index); }
  const Entry* find(std::int32_t index) const&& = delete;
  Entry* find(const std::string& property) & { return first_of(property); }
  const Entry* find(const std::string& property) const& { return first_of(property); }
  const Entry* find(const std::string& property) const&& = delete;

 private:
  friend base;
  Entry* first_of(std::int32_t index) const {
    return this->first([&](const Entry& entry) { return entry.index == index; });
  }
  Entry* first_of(const std::string& property) const {
    return this->first([&](const Entry& entry) {
      const auto& name = entry.data.env_prop;
      return property == std::string_view(name, ::strnlen(name, sizeof name));
    });
  }
  static void release_records(typename base::pointers& records) noexcept {
    const auto end = std::unique(records.begin(), records.end());
    std::for_each(records.begin(), end, [](Entry* entry) { std::free(entry); });
  }
};

using env_dictionary = basic_env_dictionary<zrt4_env_index_dictionary_entry>;
using env_dictionary_2010 = basic_env_dictionary<zrt4_env_index_dictionary_entry_2010>;

/// Features of a camera; there are only files of them.
class camera_features : public owned_list<ZRT4GigEFeature, camera_features> {
 public:
  using owned_list::owned_list;

  /// Appends the features of the file, unlike `zrt4_fill_gige_descr`, which replaces the list.
  /// Returns 0, or 1 when the file cannot be used. What damage hides is no error (see there).
  [[nodiscard]] int read_file(const std::string& name) {
    camera_features found;
    const bool failed = zrt4_fill_gige_descr(const_cast<char*>(name.c_str()), &found.records);
    records.insert(records.end(), found.records.begin(), found.records.end());
    found.records.clear();
    return failed ? 1 : 0;
  }

  /// The first feature of that name, null when there is none.
  ZRT4GigEFeature* find(const std::string& name) & { return first_named(name); }
  const ZRT4GigEFeature* find(const std::string& name) const& { return first_named(name); }
  const ZRT4GigEFeature* find(const std::string& name) const&& = delete;

 private:
  friend owned_list;
  ZRT4GigEFeature* first_named(const std::string& name) const {
    return first([&](const ZRT4GigEFeature& feature) { return feature.name == name; });
  }
  static void release_records(pointers& records) noexcept { zrt4_clean_gige_descr(&records); }
};

}  // namespace zrt4

#endif
