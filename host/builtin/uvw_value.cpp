#include "host/builtin/uvw_value.h"

#include "host/builtin/builtin_metadata.h"
#include "host/builtin/context_override.h"
#include "host/builtin/value_source.h"
#include "host/plugins/registry.h"

namespace ombrix {

namespace {

using OUtils::OmbrixContext;
using OUtils::UVWSample;
using OUtils::Vector;

class UVWValueParams : public OUtils::OmbrixParameterListDesc {
public:
    UVWValueParams()
    {
        addParamBool("valid", true, -1, "Whether the coordinates are valid", nullptr);
        addParamTextureVector("uvw", Vector(), -1, "The coordinates", nullptr);
        addParamTextureVector("du", Vector(), -1, "Their derivative along the first screen axis", nullptr);
        addParamTextureVector("dv", Vector(), -1, "Their derivative along the second screen axis", nullptr);
        addParamTextureVector("columns", Vector(), 0,
                              "The three columns of the linear map from positions; unset, the identity",
                              kThreeElementsMetadata);
        declareSource(*this);
    }
};

OUtils::Vector4 padded(const Vector& v)
{
    return {v.x, v.y, v.z, 0.0f};
}

Vector valueOf(OUtils::TextureVectorInterface* input, const OmbrixContext& context)
{
    Vector value;
    if (input) input->evalVector(&value, context);
    return value;
}

} // namespace

UVWValue::UVWValue(OUtils::OmbrixPluginDesc* desc) : OmbrixUVWGen(desc)
{
    paramList->setParamCache("valid", &valid);
    paramList->setParamCache("uvw", &uvw);
    paramList->setParamCache("du", &du);
    paramList->setParamCache("dv", &dv);
}

OUtils::PluginInterface* UVWValue::getInterface(OUtils::InterfaceId id)
{
    if (id == OUtils::EXT_RTTEX && sourceKindOf(*paramList) != SourceKind::None)
        return static_cast<OUtils::RTTexInterface*>(this);
    return OmbrixUVWGen::getInterface(id);
}

void UVWValue::frameBegin(OUtils::OmbrixRenderer* renderer)
{
    OmbrixUVWGen::frameBegin(renderer);
    if (renderer) time = renderer->getFrameData().time;
    columns = OUtils::Matrix();
    OUtils::OmbrixPluginParameter* given = paramList->getParam("columns");
    for (int i = 0; i < 3 && i < given->getCount(time); ++i)
        columns.columns[i] = given->getVector(i, time);
}

UVWOverride UVWValue::ownValue(const OmbrixContext& context) const
{
    return {valid != 0, valueOf(uvw, context), valueOf(du, context), valueOf(dv, context), columns};
}

UVWOverride UVWValue::valueIn(const OmbrixContext& context) const
{
    const auto* given = contextOverride<UVWOverride>(context, this);
    return given ? *given : ownValue(context);
}

int UVWValue::evalUVW(const OmbrixContext& context, UVWSample* result)
{
    const UVWOverride value = valueIn(context);
    result->uvw = padded(value.uvw);
    return value.valid ? 1 : 0;
}

int UVWValue::evalUVWDerivs(const OmbrixContext& context, UVWSample* result)
{
    const UVWOverride value = valueIn(context);
    result->uvw = padded(value.uvw);
    result->du = padded(value.du);
    result->dv = padded(value.dv);
    return value.valid ? 1 : 0;
}

int UVWValue::evalUVWTransform(const OmbrixContext& context, OUtils::Transform* result)
{
    const UVWOverride value = valueIn(context);
    result->matrix = value.columns;
    result->offset = value.uvw;
    return value.valid ? 1 : 0;
}

int UVWValue::getSource(const char* name, const char* tag, const char* descriptor,
                        OUtils::ShaderSource& source, OUtils::OCLData& /*data*/)
{
    return writeValueSource(*paramList, time, name, tag, descriptor, "", source);
}

namespace {

BuiltinDesc<UVWValue, UVWValueParams>
    uvwValueDesc({2019030106,
                  "UVWValue",
                  "Gives the same UVW coordinates at every point [gpuSupport=(partial)]",
                  {OUtils::EXT_UVWGEN}});

} // namespace

} // namespace ombrix
