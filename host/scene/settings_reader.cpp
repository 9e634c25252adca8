#include "host/scene/settings_reader.h"

#include "host/renderer/setting_limits.h"
#include "host/scene/key_table.h"

#include <fmt/format.h>

#include <cmath>

namespace ombrix {

namespace {

template <int lowest, int highest>
std::optional<int> readIntWithin(const JsonPlace& place)
{
    return readIntBetween(place, lowest, highest);
}

std::optional<float> readShutterLength(const JsonPlace& place)
{
    const auto length = readFiniteFloat(place);
    if (!length || *length >= 0.0f) return length;
    place.error(fmt::format("takes a length of 0 frames or more, not {}", *length));
    return {};
}

std::optional<double> readFps(const JsonPlace& place)
{
    const auto fps = readFiniteDouble(place);
    if (!fps || *fps > 0.0) return fps;
    place.error(fmt::format("takes a number of frames a second above 0, not {}", *fps));
    return {};
}

std::optional<OUtils::VectorD> readSceneOrigin(const JsonPlace& place)
{
    const auto origin = readVectorD(place);
    if (!origin || (std::isfinite(origin->x) && std::isfinite(origin->y) && std::isfinite(origin->z)))
        return origin;
    place.error("takes finite numbers");
    return {};
}

using Blur = MotionBlurSettings;
constexpr KeyReader<Blur> kMotionBlurKeys[] = {
    {"on", into<&Blur::on, readBool>},
    {"shutter_length", into<&Blur::shutterLength, readShutterLength>},
    {"shutter_center", into<&Blur::shutterCenter, readFiniteFloat>},
    {"geometry_samples", into<&Blur::geometrySamples, readIntWithin<1, kMostGeometrySamples>>},
};

using Settings = SceneSettings;
constexpr KeyReader<Settings> kSettingsKeys[] = {
    {"frame", into<&Settings::frame, readFiniteDouble>},
    {"fps", into<&Settings::fps, readFps>},
    {"threads", into<&Settings::threads, readIntWithin<0, kMostThreads>>},
    {"width", into<&Settings::width, readIntWithin<1, kLargestPictureSide>>},
    {"height", into<&Settings::height, readIntWithin<1, kLargestPictureSide>>},
    {"samples", into<&Settings::samples, readIntWithin<1, kMostSamples>>},
    {"motion_blur",
     [](const JsonPlace& place, Settings& settings) {
         readKeys(place, "\"motion_blur\"", kMotionBlurKeys, settings.motionBlur);
     }},
    {"bake_size", into<&Settings::bakeSize, readIntWithin<1, kLargestBakeSize>>},
    {"color_space", into<&Settings::colorSpace, readInt>},
    {"particle_time_unit", into<&Settings::particleTimeUnit, readFloat>},
    {"scene_origin", into<&Settings::sceneOrigin, readSceneOrigin>},
    {"gpu_block_store", into<&Settings::gpuBlockStore, readBool>},
};

} // namespace

SceneSettings readSettings(const JsonPlace& place)
{
    SceneSettings settings;
    readKeys(place, "\"settings\"", kSettingsKeys, settings);
    return settings;
}

} // namespace ombrix
