// Rendering a scattergram of 100,000 points, the largest cloud a user plots, to PNG
// (300 dpi, 1890 pixels wide) and to PDF, through the same renderer and file writer
// as the program. Reports the time of one file.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "common/UniformRandom.h"
#include "plots/CairoRenderer.h"
#include "plots/Colours.h"

namespace {

tarvex::Figure cloud(int points) {
    tarvex::Figure f;
    tarvex::Axes a;
    a.x.min = a.y.min = 0.0;
    a.x.max = a.y.max = 1.0;
    a.x.title = "X1";
    a.y.title = "Y";
    a.title = "Scattergram";
    tarvex::Markers m;
    m.shape = tarvex::MarkerShape::Circle;
    m.size = 1.5;
    m.colour = tarvex::Colours::named("Medium Slate Blue");
    int32_t seed = -7;
    for (int i = 0; i < points; ++i) {
        const double x = tarvex::uniformRandom(&seed);
        m.points.push_back({x, x * x * 0.8 + 0.2 * tarvex::uniformRandom(&seed)});
    }
    a.markers.push_back(m);
    f.axes.push_back(a);
    return f;
}

void render(benchmark::State& state, const char* extension) {
    const tarvex::Figure f = cloud(static_cast<int>(state.range(0)));
    const std::string path = (std::filesystem::temp_directory_path() / ("tarvex-plotbench" + std::string(extension))).string();
    tarvex::CairoRenderer r;
    for (auto _ : state) {
        if (!r.renderFile(f, path)) state.SkipWithError(r.errorText().c_str());
    }
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(path));
    std::remove(path.c_str());
}

void BM_RenderCloudPng(benchmark::State& state) { render(state, ".png"); }
void BM_RenderCloudPdf(benchmark::State& state) { render(state, ".pdf"); }

}  // namespace

BENCHMARK(BM_RenderCloudPng)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RenderCloudPdf)->Arg(100000)->Unit(benchmark::kMillisecond);
