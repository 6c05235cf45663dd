// A frame record is two words: the caller's frame pointer and the address it goes on at. Records lie ever higher, so
// the walk ends. What a register or record says is believed only as far as it points into the stack; where the chain is
// lost in code without frame pointers, the stack is searched upwards for the next two records that hang together.
//
// All of it runs in signal handlers: no allocation, no locks, no library but system calls.
#include "crashreport/StackWalk.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <ucontext.h>
#include <unistd.h>

// Stacks are read where no variable is known to be, which sanitizers would take for a mistake.
#define TABWRIGHT_READS_STACKS __attribute__((no_sanitize("address", "thread", "undefined"), noinline))

namespace tabwright::crashreport {
namespace {

constexpr std::size_t wordBytes = sizeof(std::uintptr_t);
constexpr std::size_t longestSearch = std::size_t{64} << 10; // bytes

TABWRIGHT_READS_STACKS std::uintptr_t wordAt(std::uintptr_t address) noexcept {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): registers are numbers
  return *reinterpret_cast<const volatile std::uintptr_t*>(address);
}

class Stack {
public:
  explicit Stack(AddressRange range) noexcept : range_(range) {}

  /// True when two words lie there.
  [[nodiscard]] bool holdsRecord(std::uintptr_t address) const noexcept {
    return address % wordBytes == 0 && address >= range_.low && address < range_.high &&
           range_.high - address >= 2 * wordBytes;
  }
  /// True for a record that leads on to another one, or to the outermost frame.
  [[nodiscard]] bool leadsOn(std::uintptr_t record) const noexcept {
    return holdsRecord(record) && wordAt(record) > record && holdsRecord(wordAt(record));
  }

private:
  AddressRange range_;
};

/// A line of /proc/self/maps as it comes: "low-high perms …".
class MappingReader {
public:
  explicit MappingReader(std::uintptr_t address) noexcept : address_(address) {}

  /// True once the mapping has been found.
  bool take(char byte) noexcept {
    if (byte == '\n') {
      *this = MappingReader(address_);
      return false;
    }
    if (part_ == 0 && byte == '-') {
      part_ = 1;
    } else if (part_ == 1 && byte == ' ') {
      part_ = 2;
    } else if (part_ < 2) {
      std::uintptr_t& bound = part_ == 0 ? range.low : range.high;
      bound = bound * 16 + static_cast<std::uintptr_t>(byte <= '9' ? byte - '0' : byte - 'a' + 10);
    } else if (part_ == 2 && byte == 'r') {
      part_ = 3;
    } else if (part_ == 3 && byte == 'w') {
      return range.contains(address_);
    } else {
      part_ = 4; // the rest of a line that isn't it
    }
    return false;
  }

  AddressRange range;

private:
  std::uintptr_t address_;
  int part_ = 0;
};

} // namespace

StackRegisters registersOf(const void* context) noexcept {
  [[maybe_unused]] const auto& machine = static_cast<const ucontext_t*>(context)->uc_mcontext;
#if defined(__x86_64__)
  return {.program = static_cast<std::uintptr_t>(machine.gregs[REG_RIP]),
          .stack = static_cast<std::uintptr_t>(machine.gregs[REG_RSP]),
          .frame = static_cast<std::uintptr_t>(machine.gregs[REG_RBP])};
#elif defined(__aarch64__)
  return {.program = machine.pc, .stack = machine.sp, .frame = machine.regs[29]};
#else
  return {};
#endif
}

AddressRange writableMappingAround(std::uintptr_t address) noexcept {
  const int file = ::open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
  if (file < 0)
    return {};
  AddressRange found;
  MappingReader reader(address);
  char buffer[4096];
  for (ssize_t count = 0; found.high == 0;) {
    count = ::read(file, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR)
      continue;
    if (count <= 0)
      break;
    for (const char* byte = buffer; byte != buffer + count && found.high == 0; ++byte) {
      if (reader.take(*byte))
        found = reader.range;
    }
  }
  ::close(file);
  return found;
}

std::size_t walkStack(const StackRegisters& registers, AddressRange program, std::span<StackFrame> frames) noexcept {
  std::size_t count = 0;
  const auto add = [&](std::uintptr_t address, char origin) {
    if (count < frames.size() && address != 0)
      frames[count++] = {address, origin};
  };
  // 1. The instruction.
  add(registers.program, 'c');
  AddressRange range = writableMappingAround(registers.stack);
  if (range.high == 0) // the stack has overflowed
    range = writableMappingAround(registers.frame);
  const Stack stack(range);
  const std::uintptr_t top = (std::max(registers.stack, range.low) + wordBytes - 1) / wordBytes * wordBytes;
  const std::uintptr_t searchEnd = std::min(range.high, top + longestSearch);

  // 2. The frame pointer may be no such thing in a function that keeps none.
  std::uintptr_t record = registers.frame;
  if (record < top || !stack.leadsOn(record)) {
    record = top;
    while (record < searchEnd &&
           !(stack.leadsOn(record) && program.contains(wordAt(record + wordBytes)) && stack.leadsOn(wordAt(record))))
      record += wordBytes;
  }

  // 3. The caller whom a function without a frame pointer hides: it lies before the first record that is known.
  if (!program.contains(registers.program)) {
    for (std::uintptr_t place = top; place < std::min(record, searchEnd) && stack.holdsRecord(place);
         place += wordBytes) {
      if (program.contains(wordAt(place))) {
        add(wordAt(place), 's');
        break;
      }
    }
  }

  // 4. From record to record.
  while (stack.holdsRecord(record) && count < frames.size()) {
    add(wordAt(record + wordBytes), 'f');
    const std::uintptr_t next = wordAt(record);
    if (next <= record)
      break;
    record = next;
  }
  return count;
}

} // namespace tabwright::crashreport
