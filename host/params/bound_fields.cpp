// Fields of plugins that hold the values of parameters: how they are bound, and how they are written.
#include "host/memory/allocator.h"
#include "host/params/list_values.h"

#include <ombrix/plugin.h>

#include <cstring>

namespace ombrix {
namespace {

using OUtils::OmbrixParameterList;

// The field that a list asks for; nullopt for the kinds whose lists are read through getParam alone.
std::optional<FieldType> listFieldTypeOf(Declaration kind)
{
    switch (kind) {
    case Declaration::Bool:
    case Declaration::Int:
        return FieldType::IntList;
    case Declaration::Float:
        return FieldType::FloatList;
    case Declaration::Plugin:
        return FieldType::PluginList;
    default:
        return std::nullopt;
    }
}

// The field that a declaration asks for; nullopt for an output and for a list without one.
std::optional<FieldType> fieldTypeOf(const ParameterDeclaration& declaration)
{
    if (declaration.count >= 0) return listFieldTypeOf(declaration.kind);
    switch (declaration.kind) {
    case Declaration::Bool:
    case Declaration::Int:
        return FieldType::Int;
    case Declaration::Float:
        return FieldType::Float;
    case Declaration::Color:
        return FieldType::Color;
    case Declaration::String:
        return FieldType::String;
    case Declaration::Plugin:
        return FieldType::Plugin;
    case Declaration::Transform:
        return FieldType::Transform;
    case Declaration::Texture:
        return FieldType::Texture;
    case Declaration::TextureFloat:
        return FieldType::TextureFloat;
    case Declaration::TextureInt:
        return FieldType::TextureInt;
    case Declaration::TextureTransform:
        return FieldType::TextureTransform;
    case Declaration::TextureVector:
        return FieldType::TextureVector;
    case Declaration::OutputTexture:
    case Declaration::OutputTextureFloat:
        return std::nullopt;
    }
    return std::nullopt;
}

void report(const char* problem, std::string_view name)
{
    debugOutput("[OmbrixParameterList] " + std::string(problem) + ": " + std::string(name) + "\n");
}

// The texture that a typed input shows: what it refers to, the constant for a plain value, or null when
// it is unset or cleared.
OUtils::PluginInterface* textureOf(OmbrixParameterList::Values& values, std::size_t index, double time)
{
    const HostParameter& parameter = values.parameters[index];
    if (!parameter.value()) return nullptr;
    const Declaration kind = parameter.declaration().kind;
    const Value value = elementAt(*parameter.value(), 0, time);
    if (const auto* reference = std::get_if<PluginReference>(&value))
        return interfaceOf(*reference, textureInterfaceOf(kind));
    if (std::holds_alternative<std::monostate>(value)) return nullptr;
    ConstantTexture& constant = values.constants.at(index, 0, kind);
    constant.set(value);
    return constant.texture();
}

template <class Interface>
void writeTexture(OmbrixParameterList::Values& values, const BoundField& bound, double time)
{
    *static_cast<Interface**>(bound.field) =
        static_cast<Interface*>(textureOf(values, bound.parameter, time));
}

// Writes a list unless the field holds the same elements already.
template <class T>
void writeList(OUtils::PtrArray<T>& field, const std::vector<T>& elements)
{
    const std::size_t bytes = elements.size() * sizeof(T);
    if (static_cast<std::size_t>(field.count()) == elements.size() &&
        (bytes == 0 || std::memcmp(field.ptr(), elements.data(), bytes) == 0))
        return;
    OUtils::PtrArray<T> written(static_cast<int>(elements.size()));
    if (written.count() > 0) std::memcpy(written.ptr(), elements.data(), bytes);
    field = std::move(written);
}

// The elements of a list at a time, each read by a reading of the parameter.
template <class T, class Reading>
std::vector<T> elementsOf(HostParameter& parameter, double time, const Reading& reading)
{
    std::vector<T> elements;
    const int count = parameter.getCount(time);
    elements.reserve(static_cast<std::size_t>(count > 0 ? count : 0));
    for (int i = 0; i < count; ++i)
        elements.push_back((parameter.*reading)(i, time));
    return elements;
}

void writeField(OmbrixParameterList::Values& values, const BoundField& bound, double time)
{
    HostParameter& parameter = values.parameters[bound.parameter];
    switch (bound.type) {
    case FieldType::Int:
        *static_cast<int*>(bound.field) = parameter.getInt(-1, time);
        break;
    case FieldType::Float:
        *static_cast<float*>(bound.field) = parameter.getFloat(-1, time);
        break;
    case FieldType::Texture:
        writeTexture<OUtils::TextureInterface>(values, bound, time);
        break;
    case FieldType::TextureFloat:
        writeTexture<OUtils::TextureFloatInterface>(values, bound, time);
        break;
    case FieldType::TextureInt:
        writeTexture<OUtils::TextureIntInterface>(values, bound, time);
        break;
    case FieldType::TextureTransform:
        writeTexture<OUtils::TextureTransformInterface>(values, bound, time);
        break;
    case FieldType::TextureVector:
        writeTexture<OUtils::TextureVectorInterface>(values, bound, time);
        break;
    case FieldType::Plugin:
        *static_cast<OUtils::PluginBase**>(bound.field) = parameter.getPlugin(-1, time);
        break;
    case FieldType::IntList:
        writeList(*static_cast<OUtils::PtrArray<int>*>(bound.field),
                  elementsOf<int>(parameter, time, &HostParameter::getInt));
        break;
    case FieldType::FloatList:
        writeList(*static_cast<OUtils::PtrArray<float>*>(bound.field),
                  elementsOf<float>(parameter, time, &HostParameter::getFloat));
        break;
    case FieldType::PluginList:
        writeList(*static_cast<OUtils::OmbrixPluginList*>(bound.field),
                  elementsOf<OUtils::PluginBase*>(parameter, time, &HostParameter::getPlugin));
        break;
    case FieldType::String: {
        auto& field = *static_cast<OUtils::CharString*>(bound.field);
        const char* text = parameter.getString(-1, time);
        if (!field.ptr() || std::strcmp(field.ptr(), text) != 0) field = text;
        break;
    }
    case FieldType::Color: {
        const OUtils::AColor color = parameter.getColor(-1, time);
        *static_cast<OUtils::Color3f*>(bound.field) = {color.r, color.g, color.b};
        break;
    }
    case FieldType::Transform:
        *static_cast<OUtils::TraceTransform*>(bound.field) = parameter.getTransform(-1, time);
        break;
    }
}

} // namespace

void updateBoundFields(OUtils::OmbrixParameterList& list, double time)
{
    OmbrixParameterList::Values& values = list.values();
    values.time = time;
    for (const BoundField& bound : values.fields)
        writeField(values, bound, time);
}

} // namespace ombrix

