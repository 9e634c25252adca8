#include "host/builtin/uvw_value.h"

#include "host/builtin/context_override.h"
#include "host/builtin/mapping.h"
#include "host/plugins/builtin_desc.h"

namespace ombrix {

using OUtils::OmbrixContext;
using OUtils::UVWSample;

template <class Table>
void UVWValue::parameters(Table& p)
{
    p("valid", &UVWValue::valid, true, "Whether the coordinates are valid");
    p("uvw", &UVWValue::uvw, Vector{}, "The coordinates");
    p("du", &UVWValue::du, Vector{}, "Their derivative along the first screen axis");
    p("dv", &UVWValue::dv, Vector{}, "Their derivative along the second screen axis");
    p("columns", &UVWValue::columns, OUtils::emptyList,
      "The three columns of the linear map from positions; unset, the identity", kThreeElementsMetadata);
    ValueTexture::parameters(p);
}

void UVWValue::frameBegin(OUtils::OmbrixRenderer* renderer)
{
    ValueTexture::frameBegin(renderer);
    linear = Matrix{};
    const std::vector<Vector> given = columns.at(time);
    for (std::size_t i = 0; i < given.size() && i < 3; ++i)
        linear.columns[i] = given[i];
}

UVWOverride UVWValue::ownValue(const OmbrixContext& context) const
{
    return {valid != 0, uvw(context), du(context), dv(context), linear};
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

int UVWValue::evalUVWTransform(const OmbrixContext& context, Transform* result)
{
    const UVWOverride value = valueIn(context);
    result->matrix = value.columns;
    result->offset = value.uvw;
    return value.valid ? 1 : 0;
}

namespace {

BuiltinDesc<UVWValue> uvwValueDesc;

} // namespace

} // namespace ombrix
