#include "App/TypedLocation.h"
#include "App/ProgramTest.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// "ort/ld" points to "fern/ordner"; a file of the same name lies beside the link and beside its target.
class TypedLocationTest : public ProgramTest {
protected:
    TypedLocationTest()
    {
        tree.lines({"ort/v.txt=beim Link", "fern/v.txt=fern", "fern/ordner/", "ort/ld->../fern/ordner",
                    "ort/tot->fehlt", "ziel/"});
    }
    std::string at(const char *name) const { return tree.path(name).native(); }
};

} // namespace

TEST_F(TypedLocationTest, readsDotsAsTheSystemDoes)
{
    EXPECT_EQ(typedLocation(at("ort/ld/../v.txt")), tree.path("fern/v.txt"));
    EXPECT_EQ(typedLocation(at("ort/ld/..")), tree.path("fern"));
    EXPECT_EQ(typedLocation(at("ort/ld/../../ort/./v.txt")), tree.path("ort/v.txt"));
    // Without dots a symlink is not resolved.
    EXPECT_EQ(typedLocation(at("ort/ld/")), tree.path("ort/ld"));
    for (const char *nowhere :
         {"ort/fehlt/../v.txt", "ort/tot/../v.txt", "ort/v.txt/../v.txt", "ort/fehlt/..", "ziel/../fehlt/../v.txt"})
        EXPECT_FALSE(std::filesystem::exists(typedLocation(at(nowhere)))) << nowhere;
}

TEST_F(TypedLocationTest, isWhatEveryCommandChanges)
{
    const std::string typed = at("ort/ld/../v.txt");
    const std::string beside = snapshotOf(tree.path("ort"));
    EXPECT_EQ(run({"kopieren", typed, at("ziel")}).exitCode, 0);
    EXPECT_EQ(tree.content("ziel/v.txt"), "fern");
    EXPECT_EQ(run({"kopieren", at("ziel/v.txt"), at("ort/ld/../ordner/..") + "/ordner"}).exitCode, 0);
    EXPECT_TRUE(tree.has("fern/ordner/v.txt"));
    EXPECT_EQ(run({"umbenennen", "--modus", "ergaenzen", "--vorn", "neu ", typed}).exitCode, 0);
    EXPECT_EQ(tree.content("fern/neu v.txt"), "fern");
    EXPECT_EQ(run({"papierkorb", typed}).exitCode, 2);
    EXPECT_EQ(run({"papierkorb", at("ort/ld/../neu v.txt")}).exitCode, 0);
    EXPECT_FALSE(tree.has("fern/neu v.txt"));
    EXPECT_NE(run({"verschieben", at("ort/fehlt/../v.txt"), at("ziel")}).exitCode, 0);
    EXPECT_EQ(run({"papierkorb", at("ort/v.txt/../v.txt")}).exitCode, 2);
    EXPECT_EQ(snapshotOf(tree.path("ort")), beside);
}
