// SPDX-License-Identifier: Apache-2.0
// A material preview against Embree alone tracing the same rays in packets.
//
// The rays are recorded on their way from the renderer to Embree: this program's own rtcIntersect8 and rtcOccluded8 stand
// before the library's, and go on to it.
#include "Rendering/kxMaterialPreviewRenderer.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FCPtr.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "Support/Comparison.h"

#include <QtGlobal>

#include <embree3/rtcore.h>
#include <tbb/parallel_for.h>

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <memory>
#include <mutex>
#include <vector>

namespace {

constexpr int Side = 512;
constexpr int Samples = 64;
constexpr unsigned PacketSize = 8;

using Intersect = void (*)(const int *, RTCScene, RTCIntersectContext *, RTCRayHit8 *);
using Occluded = void (*)(const int *, RTCScene, RTCIntersectContext *, RTCRay8 *);

/// Origin and direction.
using Ray = std::array<float, 6>;

/// The rays of one thread in their order.
struct Rays
{
    std::vector<Ray> nearest;
    std::vector<Ray> any;
};

bool isRecording = false;
RTCScene recordedScene = nullptr;
std::mutex recordedMutex;
std::vector<std::unique_ptr<Rays>> recorded;

Rays &raysOfThisThread(RTCScene scene)
{
    thread_local Rays *rays = nullptr;
    if (rays == nullptr) {
        const std::lock_guard lock(recordedMutex);
        recorded.push_back(std::make_unique<Rays>());
        rays = recorded.back().get();
        if (recordedScene == nullptr) {
            rtcRetainScene(scene);
            recordedScene = scene;
        }
    }
    return *rays;
}

void append(std::vector<Ray> &rays, const int *valid, const RTCRay8 &packet)
{
    for (unsigned i = 0; i < PacketSize; ++i)
        if (valid[i] != 0)
            rays.push_back(
                {packet.org_x[i], packet.org_y[i], packet.org_z[i], packet.dir_x[i], packet.dir_y[i], packet.dir_z[i]});
}

template <class Function> Function next(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) void rtcIntersect8(const int *valid, RTCScene scene,
                                                          RTCIntersectContext *context, RTCRayHit8 *rays)
{
    static const auto real = next<Intersect>("rtcIntersect8");
    if (isRecording)
        append(raysOfThisThread(scene).nearest, valid, rays->ray);
    real(valid, scene, context, rays);
}

__attribute__((visibility("default"))) void rtcOccluded8(const int *valid, RTCScene scene, RTCIntersectContext *context,
                                                         RTCRay8 *rays)
{
    static const auto real = next<Occluded>("rtcOccluded8");
    if (isRecording)
        append(raysOfThisThread(scene).any, valid, *rays);
    real(valid, scene, context, rays);
}

} // extern "C"

namespace {

template <class Packet> void fill(Packet &packet, const Ray *rays)
{
    for (unsigned i = 0; i < PacketSize; ++i) {
        packet.org_x[i] = rays[i][0];
        packet.org_y[i] = rays[i][1];
        packet.org_z[i] = rays[i][2];
        packet.dir_x[i] = rays[i][3];
        packet.dir_y[i] = rays[i][4];
        packet.dir_z[i] = rays[i][5];
        packet.tnear[i] = 0.0F;
        packet.tfar[i] = std::numeric_limits<float>::infinity();
        packet.mask[i] = ~0U;
        packet.time[i] = 0.0F;
        packet.flags[i] = 0;
        packet.id[i] = 0;
    }
}

/// Calls \a trace with every packet, on all threads.
template <class Trace> void tracePackets(const std::vector<Ray> &rays, Trace trace)
{
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, rays.size() / PacketSize, 4096),
                      [&](const tbb::blocked_range<std::size_t> &range) {
                          for (std::size_t i = range.begin(); i < range.end(); ++i)
                              trace(&rays[i * PacketSize]);
                      });
}

void traceNearest(const Ray *rays)
{
    alignas(32) static constexpr std::array<int, PacketSize> All{-1, -1, -1, -1, -1, -1, -1, -1};
    RTCRayHit8 packet;
    fill(packet.ray, rays);
    std::fill_n(packet.hit.geomID, PacketSize, RTC_INVALID_GEOMETRY_ID);
    std::fill_n(packet.hit.instID[0], PacketSize, RTC_INVALID_GEOMETRY_ID);
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    rtcIntersect8(All.data(), recordedScene, &context, &packet);
}

void traceAny(const Ray *rays)
{
    alignas(32) static constexpr std::array<int, PacketSize> All{-1, -1, -1, -1, -1, -1, -1, -1};
    RTCRay8 packet;
    fill(packet, rays);
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    rtcOccluded8(All.data(), recordedScene, &context, &packet);
}

void traceRecorded()
{
    for (const auto &rays : recorded) {
        tracePackets(rays->nearest, traceNearest);
        tracePackets(rays->any, traceAny);
    }
}

/// Lacquer under a clear coat: every lobe but refraction is at work.
osg::FCRef<osg::UBRDFMaterial> lacquer()
{
    osg::FCRef<osg::UBRDFMaterial> material(osg::UBRDFMaterial::create());
    const osg::CPEditor edit(material.get(), osg::AllFieldMask);
    material->setDiffuseColor({0.55F, 0.04F, 0.03F, 1.0F});
    material->setRoughness(0.35F);
    material->setClearCoat(1.0F);
    return material;
}

void render(const osg::MaterialPtr &material)
{
    const auto picture =
        osg::FCRef<osg::Image>::adopt(kxMaterialPreviewRenderer::renderPreview(material, Side, Side, Samples, {}));
    if (!picture)
        qFatal("the preview cannot be rendered");
}

} // namespace

int main()
{
    const auto material = lacquer();
    isRecording = true;
    render(material.get());
    isRecording = false;
    std::size_t count = 0;
    for (const auto &rays : recorded)
        count += rays->nearest.size() + rays->any.size();
    std::fprintf(stderr, "%.1f million rays\n", static_cast<double>(count) / 1e6);

    kxbench::Comparison comparison([&material] { render(material.get()); }, traceRecorded);
    comparison.run(3);
    kxbench::note("material preview", comparison);
    kxbench::report("material preview 512 x 512, 64 samples", "Embree tracing the same rays in packets", 2.5, 1.5,
                    comparison.ratio());
    rtcReleaseScene(recordedScene);
    return 0;
}
