#include "elf_symbols.h"

#include <cstring>
#include <elf.h>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace conformance {

namespace {

class ElfBytes {
public:
    explicit ElfBytes(const std::string& file)
    {
        std::ifstream stream(file, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(stream), {});
    }

    // A record at an offset.
    template <class Record>
    Record at(std::size_t offset) const
    {
        if (offset > bytes.size() || sizeof(Record) > bytes.size() - offset)
            throw std::runtime_error("the file ends within a record");
        Record record;
        std::memcpy(&record, bytes.data() + offset, sizeof record);
        return record;
    }
    // A zero-terminated text at an offset.
    std::string textAt(std::size_t offset) const
    {
        std::string text;
        while (const char character = at<char>(offset++))
            text += character;
        return text;
    }

private:
    std::vector<char> bytes;
};

void addSymbols(const ElfBytes& elf, const Elf64_Shdr& table, const Elf64_Shdr& names,
                DynamicSymbols& symbols)
{
    for (std::size_t i = 1; i < table.sh_size / sizeof(Elf64_Sym); ++i) {
        const auto symbol = elf.at<Elf64_Sym>(table.sh_offset + i * sizeof(Elf64_Sym));
        const std::string name = elf.textAt(names.sh_offset + symbol.st_name);
        if (symbol.st_shndx == SHN_UNDEF)
            symbols.imported.push_back(name);
        else if (ELF64_ST_BIND(symbol.st_info) != STB_LOCAL)
            symbols.defined.push_back(name);
        if (ELF64_ST_BIND(symbol.st_info) == STB_GNU_UNIQUE) symbols.hasUniqueSymbol = true;
    }
}

} // namespace

DynamicSymbols readDynamicSymbols(const std::string& file)
{
    const ElfBytes elf(file);
    const auto header = elf.at<Elf64_Ehdr>(0);
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != ELFCLASS64)
        throw std::runtime_error(file + " is not a 64-bit ELF file");

    const auto section = [&](std::size_t index) {
        return elf.at<Elf64_Shdr>(header.e_shoff + index * sizeof(Elf64_Shdr));
    };
    DynamicSymbols symbols;
    for (std::size_t i = 0; i < header.e_shnum; ++i)
        if (section(i).sh_type == SHT_DYNSYM)
            addSymbols(elf, section(i), section(section(i).sh_link), symbols);
    return symbols;
}

} // namespace conformance
