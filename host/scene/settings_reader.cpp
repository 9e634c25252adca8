#include "host/scene/settings_reader.h"

#include "host/renderer/setting_limits.h"

#include <fmt/format.h>

#include <cmath>

namespace ombrix {

namespace {

void takeInt(const JsonPlace& place, const char* key, int lowest, int highest, int& value)
{
    if (!place.has(key)) return;
    if (const auto read = readIntBetween(place.at(key), lowest, highest)) value = *read;
}

void takeBool(const JsonPlace& place, const char* key, bool& value)
{
    if (!place.has(key)) return;
    if (const auto read = readBool(place.at(key))) value = *read;
}

void readMotionBlur(const JsonPlace& place, MotionBlurSettings& blur)
{
    if (!checkObject(place, "\"motion_blur\"",
                     {"on", "shutter_length", "shutter_center", "geometry_samples"}) &&
        !place->is_object())
        return;
    takeBool(place, "on", blur.on);
    takeInt(place, "geometry_samples", 1, kMostGeometrySamples, blur.geometrySamples);
    if (place.has("shutter_length")) {
        const JsonPlace length = place.at("shutter_length");
        const auto read = readFiniteFloat(length);
        if (read && *read < 0.0f)
            length.error(fmt::format("takes a length of 0 frames or more, not {}", *read));
        else if (read)
            blur.shutterLength = *read;
    }
    if (place.has("shutter_center"))
        if (const auto read = readFiniteFloat(place.at("shutter_center"))) blur.shutterCenter = *read;
}

void readTimes(const JsonPlace& place, SceneSettings& settings)
{
    if (place.has("frame"))
        if (const auto read = readFiniteDouble(place.at("frame"))) settings.frame = *read;
    if (place.has("fps")) {
        const JsonPlace fps = place.at("fps");
        const auto read = readFiniteDouble(fps);
        if (read && *read <= 0.0)
            fps.error(fmt::format("takes a number of frames a second above 0, not {}", *read));
        else if (read)
            settings.fps = *read;
    }
}

void readSceneOrigin(const JsonPlace& place, SceneSettings& settings)
{
    const auto read = readVectorD(place);
    if (!read) return;
    if (!std::isfinite(read->x) || !std::isfinite(read->y) || !std::isfinite(read->z))
        place.error("takes finite numbers");
    else
        settings.sceneOrigin = *read;
}

} // namespace

SceneSettings readSettings(const JsonPlace& place)
{
    SceneSettings settings;
    const bool known =
        checkObject(place, "\"settings\"",
                    {"frame", "fps", "threads", "width", "height", "samples", "motion_blur", "bake_size",
                     "color_space", "particle_time_unit", "scene_origin", "gpu_block_store"});
    if (!known && !place->is_object()) return settings;
    readTimes(place, settings);
    takeInt(place, "threads", 0, kMostThreads, settings.threads);
    takeInt(place, "width", 1, kLargestPictureSide, settings.width);
    takeInt(place, "height", 1, kLargestPictureSide, settings.height);
    takeInt(place, "samples", 1, kMostSamples, settings.samples);
    takeInt(place, "bake_size", 1, kLargestBakeSize, settings.bakeSize);
    takeBool(place, "gpu_block_store", settings.gpuBlockStore);
    if (place.has("motion_blur")) readMotionBlur(place.at("motion_blur"), settings.motionBlur);
    if (place.has("color_space")) settings.colorSpace = readInt(place.at("color_space"));
    if (place.has("particle_time_unit"))
        settings.particleTimeUnit = readFloat(place.at("particle_time_unit"));
    if (place.has("scene_origin")) readSceneOrigin(place.at("scene_origin"), settings);
    return settings;
}

} // namespace ombrix