namespace OUtils {

using ombrix::FieldType;

void OmbrixParameterList::Values::bind(const char* name, FieldType type, void* field)
{
    const auto index = indexOf(name ? declared.findInput(name) : nullptr);
    if (!index || !field) {
        ombrix::report("no such parameter to bind", name ? name : "");
        return;
    }
    if (ombrix::fieldTypeOf(declared.all[*index]) != type) {
        ombrix::report("the field's type is not the parameter's", name);
        return;
    }
    fields.push_back({*index, type, field});
}

void OmbrixParameterList::Values::bindOutput(const char* name, PluginInterface* output)
{
    const auto index = indexOf(name ? declared.findOutput(name) : nullptr);
    if (!index) {
        ombrix::report("no such output parameter to bind", name ? name : "");
        return;
    }
    for (ombrix::BoundOutput& bound : outputs) {
        if (bound.parameter != *index) continue;
        bound.output = output; // a derived plugin puts its own in the place of its base's
        return;
    }
    outputs.push_back({*index, output});
}

void OmbrixParameterList::setParamCache(const char* name, int* field)
{
    held->bind(name, FieldType::Int, field);
}
void OmbrixParameterList::setParamCache(const char* name, float* field)
{
    held->bind(name, FieldType::Float, field);
}
void OmbrixParameterList::setParamCache(const char* name, TextureInterface** field)
{
    held->bind(name, FieldType::Texture, field);
}
void OmbrixParameterList::setParamCache(const char* name, TextureFloatInterface** field)
{
    held->bind(name, FieldType::TextureFloat, field);
}
void OmbrixParameterList::setParamCache(const char* name, TextureIntInterface** field)
{
    held->bind(name, FieldType::TextureInt, field);
}
void OmbrixParameterList::setParamCache(const char* name, TextureTransformInterface** field)
{
    held->bind(name, FieldType::TextureTransform, field);
}
void OmbrixParameterList::setParamCache(const char* name, TextureVectorInterface** field)
{
    held->bind(name, FieldType::TextureVector, field);
}
void OmbrixParameterList::setParamCache(const char* name, PluginBase** field)
{
    held->bind(name, FieldType::Plugin, field);
}
void OmbrixParameterList::setParamCache(const char* name, PtrArray<int>* field)
{
    held->bind(name, FieldType::IntList, field);
}
void OmbrixParameterList::setParamCache(const char* name, PtrArray<float>* field)
{
    held->bind(name, FieldType::FloatList, field);
}
void OmbrixParameterList::setParamCache(const char* name, OmbrixPluginList* field)
{
    held->bind(name, FieldType::PluginList, field);
}
void OmbrixParameterList::setParamCache(const char* name, CharString* field)
{
    held->bind(name, FieldType::String, field);
}
void OmbrixParameterList::setParamCache(const char* name, Color3f* field)
{
    held->bind(name, FieldType::Color, field);
}
void OmbrixParameterList::setParamCache(const char* name, TraceTransform* field)
{
    held->bind(name, FieldType::Transform, field);
}

void OmbrixParameterList::setParamCacheByIndex(int index, void* field, int /*reserved*/)
{
    const auto& all = held->declared.all;
    const auto place = static_cast<std::size_t>(index);
    const auto type = index >= 0 && place < all.size() ? ombrix::fieldTypeOf(all[place]) : std::nullopt;
    if (!type || !field) {
        ombrix::report("no such parameter to bind", std::to_string(index));
        return;
    }
    held->fields.push_back({place, *type, field});
}

void OmbrixParameterList::setOutputParamCache(const char* name, TextureInterface* output)
{
    held->bindOutput(name, output);
}
void OmbrixParameterList::setOutputParamCache(const char* name, TextureFloatInterface* output)
{
    held->bindOutput(name, output);
}
void OmbrixParameterList::setOutputParamCache(const char* name, TextureIntInterface* output)
{
    held->bindOutput(name, output);
}

void OmbrixPluginInterface::frameBegin(OmbrixRenderer* renderer)
{
    if (!paramList) return;
    const double time = renderer ? renderer->getFrameData().time : paramList->values().time;
    ombrix::updateBoundFields(*paramList, time);
}

} // namespace OUtils
