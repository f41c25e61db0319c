#include "Shared/External/Logging/LGRegisteredClasses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantor {
namespace {

using testing::ElementsAre;

struct Levelled {
    static std::int32_t lgLogLevel() { return level; }
    static void lgSetLogLevel(std::int32_t newLevel) { level = newLevel; }
    static inline std::int32_t level = 0;
};
struct Plain {};

class LGRegisteredClassesTest : public testing::Test {
protected:
    LGRegisteredClassesTest() {
        Levelled::level = 13;
        classes.add<Levelled>("Levelled");
    }
    LGRegisteredClasses classes;
};

TEST_F(LGRegisteredClassesTest, ARegisteredClassTellsItsLevel) {
    EXPECT_TRUE(classes.isRegisteredClass(typeid(Levelled)));
    EXPECT_EQ(classes.logLevelForClass(typeid(Levelled)), 13);
    EXPECT_EQ(classes.logLevelForClassWithName("Levelled"), 13);
}

TEST_F(LGRegisteredClassesTest, ItsLevelIsSetByTheClassOrByItsName) {
    classes.setLogLevel(3, typeid(Levelled));
    EXPECT_EQ(Levelled::level, 3);
    classes.setLogLevel(5, "Levelled");
    EXPECT_EQ(Levelled::level, 5);
}

TEST_F(LGRegisteredClassesTest, AnUnregisteredClassHasNoLevel) {
    EXPECT_FALSE(classes.isRegisteredClass(typeid(Plain)));
    EXPECT_EQ(classes.logLevelForClass(typeid(Plain)), -1);
    EXPECT_EQ(classes.logLevelForClassWithName("Plain"), -1);
    classes.setLogLevel(3, typeid(Plain));
    classes.setLogLevel(3, "Plain");
    EXPECT_EQ(Levelled::level, 13);
}

TEST_F(LGRegisteredClassesTest, EachClassIsListedOnce) {
    classes.add<Levelled>("Levelled");
    EXPECT_THAT(classes.registeredClasses(), ElementsAre(std::type_index(typeid(Levelled))));
    EXPECT_THAT(classes.registeredClassNames(), ElementsAre("Levelled"));
}

TEST_F(LGRegisteredClassesTest, OnlyAClassWithALevelCanBeRegistered) {
    EXPECT_TRUE(LGLeveledClass<Levelled>);
    EXPECT_FALSE(LGLeveledClass<Plain>);
}

}  // namespace
}  // namespace vantor
