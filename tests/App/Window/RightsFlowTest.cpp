#include "App/Window/WindowWorld.h"

#include "FileOperations/Screens/PropertiesSheet.h"
#include "FileOperations/Screens/RightsSheet.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>

#include <map>

#include <sys/stat.h>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

class RightsFlowTest : public WindowWorld {
protected:
    unsigned mode(const std::string &name) const
    {
        struct stat status{};
        EXPECT_EQ(::stat((folder / name).c_str(), &status), 0) << name;
        return status.st_mode & 07777U;
    }
    RightsSheet *sheet() const { return window->findChild<RightsSheet *>(); }
    void ask()
    {
        window->run(CommandId::Properties);
        auto *const properties = window->findChild<PropertiesSheet *>();
        ASSERT_NE(properties, nullptr);
        auto *const link = properties->findChild<QAbstractButton *>(QStringLiteral("propertiesRights"));
        ASSERT_TRUE(waitUntil([&] { return link->isVisible(); }));
        QTest::mouseClick(link, Qt::LeftButton);
        ASSERT_TRUE(waitUntil([this] { return sheet() && bit(0)->isEnabled(); }));
    }
    QCheckBox *bit(int place) const { return sheet()->findChild<QCheckBox *>(QStringLiteral("right%1").arg(place)); }
    void clickBox(QCheckBox *box) const { QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2)); }
    bool tells(const QString &summary) const
    {
        return waitUntil(
            [&] { return sheet()->findChild<QLabel *>(QStringLiteral("rightsSummary"))->text() == summary; });
    }
};

TEST_F(RightsFlowTest, changesSeveralAndWhatLiesInThemAndTakesItBack)
{
    const std::map<std::string, mode_t> before{{"o", 0755}, {"o/x.txt", 0644}, {"p.txt", 0600}};
    file("o/x.txt");
    file("p.txt");
    for (const auto &[name, bits] : before)
        ASSERT_EQ(::chmod((folder / name).c_str(), bits), 0);
    open();
    key(Qt::Key_A, Qt::ControlModifier);
    ask();
    EXPECT_EQ(bit(0)->checkState(), Qt::Checked);
    EXPECT_EQ(bit(3)->checkState(), Qt::PartiallyChecked) << "one of them lets the group read";
    EXPECT_EQ(bit(7)->checkState(), Qt::Unchecked);
    EXPECT_TRUE(tells(QStringLiteral("Es ändert sich nichts.")));
    clickBox(bit(4));
    EXPECT_TRUE(tells(QStringLiteral("Geändert werden die Rechte von 2 Elementen.")));
    // One after the other while the first is being read.
    clickBox(bit(4));
    clickBox(bit(4));
    clickBox(sheet()->findChild<QCheckBox *>(QStringLiteral("rightsInside")));
    EXPECT_TRUE(tells(QStringLiteral("Geändert werden die Rechte von 3 Elementen.")));
    QTest::mouseClick(sheet()->findChild<QAbstractButton *>(QStringLiteral("accept")), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([this] { return mode("o") == 0775 && mode("o/x.txt") == 0664 && mode("p.txt") == 0620; }));
    ASSERT_TRUE(waitUntil([this] { return !sheet() && window->state().undo.has_value(); }));
    EXPECT_EQ(*window->state().undo, QStringLiteral("Ändern der Rechte von 3 Elementen rückgängig"));
    key(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([this] { return !window->findChild<PropertiesSheet *>(); }));
    window->run(CommandId::Undo);
    EXPECT_TRUE(waitUntil([&] {
        return std::ranges::all_of(before, [this](const auto &one) { return mode(one.first) == one.second; });
    }));
}

} // namespace
