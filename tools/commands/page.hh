#ifndef PAGE_HH
#define PAGE_HH

#include <cstddef>
#include <string>
#include <vector>

#include "exit_code.hh"

/// `zrt4xml page`: writes a page of the documents to `output`, as `write_output` takes it. With a
/// document `before`, of the one in `files`, also what changed since. `title` may be empty. Nothing
/// is written when a file cannot be opened; a document that cannot be used is told in the page.
exit_code page(const std::vector<std::string>& files, const std::string& before,
               const std::string& title, const std::string& output, std::size_t jobs);

#endif
