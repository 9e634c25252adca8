// Fields of the host's own kinds for parameters that are read at other times than the frame's, before any
// frame, or only for whether the scene wrote them.
//
// They stand in a kind's table as bound fields do. Their values are those that the scene wrote last; an
// unset parameter reads as its declared default, and a field that no table attached as nothing at all.
#pragma once

#include "host/geometry/vector_math.h"
#include "host/params/host_parameters.h"

#include <ombrix/parameter_table.h>

#include <concepts>
#include <initializer_list>
#include <string>
#include <vector>

namespace ombrix {

// What every such field knows of its parameter.
class TimedParameter {
public:
    // The list is one of the host's own, which keeps its parameters in their places.
    void attach(OUtils::OmbrixParameterList& list, const char* name);

    bool isWritten() const { return parameter && parameter->value(); }
    // Whether the value depends on the time.
    bool isAnimated() const { return isWritten() && parameter->value()->times.size() > 1; }
    // The times of the written samples; none when the value does not depend on the time.
    std::vector<double> times() const;

protected:
    // The elements that the scene wrote, as they stand at a time.
    std::vector<Value> elementsAt(double time) const;

    HostParameter* parameter = nullptr;
};

// How lists are declared that no field can be bound to.
struct ColorListDeclaration {
    static int declare(OUtils::OmbrixParameterListDesc& desc, const char* name, OUtils::EmptyList,
                       const char* text, const char* metadata)
    {
        return desc.addParamColor(name, Color{}, 0, text, metadata);
    }
};
struct TextureVectorListDeclaration {
    static int declare(OUtils::OmbrixParameterListDesc& desc, const char* name, OUtils::EmptyList,
                       const char* text, const char* metadata)
    {
        return desc.addParamTextureVector(name, Vector{}, 0, text, metadata);
    }
};

// A value that is declared as Declaration::declare does.
template <class T, class DeclaredBy>
class Timed : public TimedParameter {
public:
    using Declaration = DeclaredBy;

    T at(double time) const;
};

using TimedInt = Timed<int, OUtils::ParameterField<int>>;
using TimedFloat = Timed<float, OUtils::ParameterField<float>>;
using TimedText = Timed<std::string, OUtils::ParameterField<OUtils::CharString>>;
using TimedTransform = Timed<TraceTransform, OUtils::ParameterField<TraceTransform>>;
using TimedInts = Timed<std::vector<int>, OUtils::ParameterField<OUtils::PtrArray<int>>>;
// Points and directions, which the scene writes as colors.
using TimedPoint = Timed<Vector, OUtils::ParameterField<OUtils::Color3f>>;
using TimedPoints = Timed<std::vector<Vector>, ColorListDeclaration>;
// A list of texture inputs, of which the plain values are read.
using TimedVectors = Timed<std::vector<Vector>, TextureVectorListDeclaration>;

template <>
int TimedInt::at(double time) const;
template <>
float TimedFloat::at(double time) const;
template <>
std::string TimedText::at(double time) const;
template <>
TraceTransform TimedTransform::at(double time) const;
template <>
std::vector<int> TimedInts::at(double time) const;
template <>
Vector TimedPoint::at(double time) const;
template <>
std::vector<Vector> TimedPoints::at(double time) const;
template <>
std::vector<Vector> TimedVectors::at(double time) const;

// A list of references to plugins, which never depends on the time.
template <class Interface>
class References : public TimedParameter {
public:
    using Declaration = OUtils::ParameterField<OUtils::PluginListInput<Interface>>;

    // Those that are not null. They need not have the interface.
    std::vector<OUtils::PluginBase*> plugins() const
    {
        std::vector<OUtils::PluginBase*> found;
        for (const Value& element : elementsAt(0.0)) {
            const auto* reference = std::get_if<PluginReference>(&element);
            if (reference && reference->plugin) found.push_back(reference->plugin);
        }
        return found;
    }
};

// The times at which one of the parameters has a sample, rising; a single 0 when nothing depends on the
// time. Between them and around them nothing else can happen than at one of them, but for numbers that run
// straight.
std::vector<double> sampleTimes(std::initializer_list<const TimedParameter*> parameters);

// Metadata in use by several kinds.
inline constexpr const char* kPointMetadata = "quantityType=(position)";
inline constexpr const char* kDirectionMetadata = "quantityType=(direction)";

} // namespace ombrix

template <std::derived_from<ombrix::TimedParameter> Field>
struct OUtils::ParameterField<Field> : Field::Declaration {
    static void attach(Field& field, OmbrixParameterList& list, const char* name)
    {
        field.attach(list, name);
    }
};
