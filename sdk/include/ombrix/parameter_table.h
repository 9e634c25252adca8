// One table for each plugin kind: a line a parameter, which declares it, binds it to a field of the
// instance and says what it reads as while it is unset.
//
//     class Mix final : public Offers<OmbrixTexture> {
//     public:
//         static constexpr Identity kIdentity{990000002, "Mix", "Mixes two colors [gpuSupport=(none)]",
//                                             {EXT_TEXTURE}};
//         template <class Table> static void parameters(Table& p)
//         {
//             p("color_a", &Mix::color_a, Color{1.0f, 1.0f, 1.0f}, "First color");
//             p("color_b", &Mix::color_b, noDefault, "Second color");
//             p("amount", &Mix::amount, 0.5f, unsetReads(1.0f), "How much of the second", "minValue=(0)");
//             p("mode", &Mix::mode, 0, "What is done", "enum=(0:Mix; 1:Add)");
//             p.output("color", itself, "The resulting color");
//             p.output("out_alpha", &Mix::alphaOutput, "The resulting alpha");
//         }
//     private:
//         ColorInput color_a, color_b;
//         FloatInput amount;
//         int mode = 0;
//     };
//
// The function runs once for the kind, while the library is loaded, with a ParameterDeclarer, and once for
// each instance with a ParameterBinder. The field's type and the default's type choose the declaration:
//
//     field                 default          declaration
//     int                   bool             addParamBool
//     int                   int              addParamInt
//     float                 float            addParamFloat
//     Color3f               Color            addParamColor
//     CharString            const char*      addParamString
//     TraceTransform        TransformDefault addParamTransform
//     PtrArray<int>         emptyList        addParamInt, a list
//     PtrArray<float>       emptyList        addParamFloat, a list
//     ColorInput            AColor or Color  addParamTexture, or noDefault
//     FloatInput            float            addParamTextureFloat, or noDefault
//     IntInput              int              addParamTextureInt, or noDefault
//     TransformInput        Transform        addParamTextureTransform
//     VectorInput           Vector           addParamTextureVector
//     PluginInput<I>        noDefault        addParamPlugin of I
//     PluginListInput<I>    emptyList        addParamPlugin of I, a list
//
// A field is a pointer to a member, of the kind or of a base of it; within(&Mix::inputs, &Inputs::amount)
// for a member of a member; a function that gives a reference into an instance; or unbound<int> for a
// parameter that is declared as an int's is and bound to nothing. Names and texts are literals, or outlive
// the library.
#pragma once

#include <ombrix/inputs.h>
#include <ombrix/parameters.h>

#include <functional>
#include <type_traits>

