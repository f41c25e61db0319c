#include "Targets/VantorBarCPU/Graphs/GPUGraph.h"

#include <gtest/gtest.h>

#include "Shared/Collectors/GPUStatCollector.h"
#include "Tests/Support/GraphicsTree.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using Painting::ImageSurface;

constexpr Size kSize{304, 70};
constexpr std::uint32_t kBlueFill = 0xFF0D6189;
constexpr int kNewest = 301;

ImageSurface painted(View& view) {
    ImageSurface surface(view.frame().size(), 1);
    Painting::Context context = surface.context();
    view.display(context);
    return surface;
}

int opaquePixels(const ImageSurface& surface, int x) {
    int count = 0;
    for (int y = 0; y < surface.heightPixels(); ++y)
        count += surface.pixel(x, y) >> 24 == 0xFF ? 1 : 0;
    return count;
}

/// A card that is half full and does little.
class GPUGraphTest : public testing::Test {
protected:
    GPUGraphTest() {
        world.machine.registry.setTree(test::graphicsTree(
            {{.properties = {{"VRAM,totalsize", 1000}},
              .statistics = {{"vramUsedBytes", 500}, {"Device Utilization %", 10}}}}));
        collector().fetchGPUS();
        collector().updateDisplays();
        collector().updateStats();
    }
    GPUStatCollector& collector() { return GPUStatCollector::sharedGPUCollector(); }

    /// A graph of the card, at the scale of now.
    template <class Graph>
    std::shared_ptr<Graph> makeGraph() {
        auto graph = std::make_shared<Graph>(Rect{0, 0, kSize.width, kSize.height});
        graph->setCollector(collector().items()[0].get());
        graph->setStorageMode(0);
        return graph;
    }

    test::World world;
};

TEST_F(GPUGraphTest, MemoryIsAShareAndLoadIsAPercentage) {
    const auto memory = makeGraph<GPUMemoryGraph>();
    const auto processor = makeGraph<GPUProcessorGraph>();
    const ImageSurface memoryPicture = painted(*memory), processorPicture = painted(*processor);
    EXPECT_NEAR(opaquePixels(memoryPicture, kNewest), 33, 3);
    EXPECT_NEAR(opaquePixels(processorPicture, kNewest), 7, 3);
    EXPECT_EQ(memoryPicture.pixel(kNewest, 50), kBlueFill);
}

TEST_F(GPUGraphTest, TheNewestSampleIsTheCollectors) {
    const auto graph = makeGraph<GPUMemoryGraph>();
    painted(*graph);
    EXPECT_EQ(graph->latestSampleID(), 2);
    collector().updateStats();
    collector().setIDForInterval(77, 2);
    painted(*graph);
    EXPECT_EQ(graph->latestSampleID(), 3);
    graph->setStorageMode(2);
    painted(*graph);
    EXPECT_EQ(graph->latestSampleID(), 77);
}

TEST_F(GPUGraphTest, AGraphWithoutAnItemShowsNothing) {
    const auto graph = makeGraph<GPUProcessorGraph>();
    graph->setCollector(nullptr);
    EXPECT_EQ(opaquePixels(painted(*graph), kNewest), opaquePixels(painted(*graph), kNewest - 1));
}

TEST_F(GPUGraphTest, EachIsOfItsOwnClass) {
    EXPECT_EQ(makeGraph<GPUMemoryGraph>()->className(), "GPUMemoryGraph");
    EXPECT_EQ(makeGraph<GPUProcessorGraph>()->className(), "GPUProcessorGraph");
}

}  // namespace
}  // namespace vantor
