#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "Foundation/Image.h"
#include "Painting/Text.h"
#include "Shared/VTRPreferences.h"
#include "Targets/VantorBarCPU/Classes/VantorCPUMenuExtraView.h"
#include "Tests/Support/BarCanvas.h"
#include "Tests/Support/FakeSamples.h"
#include "Tests/Support/Pictures.h"
#include "Tests/Support/PlainPicture.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using test::Coverage;
using test::FakeSamples;
using test::PlainPicture;
using Mode = VantorCPUMenuExtraView::Mode;

constexpr int kOffset = 3, kWidth = 70, kGraphWidth = 30;
constexpr double kLightOpacity = 0.5, kDarkOpacity = 0.75;
const Colour kCustomSystem{0.9, 0.1, 0.5, 1}, kCustomUser{0.2, 0.8, 0.4, 0.5},
    kCustomOverall{0.3, 0.3, 0.9, 0.75};

/// All that a picture of graphs depends on, beside the figures.
struct Look {
    int scale = 1, theme = 0, skin = 0;
    bool dark = false, contrast = false, open = false, breakdown = false, custom = false;

    std::string text() const {
        return fmt::format("{}x, theme {}, skin {}{}{}{}{}{}", scale, theme, skin,
                           dark ? ", dark" : "", contrast ? ", contrast" : "", open ? ", open" : "",
                           breakdown ? ", breakdown" : "", custom ? ", custom" : "");
    }
};

std::vector<Look> allLooks(int scale) {
    std::vector<Look> looks;
    for (int theme = 0; theme <= 1; ++theme)
        for (int skin = 0; skin <= 9; ++skin)
            for (int flags = 0; flags < 32; ++flags)
                looks.push_back({scale, theme, skin, (flags & 1) != 0, (flags & 2) != 0,
                                 (flags & 4) != 0, (flags & 8) != 0, (flags & 16) != 0});
    return looks;
}

// --- What the colours are ----------------------------------------------------------------------

struct Ink {
    Colour start, end;
};

const Ink kGradients[10][2]{
    // the plain theme, the theme of dark panels
    {{{0.098, 0.58, 0.941}, {0.058, 0.494, 0.866}}, {{0.192, 0.67, 1}, {0.098, 0.58, 0.941}}},
    {{{1, 0.462, 0.168}, {1, 0.301, 0.07}}, {{1, 0.462, 0.168}, {1, 0.301, 0.07}}},
    {{{0.482, 0.549, 0.678}, {0.396, 0.462, 0.596}},
     {{0.568, 0.639, 0.768}, {0.482, 0.549, 0.678}}},
    {{{0.431, 0.705, 0}, {0.321, 0.6, 0.039}}, {{0.513, 0.8, 0.113}, {0.431, 0.705, 0}}},
    {{{1, 0.215, 0.972}, {0.941, 0.141, 0.909}}, {{1, 0.305, 1}, {1, 0.215, 0.972}}},
    {{{0.545, 0.329, 0.819}, {0.458, 0.247, 0.745}},
     {{0.627, 0.411, 0.921}, {0.545, 0.329, 0.819}}},
    {{{1, 0.164, 0.164}, {0.937, 0.094, 0.094}}, {{1, 0.254, 0.254}, {1, 0.164, 0.164}}},
    {{kBlack, kBlack}, {kBlack, kBlack}},
    {{kWhite, kWhite}, {kWhite, kWhite}},
    {{{0.192, 0.67, 1}, {0.098, 0.58, 0.941}}, {{0.192, 0.67, 1}, {0.098, 0.58, 0.941}}},
};

enum class Series { system, user, overall };

Ink inkOf(Series series, const Look& look, bool pie) {
    if (look.open && look.dark && look.contrast && !pie)
        return {kBlack, kBlack};
    if (look.theme == 0 && look.open && (pie || !look.dark))
        return {kWhite, kWhite};
    const auto flat = [](const Colour& colour) { return Ink{colour, colour}; };
    switch (series) {
    case Series::system:
        return flat(look.custom ? kCustomSystem : Colour{1, 0.164, 0.164});
    case Series::user:
        return flat(look.custom ? kCustomUser : Colour{0.098, 0.58, 0.941});
    case Series::overall:
        break;
    }
    return look.custom ? flat(kCustomOverall) : kGradients[look.skin][look.theme];
}

