#include "host/plugins/builtin_desc.h"

namespace ombrix {

namespace {

// Null before any initialiser runs: the descriptors of other files link themselves in before main.
constinit BuiltinEntry* first = nullptr;

} // namespace

BuiltinEntry::BuiltinEntry(OUtils::PluginDesc& desc) : described(desc), next(first)
{
    first = this;
}

BuiltinEntry::~BuiltinEntry()
{
    for (BuiltinEntry** link = &first; *link; link = &(*link)->next) {
        if (*link != this) continue;
        *link = next;
        return;
    }
}

std::vector<OUtils::PluginDesc*> BuiltinEntry::all()
{
    std::vector<OUtils::PluginDesc*> found;
    for (const BuiltinEntry* entry = first; entry; entry = entry->next)
        found.push_back(&entry->described);
    return found;
}

} // namespace ombrix
