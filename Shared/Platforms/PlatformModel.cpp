#include "Shared/Platforms/PlatformModel.h"

#include <algorithm>
#include <iterator>

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr auto kMac = PlatformModel::Base::mac;
constexpr auto kiMac = PlatformModel::Base::iMac;
constexpr auto kMacPro = PlatformModel::Base::macPro;
constexpr auto kNone = PlatformModel::kNoVariation;
constexpr auto kBySerial = PlatformModel::kVariationBySerial;

// Rows that look uneven are so: some 21.5-inch screens say 21, MacBookPro9,1 says 17, and
// MacBookPro10,2 has no "Retina".
// clang-format off
constexpr PlatformModel kModels[] = {
    {"MacBook1,1", "MacBook", 13, 2048, 2, "macbook-white.png", kMac, kNone, 21, {"TC0D"}},
    {"MacBook2,1", "MacBook", 13, 2048, 2, "macbook-white.png", kMac, kBySerial, 16, {"TC0D"}},
    {"MacBook3,1", "MacBook", 13, 4096, 2, "macbook-white.png", kMac, "Late 2007", 18, {"TC0D"}},
    {"MacBook4,1", "MacBook", 13, 4096, 2, "macbook-white.png", kMac, "Early 2008", 18, {"TC0D"}},
    {"MacBook5,1", "MacBook", 13, 4096, 2, "macbook-unibody.png", kMac, "Late 2008", 18, {"TC0D"}},
    {"MacBook5,2", "MacBook", 13, 4096, 2, "macbook-unibody-plastic.png",
     kMac, kBySerial, 18, {"TC0D"}},
    {"MacBook6,1", "MacBook", 13, 4096, 2, "macbook-unibody.png", kMac, "Late 2009", 20, {"TC0D"}},
    {"MacBook7,1", "MacBook", 13, 4096, 2, "macbook-unibody.png", kMac, "Mid 2010", 20, {"TC0D"}},
    {"MacBook8,1", "MacBook", 12, 8192, 0, "macbook-unibody.png",
     kMac, "Retina, Mid 2015", 31, {"TCXC"}},
    {"MacBookAir1,1", "MacBook Air", 13, 2048, 0, "macbookair.png",
     kMac, "Early 2008", 19, {"TC0D"}},
    {"MacBookAir2,1", "MacBook Air", 13, 2048, 0, "macbookair.png", kMac, kBySerial, 20, {"TC0D"}},
    {"MacBookAir3,1", "MacBook Air", 11, 4096, 0, "macbookair.png",
     kMac, "Late 2010", 19, {"TC0D"}},
    {"MacBookAir3,2", "MacBook Air", 13, 4096, 0, "macbookair.png",
     kMac, "Late 2010", 20, {"TC0D"}},
    {"MacBookAir4,1", "MacBook Air", 11, 4096, 0, "macbookair-unibody.png",
     kMac, "Mid 2011", 31, {"TC0D"}},
    {"MacBookAir4,2", "MacBook Air", 13, 4096, 0, "macbookair-unibody.png",
     kMac, "Mid 2011", 31, {"TC0D"}},
    {"MacBookAir5,1", "MacBook Air", 11, 8192, 0, "macbookair-unibody.png",
     kMac, "Mid 2012", 34, {"TC0D"}},
    {"MacBookAir5,2", "MacBook Air", 13, 8192, 0, "macbookair-unibody.png",
     kMac, "Mid 2012", 34, {"TC0D"}},
    {"MacBookAir6,1", "MacBook Air", 11, 8192, 0, "macbookair-unibody.png",
     kMac, "Mid 2013", 32, {"TCXC"}},
    {"MacBookAir6,2", "MacBook Air", 13, 8192, 0, "macbookair-unibody.png",
     kMac, "Mid 2013", 32, {"TCXC"}},
    {"MacBookAir7,1", "MacBook Air", 11, 8192, 0, "macbookair-unibody.png",
     kMac, "Mid 2015", 38, {"TCXC"}},
    {"MacBookAir7,2", "MacBook Air", 13, 8192, 0, "macbookair-unibody.png",
     kMac, "Mid 2015", 38, {"TCXC"}},
    {"MacBookPro1,1", "MacBook Pro", 15, 2048, 2, "macbookpro.png", kMac, kNone, 31, {"TC0D"}},
    {"MacBookPro1,2", "MacBook Pro", 17, 2048, 2, "macbookpro.png", kMac, kNone, 31, {"TC0D"}},
    {"MacBookPro2,1", "MacBook Pro", 17, 3072, 2, "macbookpro.png",
     kMac, "Late 2006", 24, {"TC0D"}},
    {"MacBookPro2,2", "MacBook Pro", 15, 3072, 2, "macbookpro.png",
     kMac, "Late 2006", 24, {"TC0D"}},
    {"MacBookPro3,1", "MacBook Pro", 15, 4096, 2, "macbookpro.png",
     kMac, "Late 2007", 24, {"TC0D"}},
    {"MacBookPro4,1", "MacBook Pro", 15, 4096, 2, "macbookpro.png",
     kMac, "Early 2008", 27, {"TC0D"}},
    {"MacBookPro5,1", "MacBook Pro", 15, 4096, 2, "macbookpro-unibody.png",
     kMac, "Late 2008", 32, {"TC0D"}},
    {"MacBookPro5,2", "MacBook Pro", 17, 8192, 2, "macbookpro-unibody.png",
     kMac, kBySerial, 32, {"TC0D"}},
    {"MacBookPro5,3", "MacBook Pro", 15, 8192, 2, "macbookpro-unibody.png",
     kMac, "Mid 2009", 32, {"TC0D"}},
    {"MacBookPro5,4", "MacBook Pro", 15, 8192, 2, "macbookpro-unibody.png",
     kMac, "Mid 2009", 28, {"TC0C"}},
    {"MacBookPro5,5", "MacBook Pro", 13, 8192, 2, "macbookpro-unibody.png",
     kMac, "Mid 2009", 13, {"TC0D"}},
    {"MacBookPro6,1", "MacBook Pro", 17, 8192, 2, "macbookpro-unibody.png",
     kMac, "Mid 2010", 31, {"TC0D"}},
    {"MacBookPro6,2", "MacBook Pro", 15, 8192, 2, "macbookpro-unibody.png",
     kMac, "Mid 2010", 32, {"TC0D"}},
    {"MacBookPro7,1", "MacBook Pro", 13, 8192, 2, "macbookpro-unibody.png",
     kMac, "Mid 2010", 21, {"TC0D"}},
    {"MacBookPro8,1", "MacBook Pro", 13, 8192, 2, "macbookpro-unibody.png",
     kMac, kBySerial, 29, {"TC0D"}},
    {"MacBookPro8,2", "MacBook Pro", 15, 8192, 2, "macbookpro-unibody.png",
     kMac, kBySerial, 41, {"TC0D"}},
    {"MacBookPro8,3", "MacBook Pro", 17, 8192, 2, "macbookpro-unibody.png",
     kMac, kBySerial, 35, {"TC0C"}},
    {"MacBookPro9,1", "MacBook Pro", 17, 8192, 2, "macbookpro-unibody.png",
     kMac, "Mid 2012", 37, {"TCXC"}},
    {"MacBookPro9,2", "MacBook Pro", 13, 8192, 2, "macbookpro-unibody.png",
     kMac, "Mid 2012", 25, {"TCXC"}},
    {"MacBookPro10,1", "MacBook Pro", 15, 16384, 2, "macbookpro-retina-display.png",
     kMac, "Retina, Mid 2012", 38, {"TCXC"}},
    {"MacBookPro10,2", "MacBook Pro", 13, 8192, 0, "macbookpro-retina-display.png",
     kMac, "Late 2012", 28, {"TC0P"}},
    {"MacBookPro11,1", "MacBook Pro", 13, 8192, 0, "macbookpro-retina-display.png",
     kMac, "Retina, Late 2013", 29, {"TC0P"}},
    {"MacBookPro11,2", "MacBook Pro", 15, 16384, 2, "macbookpro-retina-display.png",
     kMac, "Retina, Late 2013", 46, {"TCXC"}},
    {"MacBookPro11,3", "MacBook Pro", 15, 16384, 2, "macbookpro-retina-display.png",
     kMac, "Retina, Late 2013", 46, {"TCXC"}},
    {"MacBookPro11,4", "MacBook Pro", 15, 16384, 2, "macbookpro-retina-display.png",
     kMac, "Retina, Mid 2015", 48, {"TCXC"}},
    {"MacBookPro11,5", "MacBook Pro", 15, 16384, 2, "macbookpro-retina-display.png",
     kMac, "Retina, Mid 2015", 52, {"TCXC"}},
    {"MacBookPro12,1", "MacBook Pro", 13, 16384, 0, "macbookpro-retina-display.png",
     kMac, "Retina, Early 2015", 27, {"TC0P"}},
    {"Macmini1,1", "Mac Mini", 0, 2048, 2, "macmini.png", kMac, "Early 2006", 15, {"TC0D"}},
    {"Macmini2,1", "Mac Mini", 0, 2048, 2, "macmini.png", kMac, "Mid 2007", 10, {"TC0D"}},
    {"Macmini3,1", "Mac Mini", 0, 4096, 2, "macmini.png", kMac, kBySerial, 19, {"TC0D"}},
    {"Macmini4,1", "Mac Mini", 0, 8192, 2, "macmini-unibody.png", kMac, "Mid 2010", 22, {"TC0D"}},
    {"Macmini5,1", "Mac Mini", 0, 16384, 2, "macmini-unibody-no-optical.png",
     kMac, "Mid 2011", 23, {"TC0D"}},
    {"Macmini5,2", "Mac Mini", 0, 16384, 2, "macmini-unibody-no-optical.png",
     kMac, "Mid 2011", 30, {"TC0D"}},
    {"Macmini5,3", "Mac Mini", 0, 16384, 2, "macmini-unibody-no-optical.png",
     kMac, "Mid 2011", 23, {"TC0D"}},
    {"Macmini6,1", "Mac Mini", 0, 16384, 2, "macmini-unibody-no-optical.png",
     kMac, "Late 2012", 31, {"TC0D"}},
    {"Macmini6,2", "Mac Mini", 0, 16384, 2, "macmini-unibody-no-optical.png",
     kMac, "Late 2012", 31, {"TC0D"}},
    {"Macmini7,1", "Mac Mini", 0, 16384, 0, "macmini-unibody-no-optical.png",
     kMac, "Late 2014", 36, {"TCXC"}},
    {"MacPro1,1", "Mac Pro", 0, 16384, 8, "macpro.png",
     kMacPro, "Early 2007", 45, {"TCAH", "TCBH"}},
    {"MacPro2,1", "Mac Pro", 0, 16384, 8, "macpro.png",
     kMacPro, "Early 2007", 47, {"TCAH", "TCBH"}},
    {"MacPro3,1", "Mac Pro", 0, 16384, 8, "macpro.png",
     kMacPro, "Early 2008", 51, {"TCAH", "TCBH"}},
    {"MacPro4,1", "Mac Pro", 0, 16384, 8, "macpro.png",
     kMacPro, "Early 2009", 95, {"TCAD", "TCBD"}},
    {"MacPro5,1", "Mac Pro", 0, 16384, 8, "macpro.png", kMacPro, kBySerial, 74, {"TCAD", "TCBD"}},
    {"MacPro6,1", "Mac Pro", 0, 65536, 4, "macpro-cylinder.png",
     kMacPro, "Late 2013", 46, {"TC0p"}},
    {"iMac4,1", "iMac", 17, 2048, 2, "imac-iSight.png", kiMac, kNone, 19, {"TC0D"}},
    {"iMac5,1", "iMac", 17, 3072, 2, "imac-iSight.png", kiMac, "Late 2006", 19, {"TC0D"}},
    {"iMac5,2", "iMac", 17, 2048, 2, "imac-iSight.png", kiMac, "Late 2006", 19, {"TC0D"}},
    {"iMac6,1", "iMac", 24, 4096, 2, "imac-iSight.png", kiMac, "Late 2006", 23, {"TC0H"}},
    {"iMac7,1", "iMac", 20, 4096, 2, "imac-aluminum.png", kiMac, "Mid 2007", 19, {"TC0H"}},
    {"iMac8,1", "iMac", 20, 4096, 2, "imac-aluminum.png", kiMac, "Early 2008", 23, {"TC0D"}},
    {"iMac9,1", "iMac", 20, 8192, 2, "imac-unibody.png", kiMac, "Early 2009", 18, {"TC0D"}},
    {"iMac10,1", "iMac", 21.5, 8192, 4, "imac-unibody.png", kiMac, "Late 2009", 21, {"TC0H"}},
    {"iMac11,1", "iMac", 27, 16384, 4, "imac-unibody.png", kiMac, "Late 2009", 21, {"TC0H"}},
    {"iMac11,2", "iMac", 21.5, 16384, 4, "imac-unibody.png", kiMac, "Mid 2010", 29, {"TC0H"}},
    {"iMac11,3", "iMac", 27, 16384, 4, "imac-unibody.png", kiMac, "Mid 2010", 29, {"TC0H"}},
    {"iMac12,1", "iMac", 21.5, 16384, 4, "imac-unibody.png", kiMac, "Mid 2011", 44, {"TC0H"}},
    {"iMac12,2", "iMac", 27, 16384, 4, "imac-unibody.png", kiMac, "Mid 2011", 44, {"TC0H"}},
    {"iMac13,1", "iMac", 21, 32768, 4, "imac-unibody.png", kiMac, "Late 2012", 29, {"TC0p"}},
    {"iMac13,2", "iMac", 27, 32768, 4, "imac-unibody.png", kiMac, "Late 2012", 47, {"TC0p"}},
    {"iMac14,1", "iMac", 21, 32768, 4, "imac-unibody.png", kiMac, "Late 2013", 29, {"TC0p"}},
    {"iMac14,2", "iMac", 27, 32768, 4, "imac-unibody.png", kiMac, "Late 2013", 44, {"TC0p"}},
    {"iMac14,3", "iMac", 21, 8192, 0, "imac-unibody.png", kiMac, "Late 2013", 29, {"TC0p"}},
    {"iMac14,4", "iMac", 21, 8192, 0, "imac-unibody.png", kiMac, "Mid 2014", 45, {"TC0p"}},
    {"iMac15,1", "iMac with Retina 5K Display", 27, 32768, 4, "imac-unibody.png",
     kiMac, "Late 2014", 47, {"TC0p"}},
    {"Xserve1,1", "Xserve", 0, 0, 0, "xserve.png", kMac, "Late 2006", 51, {"TCAH", "TCBH"}},
    {"Xserve2,1", "Xserve", 0, 0, 0, "xserve.png", kMac, kNone, 45, {"TCAH", "TCBH"}},
    {"Xserve3,1", "Xserve", 0, 0, 0, "xserve.png", kMac, kNone, 43, {"TCAH", "TCBH"}},
};

