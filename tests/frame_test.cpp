// The built object itself: export list, header, dynamic symbols, stub cells,
// slot table, relocations, dynamic section, load hooks and version record.
#include <elf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "zilcc.h"

extern "C" {
extern const char* const zil_export_names[];
extern const int zil_export_count;
int zil_c_smoke(void);
}

namespace {

std::string ReadFile(const char* path) {
    std::ifstream f(path, std::ios::binary);
    std::stringstream ss;
    ss << f.rdbuf();
    return ss.str();
}

std::vector<std::string> ListedNames() {
    std::vector<std::string> names;
    std::istringstream in(ReadFile(ZIL_EXPORTS_PATH));
    for (std::string line; std::getline(in, line);) {
        line.erase(0, line.find_first_not_of(" \t"));
        line.erase(line.find_last_not_of(" \t\r") + 1);
        if (!line.empty() && line[0] != '#') names.push_back(line);
    }
    return names;
}

// Slot order: descending byte order of the names.
std::vector<std::string> SlotOrder() {
    auto names = ListedNames();
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return std::strcmp(a.c_str(), b.c_str()) > 0;
    });
    return names;
}

struct Sym { std::string name; Elf64_Sym s; };

// A minimal reader of the 64-bit ELF shared object on disk.
class Elf {
public:
    explicit Elf(const char* path) : img_(ReadFile(path)) {
        eh_ = reinterpret_cast<const Elf64_Ehdr*>(img_.data());
        sh_ = reinterpret_cast<const Elf64_Shdr*>(img_.data() + eh_->e_shoff);
        ph_ = reinterpret_cast<const Elf64_Phdr*>(img_.data() + eh_->e_phoff);
    }
    bool ok() const { return img_.size() > sizeof(Elf64_Ehdr) && std::memcmp(img_.data(), ELFMAG, SELFMAG) == 0; }
    const Elf64_Shdr* Section(const char* name) const {
        const char* shstr = img_.data() + sh_[eh_->e_shstrndx].sh_offset;
        for (int i = 0; i < eh_->e_shnum; ++i)
            if (std::strcmp(shstr + sh_[i].sh_name, name) == 0) return &sh_[i];
        return nullptr;
    }
    std::vector<const Elf64_Shdr*> Sections() const {
        std::vector<const Elf64_Shdr*> v;
        for (int i = 0; i < eh_->e_shnum; ++i) v.push_back(&sh_[i]);
        return v;
    }
    std::string SectionName(const Elf64_Shdr* s) const {
        return img_.data() + sh_[eh_->e_shstrndx].sh_offset + s->sh_name;
    }
    std::vector<Sym> Symbols(const char* tab, const char* strtab) const {
        std::vector<Sym> out;
        const Elf64_Shdr* t = Section(tab);
        const Elf64_Shdr* st = Section(strtab);
        if (!t || !st) return out;
        const auto* s = reinterpret_cast<const Elf64_Sym*>(img_.data() + t->sh_offset);
        for (size_t i = 1; i < t->sh_size / sizeof(Elf64_Sym); ++i)
            out.push_back({img_.data() + st->sh_offset + s[i].st_name, s[i]});
        return out;
    }
    std::vector<Elf64_Dyn> Dynamic() const {
        const Elf64_Shdr* d = Section(".dynamic");
        const auto* p = reinterpret_cast<const Elf64_Dyn*>(img_.data() + d->sh_offset);
        return std::vector<Elf64_Dyn>(p, p + d->sh_size / sizeof(Elf64_Dyn));
    }
    std::vector<Elf64_Rela> Relocations() const {
        const Elf64_Shdr* r = Section(".rela.dyn");
        if (!r) return {};
        const auto* p = reinterpret_cast<const Elf64_Rela*>(img_.data() + r->sh_offset);
        return std::vector<Elf64_Rela>(p, p + r->sh_size / sizeof(Elf64_Rela));
    }
    std::vector<Elf64_Phdr> Segments() const { return std::vector<Elf64_Phdr>(ph_, ph_ + eh_->e_phnum); }
    // File bytes at a virtual address inside a section.
    const uint8_t* At(uint64_t addr) const {
        for (int i = 0; i < eh_->e_shnum; ++i)
            if (sh_[i].sh_type != SHT_NOBITS && addr >= sh_[i].sh_addr && addr < sh_[i].sh_addr + sh_[i].sh_size)
                return reinterpret_cast<const uint8_t*>(img_.data() + sh_[i].sh_offset + (addr - sh_[i].sh_addr));
        return nullptr;
    }

private:
    std::string img_;
    const Elf64_Ehdr* eh_;
    const Elf64_Shdr* sh_;
    const Elf64_Phdr* ph_;
};

class FrameTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { elf_ = new Elf(ZIL_LIB_PATH); }
    static void TearDownTestSuite() { delete elf_; }
    static Elf* elf_;
    std::map<std::string, Elf64_Sym> DynDefined() const {
        std::map<std::string, Elf64_Sym> m;
        for (const Sym& s : elf_->Symbols(".dynsym", ".dynstr"))
            if (s.s.st_shndx != SHN_UNDEF) m[s.name] = s.s;
        return m;
    }
    std::map<std::string, Elf64_Sym> Local() const {
        std::map<std::string, Elf64_Sym> m;
        for (const Sym& s : elf_->Symbols(".symtab", ".strtab")) m[s.name] = s.s;
        return m;
    }
    // Load address of the object in this process.
    uintptr_t Base() const {
        return reinterpret_cast<uintptr_t>(&zilccGetLibVersion) - DynDefined().at("zilccGetLibVersion").st_value;
    }
};
Elf* FrameTest::elf_ = nullptr;

TEST_F(FrameTest, GeneratedSlotOrderIsTheSortedList) {
    const auto want = SlotOrder();
    ASSERT_EQ(int(want.size()), zil_export_count);
    for (int k = 0; k < zil_export_count; ++k) EXPECT_EQ(want[k], zil_export_names[k]) << "slot " << k;
    EXPECT_EQ(want.back(), "zilccGetLibVersion");  // sorts below every image name
    EXPECT_EQ(std::set<std::string>(want.begin(), want.end()).size(), want.size()) << "duplicate names";
}

TEST_F(FrameTest, HeaderDeclaresExactlyTheListedExports) {
    const std::string h = ReadFile(ZIL_HEADER_PATH);
    std::set<std::string> declared;
    const std::regex proto(R"(\b(zil(?:i|cc)[A-Za-z0-9_]+)\s*\()");
    for (auto it = std::sregex_iterator(h.begin(), h.end(), proto); it != std::sregex_iterator(); ++it)
        declared.insert((*it)[1]);
    const auto listed = ListedNames();
    EXPECT_EQ(declared, std::set<std::string>(listed.begin(), listed.end()));
}

TEST_F(FrameTest, DynamicSymbolsAreExactlyTheExportsAsFunctionsOfSize32) {
    ASSERT_TRUE(elf_->ok());
    const auto dyn = DynDefined();
    const auto listed = ListedNames();
    std::set<std::string> names;
    for (const auto& [n, s] : dyn) {
        names.insert(n);
        EXPECT_EQ(ELF64_ST_TYPE(s.st_info), STT_FUNC) << n;
        EXPECT_EQ(ELF64_ST_BIND(s.st_info), STB_GLOBAL) << n;
        EXPECT_EQ(ELF64_ST_VISIBILITY(s.st_other), STV_DEFAULT) << n;
        EXPECT_EQ(s.st_size, 32u) << n;
    }
    EXPECT_EQ(names, std::set<std::string>(listed.begin(), listed.end()));
}

#ifndef ZIL_SANITIZE_BUILD
TEST_F(FrameTest, ImportsNothingAndRelocatesOnlyRelative) {
    for (const Sym& s : elf_->Symbols(".dynsym", ".dynstr")) EXPECT_NE(s.s.st_shndx, SHN_UNDEF) << s.name;
    for (const Sym& s : elf_->Symbols(".symtab", ".strtab"))
        if (!s.name.empty()) EXPECT_NE(s.s.st_shndx, SHN_UNDEF) << s.name;
    for (const auto& r : elf_->Relocations()) EXPECT_EQ(ELF64_R_TYPE(r.r_info), unsigned(R_X86_64_RELATIVE));
    for (const auto& d : elf_->Dynamic()) EXPECT_NE(d.d_tag, DT_NEEDED);
    // One a slot, then nine internal addresses: the three texts of the version
    // record, CHOP_ARRAY, two entries of the global offset table (the version
    // record and the forward gamma table) and the three routines of the vector
    // power's dispatch table.
    EXPECT_EQ(elf_->Relocations().size(), SlotOrder().size() + 9);
}
#endif

