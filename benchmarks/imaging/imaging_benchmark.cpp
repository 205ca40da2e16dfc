// The scaler and the compositor beside the plain way, libswscale and pixman.
#include "gui/ORX/core/engine.h"
#include "gui/ORX/imaging/row_kernels.h"
#include "gui/ORX/imaging/scaler.h"
#include "imaging/benchmark_images.h"
#include "imaging/paired_runs.h"
#include "imaging/plain_scaler.h"

extern "C" {
#include <libswscale/swscale.h>
}
#include <pixman.h>

namespace {

constexpr int source_width = 600;
constexpr int source_height = 400;

struct ScaleCase {
    explicit ScaleCase(float factor, bool own_functions = true)
        : scale(factor), width(static_cast<int>(source_width * factor)),
          height(static_cast<int>(source_height * factor)),
          rgba(pictures::artwork(source_width, source_height)),
          source(pictures::view(rgba, source_width, source_height)),
          surface(width, height, own_functions), engine(engine_new()) {}
    ~ScaleCase() { engine_destroy(engine); }
    ScaleCase(const ScaleCase&) = delete;
    ScaleCase& operator=(const ScaleCase&) = delete;

    void ours() {
        orx_image_scale_from_pixbuf(engine, &source, &surface.image, 0, 0, width, height, 0, 0,
                                    scale);
    }

