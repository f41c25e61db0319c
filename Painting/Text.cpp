#include "Painting/Text.h"

#include "Painting/Engine.h"
#include "Painting/PlainText.h"

namespace vantor::Painting {

Size sizeOfText(std::string_view text, const TextAttributes& attributes) noexcept {
    return Engine::shared().sizeOfText(PlainText(text).view(), attributes);
}

}  // namespace vantor::Painting
