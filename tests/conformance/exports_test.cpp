// What the built library shows to others and what it takes from them.

#include "elf_symbols.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

namespace {

using namespace conformance;

bool startsWithAny(std::string_view symbol, std::initializer_list<std::string_view> beginnings)
{
    return std::any_of(beginnings.begin(), beginnings.end(),
                       [&](std::string_view beginning) { return symbol.starts_with(beginning); });
}

// Names that the standard library's shared object defines.
bool isFromStandardLibrary(std::string_view symbol)
{
    return startsWithAny(symbol, {"_ZSt", "_ZNSt", "_ZNKSt", "_ZNSa", "_ZNKSa", "_ZNSs", "_ZNKSs", "_ZNSo",
                                  "_ZNKSo", "_ZNSi", "_ZNKSi", "_ZNSd", "_ZNKSd", "_ZTISt", "_ZTVSt",
                                  "_ZTSSt", "_ZTTSt", "_ZN9__gnu_cxx", "_ZNK9__gnu_cxx"});
}

// Those of them that hand no memory over in either direction. What an exception holds is taken and freed
// within the shared object; a thread's state is made and deleted by the library.
bool handsNoMemoryOver(std::string_view symbol)
{
    const bool throwsOnly = symbol.starts_with("_ZSt") && symbol.find("__throw_") != symbol.npos;
    return throwsOnly ||
           startsWithAny(symbol,
                         {"_ZSt9terminatev", "_ZSt10from_chars", "_ZSt8to_chars", "_ZSt18_Rb_tree_increment",
                          "_ZSt18_Rb_tree_decrement", "_ZSt29_Rb_tree_insert_and_rebalance",
                          "_ZSt28_Rb_tree_rebalance_for_erase", "_ZNSt16invalid_argument",
                          "_ZNKSt8__detail20_Prime_rehash_policy", "_ZNSt6thread",
                          "_ZNSt18condition_variable", "_ZNSt6chrono", "_ZTISt", "_ZTVSt"});
}

TEST(Exports, EntryPointIsTheOnlyOne)
{
    EXPECT_EQ(readDynamicSymbols(NEZAIVA_MODULE).defined, (std::vector<std::string>{"getLibDesc"}));
}

TEST(Exports, NothingKeepsTheLibraryMapped)
{
    EXPECT_FALSE(readDynamicSymbols(NEZAIVA_MODULE).hasUniqueSymbol);
}

TEST(Imports, NothingOfTheStandardLibraryHandsMemoryOver)
{
    for (const std::string& symbol : readDynamicSymbols(NEZAIVA_MODULE).imported)
        EXPECT_TRUE(!isFromStandardLibrary(symbol) || handsNoMemoryOver(symbol)) << symbol;
}

TEST(Imports, AllocationIsTheHostsAlone)
{
    const auto imported = readDynamicSymbols(NEZAIVA_MODULE).imported;
    for (const std::string& symbol : imported) {
        // The mangled operators new and delete, plain and array.
        EXPECT_FALSE(startsWithAny(symbol, {"_Znw", "_Zna", "_Zdl", "_Zda"})) << symbol;
        for (const char* allocating :
             {"malloc", "calloc", "realloc", "reallocarray", "free", "strdup", "strndup", "posix_memalign",
              "aligned_alloc", "memalign", "valloc", "asprintf", "vasprintf", "getline", "getdelim"})
            EXPECT_NE(symbol, allocating);
    }
    for (const char* expected : {"omalloc", "ofree"})
        EXPECT_NE(std::find(imported.begin(), imported.end(), expected), imported.end()) << expected;
}

} // namespace