struct Panel {
    std::string_view ending;
    double alpha;
};

Panel panelOf(const Look& look) {
    if (look.open && look.dark && look.contrast)
        return {"darkmode-black", kDarkOpacity};
    if (look.dark)
        return {"darkmode", kDarkOpacity};
    return look.theme == 1 ? Panel{"dark", 1} : Panel{"light", kLightOpacity};
}

// --- What the shapes are -----------------------------------------------------------------------

/// A series of one graph: the places that it covers, and the heights between which its gradient
/// goes.
struct Shape {
    Coverage coverage;
    double top, bottom;
};

Coverage coverageOf(int scale, const Rect& rect) {
    return {kWidth, scale, rect, [rect](Point point) {
                return point.x >= rect.x && point.x < rect.x + rect.width && point.y >= rect.y &&
                       point.y < rect.y + rect.height;
            }};
}

Shape bar(int scale, int left, int width, double height) {
    const double shown = std::min(height, 16.0);
    return {coverageOf(scale, {double(left), 3, double(width), shown}), 3 + height, 3};
}

Shape verticalBar(int scale, int offset, double value) {
    return bar(scale, offset + 1, 7, value > 0 ? std::max(1.0, std::floor(16 * value)) : 0);
}

Shape combinedBar(int scale, int offset, int core, double value) {
    return bar(scale, offset + 6 * core + 1, 5, std::ceil(16 * value));
}

/// A slice that grows clockwise from twelve o'clock.
Shape slice(int scale, int offset, double value) {
    const Point centre{offset + 9.0, 11};
    const double degrees = std::min(359.0, std::ceil(static_cast<float>(value) * 360.0));
    const auto holds = [centre, degrees](Point point) {
        const double x = point.x - centre.x, y = point.y - centre.y;
        double angle = std::atan2(x, y) * 180 / std::numbers::pi;  // clockwise from upwards
        angle += angle < 0 ? 360 : 0;
        return std::hypot(x, y) <= 8 && angle <= degrees;
    };
    const double lowest = degrees >= 180  ? -8
                          : degrees <= 90 ? 0
                                          : 8 * std::cos(degrees * std::numbers::pi / 180);
    return {{kWidth,
             scale,
             {offset + 1.0, 3, degrees > 0 ? 16.0 : -3.0, 16},
             holds,
             Coverage::Outline::round},
            19,
            11 + std::min(lowest, 0.0)};
}

/// The outline over the newest samples, the newest at the right; one that is missing lies low.
Shape history(int scale, int offset, const std::vector<double>& newestFirst) {
    const double left = offset + 1;
    std::vector<double> heights;  // oldest first, one a point
    for (int column = 0; column <= kGraphWidth - 2; ++column) {
        const auto age = static_cast<std::size_t>(kGraphWidth - 2 - column);
        heights.push_back(age < newestFirst.size() ? 16 * newestFirst[age] : 0);
    }
    const auto holds = [left, heights](Point point) {
        const double along = point.x - left;
        if (along < 0 || along >= kGraphWidth - 2 || point.y < 3 || point.y >= 19)
            return false;
        const auto column = static_cast<std::size_t>(along);
        const double share = along - std::floor(along);
        return point.y - 3 <= heights[column] * (1 - share) + heights[column + 1] * share;
    };
    return {{kWidth, scale, {left, 3, kGraphWidth - 2, 16}, holds},
            3 + *std::ranges::max_element(heights),
            3};
}

// --- The tests ---------------------------------------------------------------------------------

/// How one mode is painted: its panels, and the shapes for the share of user and of both.
struct Graph {
    std::string_view panel;
    struct Place {
        int x, width;
    };
    std::vector<Place> panels;
    std::vector<Shape> both, user;
};

