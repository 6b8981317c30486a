#ifndef DESCRIPTOR_HH
#define DESCRIPTOR_HH

#include <string>

/// An open file descriptor, closed with the object. Everything throws `std::runtime_error` with the
/// system's reason when it fails.
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
  void write_all(const std::string& content);
  /// Everything from here to the end.
  std::string read_all();
  std::string read_from_start();
  /// Closes now: only then it is known that everything was written.
  void close();

 private:
  int fd;
};

/// Throws with the system's text for the error number `reason`.
[[noreturn]] void fail(int reason);

/// A file in memory.
int memory_file();

/// Keeps a file that is opened later from becoming, by chance, a standard stream that was closed.
/// Using the stream still fails.
void occupy_closed_streams();

#endif
