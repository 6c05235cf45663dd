#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tabwright::crashreport {

/// The registers that a stack is walked from.
struct StackRegisters {
  std::uintptr_t program = 0; ///< the instruction
  std::uintptr_t stack = 0;
  std::uintptr_t frame = 0;
};

/// The registers in the `ucontext_t` that a signal handler gets. All zero on a processor that isn't known here.
[[nodiscard]] StackRegisters registersOf(const void* context) noexcept;

struct AddressRange {
  std::uintptr_t low = 0;
  std::uintptr_t high = 0; ///< behind the last byte

  [[nodiscard]] bool contains(std::uintptr_t address) const noexcept { return address >= low && address < high; }
};

/// The readable and writable mapping of this process that holds the address; empty when there is none. Safe in a signal
/// handler.
[[nodiscard]] AddressRange writableMappingAround(std::uintptr_t address) noexcept;

struct StackFrame {
  std::uintptr_t address = 0;
  char origin = 'f'; ///< 'c': the instruction itself, 'f': a frame record, 's': found on the stack, perhaps a relic
};

/// Yields the callers, from the instruction outwards, and their number: at most `frames.size()`. Safe in a signal
/// handler: it reads nothing but words of the mapping into which the stack pointer, or else the frame pointer, points.
///
/// Functions that keep no frame pointer, such as the C library's, hide their caller: so where the instruction isn't in
/// `program`, the first word on the stack that points into it is taken for the caller.
[[nodiscard]] std::size_t walkStack(const StackRegisters& registers, AddressRange program,
                                    std::span<StackFrame> frames) noexcept;

} // namespace tabwright::crashreport
