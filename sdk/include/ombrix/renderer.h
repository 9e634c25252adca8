// What a plugin sees of the renderer between renderBegin and renderEnd.
#pragma once

#include <ombrix/plugin_base.h>
#include <ombrix/types.h>

#include <cstdarg>
#include <cstdio>

namespace OUtils {

enum class LogLevel : int { Info = 0, Warning = 1, Error = 2 };

// The renderer's log. Thread-safe.
class RendererLogger {
public:
    virtual ~RendererLogger() = default;
    virtual void log(LogLevel level, const char* text) = 0;

    // printf-style; a text of over 4095 bytes is cut.
    __attribute__((format(printf, 2, 3))) void warning(const char* format, ...)
    {
        va_list arguments;
        va_start(arguments, format);
        logFormatted(LogLevel::Warning, format, arguments);
        va_end(arguments);
    }
    __attribute__((format(printf, 2, 3))) void error(const char* format, ...)
    {
        va_list arguments;
        va_start(arguments, format);
        logFormatted(LogLevel::Error, format, arguments);
        va_end(arguments);
    }

private:
    void logFormatted(LogLevel level, const char* format, va_list arguments)
    {
        char text[4096];
        std::vsnprintf(text, sizeof text, format, arguments);
        log(level, text);
    }
};

// Shows what a long preparation is at.
class ProgressDisplay {
public:
    virtual ~ProgressDisplay() = default;
    virtual void setText(const char* text) = 0;
};

// Gives the names of mapping channels their ids. Thread-safe.
class MapChannelNames {
public:
    virtual ~MapChannelNames() = default;
    // The id of a name, the same for equal names as long as the renderer lives; never 0 for a name that
    // is not empty, 0 for null and "".
    virtual int getNameId(const char* name) = 0;
};

// The frame that is being rendered. Times are in frames.
struct FrameData {
    double time = 1.0;
    double framesPerSecond = 24.0;
    bool motionBlur = false;
    float shutterLength = 0.5f;
    float shutterCenter = 0.0f; // offset of the shutter's centre from time
    double intervalStart = 1.0; // the shutter's interval: time + center - length / 2, and + length / 2;
    double intervalEnd = 1.0;   // both equal time without motion blur
    int geometrySamples = 2;    // time samples of moving geometry
    VectorD sceneOrigin;        // subtracted from all world positions
};

// What holds for the whole render.
struct SequenceData {
    int bakeSize = 512; // pixels on a side of a baked bitmap
};

// The units of the scene, found on the renderer by kColorSpaceSettingsId and kParticleTimeSettingsId,
// which are the same id. A setting that the scene does not name has the value that plugins use without
// the interface. It has no EXT name.
class UnitSettings : public PluginInterface {
public:
    static constexpr InterfaceId kId = kColorSpaceSettingsId;
    InterfaceId getInterfaceID() override { return kId; }

    // Index of the colour space in which temperatures are given; 1 when the scene names none.
    virtual int getColorSpace() = 0;
    // Particle ages and times are divided by this; 1 when the scene names none.
    virtual float getTimeUnit() = 0;
};
using ColorSpaceSettings = UnitSettings;
using ParticleTimeSettings = UnitSettings;

// Plugins ask it for UnitSettings, and add and look up interfaces that they share for the render.
class OmbrixRenderer : public PluginBase {
public:
    // Render threads; a context's threadIndex lies below it.
    virtual int getThreadCount() = 0;
    // Null when the renderer keeps no log.
    virtual RendererLogger* getLogger() = 0;
    // Null when nobody watches.
    virtual ProgressDisplay* getProgress() = 0;
    virtual MapChannelNames* getMapChannelNames() = 0;
    virtual const FrameData& getFrameData() = 0;
    virtual const SequenceData& getSequenceData() = 0;
};

} // namespace OUtils
