// TransformToTex: passes a transform on, as a texture that an output parameter can be connected to. It has
// no GPU form.

#include "plugin_frame/kind_desc.h"

namespace nezaiva {

using namespace OUtils;

namespace {

class TransformToTex final : public Offers<OmbrixPlugin, TextureTransformInterface> {
public:
    using Offers::Offers;

    // Kept as is: declared as a colour texture, while an instance is a transform texture. The description
    // ends in the middle of a word.
    static constexpr Identity kIdentity{
        2010021011,
        "TransformToTex",
        "Converts a single transform or transform output parameter to a transform texture. For "
        "passing to parameters that won't w",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("input", &TransformToTex::input, Transform{});
    }

    void evalTransform(Transform* result, const OmbrixContext& context) override { *result = input(context); }

private:
    TransformInput input;
};

using TransformToTexParams = KindParams<TransformToTex>;
using TransformToTexDesc = KindDesc<TransformToTex, TransformToTexParams>;
TransformToTexDesc transformToTexDesc;

} // namespace

} // namespace nezaiva
