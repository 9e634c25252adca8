#include "host/scene/reference_fit.h"

#include "host/params/host_parameters.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

struct KindWords {
    OUtils::InterfaceId id;
    const char* words;
};

// In the order in which an object of several kinds is named.
constexpr KindWords kKinds[] = {
    {OUtils::EXT_TEXTURE, "a color texture"},
    {OUtils::EXT_TEXTURE_FLOAT, "a float texture"},
    {OUtils::EXT_TEXTURE_INT, "an int texture"},
    {OUtils::EXT_TEXTURE_TRANSFORM, "a transform texture"},
    {OUtils::EXT_TEXTURE_VECTOR, "a vector texture"},
    {OUtils::EXT_UVWGEN, "a UVW generator"},
    {OUtils::EXT_MATERIAL, "a material"},
    {OUtils::EXT_MAYA_FLUID_TEXTURE, "a fluid"},
};

// The node that turns one kind into another.
struct Conversion {
    OUtils::InterfaceId from, to;
    const char* node;
};

constexpr Conversion kConversions[] = {
    {OUtils::EXT_TEXTURE, OUtils::EXT_TEXTURE_FLOAT, "a ColorToFloat"},
    {OUtils::EXT_TEXTURE_FLOAT, OUtils::EXT_TEXTURE, "a FloatsToColor"},
    {OUtils::EXT_TEXTURE_VECTOR, OUtils::EXT_TEXTURE, "a TexVectorToColor"},
    {OUtils::EXT_UVWGEN, OUtils::EXT_TEXTURE, "a TexUVWGenToTexture"},
    {OUtils::EXT_TEXTURE_VECTOR, OUtils::EXT_TEXTURE_FLOAT, "a TexVectorToColor and a ColorToFloat"},
    {OUtils::EXT_UVWGEN, OUtils::EXT_TEXTURE_FLOAT, "a TexUVWGenToTexture and a ColorToFloat"},
};

const char* wordsOf(OUtils::InterfaceId id)
{
    for (const KindWords& kind : kKinds)
        if (kind.id == id) return kind.words;
    return "a plugin of another kind";
}

std::string adviceFor(const SceneObject& object, const std::string& reference, OUtils::InterfaceId wanted)
{
    if (!object.output && object.instance->kind->parameters && object.instance->life->paramList) {
        for (const ParameterDeclaration& declared : object.instance->kind->parameters->declarations().all) {
            if (!isOutput(declared.kind)) continue;
            const SceneObject output{object.instance,
                                     boundOutput(*object.instance->life->paramList, declared.name)};
            if (output.output && output.getInterface(wanted))
                return fmt::format("; its output \"{}.{}\" is one", reference, declared.name);
        }
    }
    for (const Conversion& conversion : kConversions)
        if (conversion.to == wanted && object.getInterface(conversion.from))
            return fmt::format("; put {} between them", conversion.node);
    return {};
}

} // namespace

std::string explainMisfit(const SceneObject& object, const std::string& reference,
                          const ParameterDeclaration& input)
{
    const OUtils::InterfaceId wanted = textureInterfaceOf(input.kind);
    std::string is = fmt::format("a {}", object.instance->kind->desc->getName());
    for (const KindWords& kind : kKinds) {
        if (!object.getInterface(kind.id)) continue;
        is = kind.words;
        break;
    }
    return fmt::format("\"{}\" is {}, and \"{}\" takes {}{}", reference, is, input.name, wordsOf(wanted),
                       adviceFor(object, reference, wanted));
}

} // namespace ombrix
