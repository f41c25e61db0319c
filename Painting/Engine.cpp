#include "Painting/Engine.h"

#include <string>
#include <utility>

#include "Foundation/OwnModule.h"

namespace vantor::Painting {
namespace {

constexpr const char* kFile = "libvantor-painting.so";

class SilentEngine final : public Engine {
public:
    void save(_cairo*) noexcept override {}
    void restore(_cairo*) noexcept override {}
    void transform(_cairo*, Point, double, double) noexcept override {}
    void clip(_cairo*, const Rect&) noexcept override {}
    void clip(_cairo*, const Path&) noexcept override {}
    Rect clipBounds(_cairo*) noexcept override { return {}; }
    void setColour(_cairo*, const Colour&) noexcept override {}
    void fill(_cairo*, const Path&) noexcept override {}
    void fill(_cairo*, const Rect&) noexcept override {}
    void fill(_cairo*, const Path&, const Gradient&, double, double) noexcept override {}
    void stroke(_cairo*, const Path&, double) noexcept override {}
    void paint(_cairo*, const Bitmap&, const Rect&, double, Origin) noexcept override {}
    Size sizeOfText(std::string_view, const TextAttributes&) noexcept override { return {}; }
    void drawText(_cairo*, std::string_view, const Rect&, const TextAttributes&,
                  Origin) noexcept override {}
    _cairo* open(std::uint32_t*, int, int, double) noexcept override { return nullptr; }
    void close(_cairo*) noexcept override {}
    bool writePNG(_cairo*, const char*) noexcept override { return false; }
};

class OpenedEngine {
public:
    static const OpenedEngine& once() noexcept {
        static const OpenedEngine opened;
        return opened;
    }
    Engine& engine() const noexcept { return *engine_; }
    std::string_view trouble() const noexcept { return trouble_; }

private:
    OpenedEngine() noexcept {
        OwnModule module = openOwnModule(kFile, kEngineEntry);
        trouble_ = std::move(module.trouble);
        if (module.entry != nullptr)
            engine_ = reinterpret_cast<EngineEntry>(module.entry)();
    }

    SilentEngine silent_;
    Engine* engine_ = &silent_;
    std::string trouble_;
};

}  // namespace

Engine& Engine::shared() noexcept { return OpenedEngine::once().engine(); }

std::string_view Engine::trouble() noexcept { return OpenedEngine::once().trouble(); }

}  // namespace vantor::Painting