    float scale;
    int width;
    int height;
    std::vector<std::uint8_t> rgba;
    Pixbuf source;
    pictures::Surface surface;
    UiEngine* engine;
};

float factor_of(const benchmark::State& state) {
    return static_cast<float>(state.range(0)) / 100.0F;
}

void scale_beside_plain_reference(benchmark::State& state) {
    ScaleCase task(factor_of(state));
    pictures::Surface other(task.width, task.height, false);
    paired::compare(
        state, [&task] { task.ours(); },
        [&task, &other] {
            plain::scale(task.source, other.image, task.width, task.height, task.scale);
        });
    if (other.memory != task.surface.memory) {
        state.SkipWithError("the two pictures differ");
    }
}

void scale_beside_swscale_bicubic(benchmark::State& state) {
    ScaleCase task(factor_of(state));
    std::vector<std::uint8_t> output(task.surface.memory.size());
    SwsContext* context =
        sws_getContext(source_width, source_height, AV_PIX_FMT_RGBA, task.width, task.height,
                       AV_PIX_FMT_BGRA, SWS_BICUBIC, nullptr, nullptr, nullptr);
    const std::uint8_t* in[4] = {task.rgba.data(), nullptr, nullptr, nullptr};
    const int in_stride[4] = {source_width * 4, 0, 0, 0};
    std::uint8_t* out[4] = {output.data(), nullptr, nullptr, nullptr};
    const int out_stride[4] = {task.width * 4, 0, 0, 0};
    paired::compare(
        state, [&task] { task.ours(); },
        [&] { sws_scale(context, in, in_stride, 0, source_height, out, out_stride); });
    sws_freeContext(context);
}

void scale_beside_pixman_bilinear(benchmark::State& state) {
    ScaleCase task(factor_of(state));
    std::vector<std::uint8_t> output(task.surface.memory.size());
    pixman_image_t* in = pixman_image_create_bits(
        PIXMAN_a8r8g8b8, source_width, source_height,
        reinterpret_cast<std::uint32_t*>(task.rgba.data()), source_width * 4);
    pixman_image_t* out =
        pixman_image_create_bits(PIXMAN_a8r8g8b8, task.width, task.height,
                                 reinterpret_cast<std::uint32_t*>(output.data()), task.width * 4);
    pixman_transform_t transform;
    pixman_transform_init_scale(&transform, pixman_double_to_fixed(1.0 / task.scale),
                                pixman_double_to_fixed(1.0 / task.scale));
    pixman_image_set_transform(in, &transform);
    pixman_image_set_filter(in, PIXMAN_FILTER_BILINEAR, nullptr, 0);
    pixman_image_set_repeat(in, PIXMAN_REPEAT_PAD);
    paired::compare(
        state, [&task] { task.ours(); },
        [&] {
            pixman_image_composite32(PIXMAN_OP_SRC, in, nullptr, out, 0, 0, 0, 0, 0, 0, task.width,
                                     task.height);
        });
    pixman_image_unref(in);
    pixman_image_unref(out);
}

// The same surface through the image's put-pixel calls: what the inlined row saves.
void scale_beside_put_pixel_calls(benchmark::State& state) {
    ScaleCase task(factor_of(state));
    ScaleCase calls(factor_of(state), false);
    paired::compare(
        state, [&task] { task.ours(); }, [&calls] { calls.ours(); });
}

enum AlphaKind { random_alpha, opaque_alpha, icon_alpha };

// icon: nothing round the edge, opaque inside, a soft rim between, sixteen to a row.
std::uint8_t alpha_at(AlphaKind kind, int x, int y, std::uint32_t noise) {
    if (kind == opaque_alpha) {
        return 255;
    }
    if (kind == random_alpha) {
        return static_cast<std::uint8_t>(noise);
    }
    const int dx = x % 64 - 32;
    const int dy = y % 64 - 32;
    const int distance = dx * dx + dy * dy;
    if (distance < 26 * 26) {
        return 255;
    }
    return distance > 29 * 29 ? std::uint8_t{0} : static_cast<std::uint8_t>(noise);
}

void composite_beside_pixman(benchmark::State& state, AlphaKind kind) {
    std::mt19937 random(5);
    std::vector<std::uint8_t> rgba = pictures::artwork(source_width, source_height);
    std::vector<std::uint8_t> premultiplied = rgba;
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
        const int pixel = static_cast<int>(i / 4);
        const std::uint8_t alpha = alpha_at(kind, pixel % source_width, pixel / source_width,
                                            static_cast<std::uint32_t>(random() >> 3U));
        rgba[i + 3] = premultiplied[i + 3] = alpha;
        for (std::size_t c = i; c < i + 3; ++c) {
            premultiplied[c] = static_cast<std::uint8_t>(rgba[c] * alpha / 255);
        }
    }
    const Pixbuf source = pictures::view(rgba, source_width, source_height);
    std::vector<std::uint8_t> ground = pictures::artwork(source_width, source_height);
    std::vector<std::uint8_t> other_ground = ground;
    Pixbuf destination = pictures::view(ground, source_width, source_height);
    pixman_image_t* in = pixman_image_create_bits(
        PIXMAN_a8r8g8b8, source_width, source_height,
        reinterpret_cast<std::uint32_t*>(premultiplied.data()), source_width * 4);
    pixman_image_t* out = pixman_image_create_bits(
        PIXMAN_a8r8g8b8, source_width, source_height,
        reinterpret_cast<std::uint32_t*>(other_ground.data()), source_width * 4);
    paired::compare(
        state,
        [&] {
            orx_pixbuf_composite(nullptr, &source, &destination, 0, 0, 0, 0, source_width,
                                 source_height);
        },
        [&] {
            pixman_image_composite32(PIXMAN_OP_OVER, in, nullptr, out, 0, 0, 0, 0, 0, 0,
                                     source_width, source_height);
        },
        4);
    pixman_image_unref(in);
    pixman_image_unref(out);
}

BENCHMARK(scale_beside_plain_reference)->Arg(200)->Arg(125)->Iterations(40);
BENCHMARK(scale_beside_swscale_bicubic)->Arg(200)->Arg(125)->Iterations(100);
BENCHMARK(scale_beside_pixman_bilinear)->Arg(200)->Arg(125)->Iterations(300);
BENCHMARK(scale_beside_put_pixel_calls)->Arg(200)->Arg(125)->Iterations(100);
BENCHMARK_CAPTURE(composite_beside_pixman, random, random_alpha)->Iterations(300);
BENCHMARK_CAPTURE(composite_beside_pixman, opaque, opaque_alpha)->Iterations(300);
BENCHMARK_CAPTURE(composite_beside_pixman, icon_like, icon_alpha)->Iterations(300);

} // namespace

int main(int argc, char** argv) {
    benchmark::AddCustomContext("inner loops", best_row_kernels().name);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
