// Build helper for the loader tests on Linux: renames one dynamic symbol of a shared object
// to a name of the same length and rebuilds the SysV hash table. It gives an ELF object a
// Windows-style decorated export ("_name@12"), which the GNU linker cannot define, since it
// reads '@' in a symbol name as a version. The object must be linked with --hash-style=sysv.
#include <elf.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

unsigned long elf_hash(const unsigned char *name) {
  unsigned long h = 0;
  while (*name) {
    h = (h << 4) + *name++;
    unsigned long g = h & 0xf0000000ul;
    if (g) h ^= g >> 24;
    h &= ~g;
  }
  return h;
}

} // namespace

int main(int argc, char **argv) {
  if (argc != 4 || strlen(argv[2]) != strlen(argv[3])) {
    fprintf(stderr, "usage: elf_rename_symbol <object> <old name> <new name of the same length>\n");
    return 2;
  }
  std::ifstream in(argv[1], std::ios::binary);
  std::vector<unsigned char> image((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  in.close();
  if (image.size() < sizeof(Elf64_Ehdr) || memcmp(image.data(), ELFMAG, SELFMAG) != 0 ||
      image[EI_CLASS] != ELFCLASS64) {
    fprintf(stderr, "elf_rename_symbol: %s is not a 64-bit ELF object\n", argv[1]);
    return 1;
  }
  auto *header = reinterpret_cast<Elf64_Ehdr *>(image.data());
  auto *sections = reinterpret_cast<Elf64_Shdr *>(image.data() + header->e_shoff);
  Elf64_Shdr *dynsym = nullptr, *hash = nullptr;
  for (int i = 0; i < header->e_shnum; ++i) {
    if (sections[i].sh_type == SHT_DYNSYM) dynsym = &sections[i];
    if (sections[i].sh_type == SHT_HASH) hash = &sections[i];
    if (sections[i].sh_type == SHT_GNU_HASH) {
      fprintf(stderr, "elf_rename_symbol: link %s with --hash-style=sysv\n", argv[1]);
      return 1;
    }
  }
  if (!dynsym || !hash) {
    fprintf(stderr, "elf_rename_symbol: %s has no dynamic symbols or no hash table\n", argv[1]);
    return 1;
  }
  unsigned char *strings = image.data() + sections[dynsym->sh_link].sh_offset;
  auto *symbols = reinterpret_cast<Elf64_Sym *>(image.data() + dynsym->sh_offset);
  size_t count = dynsym->sh_size / sizeof(Elf64_Sym);
  bool renamed = false;
  for (size_t i = 1; i < count; ++i) {
    char *name = reinterpret_cast<char *>(strings + symbols[i].st_name);
    if (strcmp(name, argv[2]) == 0) {
      memcpy(name, argv[3], strlen(argv[3]));
      renamed = true;
    }
  }
  if (!renamed) {
    fprintf(stderr, "elf_rename_symbol: %s has no dynamic symbol %s\n", argv[1], argv[2]);
    return 1;
  }
  auto *words = reinterpret_cast<Elf32_Word *>(image.data() + hash->sh_offset);
  Elf32_Word buckets = words[0], chains = words[1];
  Elf32_Word *bucket = words + 2, *chain = bucket + buckets;
  memset(bucket, 0, buckets * sizeof(Elf32_Word));
  memset(chain, 0, chains * sizeof(Elf32_Word));
  for (size_t i = 1; i < count && i < chains; ++i) {
    unsigned long h = elf_hash(strings + symbols[i].st_name) % buckets;
    chain[i] = bucket[h];
    bucket[h] = static_cast<Elf32_Word>(i);
  }
  std::ofstream out(argv[1], std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char *>(image.data()), static_cast<std::streamsize>(image.size()));
  return out ? 0 : 1;
}
