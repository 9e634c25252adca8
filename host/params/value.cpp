#include "host/params/value.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace ombrix {
namespace {

// Exact at both ends, and for equal ends whatever they are.
template <class Number>
Number mix(Number a, Number b, double weight)
{
    if (a == b) return a;
    if (weight <= 0.0) return a;
    if (weight >= 1.0) return b;
    const double from = static_cast<double>(a), to = static_cast<double>(b);
    // The difference from an infinity and back would be no number.
    if (!std::isfinite(from) || !std::isfinite(to))
        return static_cast<Number>(from * (1.0 - weight) + to * weight);
    return static_cast<Number>(from + (to - from) * weight);
}

float between(float a, float b, double weight)
{
    return mix(a, b, weight);
}

OUtils::Color between(const OUtils::Color& a, const OUtils::Color& b, double weight)
{
    return {mix(a.r, b.r, weight), mix(a.g, b.g, weight), mix(a.b, b.b, weight)};
}

OUtils::AColor between(const OUtils::AColor& a, const OUtils::AColor& b, double weight)
{
    return {mix(a.r, b.r, weight), mix(a.g, b.g, weight), mix(a.b, b.b, weight), mix(a.a, b.a, weight)};
}

OUtils::Vector between(const OUtils::Vector& a, const OUtils::Vector& b, double weight)
{
    return {mix(a.x, b.x, weight), mix(a.y, b.y, weight), mix(a.z, b.z, weight)};
}

OUtils::TraceTransform between(const OUtils::TraceTransform& a, const OUtils::TraceTransform& b,
                               double weight)
{
    OUtils::TraceTransform result;
    for (int i = 0; i < 3; ++i)
        result.matrix.columns[i] = between(a.matrix.columns[i], b.matrix.columns[i], weight);
    result.offset = {mix(a.offset.x, b.offset.x, weight), mix(a.offset.y, b.offset.y, weight),
                     mix(a.offset.z, b.offset.z, weight)};
    return result;
}

// Values of kinds that do not interpolate, or of two kinds, hold the earlier one.
Value interpolated(const Value& earlier, const Value& later, double weight)
{
    return std::visit(
        [&](const auto& a) -> Value {
            using T = std::decay_t<decltype(a)>;
            const T* b = std::get_if<T>(&later);
            if constexpr (requires { between(a, a, weight); } && !std::is_integral_v<T>)
                return b ? Value(between(a, *b, weight)) : Value(a);
            else
                return a;
        },
        earlier);
}

// The sample that holds at a time, and the place between it and the next one.
struct Place {
    std::size_t sample = 0;
    double weight = 0.0;
};

Place placeAt(const ParameterValue& value, double time)
{
    const auto after = std::upper_bound(value.times.begin(), value.times.end(), time);
    if (after == value.times.begin()) return {};
    const auto index = static_cast<std::size_t>(after - value.times.begin()) - 1;
    if (after == value.times.end()) return {index, 0.0};
    return {index, (time - value.times[index]) / (*after - value.times[index])};
}

} // namespace

const char* declarationName(Declaration declaration)
{
    switch (declaration) {
    case Declaration::Bool:
        return "addParamBool";
    case Declaration::Int:
        return "addParamInt";
    case Declaration::Float:
        return "addParamFloat";
    case Declaration::Color:
        return "addParamColor";
    case Declaration::String:
        return "addParamString";
    case Declaration::Plugin:
        return "addParamPlugin";
    case Declaration::Transform:
        return "addParamTransform";
    case Declaration::Texture:
        return "addParamTexture";
    case Declaration::TextureFloat:
        return "addParamTextureFloat";
    case Declaration::TextureInt:
        return "addParamTextureInt";
    case Declaration::TextureTransform:
        return "addParamTextureTransform";
    case Declaration::TextureVector:
        return "addParamTextureVector";
    case Declaration::OutputTexture:
        return "addOutputParamTexture";
    case Declaration::OutputTextureFloat:
        return "addOutputParamTextureFloat";
    }
    return "";
}

OUtils::InterfaceId textureInterfaceOf(Declaration declaration)
{
    switch (declaration) {
    case Declaration::Texture:
        return OUtils::EXT_TEXTURE;
    case Declaration::TextureFloat:
        return OUtils::EXT_TEXTURE_FLOAT;
    case Declaration::TextureInt:
        return OUtils::EXT_TEXTURE_INT;
    case Declaration::TextureTransform:
        return OUtils::EXT_TEXTURE_TRANSFORM;
    case Declaration::TextureVector:
        return OUtils::EXT_TEXTURE_VECTOR;
    default:
        return 0;
    }
}

std::vector<Value> sampleAt(const ParameterValue& value, double time)
{
    if (value.samples.empty()) return {};
    const Place place = placeAt(value, time);
    std::vector<Value> result = value.samples[place.sample];
    if (place.weight > 0.0) {
        const std::vector<Value>& later = value.samples[place.sample + 1];
        if (later.size() == result.size())
            for (std::size_t i = 0; i < result.size(); ++i)
                result[i] = interpolated(result[i], later[i], place.weight);
    }
    return result;
}

Value elementAt(const ParameterValue& value, std::size_t index, double time)
{
    if (value.samples.empty()) return {};
    const Place place = placeAt(value, time);
    const std::vector<Value>& earlier = value.samples[place.sample];
    if (index >= earlier.size()) return {};
    if (place.weight > 0.0) {
        const std::vector<Value>& later = value.samples[place.sample + 1];
        if (later.size() == earlier.size()) return interpolated(earlier[index], later[index], place.weight);
    }
    return earlier[index];
}

const std::vector<Value>& heldSample(const ParameterValue& value, double time)
{
    static const std::vector<Value> none;
    return value.samples.empty() ? none : value.samples[placeAt(value, time).sample];
}

} // namespace ombrix