class VantorCPUMenuExtraViewPixelsTest : public testing::TestWithParam<int> {
protected:
    VantorCPUMenuExtraViewPixelsTest() {
        world.machine.directories.setResources(fs::path(VANTOR_BUNDLE_DIR).parent_path());
        VTRSetFloatForKey("MenubarGraphOpacity", kLightOpacity);
        VTRSetFloatForKey("MenubarGraphOpacity-DarkMode", kDarkOpacity);
        VTRSetObjectForKey("CPU_MenubarGraphSystem", stringFromColor(kCustomSystem));
        VTRSetObjectForKey("CPU_MenubarGraphUser", stringFromColor(kCustomUser));
        VTRSetObjectForKey("CPU_MenubarGraphOverall", stringFromColor(kCustomOverall));
    }

    int scale() const { return GetParam(); }

    void take(const Look& look) {
        VTRSetIntegerForKey("MenubarTheme", look.theme);
        VTRSetIntegerForKey("MenubarSkinColor", look.skin);
        VTRSetBoolForKey("CPU_MenubarGraphBreakdowns", look.breakdown);
        VTRSetBoolForKey("CPU_MenubarGraphCustomColors", look.custom);
        world.machine.appearance.setDark(look.dark);
        world.machine.appearance.setContrast(look.contrast);
        VTRPreferences::sharedPreferences()->updateMenubarTheme();
        VTRPreferences::sharedPreferences()->updateContrast();
        view.resetTextConfig();
        view.setIsMenuDown(look.open);
    }
    const Image& file(std::string_view name) {
        auto& image = files[std::string(name)];
        if (!image)
            image = Image::fromFile(fs::path(VANTOR_BUNDLE_DIR) /
                                    fmt::format("{}{}.png", name, scale() == 1 ? "" : "@2x"));
        return *image;
    }
    PlainPicture expected(const Graph& graph, const Look& look) {
        PlainPicture picture(kWidth, look.scale);
        const bool pie = graph.panel == "piegraph";
        const Panel panel = panelOf(look);
        const Image& tile = file(fmt::format("menubar-{}-{}", graph.panel, panel.ending));
        for (const Graph::Place& place : graph.panels)
            if (pie)
                picture.draw(tile, place.x, 2, panel.alpha);
            else
                picture.drawStretched(tile, place.x, 2, place.width, 4, panel.alpha);
        const auto fill = [&](const std::vector<Shape>& shapes, Series series) {
            const Ink ink = inkOf(series, look, pie);
            for (const Shape& shape : shapes)
                picture.fill(shape.coverage, ink.start, ink.end, shape.top, shape.bottom);
        };
        fill(graph.both, look.breakdown ? Series::system : Series::overall);
        if (look.breakdown)
            fill(graph.user, Series::user);
        return picture;
    }
    /// Paints with all looks, and compares.
    template <class Paint>
    void expectAllLooks(const Graph& graph, Paint&& paint) {
        for (const Look& look : allLooks(scale())) {
            take(look);
            test::BarCanvas canvas(kWidth, look.scale);
            paint(canvas.context);
            ASSERT_EQ(expected(graph, look).differenceFrom(canvas.surface), "") << look.text();
        }
    }
    std::int64_t paint(Painting::Context& context, Mode mode, std::int64_t offset,
                       const FakeSamples& samples) {
        const StatSamples* const collectors[] = {&samples};
        return view.drawWithMode(context, mode, offset, collectors);
    }

    test::World world;
    VantorCPUMenuExtraView view{{0, 0, 20, 22}, nullptr};
    std::map<std::string, std::shared_ptr<Image>> files;

    // User, system and nice, which shows nowhere.
    const FakeSamples usual{37.5, 18.75, 90}, faint{0.04, 0.02, 50}, beyond{100, 60, 10};
};

INSTANTIATE_TEST_SUITE_P(Scales, VantorCPUMenuExtraViewPixelsTest, testing::Values(1, 2));

