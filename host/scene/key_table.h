// Objects whose keys are all optional: each key with the reader of its value.
#pragma once

#include "host/scene/json_values.h"

#include <fmt/format.h>

#include <string>
#include <vector>

namespace ombrix {

template <class Target>
struct KeyReader {
    const char* key;
    void (*read)(const JsonPlace& place, Target& target);
};

// Hands each member of an object to the reader of its key. A value that is no object, and a key that is
// not in the table, are reported.
template <class Target, std::size_t count>
void readKeys(const JsonPlace& place, const char* what, const KeyReader<Target> (&readers)[count],
              Target& target)
{
    if (!place->is_object()) {
        place.expected(fmt::format("{}, an object", what));
        return;
    }
    for (const auto& [key, member] : place->items()) {
        const KeyReader<Target>* found = nullptr;
        for (const KeyReader<Target>& reader : readers)
            if (key == reader.key) found = &reader;
        if (found) {
            found->read(place.at(key), target);
            continue;
        }
        std::vector<std::string> known;
        for (const KeyReader<Target>& reader : readers)
            known.emplace_back(reader.key);
        place.at(key).error(
            fmt::format("{} has no key \"{}\"{}", what, key, suggestOrList(key, known, "the keys are")));
    }
}

// Stores a value that was read well.
template <class Read, class Target>
void store(const std::optional<Read>& read, Target& target)
{
    if (read) target = *read;
}

// Reads an object of names to values of one kind.
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
