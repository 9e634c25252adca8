// The roots of everything that is found by interface: PluginBase, which carries interfaces, and
// PluginInterface, which is one.
//
// The order of the virtual operations of every class in these headers is part of the binary contract.
#pragma once

#include <ombrix/interface_ids.h>

namespace OUtils {

class PluginBase;

class PluginInterface {
public:
    PluginInterface() = default;
    PluginInterface(const PluginInterface&) = delete;
    PluginInterface& operator=(const PluginInterface&) = delete;

    virtual ~PluginInterface() = default;
    // The class's constant kId.
    virtual InterfaceId getInterfaceID() = 0;
    // The object that holds this interface; may be null for an interface that stands alone.
    virtual PluginBase* getPlugin() = 0;
    // The EXT name, or null for an interface without one.
    virtual const char* getInterfaceName() { return nullptr; }
    // Tells the holder, if any, that this interface is let go.
    virtual void releaseInterface();
};

// Root of every object that carries interfaces. Interfaces that a class has by inheritance are found by
// its getInterface override; the list holds those that are added at run time. Not guarded: interfaces
// are added and removed outside rendering only.
class PluginBase {
public:
    PluginBase() = default;
    PluginBase(const PluginBase&) = delete;
    PluginBase& operator=(const PluginBase&) = delete;

    virtual ~PluginBase() { destroyEntries(); }
    // The first added interface that answers to the id, the latest added one first; null for none.
    virtual PluginInterface* getInterface(InterfaceId id)
    {
        for (InterfaceEntry* entry = interfaces; entry; entry = entry->next)
            if (entry->interface && entry->interface->getInterfaceID() == id) return entry->interface;
        return nullptr;
    }
    // A hook for holders that count references.
    virtual void releaseInterface(PluginInterface* /*released*/) {}
    // Adds an interface. owned 1 calls the interface's releaseInterface when this object ends. Returns 1.
    virtual int addInterface(PluginInterface* added, int owned)
    {
        interfaces = new InterfaceEntry{added, owned, interfaces};
        return 1;
    }
    // Removes an added interface without releasing it. Returns 1 if it was found, else 0.
    virtual int removeInterface(PluginInterface* removed)
    {
        for (InterfaceEntry** link = &interfaces; *link; link = &(*link)->next) {
            InterfaceEntry* entry = *link;
            if (entry->interface != removed) continue;
            *link = entry->next;
            delete entry;
            return 1;
        }
        return 0;
    }

private:
    struct InterfaceEntry {
        PluginInterface* interface;
        std::int32_t owned;
        InterfaceEntry* next;
    };

    // The entries end from the last to the first, so the interface that was added first is released
    // first. The links are reversed in place: a long list needs no stack.
    void destroyEntries()
    {
        InterfaceEntry* reversed = nullptr;
        while (interfaces) {
            InterfaceEntry* entry = interfaces;
            interfaces = entry->next;
            entry->next = reversed;
            reversed = entry;
        }
        while (reversed) {
            InterfaceEntry* entry = reversed;
            reversed = entry->next;
            if (entry->owned == 1 && entry->interface) entry->interface->releaseInterface();
            delete entry;
        }
    }

    InterfaceEntry* interfaces = nullptr;
};

inline void PluginInterface::releaseInterface()
{
    if (PluginBase* holder = getPlugin()) holder->releaseInterface(this);
}

// The interface of a plugin, or null: there is no plugin, or it lacks the interface. Interface has its id as
// kId.
template <class Interface>
Interface* find(PluginBase* plugin)
{
    return plugin ? static_cast<Interface*>(plugin->getInterface(Interface::kId)) : nullptr;
}

} // namespace OUtils
