// The pinhole camera: rays through the picture, with their change from pixel to pixel.
#pragma once

#include "host/integrator/scene_interfaces.h"

#include <vector>

namespace ombrix {

struct CameraRay {
    Vector origin;
    Vector direction; // unit length
    // direction + directionDx points through the place one pixel to the right, directionDy below.
    Vector directionDx, directionDy;
};

class Camera {
public:
    // poses: complete ones (position and target present), evenly spread over the shutter; at least one.
    Camera(const std::vector<CameraPose>& poses, int width, int height);

    // The ray through a place of the picture in pixels, (0, 0) its upper left corner, at a place within
    // the shutter interval.
    CameraRay ray(float x, float y, float time) const
    {
        const Frame between = frames.size() > 1 ? frameAt(time) : Frame{};
        const Frame& frame = frames.size() > 1 ? between : frames[0];
        const Vector through = frame.forward + frame.right * (x - halfWidth) + frame.down * (y - halfHeight);
        const float scale = 1.0f / length(through);
        return {frame.origin, through * scale, frame.right * scale, frame.down * scale};
    }
    // The direction that the camera looks in.
    Vector forward(float time) const { return frames.size() > 1 ? frameAt(time).forward : frames[0].forward; }

private:
    struct Frame {
        Vector origin, forward;
        Vector right, down; // one pixel's step, at distance 1 along forward
    };
    // Of a camera that moves.
    Frame frameAt(float time) const;

    std::vector<Frame> frames;
    float halfWidth, halfHeight;
};

// A pose with position and target, for what the scene left unset: with neither, the camera looks from the
// front (+z) and a little above, as near as shows all of the boxes' corners in a picture of this size;
// with a position alone it looks at the middle of them; with a target alone, that is the middle.
CameraPose completePose(const CameraPose& given, const std::vector<Vector>& visiblePoints, int width,
                        int height);

// The nearest field of view that a picture can be computed with, in degrees; that of a NaN is the smallest.
float clampedFov(float fov);

} // namespace ombrix
