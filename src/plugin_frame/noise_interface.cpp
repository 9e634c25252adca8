#include "plugin_frame/noise_interface.h"

namespace nezaiva {

NoiseInterface* acquireSharedNoise(OmbrixRenderer& renderer)
{
    auto* noise = find<NoiseInterface>(&renderer);
    if (!noise) {
        noise = new NoiseInterface;
        renderer.addInterface(noise, 0);
    }
    ++noise->references;
    return noise;
}

void releaseSharedNoise(NoiseInterface* noise, OmbrixRenderer& renderer)
{
    if (!noise || --noise->references > 0) return;
    renderer.removeInterface(noise);
    delete noise;
}

} // namespace nezaiva