/// A period in which a model was made, and the tails of the serial numbers of that time.
struct Variation {
    std::string_view identifier, period, tails;
};

constexpr Variation kVariations[] = {
    {"MacBook2,1", "Mid 2007", "YA5 Z5W Z5X YQ8 YA2 YA7 ZA9 Z5Y YA3 YA8 YA4 Z5V YA9 Z60"},
    {"MacBook2,1", "Late 2006", "WGK XE1 WGP WGU WGL WGQ WGM X98 WGN"},
    {"MacBook5,2", "Mid 2009", "A1X 9GV 9GU A9Q"},
    {"MacBook5,2", "Early 2009", "4R2 4R1 4R3"},
    {"MacBookAir2,1", "Late 2008", "5LA 22E 22D 5L9"},
    {"MacBookAir2,1", "Mid 2009", "9A5 9A8 9A7"},
    {"MacBookPro5,2", "Early 2009", "7AP 2QT 2QP 8G0 8FM"},
    {"MacBookPro5,2", "Mid 2009", "8YA 91T 8YB ANE"},
    {"MacBookPro8,1", "Late 2011", "DYL0 DVHP DV14 DVHK DV17 DV13 DVHJ DW13 DV16 DY1K"},
    {"MacBookPro8,1", "Early 2011", "DRJK DRJ7 DRJJ DH2M DM75 DH2L DH2H DRJ9 DH2G"},
    {"MacBookPro8,2", "Early 2011",
     "DRJF DF8X DT5G DMPM DT57 DF91 DRJC DNHY DF8Y DMDG DT5H DMPN DRJL DRWD DT58 DRJD DT54 "
     "DF8V DNRD DMPK DRJM DNKY DMGG"},
    {"MacBookPro8,2", "Late 2011",
     "DYR1 DY5Q DYK9 DY1N DW47 DV7P DV7L DVHL DYKC DV7M DY20 DVHM DY1T DY1P DV7N"},
    {"MacBookPro8,3", "Late 2011", "DW48 DY25 DV10 DV11 DVHN"},
    {"MacBookPro8,3", "Early 2011", "DF92 DRJG DRJN DMGH DF93 DRJH"},
    {"MacPro5,1", "Mid 2010", "HF7 HFN HFD HG3 EUE EUH HF8 H2P EUF HFC H2N HFK GWR EUG"},
    {"MacPro5,1", "Server, Mid 2010", "HPV HPW"},
    {"Macmini3,1", "Early 2009", "1BU 19Y 1BV 19X"},
    {"Macmini3,1", "Late 2009", "9G6 9G5 9G8 9G7 B9X"},
};
// clang-format on

