// The lives of a scene's plugins, as objects: what was begun ends, whatever is thrown between.
#pragma once

#include "host/scene/scene.h"

namespace ombrix {

// From renderBegin to renderEnd. Scene and renderer must outlive it, and so must what plugins are handed
// within it.
class RenderLife {
public:
    // Calls renderBegin of all plugins in dependency order. When one throws, those before it are ended. A
    // WorkError then names the plugin.
    RenderLife(Scene& scene, HostRenderer& renderer);
    RenderLife(const RenderLife&) = delete;
    RenderLife& operator=(const RenderLife&) = delete;
    // As end, where it was not called; but what plugins throw is told as errors in the log.
    ~RenderLife();
    // Calls renderEnd of all plugins in dependency order, whatever they throw; the first exception comes
    // out afterwards.
    void end();

private:
    friend class FrameLife;

    Scene& scene;
    HostRenderer& renderer;
    bool ended = false;
};

// From frameBegin to frameEnd, within a RenderLife. No other frame may live at the same time, and the
// scene's parameters may not be written.
class FrameLife {
public:
    // Moves the renderer to the frame and calls frameBegin of all plugins in dependency order, which is
    // their inputs first. When one throws, those before it are ended. A WorkError then names the plugin.
    FrameLife(RenderLife& render, double frame);
    FrameLife(const FrameLife&) = delete;
    FrameLife& operator=(const FrameLife&) = delete;
    // These are to frameEnd what those of RenderLife are to renderEnd.
    ~FrameLife();
    void end();

private:
    Scene& scene;
    HostRenderer& renderer;
    bool ended = false;
};

} // namespace ombrix
