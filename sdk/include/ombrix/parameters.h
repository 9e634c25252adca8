// Parameters: how a plugin kind declares them, and how an instance receives their values.
//
// The host implements these classes; a plug-in library calls them. Declarations run at library load on
// one thread; values are written outside rendering; bound fields change in
// OmbrixPluginInterface::frameBegin alone.
#pragma once

#include <ombrix/api.h>
#include <ombrix/char_string.h>
#include <ombrix/plugin_desc.h>
#include <ombrix/ptr_array.h>
#include <ombrix/texture_interfaces.h>
#include <ombrix/types.h>

namespace OUtils {

class OmbrixParameterList;

using OmbrixPluginList = PtrArray<PluginBase*>;

// The kind of a parameter's value.
enum class ParameterType : int {
    Int = 0,
    Float = 1,
    Double = 2,
    Bool = 3,
    Vector = 4,
    Color = 5,
    AColor = 6,
    Matrix = 7,
    Transform = 8,
    String = 9,
    Plugin = 10,
};

// A parameter with its value. An unset parameter shows its declared default. Readings are at a time in
// frames; a parameter that is not animated ignores it. The index is -1 on a single value, else 0 to
// getCount(time) - 1; another index, or another type than the parameter's, reads as zero, "" or null.
class OmbrixPluginParameter {
public:
    virtual ~OmbrixPluginParameter() = default;
    virtual const char* getName() = 0;
    // A texture input set to a plain value, or unset with a declared default, has the plain type of that
    // value; one that refers to a plugin, or is unset without a default, is a Plugin.
    virtual ParameterType getType() = 0;
    // -1 for a single value, else the number of elements that the list has at a time, in frames. Lists
    // may change their length within a frame; two lengths do not interpolate, so the earlier list holds
    // until the later one's time.
    virtual int getCount(double time) = 0;
    virtual int getInt(int index, double time) = 0; // ints and bools
    virtual float getFloat(int index, double time) = 0;
    virtual double getDouble(int index, double time) = 0;
    virtual Vector getVector(int index, double time) = 0;
    virtual AColor getColor(int index, double time) = 0; // a colour of three numbers has alpha 1
    virtual TraceTransform getTransform(int index, double time) = 0;
    virtual const char* getString(int index, double time) = 0; // valid until the next write
    // The plugin, or the object that answers an output parameter of one; null when cleared.
    virtual PluginBase* getPlugin(int index, double time) = 0;
};

// Receives one parameter a call. Returning 0 stops the enumeration.
class EnumParamsCallback {
public:
    virtual int processParam(OmbrixPluginParameter* parameter) = 0;

protected:
    ~EnumParamsCallback() = default;
};

// The declarations of a plugin kind. All add operations return the index of the new parameter. count is
// -1 for a single value and 0 for a list of any length. Texts are copied; description and metadata may
// be null. A default declared on a texture input is not a texture: the bound field of an unset input is
// null.
class OMBRIX_API OmbrixParameterListDesc {
public:
    OmbrixParameterListDesc();
    OmbrixParameterListDesc(const OmbrixParameterListDesc&) = delete;
    OmbrixParameterListDesc& operator=(const OmbrixParameterListDesc&) = delete;
    virtual ~OmbrixParameterListDesc();