TEST_P(VantorCPUMenuExtraViewPixelsTest, VerticalBarsAreAsReckoned) {
    Graph graph{"graph", {{3, 9}, {16, 9}, {29, 9}}, {}, {}};
    graph.both = {verticalBar(scale(), 3, 0.5625), verticalBar(scale(), 16, 0.0006),
                  verticalBar(scale(), 29, 1.6)};
    graph.user = {verticalBar(scale(), 3, 0.375), verticalBar(scale(), 16, 0.0004),
                  verticalBar(scale(), 29, 1)};
    expectAllLooks(graph, [&](Painting::Context& context) {
        EXPECT_EQ(paint(context, Mode::kVertical, 3, usual), 13);
        EXPECT_EQ(paint(context, Mode::kVertical, 16, faint), 13);
        EXPECT_EQ(paint(context, Mode::kVertical, 29, beyond), 13);
    });
}

TEST_P(VantorCPUMenuExtraViewPixelsTest, CombinedBarsAreAsReckoned) {
    Graph graph{"graph", {{kOffset, 6 * 3 + 1}}, {}, {}};
    graph.both = {combinedBar(scale(), kOffset, 0, 0.5625),
                  combinedBar(scale(), kOffset, 1, 0.0006), combinedBar(scale(), kOffset, 2, 1.6)};
    graph.user = {combinedBar(scale(), kOffset, 0, 0.375), combinedBar(scale(), kOffset, 1, 0.0004),
                  combinedBar(scale(), kOffset, 2, 1)};
    const StatSamples* const cores[] = {&usual, &faint, &beyond};
    expectAllLooks(graph, [&](Painting::Context& context) {
        EXPECT_EQ(view.drawWithMode(context, Mode::kCombinedVertical, kOffset, cores), 6 * 3 + 5);
    });
}

TEST_P(VantorCPUMenuExtraViewPixelsTest, PiesAreAsReckoned) {
    Graph graph{"piegraph", {{3, 18}, {25, 18}, {47, 18}}, {}, {}};
    graph.both = {slice(scale(), 3, 0.5625), slice(scale(), 25, 0.0006), slice(scale(), 47, 1.6)};
    graph.user = {slice(scale(), 3, 0.375), slice(scale(), 25, 0.0004), slice(scale(), 47, 1)};
    expectAllLooks(graph, [&](Painting::Context& context) {
        EXPECT_EQ(paint(context, Mode::kPie, 3, usual), 22);
        EXPECT_EQ(paint(context, Mode::kPie, 25, faint), 22);
        EXPECT_EQ(paint(context, Mode::kPie, 47, beyond), 22);
    });
}

/// Steps, slopes, a gap, more than there can be, and fewer samples than columns.
TEST_P(VantorCPUMenuExtraViewPixelsTest, HistoriesAreAsReckoned) {
    const std::vector<double> users{10, 10, 10, 50, 50, 50, 50, 20, 30, 40, 50, 60,
                                    60, 60, 0,  0,  25, 25, 25, 99, 99, 99, 5,  5};
    FakeSamples samples(3);
    std::vector<double> both, user;
    for (const double share : users) {
        samples.add({share, share / 4, 70});
        user.insert(user.begin(), share / 100);
        both.insert(both.begin(), share / 80);
    }
    for (const std::size_t gap : {4U, 5U}) {
        samples.ring.setEmpty(gap, 1);
        user[gap] = both[gap] = 0;
    }
    Graph graph{"graph", {{kOffset, kGraphWidth}}, {}, {}};
    graph.both = {history(scale(), kOffset, both)};
    graph.user = {history(scale(), kOffset, user)};
    expectAllLooks(graph, [&](Painting::Context& context) {
        EXPECT_EQ(paint(context, Mode::kHistory, kOffset, samples), kGraphWidth + 4);
    });
}

