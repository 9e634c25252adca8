// The bases of plugin instances.
#pragma once

#include <ombrix/gpu_source.h>
#include <ombrix/mapping_interfaces.h>
#include <ombrix/material_interfaces.h>
#include <ombrix/parameters.h>
#include <ombrix/plugin_desc.h>
#include <ombrix/renderer.h>
#include <ombrix/texture_interfaces.h>

#include <cstdint>
#include <cstring>

namespace OUtils {

class Plugin : public PluginBase {
public:
    ~Plugin() override { delete[] pluginName; }

    virtual PluginDesc* getPluginDesc() { return nullptr; }
    // Keeps a copy of the text; null clears it.
    virtual void setPluginName(const char* newName)
    {
        delete[] pluginName;
        pluginName = nullptr;
        if (!newName) return;
        const std::size_t size = std::strlen(newName) + 1;
        pluginName = new char[size];
        std::memcpy(pluginName, newName, size);
    }
    // The scene's name of this instance, owned by it; null until one is set.
    const char* getPluginName() const { return pluginName; }

private:
    [[maybe_unused]] std::int64_t reserved = -1;
    char* pluginName = nullptr;
};

// The life of a plugin. The host calls, on one thread: renderBegin; for each frame frameBegin, the
// evaluations (on all render threads), frameEnd; renderEnd.
class OMBRIX_API OmbrixPluginInterface : public PluginInterface {
public:
    // The instance's parameter list is made from the descriptor's declarations, if it has any.
    explicit OmbrixPluginInterface(OmbrixPluginDesc* desc)
        : pluginDesc(desc),
          paramList(desc && desc->parameterDesc ? desc->parameterDesc->newParameterList() : nullptr)
    {
    }
    ~OmbrixPluginInterface() override
    {
        if (pluginDesc && pluginDesc->parameterDesc && paramList)
            pluginDesc->parameterDesc->deleteParameterList(paramList);
        paramList = nullptr;
    }

    static constexpr InterfaceId kId = EXT_OMBRIX_PLUGIN;
    InterfaceId getInterfaceID() override { return kId; }
    const char* getInterfaceName() override { return "EXT_OMBRIX_PLUGIN"; }

    virtual void renderBegin(OmbrixRenderer* /*renderer*/) {}
    virtual void renderEnd(OmbrixRenderer* /*renderer*/) {}
    // Brings all bound fields up to date for the frame. An override calls it first.
    virtual void frameBegin(OmbrixRenderer* renderer);
    virtual void frameEnd(OmbrixRenderer* /*renderer*/) {}
    // See OmbrixParameterList; 0 and null when the instance has no list.
    virtual int setParameter(OmbrixPluginParameter* parameter)
    {
        return paramList ? paramList->setParameter(parameter) : 0;
    }
    virtual OmbrixPluginParameter* getParameter(const char* name)
    {
        return paramList ? paramList->getParam(name) : nullptr;
    }

    OmbrixPluginDesc* const pluginDesc;
    OmbrixParameterList* paramList;
};

// The base of all plugin instances.
class OmbrixPlugin : public Plugin, public OmbrixPluginInterface {
public:
    explicit OmbrixPlugin(OmbrixPluginDesc* desc) : OmbrixPluginInterface(desc) {}

    PluginBase* getPlugin() override { return this; }
    PluginDesc* getPluginDesc() override { return pluginDesc; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_OMBRIX_PLUGIN) return static_cast<OmbrixPluginInterface*>(this);
        return PluginBase::getInterface(id);
    }
    using PluginBase::releaseInterface;
    using PluginInterface::releaseInterface;
};

class OmbrixTexture : public OmbrixPlugin, public TextureInterface {
public:
    using OmbrixPlugin::OmbrixPlugin;
    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_TEXTURE) return static_cast<TextureInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }
};

class OmbrixTextureFloat : public OmbrixPlugin, public TextureFloatInterface {
public:
    using OmbrixPlugin::OmbrixPlugin;
    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_TEXTURE_FLOAT) return static_cast<TextureFloatInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }
};

class OmbrixTextureInt : public OmbrixPlugin, public TextureIntInterface {
public:
    using OmbrixPlugin::OmbrixPlugin;
    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_TEXTURE_INT) return static_cast<TextureIntInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }
};

class OmbrixUVWGen : public OmbrixPlugin, public UVWGenInterface {
public:
    using OmbrixPlugin::OmbrixPlugin;
    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_UVWGEN) return static_cast<UVWGenInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }
};

class OmbrixMaterial : public OmbrixPlugin, public MaterialInterface, public BSDFInterface {
public:
    using OmbrixPlugin::OmbrixPlugin;
    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_MATERIAL) return static_cast<MaterialInterface*>(this);
        if (id == EXT_BSDF) return static_cast<BSDFInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }
};

} // namespace OUtils
