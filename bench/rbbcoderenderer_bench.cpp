// BBCode rendering over values of 1k to 64k characters: tagged text, and a run of bare brackets
// that would make a renderer quadratic if it searched the whole rest for each bracket.
#include "repository/rbbcoderenderer.h"
#include "kestro/xmodule/log.h"

#include <benchmark/benchmark.h>

#include <string>

using kestro::repository::RBBCodeRenderer;

namespace {

std::string TaggedText(size_t length)
{
    const std::string piece = "[b]Port[/b] [color=green]Up[/color] [url=http://h/p]link[/url] ";
    std::string text;
    while (text.size() < length) text += piece;
    return text;
}

void BM_RenderTaggedText(benchmark::State& state)
{
    const std::string text = TaggedText(static_cast<size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(RBBCodeRenderer::Render(text));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}

void BM_RenderBareBrackets(benchmark::State& state)
{
    XModule::SetLogLevel(XModule::LOG_ERROR);
    const std::string text(static_cast<size_t>(state.range(0)), '[');
    for (auto _ : state) benchmark::DoNotOptimize(RBBCodeRenderer::Render(text));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}

}  // namespace

BENCHMARK(BM_RenderTaggedText)->RangeMultiplier(8)->Range(1 << 10, 1 << 16);
BENCHMARK(BM_RenderBareBrackets)->RangeMultiplier(8)->Range(1 << 10, 1 << 16);
