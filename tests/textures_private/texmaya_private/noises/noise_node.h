// A noise texture at the coordinates of a generator.
#pragma once

#include "plugin_frame/lib_desc.h"
#include "support/mapped_inputs.h"
#include "support/text_sink.h"
#include "support/tolerances.h"

namespace support {

class NoiseNode : public TestNode {
public:
    explicit NoiseNode(const char* pluginName) : TestNode(findDescriptor(*getLibDesc(), pluginName))
    {
        writeReference(*life(), "uvwgen", &generator);
        nextFrame();
    }
    void nextFrame()
    {
        life()->frameEnd(&renderer);
        life()->frameBegin(&renderer);
    }
    NoiseNode& set(const char* parameter, ombrix::Value value)
    {
        write(*life(), parameter, std::move(value));
        nextFrame();
        return *this;
    }
    // At a point of its own, so that no memo answers.
    OUtils::AColor at(float u, float v, float w)
    {
        generator.sample.uvw = {u, v, w, 0.0f};
        ++context.sampleStamp;
        return color();
    }

    TestGenerator generator;
};

} // namespace support
