#ifndef DESCRIPTOR_HH
#define DESCRIPTOR_HH

#include <string>
#include <string_view>

/// An open file descriptor, closed with the object. Everything throws `std::system_error`, whose
/// text is the system's reason, when it fails.
class descriptor {
 public:
  /// Takes over `number`; -1 is a failure with the reason in `errno`.
  explicit descriptor(int number);
  descriptor(descriptor&& other) noexcept;
  descriptor& operator=(descriptor&&) = delete;
  ~descriptor();

  int get() const { return fd; }
  /// A path under which this process can open the same file again.
  std::string path() const;
  void write_all(std::string_view content);
  /// Writes everything that `source` has from here to its end.
  void take_all(descriptor& source);
  /// Everything from here to the end.
  std::string read_all();
  std::string read_from_start();
  /// Closes now: only then it is known that everything was written.
  void close();

 private:
  int fd;
};

/// Throws a `std::system_error` with the error number `reason`.
[[noreturn]] void fail(int reason);

/// A file in memory.
int memory_file();

/// Called before anything is opened: a file must not get the number of a standard stream that the
/// caller has closed, because what is meant for the one would go to the other. Using such a stream
/// still fails.
void fill_closed_streams();

#endif
