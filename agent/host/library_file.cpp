// SPDX-License-Identifier: MIT
#include "host/library_file.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <gelf.h>
#include <libelf.h>
#include <unistd.h>

namespace agent {

namespace {

// A file open for reading. A file that is not ELF has no sections and no segments.
class ElfFile {
  public:
    explicit ElfFile(const std::string &path)
        : file_(open(path.c_str(), O_RDONLY | O_CLOEXEC)),
          elf_(elf_version(EV_CURRENT) != EV_NONE ? elf_begin(file_, ELF_C_READ, nullptr) : nullptr)
    {
    }
    ~ElfFile()
    {
        elf_end(elf_);
        close(file_);
    }
    ElfFile(const ElfFile &) = delete;
    ElfFile &operator=(const ElfFile &) = delete;

    Elf *get() const { return elf_kind(elf_) == ELF_K_ELF ? elf_ : nullptr; }

  private:
    int file_;
    Elf *elf_;
};

// The contents of a library's dynamic sections.
struct Needs {
    std::vector<std::string> libraries;
    std::vector<std::string> symbols;
};

std::string text_at(Elf *elf, const GElf_Shdr &section, size_t offset)
{
    const char *text = elf_strptr(elf, section.sh_link, offset);
    return text != nullptr ? text : "";
}

size_t entries(const GElf_Shdr &section)
{
    return section.sh_entsize != 0 ? section.sh_size / section.sh_entsize : 0;
}

void read_libraries(Elf *elf, const GElf_Shdr &section, Elf_Data *data, Needs &needs)
{
    for (size_t at = 0; at < entries(section); ++at) {
        GElf_Dyn entry;
        if (gelf_getdyn(data, static_cast<int>(at), &entry) == nullptr || entry.d_tag == DT_NULL) {
            return;
        }
        if (entry.d_tag == DT_NEEDED) {
            needs.libraries.push_back(text_at(elf, section, entry.d_un.d_val));
        }
    }
}

void read_symbols(Elf *elf, const GElf_Shdr &section, Elf_Data *data, Needs &needs)
{
    for (size_t at = 0; at < entries(section); ++at) {
        GElf_Sym symbol;
        if (gelf_getsym(data, static_cast<int>(at), &symbol) == nullptr) {
            return;
        }
        const std::string name = text_at(elf, section, symbol.st_name);
        if (symbol.st_shndx == SHN_UNDEF && GELF_ST_BIND(symbol.st_info) == STB_GLOBAL &&
            !name.empty()) {
            needs.symbols.push_back(name);
        }
    }
}

Needs read_needs(const std::string &path)
{
    Needs needs;
    const ElfFile elf(path);
    for (Elf_Scn *at = elf_nextscn(elf.get(), nullptr); at != nullptr;
         at = elf_nextscn(elf.get(), at)) {
        GElf_Shdr section;
        Elf_Data *data = elf_getdata(at, nullptr);
        if (data == nullptr || gelf_getshdr(at, &section) == nullptr) {
            continue;
        }
        if (section.sh_type == SHT_DYNAMIC) {
            read_libraries(elf.get(), section, data, needs);
        } else if (section.sh_type == SHT_DYNSYM) {
            read_symbols(elf.get(), section, data, needs);
        }
    }
    return needs;
}

} // namespace

bool is_cut_off(const std::string &path)
{
    std::error_code problem; // on an error the size is the maximum
    const uintmax_t size = std::filesystem::file_size(path, problem);
    const ElfFile elf(path);
    size_t count = 0;
    if (elf_getphdrnum(elf.get(), &count) != 0) {
        return false; // the loader reports what is wrong
    }
    for (size_t at = 0; at < count; ++at) {
        GElf_Phdr segment;
        if (gelf_getphdr(elf.get(), static_cast<int>(at), &segment) == nullptr) {
            return true;
        }
        if (segment.p_offset > size || segment.p_filesz > size - segment.p_offset) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> needed_symbols(const std::string &path)
{
    return read_needs(path).symbols;
}

std::vector<std::string> missing_symbols(const std::string &path)
{
    const Needs needs = read_needs(path);
    // They stay open: this is only called when the agent is about to exit.
    std::vector<void *> providers = {RTLD_DEFAULT};
    for (const std::string &library : needs.libraries) {
        void *handle = dlopen(library.c_str(), RTLD_LAZY | RTLD_LOCAL);
        if (handle != nullptr) {
            providers.push_back(handle);
        }
    }

    std::vector<std::string> missing;
    for (const std::string &symbol : needs.symbols) {
        bool provided = false;
        for (void *provider : providers) {
            provided = provided || dlsym(provider, symbol.c_str()) != nullptr;
        }
        if (!provided) {
            missing.push_back(symbol);
        }
    }
    return missing;
}

} // namespace agent
