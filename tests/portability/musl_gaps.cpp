// What the C++ library of this machine, made for glibc, asks of the C library and musl does not have. It
// closes the gaps of a static program, so that one C++ library can be tried on both.
#include <cstddef>
#include <cstdint>
#include <dlfcn.h>
#include <elf.h>
#include <sys/random.h>

// From the linker: the program, and the table of its unwind information.
extern "C" char __executable_start[];
extern "C" char _end[];
extern "C" char __GNU_EH_FRAME_HDR[];

// Likewise: the functions of which the start chooses a version, which only glibc's start does by itself.
extern "C" const Elf64_Rela __rela_iplt_start[];
extern "C" const Elf64_Rela __rela_iplt_end[];

[[gnu::constructor(101)]] static void choose_versions() {
  for (const Elf64_Rela* entry = __rela_iplt_start; entry < __rela_iplt_end; ++entry) {
    const auto choose = reinterpret_cast<std::uintptr_t (*)()>(entry->r_addend);
    *reinterpret_cast<std::uintptr_t*>(entry->r_offset) = choose();
  }
}

extern "C" {

char __libc_single_threaded = 1;

std::uint32_t arc4random() noexcept {
  std::uint32_t value = 0;
  while (getrandom(&value, sizeof value, 0) != sizeof value) {
  }
  return value;
}

int mallopt(int /*parameter*/, int /*value*/) noexcept {
  return 1;
}

int _dl_find_object(void* /*address*/, dl_find_object* result) noexcept {
  *result = {};
  result->dlfo_map_start = __executable_start;
  result->dlfo_map_end = _end;
  result->dlfo_eh_frame = __GNU_EH_FRAME_HDR;
  return 0;
}
}
