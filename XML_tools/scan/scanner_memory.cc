#include "scanner_memory.hh"

#include <new>
#include <utility>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

using xercesc::XMLPlatformUtils;

namespace zrt4::detail {

scanner_memory::~scanner_memory() {
  for (memory_block* next = held.next; next != &held;) {
    memory_block* const released = std::exchange(next, next->next);
    XMLPlatformUtils::fgMemoryManager->deallocate(size_before(*released));
  }
}

xercesc::MemoryManager* scanner_memory::getExceptionMemoryManager() {
  return XMLPlatformUtils::fgMemoryManager->getExceptionMemoryManager();
}

void* scanner_memory::allocate(XMLSize_t size) {
  try {
    if (!scanner_cells::fits(size)) return from_system(size);
    return cells.take(size, [this](std::size_t chunk) { return from_system(chunk); });
  } catch (...) {
    keep_all();
    if (!ends) throw;
    return from_reserve(size);
  }
}

void* scanner_memory::from_system(XMLSize_t size) {
  void* const memory =
      XMLPlatformUtils::fgMemoryManager->allocate(sizeof(block_size) + memory_block::room + size);
  auto* const size_of_it = new (memory) block_size{size};
  auto* const added = new (size_of_it + 1) memory_block;
  added->previous = held.previous;
  added->next = &held;
  held.previous->next = added;
  held.previous = added;
  held_size += size;
  return added->memory();
}

scanner_memory::block_size* scanner_memory::size_before(memory_block& block) {
  return reinterpret_cast<block_size*>(&block) - 1;
}

void* scanner_memory::from_reserve(XMLSize_t size) {
  constexpr std::size_t step = alignof(std::max_align_t);
  const std::size_t rounded = (size + step - 1) / step * step;
  if (rounded > sizeof(reserve) - reserve_used) throw xercesc::OutOfMemoryException();
  return reserve + std::exchange(reserve_used, reserve_used + rounded);
}

void scanner_memory::deallocate(void* memory) {
  if (memory == nullptr || keeps_all) return;
  memory_block& released = *memory_block::before(memory);
  if (scanner_cells::is_cell(released)) {
    scanner_cells::give_back(released);
    return;
  }
  released.previous->next = released.next;
  released.next->previous = released.previous;
  block_size* const size = size_before(released);
  held_size -= size->bytes;
  XMLPlatformUtils::fgMemoryManager->deallocate(size);
}

}  // namespace zrt4::detail
