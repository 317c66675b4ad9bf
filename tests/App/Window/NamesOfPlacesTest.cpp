#include "App/Window/WindowWorld.h"

#include "Base/Edition.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTabBar>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

class NamesOfPlacesTest : public WindowWorld {
protected:
    bool saysSomewhere(const QString &beginning) const
    {
        const QList<QLabel *> labels = window->findChildren<QLabel *>();
        return std::ranges::any_of(
            labels, [&](const QLabel *one) { return one->isVisible() && one->text().contains(beginning); });
    }
};

TEST_F(NamesOfPlacesTest, theHomeFolderHasOneName)
{
    open();
    window->run(CommandId::Home);
    ASSERT_TRUE(folderBecomes(services->folders().home));
    const QString name = QStringLiteral("Benutzerordner");
    EXPECT_EQ(window->findChild<TabBar *>()->bar()->tabText(0), name);
    EXPECT_EQ(shownOne<QAbstractButton>(QStringLiteral("crumb0"))->text(), name);
    EXPECT_EQ(window->windowTitle(), name);
}

TEST_F(NamesOfPlacesTest, theToolbarPinsTheFolderShown)
{
    open();
    auto *const button = shownOne<QAbstractButton>(QStringLiteral("tool%1").arg(static_cast<int>(CommandId::Pin)));
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->toolTip(), QStringLiteral("Ordner an Schnellzugriff anheften"));
    Pins &pins = composition->forWindows().pins;
    ASSERT_FALSE(pins.holds(folder));
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_TRUE(pins.holds(folder));
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_FALSE(pins.holds(folder));
}

TEST_F(NamesOfPlacesTest, tellsNameAndVersion)
{
    open();
    window->run(CommandId::About);
    EXPECT_TRUE(waitUntil([this] { return saysSomewhere(QStringLiteral("Version ") + Edition::version()); }));
    EXPECT_TRUE(saysSomewhere(QStringLiteral("Über ") + Edition::name()));
    key(Qt::Key_Escape);
    EXPECT_FALSE(saysSomewhere(QStringLiteral("Lizenzen")));
}

} // namespace
