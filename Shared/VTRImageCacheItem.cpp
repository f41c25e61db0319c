#include "Shared/VTRImageCacheItem.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "Painting/Context.h"
#include "Painting/Image.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::size_t kThree = 3, kNine = 9;

/// One piece of a length, counted from the left or from the top. What is `drawn` there reaches
/// beyond it where a cap is cut off.
struct Piece {
    double start = 0, length = 0;
    double drawnStart = 0, drawnLength = 0;
};
using Division = std::array<Piece, kThree>;

/// A cap, a centre and a cap. Where there isn't enough for both caps they share what there is, and
/// meet between two pixels: one that both had half of would come out too thin.
Division divide(double length, double firstCap, double lastCap, double scale) noexcept {
    const double caps = firstCap + lastCap, room = std::max(0.0, length);
    const bool enough = caps <= length;
    const double first =
        enough ? firstCap : std::min(room, std::round(room * firstCap / caps * scale) / scale);
    const double last = enough ? lastCap : room - first;
    const double centre = length - first - last;
    return {Piece{0, first, 0, firstCap}, Piece{first, centre, first, centre},
            Piece{length - last, last, length - lastCap, lastCap}};
}

/// The part of `rect` from `x` to the right and from `top` downwards.
Rect within(const Rect& rect, double x, double width, double top, double height,
            bool flipped) noexcept {
    const double y = flipped ? top : rect.height - top - height;
    return {rect.x + x, rect.y + y, width, height};
}

void drawPart(Painting::Context& context, const Painting::Image& part, const Rect& rect,
              const Piece& column, const Piece& row, double alpha) noexcept {
    if (!(column.length > 0) || !(row.length > 0))
        return;
    const bool flipped = context.isFlipped();
    const Rect drawn = within(rect, column.drawnStart, column.drawnLength, row.drawnStart,
                              row.drawnLength, flipped);
    if (column.drawnLength <= column.length && row.drawnLength <= row.length)
        return context.drawImage(part, drawn, alpha);
    const Painting::StateSaver saved(context);
    context.clip(within(rect, column.start, column.length, row.start, row.length, flipped));
    context.drawImage(part, drawn, alpha);
}

}  // namespace

void VTRImageCacheItem::drawInRect(Painting::Context& context, const Rect& rect,
                                   double alpha) const noexcept {
    const auto& parts = data_.parts;
    if (parts.size() != kThree && parts.size() != kNine)
        return;
    // The last part has the lower right caps, of three parts as of nine.
    const Size first = parts.front()->size(), last = parts.back()->size();
    const Division columns = divide(rect.width, first.width, last.width, context.scale());
    const Division rows = divide(rect.height, first.height, last.height, context.scale());
    const Piece wholeWidth{0, rect.width, 0, rect.width},
        wholeHeight{0, rect.height, 0, rect.height};
    for (std::size_t index = 0; index < parts.size(); ++index) {
        const bool nine = parts.size() == kNine;
        const Piece& column = nine             ? columns[index % kThree]
                              : data_.vertical ? wholeWidth
                                               : columns[index];
        const Piece& row = nine ? rows[index / kThree] : data_.vertical ? rows[index] : wholeHeight;
        drawPart(context, *parts[index], rect, column, row, alpha);
    }
}

}  // namespace vantor::inline VANTOR_MODULE
