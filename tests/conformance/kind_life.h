// The life of a plugin instance as a stranger leads it, with everything that it shows on the way.
#pragma once

#include "every_input.h"

#include "host/params/value.h"
#include "support/mapped_inputs.h"
#include "support/test_textures.h"
#include "support/text_sink.h"

#include <list>
#include <string>
#include <vector>

namespace conformance {

// The declarations of a kind, as its registration hands them to a host.
std::vector<ombrix::ParameterDeclaration> declarationsOf(OUtils::PluginDesc* desc);

// What an evaluation is asked at.
struct ShadedPoint {
    OUtils::Vector shadePoint{0.3f, 0.7f, 0.2f};
    OUtils::Vector diff{0.01f, 0.02f, 0.0f};
    std::uint32_t shadeFlags = 0;
    int threadIndex = 0;
    int rayDepth = 0;
    int filtering = 0;
    OUtils::PluginBase* surface = nullptr;
};

// Points that differ in everything that evaluations read: place, flags, depth, filtering and surface.
std::vector<ShadedPoint> ordinaryPoints(OUtils::PluginBase* surface);
// The same with coordinates that are no finite numbers.
std::vector<ShadedPoint> brokenPoints(OUtils::PluginBase* surface);

// A made instance. It shows what it gives as text, every float with the digits that tell it from all
// others, so that two instances agree bit for bit where their texts are equal.
class KindLife {
public:
    // Throws what newPlugin throws; made() is false when that gives null.
    explicit KindLife(OUtils::PluginDesc* descriptor);
    KindLife(const KindLife&) = delete;
    KindLife& operator=(const KindLife&) = delete;
    ~KindLife();

    bool made() const { return plugin != nullptr; }
    OUtils::PluginBase* base() const { return plugin; }
    OUtils::OmbrixPluginInterface* life() const { return host; }
    const std::vector<ombrix::ParameterDeclaration>& declarations() const { return declared; }

    // Writes a value into a parameter, by its place among the declarations.
    void write(std::size_t parameter, ombrix::Value value);
    // Connects an input of its own to every parameter that takes one, their levels a spread apart. A second
    // call moves the levels.
    void connectAll(float level, float spread = 0.0625f);
    // Sets one parameter that holds or takes floats to a level: the input's, or the value's channels.
    // False for a parameter without floats.
    bool setLevel(std::size_t parameter, float level);

    // A whole render: two frames with everything that an instance gives at each point, and its GPU text.
    std::string render(const std::vector<ShadedPoint>& points,
                       support::TextKind kind = support::TextKind::Understood);
    // The parts of render. In frame, an evaluation that allocates fails the test.
    void begin();
    void end();
    std::string frame(const std::vector<ShadedPoint>& points,
                      support::TextKind kind = support::TextKind::Understood);
    std::string evaluations(const std::vector<ShadedPoint>& points);
    // What has a GPU form: the outputs behind the instance itself.
    std::vector<OUtils::RTTexInterface*> gpuTextures() const;

    support::RecordingRenderer renderer;

private:
    std::string sources(support::TextKind kind) const;
    EveryInput* inputFor(std::size_t parameter, float level);

    OUtils::PluginDesc* desc;
    std::vector<ombrix::ParameterDeclaration> declared;
    std::list<EveryInput> inputs;     // outlive the instance
    std::vector<EveryInput*> inputOf; // by parameter; null: not connected
    OUtils::PluginBase* plugin = nullptr;
    OUtils::OmbrixPluginInterface* host = nullptr;
};

} // namespace conformance