namespace OUtils {

// A texture input that is declared without a default, and a reference to a plugin, which has none.
struct NoDefault {};
inline constexpr NoDefault noDefault{};

// A list of any length, empty while it is unset.
struct EmptyList {};
inline constexpr EmptyList emptyList{};

// The default of a plain transform, and the flag of its declaration: 1 for one from an object's space to
// the world.
struct TransformDefault {
    int flag = 0;
    Transform value;
};

// What an unset input reads as, where that differs from the declared default.
template <class Value>
struct UnsetReads {
    Value value;
};
template <class Value>
constexpr UnsetReads<Value> unsetReads(const Value& value)
{
    return {value};
}

// The field inner of the member outer.
template <class Outer, class Inner>
constexpr auto within(Outer outer, Inner inner)
{
    return [outer, inner](auto& instance) -> decltype(auto) {
        return std::invoke(inner, std::invoke(outer, instance));
    };
}

// In the place of a field: the parameter is declared as one of the type Field is, and has no field.
template <class Field>
struct Unbound {
};
template <class Field>
inline constexpr Unbound<Field> unbound{};

// The output that the instance answers itself.
struct Itself {
    template <class Kind>
    Kind& operator()(Kind& plugin) const
    {
        return plugin;
    }
};
inline constexpr Itself itself{};

// How a parameter of a field's type is declared, and what of the field is bound. A library may specialise
// it for fields of its own. A field that reads its parameter itself, whenever it is asked, has
// attach(field, list, name) in the place of bound(field): the list has the parameter of this name, and lives
// as long as the instance.
template <class Field>
struct ParameterField;

template <>
struct ParameterField<int> {
    static int declare(OmbrixParameterListDesc& desc, const char* name, bool value, const char* text,
                       const char* metadata)
    {
        return desc.addParamBool(name, value, -1, text, metadata);
    }
    static int declare(OmbrixParameterListDesc& desc, const char* name, int value, const char* text,
                       const char* metadata)
    {
        return desc.addParamInt(name, value, -1, text, metadata);
    }
    static int* bound(int& field) { return &field; }
};

template <>
struct ParameterField<float> {
    static int declare(OmbrixParameterListDesc& desc, const char* name, float value, const char* text,
                       const char* metadata)
    {
        return desc.addParamFloat(name, value, -1, text, metadata);
    }
    static float* bound(float& field) { return &field; }
};

template <>
struct ParameterField<Color3f> {
    static int declare(OmbrixParameterListDesc& desc, const char* name, const Color& value, const char* text,
                       const char* metadata)
    {
        return desc.addParamColor(name, value, -1, text, metadata);
    }
    static Color3f* bound(Color3f& field) { return &field; }
};

template <>
struct ParameterField<CharString> {
    static int declare(OmbrixParameterListDesc& desc, const char* name, const char* value, const char* text,
                       const char* metadata)
    {
        return desc.addParamString(name, value, -1, text, metadata);
    }
    static CharString* bound(CharString& field) { return &field; }
};

template <>
struct ParameterField<TraceTransform> {
    static int declare(OmbrixParameterListDesc& desc, const char* name, const TransformDefault& value,
                       const char* text, const char* metadata)
    {
        return desc.addParamTransform(name, value.flag, value.value, -1, text, metadata);
    }
    static TraceTransform* bound(TraceTransform& field) { return &field; }
};

template <>
struct ParameterField<PtrArray<int>> {
    static int declare(OmbrixParameterListDesc& desc, const char* name, EmptyList, const char* text,
                       const char* metadata)
    {
        return desc.addParamInt(name, 0, 0, text, metadata);
    }
    static PtrArray<int>* bound(PtrArray<int>& field) { return &field; }
};

template <>
struct ParameterField<PtrArray<float>> {
    static int declare(OmbrixParameterListDesc& desc, const char* name, EmptyList, const char* text,
                       const char* metadata)
    {
        return desc.addParamFloat(name, 0.0f, 0, text, metadata);
    }
    static PtrArray<float>* bound(PtrArray<float>& field) { return &field; }
};

template <>
struct ParameterField<ColorInput> {
    template <class Value>
    static int declare(OmbrixParameterListDesc& desc, const char* name, const Value& value, const char* text,
                       const char* metadata)
    {
        if constexpr (std::is_same_v<Value, NoDefault>)
            return desc.addParamTexture(name, -1, text, metadata);
        else
            return desc.addParamTexture(name, value, -1, text, metadata);
    }
    static TextureInterface** bound(ColorInput& field) { return &field.texture; }
    static void setUnset(ColorInput& field, const AColor& value) { field.unset = value; }
    static void setUnset(ColorInput& field, const Color& value)
    {
        field.unset = {value.r, value.g, value.b, 1.0f};
    }
};

template <>
struct ParameterField<FloatInput> {
    static int declare(OmbrixParameterListDesc& desc, const char* name, float value, const char* text,
                       const char* metadata)
    {
        return desc.addParamTextureFloat(name, value, -1, text, metadata);
    }
    static int declare(OmbrixParameterListDesc& desc, const char* name, NoDefault, const char* text,
                       const char* metadata)
    {
        return desc.addParamTextureFloat(name, -1, text, metadata);
    }
    static TextureFloatInterface** bound(FloatInput& field) { return &field.texture; }
    static void setUnset(FloatInput& field, float value) { field.unset = value; }
};

template <>
struct ParameterField<IntInput> {
    static int declare(OmbrixParameterListDesc& desc, const char* name, int value, const char* text,
                       const char* metadata)
    {
        return desc.addParamTextureInt(name, value, -1, text, metadata);
    }
    static int declare(OmbrixParameterListDesc& desc, const char* name, NoDefault, const char* text,
                       const char* metadata)
    {
        return desc.addParamTextureInt(name, -1, text, metadata);
    }
    static TextureIntInterface** bound(IntInput& field) { return &field.texture; }
    static void setUnset(IntInput& field, int value) { field.unset = value; }
};

template <>
struct ParameterField<TransformInput> {
    static int declare(OmbrixParameterListDesc& desc, const char* name, const Transform& value,
                       const char* text, const char* metadata)
    {
        return desc.addParamTextureTransform(name, value, -1, text, metadata);
    }
    static TextureTransformInterface** bound(TransformInput& field) { return &field.texture; }
    static void setUnset(TransformInput& field, const Transform& value) { field.unset = value; }
};

template <>
struct ParameterField<VectorInput> {
    static int declare(OmbrixParameterListDesc& desc, const char* name, const Vector& value, const char* text,
                       const char* metadata)
    {
        return desc.addParamTextureVector(name, value, -1, text, metadata);
    }
    static TextureVectorInterface** bound(VectorInput& field) { return &field.texture; }
    static void setUnset(VectorInput& field, const Vector& value) { field.unset = value; }
};

template <class Interface>
struct ParameterField<PluginInput<Interface>> {
    static int declare(OmbrixParameterListDesc& desc, const char* name, NoDefault, const char* text,
                       const char* metadata)
    {
        return desc.addParamPlugin(name, Interface::kId, -1, text, metadata);
    }
    static PluginBase** bound(PluginInput<Interface>& field) { return &field.plugin; }
};

template <class Interface>
struct ParameterField<PluginListInput<Interface>> {
    static int declare(OmbrixParameterListDesc& desc, const char* name, EmptyList, const char* text,
                       const char* metadata)
    {
        return desc.addParamPlugin(name, Interface::kId, 0, text, metadata);
    }
    static OmbrixPluginList* bound(PluginListInput<Interface>& field) { return &field.plugins; }
};

// The type of the field that a pointer to a member, or a function, leads to in an instance.
template <class Kind, class Member>
using FieldOf = std::remove_cvref_t<std::invoke_result_t<const Member&, Kind&>>;

// Declares the parameters of a kind, in the order of its table.
template <class Kind>
class ParameterDeclarer {
public:
    explicit ParameterDeclarer(OmbrixParameterListDesc& parameters) : desc(parameters) {}