TEST_F(FrameTest, StubsOpenTheCodeInSlotOrderAndJumpThroughTheirSlots) {
    const auto order = SlotOrder();
    const auto dyn = DynDefined();
    const Elf64_Shdr* text = elf_->Section(".text");
    const Elf64_Shdr* data = elf_->Section(".data");
    ASSERT_TRUE(text && data);
    const auto local = Local();
    ASSERT_TRUE(local.count("arraddr"));
    const uint64_t arraddr = local.at("arraddr").st_value;
    const uint64_t first = dyn.at(order[0]).st_value;
#ifndef ZIL_SANITIZE_BUILD
    // The stubs open the code; the slot table is the whole writable data.
    EXPECT_EQ(first, text->sh_addr);
    EXPECT_EQ(arraddr, data->sh_addr);
    EXPECT_EQ(data->sh_size, 8 * order.size()) << "writable data beyond the slot table";
#endif
    std::map<uint64_t, uint64_t> reloc;  // slot address -> addend
    for (const auto& r : elf_->Relocations())
        if (ELF64_R_TYPE(r.r_info) == R_X86_64_RELATIVE) reloc[r.r_offset] = uint64_t(r.r_addend);
    for (size_t k = 0; k < order.size(); ++k) {
        const Elf64_Sym& s = dyn.at(order[k]);
        EXPECT_EQ(s.st_value, first + 32 * k) << order[k];
        const uint8_t* code = elf_->At(s.st_value);
        ASSERT_NE(code, nullptr);
        ASSERT_EQ(code[0], 0xFF) << order[k];  // jmp *disp32(%rip)
        ASSERT_EQ(code[1], 0x25) << order[k];
        int32_t disp;
        std::memcpy(&disp, code + 2, 4);
        const uint64_t slot = s.st_value + 6 + int64_t(disp);
        EXPECT_EQ(slot, arraddr + 8 * k) << order[k];
        // The slot is filled at load with the address of mx_<name>.
        ASSERT_TRUE(reloc.count(slot)) << order[k];
        ASSERT_TRUE(local.count("mx_" + order[k])) << order[k];
        EXPECT_EQ(reloc.at(slot), local.at("mx_" + order[k]).st_value) << order[k];
        // Hidden in the sources, hence local in the linked object.
        EXPECT_EQ(ELF64_ST_BIND(local.at("mx_" + order[k]).st_info), STB_LOCAL) << order[k];
    }
}

TEST_F(FrameTest, DynamicSectionShape) {
    std::map<int64_t, uint64_t> tags;
    for (const auto& d : elf_->Dynamic()) tags[d.d_tag] = d.d_un.d_val;
    ASSERT_TRUE(tags.count(DT_SONAME));
    const Elf64_Shdr* dynstr = elf_->Section(".dynstr");
    EXPECT_STREQ(reinterpret_cast<const char*>(elf_->At(dynstr->sh_addr + tags[DT_SONAME])), "libzilccmx.so");
    EXPECT_TRUE(tags.count(DT_HASH)) << "classic hash table";
    EXPECT_FALSE(tags.count(DT_GNU_HASH));
    EXPECT_FALSE(tags.count(DT_VERSYM) || tags.count(DT_VERDEF) || tags.count(DT_VERNEED)) << "symbol versions";
    ASSERT_TRUE(tags.count(DT_FLAGS) && tags.count(DT_FLAGS_1));
    EXPECT_TRUE(tags[DT_FLAGS] & DF_BIND_NOW);
    EXPECT_TRUE(tags[DT_FLAGS_1] & DF_1_NOW);
    EXPECT_TRUE(tags.count(DT_INIT) && tags.count(DT_FINI));
#ifndef ZIL_SANITIZE_BUILD
    EXPECT_FALSE(tags.count(DT_INIT_ARRAY) || tags.count(DT_FINI_ARRAY) || tags.count(DT_PREINIT_ARRAY))
        << "constructors or destructors";
    EXPECT_EQ(elf_->Section(".bss"), nullptr);
    // Writable, allocated memory is the slot table plus what becomes read-only
    // after relocation.
    uint64_t relroLo = 0, relroHi = 0;
    for (const auto& p : elf_->Segments())
        if (p.p_type == PT_GNU_RELRO) relroLo = p.p_vaddr, relroHi = p.p_vaddr + p.p_memsz;
    for (const Elf64_Shdr* s : elf_->Sections()) {
        if (!(s->sh_flags & SHF_WRITE) || !(s->sh_flags & SHF_ALLOC) || s->sh_size == 0) continue;
        const std::string n = elf_->SectionName(s);
        if (n == ".data") continue;
        EXPECT_TRUE(s->sh_addr >= relroLo && s->sh_addr + s->sh_size <= relroHi) << n << " stays writable";
    }
#endif
}

