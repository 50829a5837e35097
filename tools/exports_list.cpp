// Reads the export names from the loaded library's own file: its dynamic
// symbol table lists every function it defines for callers.
#include <dlfcn.h>
#include <elf.h>

#include <algorithm>
#include <cstring>

#include "commands.hpp"
#include "common.hpp"
#include "image_io.hpp"

namespace zt {

std::vector<std::string> LibraryExports(std::string* libraryPath) {
    Dl_info info{};
    // The version record lives in the library's data, so its address names the object.
    if (!dladdr(static_cast<const void*>(zilccGetLibVersion()), &info) || !info.dli_fname)
        throw DataError("cannot find the loaded library's file");
    const std::string path = info.dli_fname;
    if (libraryPath) *libraryPath = path;
    const std::vector<uint8_t> file = ReadFileBytes(path);
    const auto bad = [&]() { return DataError(path + ": not a 64-bit ELF object this tool can read"); };
    if (file.size() < sizeof(Elf64_Ehdr)) throw bad();
    Elf64_Ehdr eh;
    std::memcpy(&eh, file.data(), sizeof eh);
    if (std::memcmp(eh.e_ident, ELFMAG, SELFMAG) != 0 || eh.e_ident[EI_CLASS] != ELFCLASS64 ||
        eh.e_shentsize != sizeof(Elf64_Shdr) || eh.e_shoff > file.size() ||
        uint64_t(eh.e_shnum) * sizeof(Elf64_Shdr) > file.size() - eh.e_shoff)
        throw bad();
    std::vector<Elf64_Shdr> sh(eh.e_shnum);
    std::memcpy(sh.data(), file.data() + eh.e_shoff, sh.size() * sizeof(Elf64_Shdr));
    std::vector<std::string> names;
    for (const Elf64_Shdr& s : sh) {
        if (s.sh_type != SHT_DYNSYM) continue;
        if (s.sh_link >= sh.size() || s.sh_offset > file.size() || s.sh_size > file.size() - s.sh_offset) throw bad();
        const Elf64_Shdr& str = sh[s.sh_link];
        if (str.sh_offset > file.size() || str.sh_size > file.size() - str.sh_offset) throw bad();
        const char* strtab = reinterpret_cast<const char*>(file.data() + str.sh_offset);
        for (size_t off = 0; off + sizeof(Elf64_Sym) <= s.sh_size; off += sizeof(Elf64_Sym)) {
            Elf64_Sym sym;
            std::memcpy(&sym, file.data() + s.sh_offset + off, sizeof sym);
            const int bind = ELF64_ST_BIND(sym.st_info), type = ELF64_ST_TYPE(sym.st_info);
            if (sym.st_shndx == SHN_UNDEF || type != STT_FUNC || (bind != STB_GLOBAL && bind != STB_WEAK)) continue;
            if (sym.st_name >= str.sh_size) throw bad();
            names.emplace_back(strtab + sym.st_name, strnlen(strtab + sym.st_name, str.sh_size - sym.st_name));
        }
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

}  // namespace zt
