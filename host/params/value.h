// Values of parameters as the host keeps them: plain values, references to plugins, and samples in time.
#pragma once

#include <ombrix/interface_ids.h>
#include <ombrix/plugin_base.h>
#include <ombrix/types.h>

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace ombrix {

// The declaration operations of OmbrixParameterListDesc.
enum class Declaration {
    Bool,
    Int,
    Float,
    Color,
    String,
    Plugin,
    Transform,
    Texture,
    TextureFloat,
    TextureInt,
    TextureTransform,
    TextureVector,
    OutputTexture,
    OutputTextureFloat,
};

// "addParamBool" and so on.
const char* declarationName(Declaration declaration);
inline bool isOutput(Declaration d)
{
    return d == Declaration::OutputTexture || d == Declaration::OutputTextureFloat;
}
// The five kinds of texture inputs.
inline bool isTextureInput(Declaration d)
{
    return d >= Declaration::Texture && d <= Declaration::TextureVector;
}
// The interface that a typed texture input takes; 0 for other declarations.
OUtils::InterfaceId textureInterfaceOf(Declaration declaration);

// A reference to a plugin, or to the object that answers one of its output parameters.
struct PluginReference {
    OUtils::PluginBase* plugin = nullptr;      // null: cleared
    OUtils::PluginInterface* output = nullptr; // null: the plugin itself
};

// One value; monostate for none.
using Value = std::variant<std::monostate, bool, int, float, OUtils::Color, OUtils::AColor, OUtils::Vector,
                           OUtils::TraceTransform, std::string, PluginReference>;

// What a scene wrote into a parameter. elements of each sample: one for a single value, any number for a
// list. times is empty and there is one sample when the value is not animated; else times rise strictly
// and there is one sample for each. References are never animated.
struct ParameterValue {
    std::vector<double> times;
    std::vector<std::vector<Value>> samples;
};

struct ParameterDeclaration {
    Declaration kind = Declaration::Int;
    std::string name;
    Value defaultValue;                        // monostate where the declaration has none
    OUtils::InterfaceId requiredInterface = 0; // of addParamPlugin
    int transformFlag = 0;                     // of addParamTransform
    int count = -1;                            // -1 single, 0 list
    std::optional<std::string> description;
    std::optional<std::string> metadata;
};

// The value at a time. Floats, colours, vectors and transforms are interpolated linearly between times and
// constant outside; ints, bools and strings hold the earlier time's. Two transforms interpolate columns
// and offset. Lists of unequal length hold the earlier one's.
std::vector<Value> sampleAt(const ParameterValue& value, double time);
// One element of sampleAt without the others; monostate outside the list.
Value elementAt(const ParameterValue& value, std::size_t index, double time);
// The elements of the sample whose time is the last one not after the given one (the first sample before
// all times); empty for a value without samples.
const std::vector<Value>& heldSample(const ParameterValue& value, double time);

// Turns a value into what a parameter of this declaration keeps: whole numbers and bools into one another
// and into floats, a colour with alpha into a plain colour for addParamColor, and colours into colours
// with alpha where a colour texture's samples hold both. Nulls in lists of references become cleared
// references. False, with the value in an unspecified state, when the declaration cannot hold it: another
// kind, a list for a single value, times that do not rise, or a reference that lacks the interface of a
// typed texture input.
bool adaptToDeclaration(const ParameterDeclaration& declaration, ParameterValue& value);

// What a reference gives as an interface: the output itself if it is one of that id, or what the plugin
// finds; null for a cleared reference.
OUtils::PluginInterface* interfaceOf(const PluginReference& reference, OUtils::InterfaceId id);

} // namespace ombrix
