// The texture inputs of a plugin, as fields: each holds what the scene connected, or null, and what the
// input reads as while nothing is connected.
//
// A parameter table (parameter_table.h) binds the field and writes what unset reads as. The host writes
// the pointer in frameBegin; while rendering nothing changes, and any number of threads read. An unset
// input calls nothing.
#pragma once

#include <ombrix/context.h>
#include <ombrix/mapping_interfaces.h>
#include <ombrix/ptr_array.h>
#include <ombrix/texture_interfaces.h>
#include <ombrix/types.h>

namespace OUtils {

struct FloatRange {
    float lower, upper;
};
struct ColorRange {
    AColor lower, upper;
};
struct VectorRange {
    Vector lower, upper;
};

// What holds an input's interface; a test for null reads as one of the input.
template <class Interface>
struct Input {
    Interface* texture = nullptr;

    explicit operator bool() const { return texture != nullptr; }
    // To be handed on, to getRTTexSource for one. May be null.
    operator Interface*() const { return texture; }
    Interface* operator->() const { return texture; }
};

struct FloatInput : Input<TextureFloatInterface> {
    float unset = 0.0f;

    float operator()(const OmbrixContext& context) const { return valueOr(unset, context); }
    // With another number while it is unset.
    float valueOr(float otherwise, const OmbrixContext& context) const
    {
        if (!texture) [[likely]]
            return otherwise;
        return texture->evalFloat(context);
    }
    // As a flag: on at everything but 0, NaN included.
    bool isOn(const OmbrixContext& context) const { return (*this)(context) != 0.0f; }

    // What an input leaves unwritten is 0 below and 1 above.
    FloatRange bounds() const { return boundsOr({unset, unset}); }
    FloatRange boundsOr(const FloatRange& otherwise) const
    {
        if (!texture) return otherwise;
        FloatRange range{0.0f, 1.0f};
        texture->evalFloatBounds(&range.lower, &range.upper);
        return range;
    }
};

struct ColorInput : Input<TextureInterface> {
    AColor unset;

    // Alpha as the input gives it.
    AColor operator()(const OmbrixContext& context) const { return valueOr(unset, context); }
    // With another colour while it is unset.
    AColor valueOr(const AColor& otherwise, const OmbrixContext& context) const
    {
        if (!texture) [[likely]]
            return otherwise;
        AColor color;
        texture->evalColor(&color, context);
        return color;
    }
    // Without alpha.
    Color rgb(const OmbrixContext& context) const
    {
        const AColor color = (*this)(context);
        return {color.r, color.g, color.b};
    }
    // Straight into a result: for nodes that pass an input on. Returns result.
    AColor* evalColor(AColor* result, const OmbrixContext& context) const
    {
        if (!texture) [[likely]]
            *result = unset;
        else
            texture->evalColor(result, context);
        return result;
    }

    // What an input leaves unwritten is 0 below and 1 above.
    ColorRange bounds() const { return boundsOr({unset, unset}); }
    ColorRange boundsOr(const ColorRange& otherwise) const
    {
        if (!texture) return otherwise;
        ColorRange range{{0.0f, 0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f, 1.0f}};
        texture->evalColorBounds(&range.lower, &range.upper);
        return range;
    }
    // Zero without an input.
    AColor gradient(const OmbrixContext& context) const
    {
        AColor gradient;
        if (texture) texture->evalColorGradient(&gradient, context);
        return gradient;
    }
};

// The input's color under an alpha of its own, straight into a result: color first, then alpha. Returns
// result.
inline AColor* evalColorWithAlpha(AColor* result, const ColorInput& color, const FloatInput& alpha,
                                  const OmbrixContext& context)
{
    color.evalColor(result, context);
    result->a = alpha(context);
    return result;
}

struct IntInput : Input<TextureIntInterface> {
    int unset = 0;

    int operator()(const OmbrixContext& context) const { return texture ? texture->evalInt(context) : unset; }
};

struct TransformInput : Input<TextureTransformInterface> {
    Transform unset;

    Transform operator()(const OmbrixContext& context) const
    {
        Transform transform = unset;
        if (texture) texture->evalTransform(&transform, context);
        return transform;
    }
};

struct VectorInput : Input<TextureVectorInterface> {
    Vector unset;

    Vector operator()(const OmbrixContext& context) const
    {
        Vector vector = unset;
        if (texture) texture->evalVector(&vector, context);
        return vector;
    }

    // What an input leaves unwritten is 0 below and 1 above.
    VectorRange bounds() const
    {
        if (!texture) return {unset, unset};
        VectorRange range{{0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f}};
        texture->evalVectorBounds(&range.lower, &range.upper);
        return range;
    }
};

// A reference to a plugin, of which one interface is wanted. resolve() looks the interface up, in
// frameBegin, after the host's own; a plugin that lacks it counts as none.
template <class Wanted>
struct PluginInput {
    using Interface = Wanted;

    PluginBase* plugin = nullptr;
    Interface* found = nullptr;

    void resolve() { found = find<Interface>(plugin); }

    explicit operator bool() const { return found != nullptr; }
    operator Interface*() const { return found; }
    Interface* operator->() const { return found; }
};

using UVWGenInput = PluginInput<UVWGenInterface>;

// A list of such references. An entry that is null, or that lacks the interface, stays in the list as a
// null. Without memory the resolved list is empty.
template <class Wanted>
struct PluginListInput {
    using Interface = Wanted;

    PtrArray<PluginBase*> plugins;

    void resolve()
    {
        found.alloc(plugins.count());
        for (int i = 0; i < found.count(); ++i)
            found[i] = find<Interface>(plugins[i]);
    }
    int count() const { return found.count(); }
    Interface* operator[](int i) const { return found[i]; }

private:
    PtrArray<Interface*> found;
};

} // namespace OUtils
