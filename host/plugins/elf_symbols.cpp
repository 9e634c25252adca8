#include "host/plugins/elf_symbols.h"

#include <cerrno>
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

constexpr std::uint16_t kNumberStandsElsewhere = PN_XNUM;

bool isElf64(const Elf64_Ehdr& header)
{
    return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 && header.e_ident[EI_CLASS] == ELFCLASS64;
}

} // namespace

std::string findLibraryProblem(const std::filesystem::path& path)
{
    constexpr const char* kNoLibrary = "it is no shared library";
    constexpr const char* kCutShort = "it is cut short";
    std::error_code error;
    if (std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error))
        return kNoLibrary;
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::strerror(errno);
    const std::uint64_t size = std::filesystem::file_size(path, error);
    if (error) return error.message();
    const auto start = readRecords<unsigned char>(file, size, 0, SELFMAG);
    if (start.empty() || std::memcmp(start.data(), ELFMAG, SELFMAG) != 0) return kNoLibrary;
    const auto header = readRecords<Elf64_Ehdr>(file, size, 0, 1);
    if (header.empty()) return kCutShort;
    if (!isElf64(header[0]) || header[0].e_type != ET_DYN) return kNoLibrary;
    if (header[0].e_phnum == kNumberStandsElsewhere || header[0].e_phentsize != sizeof(Elf64_Phdr)) return {};
    const auto segments = readRecords<Elf64_Phdr>(file, size, header[0].e_phoff, header[0].e_phnum);
    if (segments.size() != header[0].e_phnum) return kCutShort;
    for (const Elf64_Phdr& segment : segments)
        if (segment.p_type == PT_LOAD &&
            (segment.p_offset > size || segment.p_filesz > size - segment.p_offset))
            return kCutShort;
    return {};
}

bool exportsSymbol(const std::filesystem::path& path, std::string_view name)
{
    std::error_code error;
    const std::uint64_t size = std::filesystem::file_size(path, error);
    if (error) return false;
    std::ifstream file(path, std::ios::binary);
    const auto header = readRecords<Elf64_Ehdr>(file, size, 0, 1);
    if (header.empty() || !isElf64(header[0]) || header[0].e_shentsize != sizeof(Elf64_Shdr)) return false;
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
