#include "host/params/constant_textures.h"

#include <ombrix/gpu_source.h>
#include <ombrix/texture_interfaces.h>

#include <cstring>

namespace ombrix {
namespace {

constexpr const char* kMaterialDescriptor = "MaterialDescriptor";

int writeColorLine(const char* descriptor, OUtils::ShaderSource& source, const OUtils::AColor& color)
{
    if (!descriptor || std::strcmp(descriptor, kMaterialDescriptor) != 0) return 0;
    source.printf("color %f %f %f %f\n", static_cast<double>(color.r), static_cast<double>(color.g),
                  static_cast<double>(color.b), static_cast<double>(color.a));
    return 1;
}

class ConstantColor : public ConstantTexture, public OUtils::TextureInterface, public OUtils::RTTexInterface {
public:
    void set(const Value& value) override
    {
        if (const auto* color = std::get_if<OUtils::Color>(&value))
            constant = {color->r, color->g, color->b, 1.0f};
        else
            constant = std::get<OUtils::AColor>(value);
    }
    OUtils::TextureInterface* texture() override { return this; }
    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_RTTEX) return static_cast<OUtils::RTTexInterface*>(this);
        if (id == OUtils::EXT_TEXTURE) return static_cast<OUtils::TextureInterface*>(this);
        return PluginBase::getInterface(id);
    }
    OUtils::AColor* evalColor(OUtils::AColor* result, const OUtils::OmbrixContext& /*context*/) override
    {
        *result = constant;
        return result;
    }
    void evalColorBounds(OUtils::AColor* lower, OUtils::AColor* upper) override
    {
        *lower = constant;
        *upper = constant;
    }
    int getSource(const char* /*name*/, const char* /*tag*/, const char* descriptor,
                  OUtils::ShaderSource& source, OUtils::OCLData& /*data*/) override
    {
        return writeColorLine(descriptor, source, constant);
    }

private:
    OUtils::AColor constant;
};

class ConstantFloat : public ConstantTexture,
                      public OUtils::TextureFloatInterface,
                      public OUtils::RTTexInterface {
public:
    void set(const Value& value) override { constant = std::get<float>(value); }
    OUtils::TextureFloatInterface* texture() override { return this; }
    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_RTTEX) return static_cast<OUtils::RTTexInterface*>(this);
        if (id == OUtils::EXT_TEXTURE_FLOAT) return static_cast<OUtils::TextureFloatInterface*>(this);
        return PluginBase::getInterface(id);
    }
    float evalFloat(const OUtils::OmbrixContext& /*context*/) override { return constant; }
    void evalFloatBounds(float* lower, float* upper) override
    {
        *lower = constant;
        *upper = constant;
    }
    int getSource(const char* /*name*/, const char* /*tag*/, const char* descriptor,
                  OUtils::ShaderSource& source, OUtils::OCLData& /*data*/) override
    {
        return writeColorLine(descriptor, source, {constant, constant, constant, constant});
    }

private:
    float constant = 0.0f;
};

// The kinds of one interface and no GPU text.
template <class Interface, OUtils::InterfaceId kId>
class ConstantOf : public ConstantTexture, public Interface {
public:
    Interface* texture() override { return this; }
    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        return id == kId ? static_cast<Interface*>(this) : PluginBase::getInterface(id);
    }
};

class ConstantInt : public ConstantOf<OUtils::TextureIntInterface, OUtils::EXT_TEXTURE_INT> {
public:
    void set(const Value& value) override { constant = std::get<int>(value); }
    int evalInt(const OUtils::OmbrixContext& /*context*/) override { return constant; }

private:
    int constant = 0;
};

class ConstantTransform
    : public ConstantOf<OUtils::TextureTransformInterface, OUtils::EXT_TEXTURE_TRANSFORM> {
public:
    void set(const Value& value) override
    {
        const auto& given = std::get<OUtils::TraceTransform>(value);
        constant.matrix = given.matrix;
        constant.offset = {static_cast<float>(given.offset.x), static_cast<float>(given.offset.y),
                           static_cast<float>(given.offset.z)};
    }
    void evalTransform(OUtils::Transform* result, const OUtils::OmbrixContext& /*context*/) override
    {
        *result = constant;
    }

private:
    OUtils::Transform constant;
};

class ConstantVector : public ConstantOf<OUtils::TextureVectorInterface, OUtils::EXT_TEXTURE_VECTOR> {
public:
    void set(const Value& value) override { constant = std::get<OUtils::Vector>(value); }
    void evalVector(OUtils::Vector* result, const OUtils::OmbrixContext& /*context*/) override
    {
        *result = constant;
    }
    void evalVectorBounds(OUtils::Vector* lower, OUtils::Vector* upper) override
    {
        *lower = constant;
        *upper = constant;
    }

private:
    OUtils::Vector constant;
};

} // namespace

std::unique_ptr<ConstantTexture> makeConstantTexture(Declaration kind)
{
    switch (kind) {
    case Declaration::Texture:
        return std::make_unique<ConstantColor>();
    case Declaration::TextureFloat:
        return std::make_unique<ConstantFloat>();
    case Declaration::TextureInt:
        return std::make_unique<ConstantInt>();
    case Declaration::TextureTransform:
        return std::make_unique<ConstantTransform>();
    case Declaration::TextureVector:
        return std::make_unique<ConstantVector>();
    default:
        return nullptr;
    }
}

ConstantTexture& ConstantTextures::at(std::size_t parameter, std::size_t element, Declaration kind)
{
    std::unique_ptr<ConstantTexture>& held = all[{parameter, element}];
    if (!held) held = makeConstantTexture(kind);
    return *held;
}

} // namespace ombrix