    // A single value, a list, or a reference. text and metadata may be null.
    template <class Member, class Default>
    void operator()(const char* name, const Member& /*field*/, const Default& value,
                    const char* text = nullptr, const char* metadata = nullptr)
    {
        ParameterField<FieldOf<Kind, Member>>::declare(desc, name, value, text, metadata);
    }
    template <class Field, class Default>
    void operator()(const char* name, const Unbound<Field>& /*none*/, const Default& value,
                    const char* text = nullptr, const char* metadata = nullptr)
    {
        ParameterField<Field>::declare(desc, name, value, text, metadata);
    }
    template <class Member, class Default, class Unset>
    void operator()(const char* name, const Member& field, const Default& value,
                    const UnsetReads<Unset>& /*unset*/, const char* text = nullptr,
                    const char* metadata = nullptr)
    {
        (*this)(name, field, value, text, metadata);
    }

    // An output parameter, of the kind that the object which answers it is: a member, or a function that
    // gives the object of an instance. An int texture answers a float output.
    template <class Member>
    void output(const char* name, const Member& /*object*/, const char* text = nullptr,
                const char* metadata = nullptr)
    {
        if constexpr (std::is_base_of_v<TextureInterface, FieldOf<Kind, Member>>)
            desc.addOutputParamTexture(name, text, metadata);
        else
            desc.addOutputParamTextureFloat(name, text, metadata);
    }

    // An output parameter that a base declares, answered by another object than the base's.
    template <class Member>
    void answeredBy(const char* /*name*/, const Member& /*object*/)
    {
    }

