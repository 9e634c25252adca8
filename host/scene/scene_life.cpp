#include "host/scene/scene_life.h"

#include "host/errors/errors.h"
#include "host/log/log.h"

#include <ombrix/exception_msg.h>

#include <fmt/format.h>

#include <exception>
#include <span>

namespace ombrix {

namespace {

using Instances = std::span<const PluginInstance>;
// One of the four calls of a plugin's life.
using LifeCall = void (OUtils::OmbrixPluginInterface::*)(OUtils::OmbrixRenderer* renderer);

std::string nameOf(const PluginInstance& instance)
{
    return fmt::format("{} \"{}\"", instance.kind->desc->getName(), instance.name);
}

std::string messageOf(const std::exception_ptr& thrown)
{
    try {
        std::rethrow_exception(thrown);
    } catch (const std::exception& error) {
        return error.what();
    } catch (const OUtils::ExceptionMsg& error) {
        return error.what();
    } catch (...) {
        return "an exception of a kind of its own";
    }
}

// Makes a call on every plugin. told takes what each of them throws.
template <class Told>
void endAll(Instances instances, LifeCall call, HostRenderer& renderer, const Told& told)
{
    for (const PluginInstance& instance : instances) {
        try {
            (instance.life->*call)(&renderer);
        } catch (...) {
            told(instance, std::current_exception());
        }
    }
}

// The first exception comes out when all plugins were called.
void endAll(Instances instances, LifeCall call, HostRenderer& renderer)
{
    std::exception_ptr first;
    endAll(instances, call, renderer, [&](const PluginInstance&, const std::exception_ptr& thrown) {
        if (!first) first = thrown;
    });
    if (first) std::rethrow_exception(first);
}

// Where another exception is under way, or nobody would catch one.
void endAllQuietly(Instances instances, LifeCall call, HostRenderer& renderer)
{
    endAll(instances, call, renderer, [](const PluginInstance& instance, const std::exception_ptr& thrown) {
        say(OUtils::LogLevel::Error, nameOf(instance) + ": " + messageOf(thrown));
    });
}

// Begins every plugin, or ends those that had begun. What files and memory refused names the plugin.
void beginAll(Instances instances, LifeCall begin, LifeCall end, HostRenderer& renderer)
{
    for (std::size_t i = 0; i < instances.size(); ++i) {
        try {
            (instances[i].life->*begin)(&renderer);
        } catch (const WorkError& error) {
            endAllQuietly(instances.first(i), end, renderer);
            throw WorkError(nameOf(instances[i]) + ": " + error.what());
        } catch (...) {
            endAllQuietly(instances.first(i), end, renderer);
            throw;
        }
    }
}

} // namespace

RenderLife::RenderLife(Scene& of, HostRenderer& by) : scene(of), renderer(by)
{
    using OUtils::OmbrixPluginInterface;
    beginAll(scene.instances(), &OmbrixPluginInterface::renderBegin, &OmbrixPluginInterface::renderEnd,
             renderer);
}

RenderLife::~RenderLife()
{
    if (!ended) endAllQuietly(scene.instances(), &OUtils::OmbrixPluginInterface::renderEnd, renderer);
}

void RenderLife::end()
{
    ended = true;
    endAll(scene.instances(), &OUtils::OmbrixPluginInterface::renderEnd, renderer);
}

FrameLife::FrameLife(RenderLife& render, double frame) : scene(render.scene), renderer(render.renderer)
{
    using OUtils::OmbrixPluginInterface;
    renderer.setFrame(frame);
    beginAll(scene.instances(), &OmbrixPluginInterface::frameBegin, &OmbrixPluginInterface::frameEnd,
             renderer);
}

FrameLife::~FrameLife()
{
    if (!ended) endAllQuietly(scene.instances(), &OUtils::OmbrixPluginInterface::frameEnd, renderer);
}

void FrameLife::end()
{
    ended = true;
    endAll(scene.instances(), &OUtils::OmbrixPluginInterface::frameEnd, renderer);
}

} // namespace ombrix
