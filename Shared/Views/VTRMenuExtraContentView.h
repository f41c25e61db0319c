#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "Foundation/Geometry.h"
#include "Painting/Context.h"
#include "Painting/Path.h"
#include "Painting/Text.h"
#include "Shared/Views/MenuExtraConfig.h"
#include "Shared/Views/MenubarColors.h"
#include "Shared/Views/MenubarGraphSamples.h"

namespace vantor::inline VANTOR_MODULE {

class VTRModuleDelegate;

/// Paints one module's part of the item, by a configuration of plain values. It isn't a view of
/// any view tree: it paints where it is told to, and answers how wide that came out.
/// Units:  points of the bar's view, 22 high, with the origin at the lower left. What a drawing
///         answers includes a gap of 4 at its right.
/// Errors: none. What a configuration lacks isn't painted.
/// Thread: main. The caches of text attributes and the path are kept from paint to paint.
class VTRMenuExtraContentView {
public:
    static constexpr int kGap = 4;

    /// `extra` owns the item; may be null.
    VTRMenuExtraContentView(const Rect& frame, VTRModuleDelegate* extra);
    virtual ~VTRMenuExtraContentView();
    VTRMenuExtraContentView(const VTRMenuExtraContentView&) = delete;
    VTRMenuExtraContentView& operator=(const VTRMenuExtraContentView&) = delete;

    virtual void loadConfig() {}
    virtual void update() {}
    /// Paints from `offset` on and answers where it ended.
    virtual std::int64_t drawAtOffset(Painting::Context&, std::int64_t) { return 0; }
    virtual double size() const noexcept { return 1; }

    /// Forgets how texts look, so that the next paint asks the preferences again.
    void resetTextConfig() noexcept;

    /// The opacity of graph backgrounds.
    float alpha() const;

    // The kinds of graphs. Each answers the width that it took.
    std::int64_t drawPieGraphWithOffset(Painting::Context& context, std::int64_t offset,
                                        SampleSources collectors);
    std::int64_t drawVerticalGraphWithOffset(Painting::Context& context, std::int64_t offset,
                                             SampleSources collectors, std::string_view key = {});
    std::int64_t drawCombinedVerticalGraphWithOffset(Painting::Context& context,
                                                     std::int64_t offset,
                                                     SampleSources collectors);
    std::int64_t drawHistoryGraphWithOffset(Painting::Context& context, std::int64_t offset,
                                            SampleSources collectors);
    std::int64_t drawMultipleHistoryGraphWithOffset(Painting::Context& context,
                                                    std::int64_t offset,
                                                    SampleSources collectors);
    std::int64_t drawDotWithOffset(Painting::Context& context, std::int64_t offset,
                                   SampleSources collectors, std::string_view key);
    std::int64_t drawLabel(Painting::Context& context, std::int64_t offset);

    // Texts.
    std::int64_t drawTextAtOffset(Painting::Context& context, std::int64_t offset,
                                  SampleSources collectors, std::string_view key);
    /// Draws one line and answers its width without the gap: that of `sizingText`, if there is
    /// one, in place of the text's own; at least `minimumWidth`.
    std::int64_t drawString(Painting::Context& context, std::string_view text, std::int64_t x,
                            const Painting::TextAttributes& attributes,
                            std::string_view sizingText = {}, std::int64_t minimumWidth = 0);
    static Painting::Font fontWithSize(std::int64_t size);
    /// The same font with digits of one width.
    static Painting::Font correctedFont(Painting::Font font);
    const Painting::TextAttributes& percentageAttributes(std::string_view key);
    const Painting::TextAttributes& smallTextAttributes(std::string_view key);
    /// What a battery's state and its minutes say.
    static std::string formattedBatteryTime(std::int32_t state, std::int32_t time);

    bool isMenuDown() const noexcept { return isMenuDown_; }
    void setIsMenuDown(bool isMenuDown) noexcept { isMenuDown_ = isMenuDown; }
    bool ready() const noexcept { return ready_; }
    void setReady(bool ready) noexcept { ready_ = ready; }
    const Rect& frame() const noexcept { return frame_; }
    VTRModuleDelegate* extra() const noexcept { return extra_; }
    const MenuExtraConfig& config() const noexcept { return config_; }
    MenuExtraConfig& mutableConfig() noexcept { return config_; }
    /// Texts that items of type 2 show, and figures that bandwidth items format, by key.
    std::map<std::string, std::string, std::less<>>& texts() noexcept { return texts_; }
    /// How many texts have attributes kept.
    std::size_t keptTextAttributes() const noexcept { return textAttributes_.size(); }

private:
    using AttributesMaker = Painting::TextAttributes (VTRMenuExtraContentView::*)(
        const TextItem& item, const BarState& bar) const;

    BarState barState() const { return BarState::current(isMenuDown_); }
    void drawTile(Painting::Context& context, std::int64_t offset, std::int64_t width) const;
    bool paintsHistoryBackground() const;
    void fillWithInk(Painting::Context& context, const GraphDictionary& graph, GraphKind kind);
    void outlineHistory(std::span<const menubar_graph_sample> records,
                        const GraphDictionary& graph, const Rect& rect, std::int64_t width);
    bool outlinePart(std::span<const menubar_graph_sample> records, const GraphDictionary& graph,
                     std::int64_t offset, std::int64_t width);
    std::int64_t drawSmallText(Painting::Context& context, std::int64_t offset,
                               SampleSources collectors, std::string_view key,
                               const TextItem& item, double total);
    std::int64_t drawLargeText(Painting::Context& context, std::int64_t offset,
                               SampleSources collectors, std::string_view key,
                               const TextItem& item);
    std::int64_t smallTextWidth(const TextItem& item, SampleSources collectors, double textWidth);
    std::string configText(std::string_view key) const;
    const Painting::TextAttributes& attributes(std::string_view key, AttributesMaker make);
    Painting::TextAttributes makePercentageAttributes(const TextItem& item,
                                                      const BarState& bar) const;
    Painting::TextAttributes makeSmallTextAttributes(const TextItem& item,
                                                     const BarState& bar) const;

    struct AttributesKey {
        std::string_view item;
        bool selected;
        auto operator<=>(const AttributesKey&) const = default;
    };

    Rect frame_;
    VTRModuleDelegate* extra_;
    bool ready_ = false, isMenuDown_ = false;
    MenuExtraConfig config_;
    std::map<std::string, std::string, std::less<>> texts_;
    std::map<AttributesKey, Painting::TextAttributes> textAttributes_;
    std::map<std::string, std::int64_t, std::less<>> minimumWidths_;  // of sensors, by key
    Painting::Path path_;
};

}  // namespace vantor::inline VANTOR_MODULE
