// A page that can't be touched lies below the stack, so that a handler that runs too deep ends the process instead of
// writing into what is beside it.
#include "platform/linux/SignalStack.h"

#include <csignal>
#include <cstddef>
#include <sys/mman.h>
#include <unistd.h>

namespace tabwright::platform {
namespace {

// A processor's registers take up to 11 kB of it.
constexpr std::size_t signalStackBytes = std::size_t{64} << 10;

class SignalStack {
public:
  SignalStack() noexcept {
    stack_t present{};
    if (::sigaltstack(nullptr, &present) != 0 || (present.ss_flags & SS_DISABLE) == 0)
      return;
    const auto guardBytes = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    bytes_ = guardBytes + signalStackBytes;
    void* const memory = ::mmap(nullptr, bytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
      return;
    memory_ = memory;
    ::mprotect(memory, guardBytes, PROT_NONE);
    stack_t own{};
    own.ss_sp = static_cast<std::byte*>(memory) + guardBytes;
    own.ss_size = signalStackBytes;
    ::sigaltstack(&own, nullptr);
  }
  ~SignalStack() {
    if (!memory_)
      return;
    stack_t none{};
    none.ss_flags = SS_DISABLE;
    ::sigaltstack(&none, nullptr);
    ::munmap(memory_, bytes_);
  }
  SignalStack(const SignalStack&) = delete;
  SignalStack& operator=(const SignalStack&) = delete;

private:
  void* memory_ = nullptr;
  std::size_t bytes_ = 0;
};

} // namespace

void ensureSignalStack() noexcept {
  static thread_local const SignalStack stack;
}

} // namespace tabwright::platform
