#include "host/rt/ray_scene.h"

#include "host/errors/errors.h"

#include <embree3/rtcore.h>

#include <algorithm>
#include <cstring>
#include <map>

namespace ombrix {

namespace {

constexpr std::size_t kMaxTimeSteps = 129; // Embree's own limit

RTCDevice sharedDevice()
{
    // One device for the life of the process: Embree starts its workers with it.
    static const RTCDevice device = rtcNewDevice("set_affinity=0");
    if (!device) throw WorkError{"the ray tracing kernels cannot be started on this machine"};
    return device;
}

void checkDevice(const char* what)
{
    const RTCError code = rtcGetDeviceError(sharedDevice());
    if (code == RTC_ERROR_NONE) return;
    if (code == RTC_ERROR_OUT_OF_MEMORY) throw WorkError{std::string(what) + ": there is not enough memory"};
    throw WorkError{std::string(what) + ": the ray tracing kernels report error " +
                    std::to_string(static_cast<int>(code))};
}

void fillRay(RTCRay& to, const Ray& from)
{
    to.org_x = from.origin.x;
    to.org_y = from.origin.y;
    to.org_z = from.origin.z;
    to.tnear = from.near;
    to.dir_x = from.direction.x;
    to.dir_y = from.direction.y;
    to.dir_z = from.direction.z;
    to.time = from.time;
    to.tfar = from.far;
    to.mask = 0xFFFFFFFFu;
    to.id = 0;
    to.flags = 0;
}

RTCScene newScene()
{
    const RTCScene scene = rtcNewScene(sharedDevice());
    rtcSetSceneFlags(scene, RTC_SCENE_FLAG_ROBUST);
    rtcSetSceneBuildQuality(scene, RTC_BUILD_QUALITY_HIGH);
    return scene;
}

} // namespace

struct RayScene::State {
    RTCScene top = newScene();
    std::map<const MeshData*, RTCScene> meshes;

    State() = default;
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State()
    {
        rtcReleaseScene(top);
        for (const auto& [mesh, scene] : meshes)
            rtcReleaseScene(scene);
    }

    RTCScene sceneOf(const MeshData& mesh);
};

RTCScene RayScene::State::sceneOf(const MeshData& mesh)
{
    const auto known = meshes.find(&mesh);
    if (known != meshes.end()) return known->second;

    const RTCGeometry geometry = rtcNewGeometry(sharedDevice(), RTC_GEOMETRY_TYPE_TRIANGLE);
    void* positions = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                              sizeof(Vector), mesh.positions.size());
    void* triangles = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                              sizeof(Corners), mesh.triangles.size());
    if (positions && triangles) {
        std::memcpy(positions, mesh.positions.data(), mesh.positions.size() * sizeof(Vector));
        std::memcpy(triangles, mesh.triangles.data(), mesh.triangles.size() * sizeof(Corners));
    }
    rtcCommitGeometry(geometry);
    const RTCScene scene = newScene();
    rtcAttachGeometry(scene, geometry);
    rtcReleaseGeometry(geometry);
    meshes.emplace(&mesh, scene);
    checkDevice("a mesh");
    rtcCommitScene(scene);
    checkDevice("a mesh");
    return scene;
}

RayScene::RayScene() : state(std::make_unique<State>()) {}
RayScene::~RayScene() = default;
RayScene::RayScene(RayScene&&) noexcept = default;
RayScene& RayScene::operator=(RayScene&&) noexcept = default;

std::uint32_t RayScene::addInstance(const MeshData& mesh, std::span<const Transform> samples)
{
    const RTCScene meshScene = state->sceneOf(mesh);
    const std::size_t steps = std::clamp<std::size_t>(samples.size(), 1, kMaxTimeSteps);
    const RTCGeometry instance = rtcNewGeometry(sharedDevice(), RTC_GEOMETRY_TYPE_INSTANCE);
    rtcSetGeometryInstancedScene(instance, meshScene);
    rtcSetGeometryTimeStepCount(instance, static_cast<unsigned>(steps));
    for (std::size_t i = 0; i < steps; ++i) {
        const Transform& sample = samples[i];
        float columns[12];
        std::memcpy(columns, sample.matrix.columns, 9 * sizeof(float));
        std::memcpy(columns + 9, &sample.offset, 3 * sizeof(float));
        rtcSetGeometryTransform(instance, static_cast<unsigned>(i), RTC_FORMAT_FLOAT3X4_COLUMN_MAJOR,
                                columns);
    }
    rtcCommitGeometry(instance);
    const unsigned index = rtcAttachGeometry(state->top, instance);
    rtcReleaseGeometry(instance);
    checkDevice("an instance");
    return index;
}

void RayScene::commit()
{
    rtcCommitScene(state->top);
    checkDevice("the scene");
}

RayHit RayScene::intersect(const Ray& ray) const
{
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    alignas(16) RTCRayHit query;
    fillRay(query.ray, ray);
    query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    query.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
    rtcIntersect1(state->top, &context, &query);
    if (query.hit.geomID == RTC_INVALID_GEOMETRY_ID) return {};
    return {query.hit.instID[0], query.hit.primID, query.hit.u, query.hit.v, query.ray.tfar};
}

bool RayScene::occluded(const Ray& ray) const
{
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    alignas(16) RTCRay query;
    fillRay(query, ray);
    rtcOccluded1(state->top, &context, &query);
    return query.tfar < 0.0f;
}

} // namespace ombrix
