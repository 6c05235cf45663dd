// The loader tells the segments of each file; the build id is the note of type NT_GNU_BUILD_ID in one of them (elf(5)).
#include "crashreport/LoadedModules.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <elf.h>
#include <filesystem>
#include <link.h>
#include <string_view>
#include <system_error>

namespace tabwright::crashreport {
namespace {

constexpr std::size_t longestBuildID = 64;

constexpr std::size_t paddedToFour(std::size_t size) {
  return (size + 3) & ~std::size_t{3};
}

/// The build id among the notes of a segment; empty when it isn't there.
std::string buildIDIn(const char* notes, std::size_t size) {
  while (size >= sizeof(ElfW(Nhdr))) {
    ElfW(Nhdr) head;
    std::memcpy(&head, notes, sizeof head);
    const std::size_t length = sizeof head + paddedToFour(head.n_namesz) + paddedToFour(head.n_descsz);
    if (length > size)
      break;
    const std::string_view name(notes + sizeof head, head.n_namesz);
    if (head.n_type == NT_GNU_BUILD_ID && name == std::string_view("GNU\0", 4) && head.n_descsz <= longestBuildID) {
      std::string text;
      const char* bytes = notes + sizeof head + paddedToFour(head.n_namesz);
      for (std::size_t index = 0; index < head.n_descsz; ++index)
        text += fmt::format("{:02x}", static_cast<unsigned char>(bytes[index]));
      return text;
    }
    notes += length;
    size -= length;
  }
  return {};
}

Module moduleOf(const dl_phdr_info& info) {
  Module module;
  ElfW(Addr) low = ~ElfW(Addr){0};
  ElfW(Addr) high = 0;
  for (ElfW(Half) index = 0; index < info.dlpi_phnum; ++index) {
    const ElfW(Phdr)& segment = info.dlpi_phdr[index];
    if (segment.p_type == PT_LOAD) {
      low = std::min(low, segment.p_vaddr);
      high = std::max(high, segment.p_vaddr + segment.p_memsz);
    } else if (segment.p_type == PT_NOTE && module.buildID.empty()) {
      // NOLINTNEXTLINE(performance-no-int-to-ptr): the loader tells its places as numbers
      module.buildID = buildIDIn(reinterpret_cast<const char*>(info.dlpi_addr + segment.p_vaddr), segment.p_memsz);
    }
  }
  if (low < high) {
    module.address = info.dlpi_addr + low;
    module.size = high - low;
  }
  module.name = std::filesystem::path(info.dlpi_name ? info.dlpi_name : "").filename();
  return module;
}

} // namespace

std::vector<Module> loadedModules() {
  std::vector<Module> modules;
  ::dl_iterate_phdr(
      [](dl_phdr_info* info, std::size_t, void* found) {
        auto& list = *static_cast<std::vector<Module>*>(found);
        list.push_back(moduleOf(*info));
        return list.size() < mostModules ? 0 : 1;
      },
      &modules);
  if (!modules.empty()) {
    std::error_code ignored; // the program's own entry has no name
    modules.front().name = std::filesystem::read_symlink("/proc/self/exe", ignored).filename();
  }
  return modules;
}

} // namespace tabwright::crashreport
