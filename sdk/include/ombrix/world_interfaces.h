// What a plugin can learn of an object's place in the world.
#pragma once

#include <ombrix/context.h>
#include <ombrix/plugin_base.h>
#include <ombrix/types.h>

namespace OUtils {

// An object that stands somewhere: an instance of a geometry, or a bare transform.
class WorldMatrixInterface : public PluginInterface {
public:
    static constexpr InterfaceId kId = EXT_WORLD_MATRIX;
    InterfaceId getInterfaceID() override { return kId; }
    const char* getInterfaceName() override { return "EXT_WORLD_MATRIX"; }

    // The object's local-to-world transform at the context's time, relative to the scene origin as the
    // context's points are. The offset is the object's pivot. Valid between frameBegin and frameEnd.
    virtual void getWorldTransform(const OmbrixContext& context, TraceTransform* result) = 0;
};

} // namespace OUtils