/// Whether `words`, with single blanks between them, have `word`.
bool hasWord(std::string_view words, std::string_view word) noexcept {
    for (std::size_t begin = 0; begin < words.size();) {
        const std::size_t end = std::min(words.find(' ', begin), words.size());
        if (words.substr(begin, end - begin) == word)
            return true;
        begin = end + 1;
    }
    return false;
}

}  // namespace

std::vector<std::string> PlatformModel::defaultSensorKeys() const {
    std::vector<std::string> keys;
    for (const std::string_view key : sensorKeys)
        if (!key.empty())
            keys.emplace_back(key);
    return keys;
}

std::optional<std::string> PlatformModel::variationName(std::string_view serialTail) const {
    if (variation == kNoVariation)
        return std::nullopt;
    if (variation != kVariationBySerial)
        return std::string(variation);
    for (const Variation& known : kVariations)
        if (known.identifier == identifier && hasWord(known.tails, serialTail))
            return std::string(known.period);
    return std::nullopt;
}

std::span<const PlatformModel> platformModels() noexcept { return kModels; }

std::string platformClassName(std::string_view modelIdentifier) {
    std::string name(modelIdentifier);
    std::ranges::replace(name, ',', '_');
    return name;
}

const PlatformModel* platformModelNamed(std::string_view className) {
    const auto* const found = std::ranges::find_if(kModels, [&](const PlatformModel& model) {
        return platformClassName(model.identifier) == className;
    });
    return found == std::end(kModels) ? nullptr : found;
}

}  // namespace vantor::inline VANTOR_MODULE