    // The same table, for a part of it whose fields are bound by their indices.
    ParameterDeclarer& byIndex() { return *this; }

private:
    OmbrixParameterListDesc& desc;
};

// Binds the fields of one instance, in the order of the kind's table.
template <class Kind>
class ParameterBinder {
public:
    ParameterBinder(Kind& instance, OmbrixParameterList& values) : plugin(instance), list(values) {}

    template <class Member, class Default>
    void operator()(const char* name, const Member& field, const Default& value, const char* = nullptr,
                    const char* = nullptr)
    {
        bind(name, field);
        read(field, value);
    }
    template <class Member, class Default, class Unset>
    void operator()(const char* name, const Member& field, const Default& /*value*/,
                    const UnsetReads<Unset>& unset, const char* = nullptr, const char* = nullptr)
    {
        bind(name, field);
        read(field, unset.value);
    }
    template <class Field, class Default>
    void operator()(const char* /*name*/, const Unbound<Field>& /*none*/, const Default& /*value*/,
                    const char* = nullptr, const char* = nullptr)
    {
        ++index;
    }

    template <class Member>
    void output(const char* name, const Member& object, const char* = nullptr, const char* = nullptr)
    {
        answeredBy(name, object);
        ++index;
    }
    template <class Member>
    void answeredBy(const char* name, const Member& object)
    {
        using Object = FieldOf<Kind, Member>;
        Object& answering = std::invoke(object, plugin);
        if constexpr (std::is_base_of_v<TextureInterface, Object>)
            list.setOutputParamCache(name, static_cast<TextureInterface*>(&answering));
        else if constexpr (std::is_base_of_v<TextureFloatInterface, Object>)
            list.setOutputParamCache(name, static_cast<TextureFloatInterface*>(&answering));
        else
            list.setOutputParamCache(name, static_cast<TextureIntInterface*>(&answering));
    }

    class ByIndex {
    public:
        explicit ByIndex(ParameterBinder& whole) : binder(whole) { binder.boundByIndex = true; }
        ~ByIndex() { binder.boundByIndex = false; }
        ByIndex(const ByIndex&) = delete;
        ByIndex& operator=(const ByIndex&) = delete;

        template <class... Arguments>
        void operator()(const Arguments&... arguments)
        {
            binder(arguments...);
        }
        template <class... Arguments>
        void output(const Arguments&... arguments)
        {
            binder.output(arguments...);
        }

    private:
        ParameterBinder& binder;
    };
    // While the returned table lives, fields are bound by the index that their declaration returned.
    ByIndex byIndex() { return ByIndex(*this); }

private:
    template <class Member>
    void bind(const char* name, const Member& field)
    {
        using Field = ParameterField<FieldOf<Kind, Member>>;
        auto& bound = std::invoke(field, plugin);
        if constexpr (requires { Field::attach(bound, list, name); })
            Field::attach(bound, list, name);
        else if (boundByIndex)
            list.setParamCacheByIndex(index, Field::bound(bound), 0);
        else
            list.setParamCache(name, Field::bound(bound));
        ++index;
    }
    template <class Member, class Value>
    void read(const Member& field, const Value& value)
    {
        using Field = ParameterField<FieldOf<Kind, Member>>;
        if constexpr (requires { Field::setUnset(std::invoke(field, plugin), value); })
            Field::setUnset(std::invoke(field, plugin), value);
    }

    Kind& plugin;
    OmbrixParameterList& list;
    int index = 0; // of the next parameter in the order of declaration
    bool boundByIndex = false;
};

// The declarations of a kind: what its table says.
template <class Kind>
class KindParams : public OmbrixParameterListDesc {
public:
    KindParams()
    {
        ParameterDeclarer<Kind> table(*this);
        Kind::parameters(table);
    }
};

// Binds the fields of a new instance to its parameter list, if it has one.
template <class Kind>
void bindParameters(Kind& instance)
{
    if (!instance.paramList) return;
    ParameterBinder<Kind> table(instance, *instance.paramList);
    Kind::parameters(table);
}

} // namespace OUtils
