#ifndef EACH_FILE_HH
#define EACH_FILE_HH

#include <algorithm>
#include <new>
#include <string>
#include <type_traits>
#include <vector>
#include <xercesc/util/OutOfMemoryException.hpp>

#include "bad_document.hh"
#include "exit_code.hh"
#include "file_error.hh"
#include "in_order.hh"
#include "input_file.hh"
#include "message.hh"
#include "progress.hh"

/// A file that could not be used, and why.
struct unusable_file {
  const std::string& name;
  std::string reason;
  bool is_open;  ///< it is the document that is of no use
};

/// What `use()` returns for the file of that name, its exit code. When it cannot be used, it is
/// handed to `give_up` and reported.
template <class Use, class GiveUp>
exit_code use_file(const std::string& name, Use&& use, GiveUp&& give_up) {
  try {
    return use();
  } catch (const bad_document& reason) {
    give_up(unusable_file{reason.file, reason.what(), true});
    report(reason.file + reason.place.shown(), reason.what());
    return exit_not_fine;
  } catch (const file_error& reason) {
    give_up(unusable_file{reason.file, reason.what(), false});
    report_always(reason.file, reason.what());
    return exit_trouble;
  } catch (const std::bad_alloc&) {
    fail_without_memory(shown_name(name));
  } catch (const xercesc::OutOfMemoryException&) {
    fail_without_memory(shown_name(name));
  }
}

/// Opens each file for `read`, several at once in as many threads as `jobs`, and hands what that
/// returns to `print` in the order of the files. `read` writes to no stream and shares nothing;
/// `print`, which returns the file's exit code, runs in this thread. A file that cannot be used is
/// handed to `give_up` and reported, and the next one follows. Returns the worst exit code.
template <class Read, class Print, class GiveUp>
exit_code for_each_file(const std::vector<std::string>& files, std::size_t jobs, Read&& read,
                        Print&& print, GiveUp&& give_up) {
  using result = std::invoke_result_t<Read, input_file&>;
  in_order<result> results(files.size(), jobs, [&](std::size_t number) {
    input_file file(files[number]);
    return read(file);
  });
  exit_code worst = exit_fine;
  for (const std::string& name : files) {
    const auto use = [&] {
      return print(with_progress(shown_name(name), [&] { return results.next(); }));
    };
    worst = std::max(worst, use_file(name, use, give_up));
  }
  return worst;
}

#endif
