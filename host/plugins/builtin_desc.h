// BuiltinDesc: the descriptor of a plugin kind of the host's own.
#pragma once

#include <ombrix/plugin_kind.h>

#include <vector>

namespace ombrix {

// A descriptor's place in the list of the host's own kinds, for as long as it lives. Entries are made and
// ended while the program or a library of it is loaded and ended, or while no other thread reads the list.
class BuiltinEntry {
public:
    explicit BuiltinEntry(OUtils::PluginDesc& desc);
    ~BuiltinEntry();
    BuiltinEntry(const BuiltinEntry&) = delete;
    BuiltinEntry& operator=(const BuiltinEntry&) = delete;

    // The descriptors in the list; their order carries no meaning.
    static std::vector<OUtils::PluginDesc*> all();

private:
    OUtils::PluginDesc& described;
    BuiltinEntry* next;
};

// Kind is as OUtils::PluginKindDesc tells. One static object makes a kind known to every PluginRegistry
// that is made later.
template <class Kind, class Params = OUtils::KindParams<Kind>>
class BuiltinDesc : public OUtils::PluginKindDesc<Kind, Params> {
private:
    // The parameters are declared before anybody can find the descriptor.
    BuiltinEntry entry{*this};
};

} // namespace ombrix
