#include "symbols.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <gelf.h>
#include <libelf.h>
#include <memory>
#include <unistd.h>

namespace agent
{

namespace
{

// What the dynamic sections of a library say.
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
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0 || elf_version(EV_CURRENT) == EV_NONE) {
        return needs;
    }
    const std::unique_ptr<Elf, decltype(&elf_end)> elf(elf_begin(file, ELF_C_READ, nullptr),
                                                       elf_end);
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
    close(file);
    return needs;
}

} // namespace

std::vector<std::string> missing_symbols(const std::string &path)
{
    const Needs needs = read_needs(path);
    // They stay open: this is only asked when the agent is about to end.
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
