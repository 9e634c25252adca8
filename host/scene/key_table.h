// The keys of a file format's objects. Each kind of object has one table of its keys with the readers of
// their values; what is unknown, what may have been meant and what is missing follows from the table.
#pragma once

#include "host/scene/json_values.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ombrix {

template <class Target>
struct KeyReader {
    const char* key;
    // Reports what is wrong with the value. Null for a key whose value is read elsewhere.
    void (*read)(const JsonPlace& place, Target& target);
    // The complaint where the key is missing; null for a key that may be left out.
    const char* needed = nullptr;
};

// Hands each member of an object to the reader of its key, in the order of the table. Entry is a KeyReader,
// or has its fields and more. Reported: a value that is no object, keys that are not in the table, and
// needed ones that are missing. Whether nothing was reported, by the readers neither.
template <class Entry, std::size_t count, class Target>
bool readKeys(const JsonPlace& place, std::string_view what, const Entry (&table)[count], Target& target)
{
    if (!place->is_object()) {
        place.expected(fmt::format("{}, an object", what));
        return false;
    }
    const int errorsBefore = place.reports().errors();
    for (const auto& [key, member] : place->items()) {
        const auto isThis = [&name = key](const Entry& entry) { return name == entry.key; };
        if (std::any_of(std::begin(table), std::end(table), isThis)) continue;
        std::vector<std::string> known;
        for (const Entry& entry : table)
            known.emplace_back(entry.key);
        place.at(key).error(
            fmt::format("{} has no key \"{}\"{}", what, key, suggestOrList(key, known, "the keys are")));
    }
    for (const Entry& entry : table) {
        if (!place.has(entry.key)) {
            if (entry.needed) place.error(entry.needed);
        } else if (entry.read) {
            entry.read(place.at(entry.key), target);
        }
    }
    return place.reports().errors() == errorsBefore;
}

// Stores a value that was read well.
template <class Read, class Target>
void store(std::optional<Read>&& read, Target& target)
{
    if (read) target = std::move(*read);
}

// A reader for tables: what read makes of the value goes into a member of the target.
template <auto member, auto read, class Target>
void into(const JsonPlace& place, Target& target)
{
    store(read(place), target.*member);
}

// Reads an object of names to values of one kind; readOne(place, value) reads each.
template <class Map, class ReadOne>
void readNamed(const JsonPlace& place, const char* what, Map& target, const ReadOne& readOne)
{
    if (!place->is_object()) {
        place.expected(fmt::format("{}, an object of names to values", what));
        return;
    }
    for (const auto& [name, member] : place->items())
        readOne(place.at(name), target[name]);
}

} // namespace ombrix
