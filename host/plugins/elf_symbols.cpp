#include "host/plugins/elf_symbols.h"

#include <cstring>
#include <elf.h>
#include <fstream>
#include <string>
#include <vector>

namespace ombrix {
namespace {

// Reads count records at an offset; nothing when the file is shorter.
template <class Record>
std::vector<Record> readRecords(std::ifstream& file, std::uint64_t fileSize, std::uint64_t offset,
                                std::uint64_t count)
{
    if (offset > fileSize || count > (fileSize - offset) / sizeof(Record)) return {};
    std::vector<Record> records(count);
    file.seekg(static_cast<std::streamoff>(offset));
    file.read(reinterpret_cast<char*>(records.data()), static_cast<std::streamsize>(count * sizeof(Record)));
    if (!file) return {};
    return records;
}

} // namespace

bool exportsSymbol(const std::filesystem::path& path, std::string_view name)
{
    std::error_code error;
    const std::uint64_t size = std::filesystem::file_size(path, error);
    if (error) return false;
    std::ifstream file(path, std::ios::binary);
    const auto header = readRecords<Elf64_Ehdr>(file, size, 0, 1);
    if (header.empty() || std::memcmp(header[0].e_ident, ELFMAG, SELFMAG) != 0 ||
        header[0].e_ident[EI_CLASS] != ELFCLASS64 || header[0].e_shentsize != sizeof(Elf64_Shdr))
        return false;
    const auto sections = readRecords<Elf64_Shdr>(file, size, header[0].e_shoff, header[0].e_shnum);
    for (const Elf64_Shdr& section : sections) {
        if (section.sh_type != SHT_DYNSYM || section.sh_link >= sections.size()) continue;
        const Elf64_Shdr& textSection = sections[section.sh_link];
        const auto texts = readRecords<char>(file, size, textSection.sh_offset, textSection.sh_size);
        const std::string_view names(texts.data(), texts.size());
        for (const Elf64_Sym& symbol :
             readRecords<Elf64_Sym>(file, size, section.sh_offset, section.sh_size / sizeof(Elf64_Sym))) {
            if (symbol.st_shndx == SHN_UNDEF || symbol.st_name >= names.size()) continue;
            const std::string_view rest = names.substr(symbol.st_name);
            if (rest.substr(0, rest.find('\0')) == name) return true;
        }
    }
    return false;
}

} // namespace ombrix
