// The one PerlinNoise of a render, which all textures share through the renderer's interface list.
#pragma once

#include "kernels/noises/perlin_noise.h"

#include <ombrix/renderer.h>

namespace nezaiva {

using namespace OUtils;

// References are counted plainly: they are taken in renderBegin and dropped in renderEnd, which do not
// run concurrently.
class NoiseInterface : public PluginInterface, public PerlinNoise {
public:
    NoiseInterface() { fillTables(); }

    static constexpr InterfaceId kId = EXT_COMMON_TEXTURE_NOISE;
    InterfaceId getInterfaceID() override { return kId; }
    const char* getInterfaceName() override { return "EXT_COMMON_TEXTURE_NOISE"; }
    // The shared object stands alone.
    PluginBase* getPlugin() override { return nullptr; }

    int references = 0;
};

// Takes a reference on the renderer's noise, which is made and added when the renderer has none.
NoiseInterface* acquireSharedNoise(OmbrixRenderer& renderer);

// Drops a reference; the last one removes the noise from the renderer and destroys it. Null does nothing.
void releaseSharedNoise(NoiseInterface* noise, OmbrixRenderer& renderer);

} // namespace nezaiva
