// Descriptors: what a library tells of itself and of each plugin kind.
#pragma once

#include <ombrix/plugin_base.h>

namespace OUtils {

class OmbrixParameterListDesc;
class OmbrixPluginHost;
class PluginDesc;

// Receives one descriptor a call. Returning 0 stops the enumeration.
class EnumPluginsCallback {
public:
    virtual int processPlugin(PluginDesc* desc) = 0;

protected:
    ~EnumPluginsCallback() = default;
};

// A plugin kind: an identity and a factory. Owned by its library, alive while the library is loaded.
class PluginDesc : public PluginBase {
public:
    virtual PluginId getPluginID() = 0;
    // A new instance, owned by the caller until deletePlugin; null when there is no memory for it.
    virtual PluginBase* newPlugin(OmbrixPluginHost* host) = 0;
    // Destroys an instance of this kind; null does nothing.
    virtual void deletePlugin(PluginBase* plugin) = 0;
    // 1 if this kind declares the interface, else 0. Instances may answer to others.
    virtual int supportsInterface(InterfaceId id) = 0;
    virtual const char* getName() = 0;
    // Tells the host of this kind and its parameters. A null host does nothing.
    virtual void registerPlugin(OmbrixPluginHost* /*host*/) {}
    virtual void unregisterPlugin(OmbrixPluginHost* /*host*/) {}
    virtual int reservedOperation8() { return 0; }
    // A sentence, ending in a blank and a "[gpuSupport=(...)]" tag.
    virtual const char* getDescription() = 0;
    virtual int reservedOperation10() { return 0; }
    virtual int reservedOperation11() { return 0; }
};

// Adds the description of the parameters.
class OmbrixPluginDesc : public PluginDesc {
public:
    // Owned by the descriptor; null when the kind has no parameter list.
    OmbrixParameterListDesc* parameterDesc = nullptr;
};

// A library. The plug-in library's one exported function, getLibDesc, returns the address of its
// descriptor, which the library owns.
class PluginLibDesc : public PluginBase {
public:
    virtual const char* getName() = 0;
    virtual const char* getDescription() = 0;
    // Calls the callback with each descriptor, in no particular order, and returns how many were
    // handed out, that of a stopping call included. A null callback gives the number of descriptors.
    virtual int enumPlugins(EnumPluginsCallback* callback) = 0;
};

using GetLibDescFunction = PluginLibDesc* (*)();
inline constexpr const char* kGetLibDescName = "getLibDesc";

// The host's side of registration.
class OmbrixPluginHost {
public:
    virtual ~OmbrixPluginHost() = default;
    // Called by PluginDesc::registerPlugin and unregisterPlugin. Return 1, or 0 when refused.
    virtual int addPlugin(PluginDesc* desc) = 0;
    virtual int removePlugin(PluginDesc* desc) = 0;
    // Called by OmbrixParameterListDesc::registerParameters.
    virtual int addParameters(PluginDesc* desc, OmbrixParameterListDesc* parameters) = 0;
};

} // namespace OUtils