TEST_F(FrameTest, LoadHooksDoNothing) {
    std::map<int64_t, uint64_t> tags;
    for (const auto& d : elf_->Dynamic()) tags[d.d_tag] = d.d_un.d_val;
    auto init = reinterpret_cast<int (*)()>(Base() + tags.at(DT_INIT));
    auto fini = reinterpret_cast<void (*)()>(Base() + tags.at(DT_FINI));
    EXPECT_EQ(init(), 1);
    fini();
    // Nothing changed: the library still works after both.
    const uint8_t px[3] = {255, 255, 255};
    uint8_t out[3];
    EXPECT_EQ(ziliRGBToYUV_8u_C3R(px, 3, out, 3, ZilSize{1, 1}), zilStatusOk);
}

TEST_F(FrameTest, VersionRecord) {
    const ZilLibVersion* v = zilccGetLibVersion();
    ASSERT_NE(v, nullptr);
    EXPECT_EQ(v, zilccGetLibVersion());
    EXPECT_EQ(v->major, 2017);
    EXPECT_EQ(v->minor, 0);
    EXPECT_EQ(v->majorBuild, 3);
    EXPECT_EQ(v->build, 55431);
    EXPECT_STREQ(v->targetCpu, "mx");
    EXPECT_EQ(v->targetCpu[3], 0);
    EXPECT_STREQ(v->name, "zilCC PX (mx)");
    EXPECT_STREQ(v->version, "2017.0.3 (r55431)");
    EXPECT_STREQ(v->buildDate, "Apr 12 2017");
    // The record is relocated, then read-only; its texts are read-only data.
    uint64_t relroLo = 0, relroHi = 0;
    for (const auto& p : elf_->Segments())
        if (p.p_type == PT_GNU_RELRO) relroLo = p.p_vaddr, relroHi = p.p_vaddr + p.p_memsz;
    const uint64_t rec = reinterpret_cast<uintptr_t>(v) - Base();
    EXPECT_TRUE(rec >= relroLo && rec + sizeof *v <= relroHi);
    const Elf64_Shdr* ro = elf_->Section(".rodata");
    for (const char* t : {v->name, v->version, v->buildDate}) {
        const uint64_t a = reinterpret_cast<uintptr_t>(t) - Base();
        EXPECT_TRUE(a >= ro->sh_addr && a < ro->sh_addr + ro->sh_size);
    }
}

TEST_F(FrameTest, ClampTableAndItsBasePointer) {
    const auto local = Local();
    ASSERT_TRUE(local.count("chop") && local.count("CHOP_ARRAY"));
    const auto* chop = reinterpret_cast<const uint8_t*>(Base() + local.at("chop").st_value);
    EXPECT_EQ(local.at("chop").st_size, 1000u);
    const std::pair<int, int> points[] = {{0, 0}, {370, 0}, {371, 1}, {498, 128}, {625, 255}, {626, 255}, {999, 255}};
    for (auto [i, want] : points) EXPECT_EQ(chop[i], want) << "chop[" << i << "]";
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(chop[i], i <= 370 ? 0 : i >= 625 ? 255 : i - 370) << i;
    const uint8_t* const* base = reinterpret_cast<const uint8_t* const*>(Base() + local.at("CHOP_ARRAY").st_value);
    EXPECT_EQ(*base, chop + 370);
}

TEST(FrameC, HeaderWorksFromC99) { EXPECT_EQ(zil_c_smoke(), 0); }

}  // namespace
