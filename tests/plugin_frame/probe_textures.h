// Textures of the tests' own over the texture bases: they give what a test says and tell what was asked.
#pragma once

#include "plugin_frame/mapped_texture.h"
#include "support/mapped_inputs.h"
#include "support/text_sink.h"
#include "support/tolerances.h"

namespace support {

// A texture over CommonTexture alone, between frameBegin and frameEnd.
class RawTexture final : public nezaiva::CommonTexture {
public:
    RawTexture(OUtils::OmbrixPluginDesc* desc, std::uint32_t flags) : CommonTexture(desc, flags)
    {
        OUtils::bindParameters(*this);
    }

    OUtils::AColor* evalRawColor(OUtils::AColor* result, const OUtils::OmbrixContext&, bool* isValid) override
    {
        ++calls;
        EXPECT_TRUE(*isValid);
        *isValid = valid;
        *result = raw;
        return result;
    }
    void getRawBounds(OUtils::AColor* lower, OUtils::AColor* upper) override
    {
        *lower = rawLower;
        *upper = rawUpper;
    }
    OUtils::AColor* evalRawGradient(OUtils::AColor* result, const OUtils::OmbrixContext&,
                                    bool* isValid) override
    {
        EXPECT_TRUE(*isValid);
        *isValid = valid;
        *result = rawGradient;
        return result;
    }
    using CommonTexture::sharedNoise;
    using CommonTexture::writeColorAdjustments;

    OUtils::AColor raw{0.25f, 0.5f, 0.75f, 0.125f};
    OUtils::AColor rawLower{0.0f, 0.25f, 0.5f, 0.25f}, rawUpper{0.5f, 0.75f, 1.0f, 0.75f};
    OUtils::AColor rawGradient{1.0f, 2.0f, 3.0f, 4.0f};
    bool valid = true;
    int calls = 0;
};

// A mapped texture that gives U, V, W as its colour and keeps its samples.
class MappedProbe final : public nezaiva::MappedTexture {
public:
    MappedProbe(OUtils::OmbrixPluginDesc* desc, std::uint32_t flags) : MappedTexture(desc, flags)
    {
        OUtils::ParameterBinder<MappedProbe> table(*this, *paramList);
        MappedTexture::parameters(table, flags);
    }

    OUtils::AColor* evalTexture(OUtils::AColor* result, const OUtils::OmbrixContext&,
                                const OUtils::UVWSample& sample) override
    {
        ++calls;
        last = sample;
        *result = {sample.uvw.x, sample.uvw.y, sample.uvw.z, 1.0f};
        return result;
    }
    OUtils::AColor* evalTextureWidth(OUtils::AColor* result, const OUtils::OmbrixContext& context,
                                     const OUtils::UVWSample& sample, const OUtils::Vector4& width) override
    {
        ++widthCalls;
        lastWidth = width;
        return MappedTexture::evalTextureWidth(result, context, sample, width);
    }
    void getTextureBounds(OUtils::AColor* lower, OUtils::AColor* upper) override
    {
        *lower = {0.125f, 0.25f, 0.375f, 0.5f};
        *upper = {0.625f, 0.75f, 0.875f, 1.0f};
    }
    OUtils::AColor* evalGradientWidth(OUtils::AColor* result, const OUtils::OmbrixContext&,
                                      const OUtils::UVWSample& sample, const OUtils::Vector4& width) override
    {
        last = sample;
        lastWidth = width;
        *result = gradient;
        return result;
    }
    using MappedTexture::buildSample;
    using MappedTexture::noiseParams;
    using MappedTexture::renderer;
    using MappedTexture::sharedNoise;
    using MappedTexture::uvwgen;

    OUtils::UVWSample last;
    OUtils::Vector4 lastWidth;
    OUtils::AColor gradient{1.0f, 2.0f, 3.0f, 4.0f};
    int calls = 0, widthCalls = 0;
};

// The declarations of MappedProbe, which depend on its flags.
class MappedProbeParams : public OUtils::OmbrixParameterListDesc {
public:
    explicit MappedProbeParams(std::uint32_t flags)
    {
        OUtils::ParameterDeclarer<MappedProbe> table(*this);
        nezaiva::MappedTexture::parameters(table, flags);
    }
};

// A texture with its declarations and its renderer, in its first frame.
template <class Texture, class Params>
class Living {
public:
    explicit Living(std::uint32_t flags,
                    int threads = 1) requires std::is_constructible_v<Params, std::uint32_t>
        : params(flags), renderer(threads), texture(&desc, flags)
    {
        begin();
    }
    explicit Living(std::uint32_t flags, int threads = 1) requires std::is_default_constructible_v<Params>
        : renderer(threads), texture(&desc, flags)
    {
        begin();
    }
    Living(const Living&) = delete;
    Living& operator=(const Living&) = delete;
    ~Living()
    {
        texture.frameEnd(&renderer);
        texture.renderEnd(&renderer);
    }

    void nextFrame()
    {
        texture.frameEnd(&renderer);
        texture.frameBegin(&renderer);
    }
    Living& set(const char* parameter, ombrix::Value value)
    {
        write(texture, parameter, std::move(value));
        nextFrame();
        return *this;
    }
    Living& connect(const char* parameter, OUtils::PluginBase& input)
    {
        writeReference(texture, parameter, &input);
        nextFrame();
        return *this;
    }

    // At a point of its own, so that no memo answers.
    OUtils::AColor color()
    {
        ++context.sampleStamp;
        OUtils::AColor result = kUnwrittenColor;
        EXPECT_EQ(texture.evalColor(&result, context), &result);
        return result;
    }
    OUtils::AColor colorGradient()
    {
        OUtils::AColor result = kUnwrittenColor;
        EXPECT_EQ(texture.evalColorGradient(&result, context), &result);
        return result;
    }
    ColorBounds bounds()
    {
        ColorBounds result;
        texture.evalColorBounds(&result.lower, &result.upper);
        return result;
    }

private:
    void begin()
    {
        texture.renderBegin(&renderer);
        texture.frameBegin(&renderer);
    }

    Params params;
    LocalDesc desc{&params};

public:
    RecordingRenderer renderer;
    Texture texture;
    TestContext context;
};

using LivingRaw = Living<RawTexture, OUtils::KindParams<RawTexture>>;
using LivingMapped = Living<MappedProbe, MappedProbeParams>;

} // namespace support
