#ifndef SCANNER_CELLS_HH
#define SCANNER_CELLS_HH

#include <cstddef>
#include <new>
#include <utility>

namespace zrt4::detail {

/// Stands before all memory that a scanner is given. A block from the system has its neighbours
/// here. A cell has no previous one; its next is the list of its size, or, in that list, the next
/// free cell.
struct memory_block {
  memory_block* previous = this;
  memory_block* next = this;

  static constexpr std::size_t room = alignof(std::max_align_t);

  static memory_block* before(void* memory) {
    return reinterpret_cast<memory_block*>(static_cast<char*>(memory) - room);
  }
  void* memory() { return reinterpret_cast<char*>(this) + room; }
};
static_assert(sizeof(memory_block) <= memory_block::room);

/// Small objects. A scanner makes some 200 of them before it looks at the first character, half the
/// time of a small document. They are cut from chunks, and serve again for requests of the same
/// size.
class scanner_cells {
 public:
  static bool fits(std::size_t size) { return enabled && size <= steps_at_most * step; }
  static bool is_cell(const memory_block& block) { return block.previous == nullptr; }

  /// Memory of a size that fits. `request(size)` gets a chunk where there is none left.
  template <class Request>
  void* take(std::size_t size, Request request) {
    const std::size_t steps = (size + step - 1) / step;
    memory_block& free_ones = free_cells[steps];
    memory_block* cell = free_ones.next;
    if (cell != &free_ones) {
      free_ones.next = cell->next;
    } else {
      cell = cut(steps, request);
    }
    cell->next = &free_ones;
    return cell->memory();
  }

  static void give_back(memory_block& cell) {
    memory_block& free_ones = *cell.next;
    cell.next = std::exchange(free_ones.next, &cell);
  }

 private:
// The sanitizer watches blocks, not what is cut from them.
#ifdef __SANITIZE_ADDRESS__
  static constexpr bool enabled = false;
#elif defined(__has_feature)
  static constexpr bool enabled = !__has_feature(address_sanitizer);
#else
  static constexpr bool enabled = true;
#endif
  static constexpr std::size_t step = memory_block::room;
  static constexpr std::size_t steps_at_most = 32;
  static constexpr std::size_t chunk_size = std::size_t{16} * 1024;

  template <class Request>
  memory_block* cut(std::size_t steps, Request request) {
    const std::size_t size = memory_block::room + steps * step;
    if (size > uncut_size) {
      uncut = static_cast<char*>(request(chunk_size));
      uncut_size = chunk_size;
    }
    auto* cell = new (uncut) memory_block;
    cell->previous = nullptr;
    uncut += size;
    uncut_size -= size;
    return cell;
  }

  memory_block free_cells[steps_at_most + 1];  // by size in steps
  char* uncut = nullptr;
  std::size_t uncut_size = 0;
};

}  // namespace zrt4::detail

#endif
