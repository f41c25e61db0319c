#include "Shared/InstalledApplications.h"

#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "Foundation/PropertyList.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

class InstalledApplicationsTest : public testing::Test {
protected:
    void install(const std::string& name, PropertyValue::Dictionary information) {
        information.try_emplace("CFBundleIdentifier", "com.kolbrin.vantorbar");
        information.try_emplace("CFBundleShortVersionString", "5.11");
        std::filesystem::create_directories(folder / name / "Contents");
        std::ofstream(folder / name / "Contents/Info.plist") << propertyListXML(information);
    }
    std::string found() {
        const auto path = newestInstalledApplication(folder.path());
        return path ? std::filesystem::relative(*path, folder.path()).string() : "nothing";
    }

    test::TemporaryFolder folder;
};

TEST_F(InstalledApplicationsTest, WithoutAMatchThereIsNothing) {
    EXPECT_EQ(found(), "nothing");
    install("Other.app", {{"CFBundleVersion", "9"}});
    install("Vantor Bar.app", {{"CFBundleIdentifier", "com.example"}, {"CFBundleVersion", "9"}});
    EXPECT_EQ(found(), "nothing");
}

TEST_F(InstalledApplicationsTest, AMissingFolderHoldsNothing) {
    EXPECT_FALSE(newestInstalledApplication(folder / "missing"));
}

TEST_F(InstalledApplicationsTest, TheHighestBuildWins) {
    install("Vantor Bar.app", {{"CFBundleVersion", "100"}});
    install("Vantor Bar 2.app", {{"CFBundleVersion", "101"}});
    EXPECT_EQ(found(), "Vantor Bar 2.app");
}

TEST_F(InstalledApplicationsTest, OfEqualBuildsThePlainNameWins) {
    install("Vantor Bar 2.app", {{"CFBundleVersion", "100"}});
    install("Vantor Bar.app", {{"CFBundleVersion", "100"}});
    install("Vantor Bar z.app", {{"CFBundleVersion", "100"}});
    EXPECT_EQ(found(), "Vantor Bar.app");
}

TEST_F(InstalledApplicationsTest, OfEqualBuildsOtherwiseTheFirstStays) {
    install("Vantor Bar a.app", {{"CFBundleVersion", "100"}});
    install("Vantor Bar b.app", {{"CFBundleVersion", "100"}});
    EXPECT_EQ(found(), "Vantor Bar a.app");
}

TEST_F(InstalledApplicationsTest, VersionsBelowFourAreSkipped) {
    install("Vantor Bar.app",
            {{"CFBundleVersion", "999"}, {"CFBundleShortVersionString", "3.99"}});
    EXPECT_EQ(found(), "nothing");
}

TEST_F(InstalledApplicationsTest, PlainFoldersAreSearchedPackagesAndHiddenOnesAreNot) {
    install("Other.app/Vantor Bar.app", {{"CFBundleVersion", "3"}});
    std::filesystem::create_directories(folder / "Other.app/Contents");
    install(".hidden/Vantor Bar.app", {{"CFBundleVersion", "2"}});
    EXPECT_EQ(found(), "nothing");
    install("Utilities/Vantor Bar.app", {{"CFBundleVersion", "1"}});
    EXPECT_EQ(found(), "Utilities/Vantor Bar.app");
}

TEST_F(InstalledApplicationsTest, ABundleWithAFolderForItsInformationIsNone) {
    std::filesystem::create_directories(folder / "Vantor Bar.app/Contents/Info.plist");
    EXPECT_EQ(found(), "nothing");
}

TEST_F(InstalledApplicationsTest, ABrokenBundleIsNone) {
    install("Vantor Bar.app", {});
    std::ofstream(folder / "Vantor Bar.app/Contents/Info.plist") << "garbage";
    EXPECT_EQ(found(), "nothing");
}

}  // namespace
}  // namespace vantor
