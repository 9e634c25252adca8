// What stands behind an OmbrixParameterList.
#pragma once

#include "host/params/constant_textures.h"
#include "host/params/host_parameters.h"

#include <ombrix/renderer.h>

namespace ombrix {

// The types of fields that a plugin can bind.
enum class FieldType {
    Int,
    Float,
    Texture,
    TextureFloat,
    TextureInt,
    TextureTransform,
    TextureVector,
    Plugin,
    IntList,
    FloatList,
    PluginList,
    String,
    Color,
    Transform,
};

struct BoundField {
    std::size_t parameter = 0; // index of the declaration
    FieldType type = FieldType::Int;
    void* field = nullptr;
};

struct BoundOutput {
    std::size_t parameter = 0;
    OUtils::PluginInterface* output = nullptr;
};

} // namespace ombrix

struct OUtils::OmbrixParameterList::Values {
    explicit Values(const OmbrixParameterListDesc::Declarations& declarations);

    // The index of a declaration found by name; nullopt for null.
    std::optional<std::size_t> indexOf(const ombrix::ParameterDeclaration* declaration) const;
    ombrix::HostParameter* findInput(const char* name);
    // Binds a field, or reports on the debugger channel why not.
    void bind(const char* name, ombrix::FieldType type, void* field);
    void bindOutput(const char* name, OUtils::PluginInterface* output);

    const OmbrixParameterListDesc::Declarations& declared;
    std::deque<ombrix::HostParameter> parameters; // one for each declaration; those of outputs stay unset
    std::vector<ombrix::BoundField> fields;
    std::vector<ombrix::BoundOutput> outputs;
    ombrix::ConstantTextures constants;
    double time = OUtils::FrameData{}.time; // of the last update
};