/// Each answers its own width, and stands on the bar as its file has it.
TEST_P(VantorCPUMenuExtraViewPixelsTest, IconsStandAsTheirFilesHaveThem) {
    struct Icon {
        Mode mode;
        std::string_view name;
        std::int64_t answer;
    };
    for (const Icon& icon :
         {Icon{Mode::kLabel, "menubar-label-cpu", 12}, Icon{Mode::kGPU, "menubar-gpu-nvidia", 18}})
        for (const Look& look : allLooks(scale())) {
            const bool lightHighlight = look.open && look.dark && look.contrast;
            const bool white = !lightHighlight && (look.open || look.dark);
            take(look);
            test::BarCanvas canvas(kWidth, look.scale);
            EXPECT_EQ(view.drawWithMode(canvas.context, icon.mode, kOffset, {}), icon.answer);
            PlainPicture picture(kWidth, look.scale);
            picture.draw(file(fmt::format("{}{}", icon.name, white ? "-white" : "")), kOffset, 2,
                         1);
            ASSERT_EQ(picture.differenceFrom(canvas.surface), "") << icon.name << look.text();
        }
}

TEST_P(VantorCPUMenuExtraViewPixelsTest, TextsStandWhereTheirSizePutsThem) {
    constexpr int kRise[] = {3, 2, 1, 1, 0, 0, 0, -1, -2};  // from size 8 on
    VTRSetObjectForKey("CPU_MenubarTextColor", "0.2 0.4 0.6 1");
    VTRSetObjectForKey("CPU_MenubarTextColor-Dark", "0.6 0.4 0.2 0.8");
    VTRSetObjectForKey("CPU_MenubarTextShadowColor", "1 1 0 0.5");
    VTRSetObjectForKey("CPU_MenubarTextShadowColor-Dark", "1 0 0 1");
    for (std::int64_t size = 6; size <= 18; ++size)
        for (int flags = 0; flags < 8; ++flags) {
            const Look look{.scale = scale(),
                            .theme = 1,
                            .dark = (flags & 1) != 0,
                            .contrast = (flags & 2) != 0,
                            .open = (flags & 4) != 0};
            take(look);
            VTRSetIntegerForKey("CPU_MenubarTextSize", size);
            const std::int64_t points = size >= 8 && size <= 16 ? size : 13;
            Painting::TextAttributes attributes;
            attributes.font = {.size = static_cast<double>(points), .tabularDigits = true};
            attributes.alignment = Painting::Alignment::centre;
            attributes.colour = look.open   ? look.dark && look.contrast ? kBlack : kWhite
                                : look.dark ? Colour{0.6F, 0.4F, 0.2F, 0.8F}
                                            : Colour{0.2F, 0.4F, 0.6F, 1};
            if (!look.open && !look.dark)
                attributes.shadow = Painting::Shadow{{0, -1}, {1, 1, 0, 0.5}};
            const Size box = Painting::sizeOfText("100%", attributes);
            test::BarCanvas canvas(kWidth, scale()), wanted(kWidth, scale());
            wanted.context.drawText(
                "56%",
                Rect{kOffset, 3.0 + kRise[points - 8], std::ceil(box.width), std::ceil(box.height)},
                attributes);
            EXPECT_EQ(paint(canvas.context, Mode::kPercentage, kOffset, usual),
                      static_cast<std::int64_t>(std::ceil(box.width)) + 4);
            ASSERT_EQ(test::pixelsOf(canvas.surface), test::pixelsOf(wanted.surface))
                << size << ", " << look.text();
        }
}

/// Nothing that is for graphs alone has a part in texts.
TEST_P(VantorCPUMenuExtraViewPixelsTest, TextsTakeNoNoticeOfGraphs) {
    std::map<int, std::vector<std::uint32_t>> firsts;
    for (const Look& look : allLooks(scale())) {
        take(look);
        test::BarCanvas canvas(kWidth, scale());
        paint(canvas.context, Mode::kPercentage, kOffset, usual);
        const int bar = (look.dark ? 1 : 0) + (look.contrast ? 2 : 0) + (look.open ? 4 : 0);
        const auto pixels = test::pixelsOf(canvas.surface);
        ASSERT_EQ(firsts.emplace(bar, pixels).first->second, pixels) << look.text();
    }
}

}  // namespace
}  // namespace vantor
