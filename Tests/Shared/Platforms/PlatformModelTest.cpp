#include "Shared/Platforms/PlatformModel.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Shared/Platforms/SensorRecord.h"

namespace vantor {
namespace {

using testing::ElementsAre;

const PlatformModel& model(std::string_view identifier) {
    const PlatformModel* const found = platformModelNamed(platformClassName(identifier));
    if (found == nullptr)
        throw std::runtime_error("no " + std::string(identifier));
    return *found;
}

std::ptrdiff_t countWhere(bool (*holds)(const PlatformModel&)) {
    return std::ranges::count_if(platformModels(), holds);
}

/// Every sensor key that any model has.
std::set<std::string> allSensorKeys() {
    std::istringstream words(
        R"(ALSL BOOSTA BOOSTB CPU CPU_MEM EXHAUST Exhaust F0Ac F1Ac HDD I50R IAPC IB0R IB0r IBAC IBLC
IC0C IC0G IC0I IC0M IC0R IC0S IC0r IC1C IC1R IC2C IC3C IC5R ICAB ICAC ICBB ICBC ICMC ICS0
ICS1 ICSR ICTR ICVR ID0R ID1R ID2R ID5R IDS2 IDSR IF0R IG0C IG0F IG0R IG0S IG1C IG1R IG1S
IG2C IH02 IH05 IH0R IH1R IH1Z IH2Z IH3Z IH4Z IH5Z IHDC IHSC II0R ILDC IM0C IM0R IM3C IMAS
IMBS IMTR IN0 IN0C IN0R IN1 IN1C IN1R IN2 IN2R IN3 IN4 IN5 IN6 INTAKE IO0R IO0Z IO3R IO5R
IP0R IPB1 IPBF IPBR IR1R IS1C IS2C ISDC IV1R Ic0R Ie1S Ie2S Ie3S Ie4S IeAS IeBS Ip0C Ip1M
Ip2M Ip3M Ip4M Ip5M Ip6M Ip7M Ip8M Leftside ODD OUT0 OUT1 OUT2 OUT3 OUT4 OUT5 OUT6 PB1R PC0C
PC0R PCI PCPC PCPG PCPR PCPT PD0R PDS2 PDSR PDTR PF0R PG0C PGTR PM0R PM3C PN0C PN0R PP0R
PPBR PS PS0IN PS0OUT PS1IN PS1OUT PSDC PSTR Rightside TA0P TA0S TA0p TA1P TA1S TA1p TA2S
TA2p TA3S TALP TB0T TB1T TB2T TB3T TC0C TC0D TC0E TC0H TC0P TC0c TC0p TC1C TC1P TC1c TC1p
TC2C TC2P TC2c TC3C TC3P TC3c TC4C TCAC TCAD TCAH TCBC TCBD TCBH TCGC TCGc TCHP TCSA TCSc
TCXC TCXr TG0C TG0D TG0H TG0M TG0P TG0T TG0d TG0p TG0r TG1D TG1H TG1d TG1p TG1r TH0A TH0B
TH0O TH0P TH0a TH0b TH1P TH1R TH2P TH3P TH4P THSP TI0P TI0p TI1P TI1p TL0P TL0p TL1p TM0P
TM0S TM0p TM0r TM1P TM1S TM1p TM1r TM2P TM2p TM3P TM3p TM4P TM5P TM6P TM7P TM8P TM8S TM9P
TM9S TMA1 TMA2 TMA3 TMA4 TMAP TMB1 TMB2 TMB3 TMB4 TN0C TN0D TN0H TN0P TN1D TN1P TO0P TP0P
TPCD TPCd TS0C TS0p TS2P TS2p TV0P TW0P TW0p Ta0P Tb0p Te0t Te1S Te2S Te3S Te4S Te5S Th0H
Th0N Th0P Th1H Th2H Tm0P Tm0p Tm1P Tm1p Tm2p Tp0C Tp0P Tp0t Tp1C Tp1P Tp2H Tp2P Tp2h Tp3H
Tp3P Tp4P Tp5P Ts0P Ts1P V50R VACC VBLC VC0C VC0G VC0M VC0S VC1C VC1R VC2C VC5R VC8R VCAB
VCAC VCBB VCBC VCFR VCS0 VCTR VCVR VD0C VD0R VD2R VD5R VDPR VDPr VDSR VG0C VG0F VG0R VG0S
VG1C VG1R VG1S VG3C VH05 VH0R VH1Z VH2Z VH3Z VH4Z VH5Z VI1R VM0C VM0R VM1S VM2S VMAS VMBS
VN0C VN0R VN1C VN1R VO0Z VP0R VR1R VR3R VS1C VS2C VS4C VS8C VSEC VSFC VV1R Ve1S Ve2S Ve3S
Ve4S VeAS VeBS VeES Vp0C)");
    return {std::istream_iterator<std::string>(words), {}};
}

TEST(PlatformModelTest, TableHas87ModelsOfDifferentNames) {
    std::set<std::string_view> identifiers;
    for (const PlatformModel& each : platformModels())
        identifiers.insert(each.identifier);
    EXPECT_EQ(platformModels().size(), 87u);
    EXPECT_EQ(identifiers.size(), 87u);
}

TEST(PlatformModelTest, EveryModelIsFoundByItsName) {
    for (const PlatformModel& each : platformModels()) {
        EXPECT_EQ(platformModelNamed(platformClassName(each.identifier)), &each);
        EXPECT_EQ(platformClassName(each.identifier).find(','), std::string::npos);
    }
    EXPECT_EQ(platformModelNamed("MacBookPro8_2"), &model("MacBookPro8,2"));
    EXPECT_EQ(platformModelNamed("MacBookPro13_1"), nullptr);
    EXPECT_EQ(platformModelNamed(""), nullptr);
}

TEST(PlatformModelTest, VariationIsConstantFor72BySerialFor9AndNoneFor6) {
    EXPECT_EQ(countWhere([](auto& each) { return each.variation == PlatformModel::kNoVariation; }),
              6);
    EXPECT_EQ(
        countWhere([](auto& each) { return each.variation == PlatformModel::kVariationBySerial; }),
        9);
}

TEST(PlatformModelTest, SensorsAre2726From10To95) {
    const auto models = platformModels();
    std::size_t sum = 0;
    for (const PlatformModel& each : models)
        sum += each.sensorCount;
    EXPECT_EQ(sum, 2726u);
    const auto least = std::ranges::min(models, {}, &PlatformModel::sensorCount);
    const auto most = std::ranges::max(models, {}, &PlatformModel::sensorCount);
    EXPECT_EQ(least.identifier, "Macmini2,1");
    EXPECT_EQ(least.sensorCount, 10u);
    EXPECT_EQ(most.identifier, "MacPro4,1");
    EXPECT_EQ(most.sensorCount, 95u);
}

TEST(PlatformModelTest, BaseFollowsTheFamilyAndServersAreNoMacPros) {
    using Base = PlatformModel::Base;
    for (const PlatformModel& each : platformModels()) {
        const Base base = each.identifier.starts_with("MacPro") ? Base::macPro
                          : each.identifier.starts_with("iMac") ? Base::iMac
                                                                : Base::mac;
        EXPECT_EQ(each.base, base) << each.identifier;
    }
    EXPECT_EQ(countWhere([](auto& each) { return each.base == Base::macPro; }), 6);
    EXPECT_EQ(countWhere([](auto& each) { return each.base == Base::iMac; }), 20);
}

TEST(PlatformModelTest, OnlyPortablesAndAllInOnesHaveAScreen) {
    for (const PlatformModel& each : platformModels()) {
        const bool hasScreen =
            each.identifier.starts_with("MacBook") || each.identifier.starts_with("iMac");
        EXPECT_EQ(each.screenSize > 0, hasScreen) << each.identifier;
    }
    EXPECT_EQ(countWhere([](auto& each) { return each.screenSize == 21.5; }), 3);
    EXPECT_EQ(countWhere([](auto& each) { return each.screenSize == 21; }), 4);
}

TEST(PlatformModelTest, OnlyServersHaveNoMemoryLimit) {
    for (const PlatformModel& each : platformModels())
        EXPECT_EQ(each.maximumMemory == 0, each.identifier.starts_with("Xserve"))
            << each.identifier;
}

TEST(PlatformModelTest, UnevenRowsAreKept) {
    EXPECT_EQ(model("MacBookPro9,1").screenSize, 17);
    EXPECT_EQ(model("iMac13,1").screenSize, 21);
    EXPECT_EQ(model("MacBookPro10,2").variationName(""), "Late 2012");
    EXPECT_EQ(model("MacBookPro10,1").variationName(""), "Retina, Mid 2012");
    EXPECT_EQ(model("iMac15,1").name, "iMac with Retina 5K Display");
    EXPECT_EQ(model("Macmini7,1").name, "Mac Mini");
    EXPECT_EQ(model("MacPro6,1").maximumMemory, 65536);
    EXPECT_EQ(model("MacBook5,2").icon, "macbook-unibody-plastic.png");
}

TEST(PlatformModelTest, MachinesWithTwoProcessorsShowTwoSensors) {
    EXPECT_THAT(model("MacPro4,1").defaultSensorKeys(), ElementsAre("TCAD", "TCBD"));
    EXPECT_THAT(model("Xserve3,1").defaultSensorKeys(), ElementsAre("TCAH", "TCBH"));
    EXPECT_THAT(model("MacPro6,1").defaultSensorKeys(), ElementsAre("TC0p"));
    EXPECT_EQ(countWhere([](auto& each) { return each.defaultSensorKeys().size() == 2; }), 8);
}

TEST(PlatformModelTest, EverySensorShownByDefaultIsAKnownOne) {
    const auto known = allSensorKeys();
    EXPECT_EQ(known.size(), 380u);
    for (const PlatformModel& each : platformModels())
        for (const std::string& key : each.defaultSensorKeys())
            EXPECT_TRUE(known.contains(key)) << each.identifier << " " << key;
}

TEST(PlatformModelTest, FullListHasAsManySensorsAsItsModel) {
    const auto sensors = sensorRecordsOf("MacBookPro8,2");
    const auto known = allSensorKeys();
    EXPECT_EQ(sensors.size(), model("MacBookPro8,2").sensorCount);
    for (const SensorRecord& sensor : sensors) {
        EXPECT_TRUE(known.contains(std::string(sensor.key))) << sensor.key;
        EXPECT_LE(sensor.low, sensor.high) << sensor.key;
    }
}

TEST(PlatformModelTest, SerialTailTellsThePeriod) {
    EXPECT_EQ(model("MacBookPro8,1").variationName("DV14"), "Late 2011");
    EXPECT_EQ(model("MacBookPro8,1").variationName("DRJK"), "Early 2011");
    EXPECT_EQ(model("MacBookPro8,1").variationName("XXXX"), std::nullopt);
    EXPECT_EQ(model("MacBookPro8,1").variationName(""), std::nullopt);
    EXPECT_EQ(model("MacBookPro8,1").variationName("DV14 DVHK"), std::nullopt);
    EXPECT_EQ(model("MacPro5,1").variationName("HPV"), "Server, Mid 2010");
    EXPECT_EQ(model("MacPro5,1").variationName("EUG"), "Mid 2010");
    EXPECT_EQ(model("Macmini3,1").variationName("DV14"), std::nullopt);
    EXPECT_EQ(model("MacBook1,1").variationName("YA5"), std::nullopt);
}

TEST(PlatformModelTest, ModelsBySerialHaveTwoPeriodsEach) {
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"MacBook2,1", {"YA5", "WGK"}},      {"MacBook5,2", {"A1X", "4R2"}},
        {"MacBookAir2,1", {"5LA", "9A5"}},   {"MacBookPro5,2", {"7AP", "8YA"}},
        {"MacBookPro8,1", {"DYL0", "DRJK"}}, {"MacBookPro8,2", {"DRJF", "DV7N"}},
        {"MacBookPro8,3", {"DW48", "DF92"}}, {"MacPro5,1", {"HF7", "HPW"}},
        {"Macmini3,1", {"1BU", "B9X"}}};
    EXPECT_EQ(std::size(cases), 9u);
    for (const auto& [identifier, tails] : cases) {
        EXPECT_EQ(model(identifier).variation, PlatformModel::kVariationBySerial);
        EXPECT_NE(model(identifier).variationName(tails[0]),
                  model(identifier).variationName(tails[1]))
            << identifier;
        for (const std::string& tail : tails)
            EXPECT_TRUE(model(identifier).variationName(tail)) << identifier << " " << tail;
    }
}

}  // namespace
}  // namespace vantor
