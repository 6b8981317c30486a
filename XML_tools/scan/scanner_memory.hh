#ifndef SCANNER_MEMORY_HH
#define SCANNER_MEMORY_HH

#include <cstddef>
#include <xercesc/framework/MemoryManager.hpp>

#include "scanner_cells.hh"

namespace zrt4::detail {

/// The memory of one scanner. What the scanner has not released by itself is released with it: a
/// scan that ends in the middle of a declaration forgets what it has built of it. After a request
/// that failed nothing is released before: the scanner then releases some of its objects twice.
class scanner_memory : public xercesc::MemoryManager {
 public:
  scanner_memory() = default;
  scanner_memory(const scanner_memory&) = delete;
  scanner_memory& operator=(const scanner_memory&) = delete;
  ~scanner_memory() override;

  xercesc::MemoryManager* getExceptionMemoryManager() override;
  void* allocate(XMLSize_t size) override;
  void deallocate(void* memory) override;

 protected:
  void keep_all() { keeps_all = true; }
  /// What is held of the system's memory.
  std::size_t held_bytes() const { return held_size; }
  /// From here on requests are met from a reserve when there is no memory: the scanner asks for
  /// some when it is destroyed, where it must not fail.
  void prepare_end() { ends = true; }

 private:
  // Stands before a block from the system.
  struct block_size {
    alignas(std::max_align_t) std::size_t bytes;
  };

  static block_size* size_before(memory_block& block);
  void* from_system(XMLSize_t size);
  void* from_reserve(XMLSize_t size);

  memory_block held;  // of the ring of blocks from the system
  std::size_t held_size = 0;
  scanner_cells cells;
  bool keeps_all = false;
  bool ends = false;
  std::size_t reserve_used = 0;
  alignas(void*) char reserve[2048];  // as the XML library aligns objects that hold it
};

}  // namespace zrt4::detail

#endif