    int addParamBool(const char* name, bool defaultValue, int count, const char* description,
                     const char* metadata);
    int addParamInt(const char* name, int defaultValue, int count, const char* description,
                    const char* metadata);
    int addParamFloat(const char* name, float defaultValue, int count, const char* description,
                      const char* metadata);
    int addParamColor(const char* name, const Color& defaultValue, int count, const char* description,
                      const char* metadata);
    int addParamString(const char* name, const char* defaultValue, int count, const char* description,
                       const char* metadata);
    int addParamPlugin(const char* name, InterfaceId requiredInterface, int count, const char* description,
                       const char* metadata);
    int addParamTransform(const char* name, int flag, const Transform& defaultValue, int count,
                          const char* description, const char* metadata);
    int addParamTexture(const char* name, const AColor& defaultValue, int count, const char* description,
                        const char* metadata);
    int addParamTexture(const char* name, const Color& defaultValue, int count, const char* description,
                        const char* metadata);
    int addParamTexture(const char* name, int count, const char* description, const char* metadata);
    int addParamTextureFloat(const char* name, float defaultValue, int count, const char* description,
                             const char* metadata);
    int addParamTextureFloat(const char* name, int count, const char* description, const char* metadata);
    int addParamTextureInt(const char* name, int defaultValue, int count, const char* description,
                           const char* metadata);
    int addParamTextureInt(const char* name, int count, const char* description, const char* metadata);
    int addParamTextureTransform(const char* name, const Transform& defaultValue, int count,
                                 const char* description, const char* metadata);
    int addParamTextureVector(const char* name, const Vector& defaultValue, int count,
                              const char* description, const char* metadata);
    int addOutputParamTexture(const char* name, const char* description, const char* metadata);
    int addOutputParamTextureFloat(const char* name, const char* description, const char* metadata);

    // A new list for one instance, to be given back to deleteParameterList before this object ends.
    OmbrixParameterList* newParameterList();
    void deleteParameterList(OmbrixParameterList* list);
    // Tells the host of the declared parameters; 0 without a host.
    int registerParameters(OmbrixPluginHost* host, OmbrixPluginDesc* desc);

    // The host's own record of the declarations.
    struct Declarations;
    const Declarations& declarations() const { return *declared; }

private:
    Declarations* declared;
};

// The values of one instance. A bound field must outlive the list; it is written by the host's
// frameBegin, set or not.
class OMBRIX_API OmbrixParameterList {
public:
    // Binds a field to the parameter of this name. A name that is not declared is a fault of the plugin;
    // it is reported on the debugger channel and ignored.
    void setParamCache(const char* name, int* field);
    void setParamCache(const char* name, float* field);
    void setParamCache(const char* name, TextureInterface** field);
    void setParamCache(const char* name, TextureFloatInterface** field);
    void setParamCache(const char* name, TextureIntInterface** field);
    void setParamCache(const char* name, TextureTransformInterface** field);
    void setParamCache(const char* name, TextureVectorInterface** field);
    void setParamCache(const char* name, PluginBase** field);
    void setParamCache(const char* name, PtrArray<int>* field);
    void setParamCache(const char* name, PtrArray<float>* field);
    void setParamCache(const char* name, OmbrixPluginList* field);
    void setParamCache(const char* name, CharString* field);
    void setParamCache(const char* name, Color3f* field);
    void setParamCache(const char* name, TraceTransform* field);
    // The same by the index that the declaration returned; the field has the type that the declaration
    // asks for. reserved is 0.
    void setParamCacheByIndex(int index, void* field, int reserved);
    // Binds an output parameter to the object that answers it, which lives inside the instance.
    void setOutputParamCache(const char* name, TextureInterface* output);
    void setOutputParamCache(const char* name, TextureFloatInterface* output);
    void setOutputParamCache(const char* name, TextureIntInterface* output);

    // The parameter, set or not; null for a name that is not declared or is an output. Owned by the list
    // and valid until the next write of this parameter.
    OmbrixPluginParameter* getParam(const char* name);
    // Takes the value of the declared parameter of the same name. The value is copied. Returns 1, or 0
    // when no such parameter is declared or the value is of another kind.
    int setParameter(OmbrixPluginParameter* parameter);
    // Calls the callback for each declared input parameter in order. Returns the number of calls.
    int enumParams(EnumParamsCallback& callback);

    // The host's own record of the values.
    struct Values;
    Values& values() { return *held; }

private:
    friend class OmbrixParameterListDesc;
    explicit OmbrixParameterList(Values* values) : held(values) {}
    ~OmbrixParameterList();

    Values* held;
};

} // namespace OUtils
