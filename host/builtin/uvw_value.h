// UVWValue: the same coordinates at every point.
#pragma once

#include "host/builtin/value_source.h"
#include "host/context/host_context.h"

namespace ombrix {

class UVWValue final : public ValueTexture<OUtils::OmbrixUVWGen> {
public:
    using ValueTexture::ValueTexture;

    static constexpr OUtils::Identity kIdentity{
        2019030106,
        "UVWValue",
        "Gives the same UVW coordinates at every point [gpuSupport=(partial)]",
        {OUtils::EXT_UVWGEN}};

    template <class Table>
    static void parameters(Table& p);

    void frameBegin(OUtils::OmbrixRenderer* renderer) override;

    int evalUVW(const OUtils::OmbrixContext& context, OUtils::UVWSample* result) override;
    int evalUVWDerivs(const OUtils::OmbrixContext& context, OUtils::UVWSample* result) override;
    int evalUVWTransform(const OUtils::OmbrixContext& context, OUtils::Transform* result) override;

    // What it gives in a context that says nothing else.
    UVWOverride ownValue(const OUtils::OmbrixContext& context) const;

private:
    UVWOverride valueIn(const OUtils::OmbrixContext& context) const;

    int valid = 1;
    OUtils::VectorInput uvw, du, dv;
    TimedVectors columns;
    OUtils::Matrix linear; // of the frame
};

} // namespace ombrix
