#include "App/Window/WindowWorld.h"

#include <QAccessible>
#include <QListView>
#include <QMenu>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

class MenuAndPopupTest : public WindowWorld {
protected:
    void TearDown() override
    {
        Theme::shared().setAppearance(Appearance::Light);
        WindowWorld::TearDown();
    }
};

TEST_F(MenuAndPopupTest, theCompletionListHasTheProgramsColours)
{
    std::filesystem::create_directories(folder / "unter");
    std::filesystem::create_directories(folder / "unten");
    open();
    for (const Appearance appearance : {Appearance::Light, Appearance::Dark}) {
        Theme::shared().setAppearance(appearance);
        key(Qt::Key_L, Qt::ControlModifier);
        type(shown(folder) + QStringLiteral("/unt"));
        const QListView *popup = nullptr;
        ASSERT_TRUE(waitUntil([&] {
            for (QWidget *const one : QApplication::topLevelWidgets())
                if (one->isVisible() && one->objectName() == QStringLiteral("pathCompletions"))
                    popup = qobject_cast<QListView *>(one);
            return popup && popup->model()->rowCount() == 2;
        }));
        QImage seen = const_cast<QListView *>(popup)->grab().toImage().convertToFormat(QImage::Format_ARGB32);
        EXPECT_EQ(seen.pixelColor(seen.width() - 12, seen.height() / 2), color(Token::Card));
        int ink = 0;
        for (int x = 0; x < seen.width(); ++x)
            for (int y = 0; y < seen.height(); ++y)
                ink += seen.pixelColor(x, y) == color(Token::Text) ? 1 : 0;
        EXPECT_GT(ink, 10) << "names in the text colour";
        key(Qt::Key_Escape);
        key(Qt::Key_Escape);
    }
}

TEST_F(MenuAndPopupTest, theMenuOfAllCommandsHasSectionsAndSymbols)
{
    open();
    key(Qt::Key_F10);
    const auto *const menu = shownOne<QMenu>(QStringLiteral("commandsMenu"));
    ASSERT_NE(menu, nullptr);
    int groups = 0;
    for (const QAction *const group : menu->actions()) {
        if (!group->menu() || group->menu()->objectName() == QStringLiteral("undoList"))
            continue;
        ++groups;
        const QList<QAction *> entries = group->menu()->actions();
        int separators = 0;
        for (qsizetype i = 0; i < entries.size(); ++i) {
            if (!entries[i]->isSeparator()) {
                EXPECT_FALSE(entries[i]->isCheckable() && !entries[i]->icon().isNull()) << "covers the tick";
                continue;
            }
            ++separators;
            EXPECT_TRUE(i > 0 && i + 1 < entries.size() && !entries[i - 1]->isSeparator())
                << group->text().toStdString();
        }
        EXPECT_GE(separators, 2) << group->text().toStdString();
        EXPECT_FALSE(group->menu()->actions().constFirst()->icon().isNull() &&
                     !group->menu()->actions().constFirst()->isCheckable());
    }
    EXPECT_EQ(groups, 4);
}

TEST_F(MenuAndPopupTest, theClearButtonOfTheSearchHasAName)
{
    open();
    key(Qt::Key_F, Qt::ControlModifier);
    type(QStringLiteral("abc"));
    QStringList names;
    for (QWidget *const child : QApplication::focusWidget()->findChildren<QWidget *>())
        if (QAccessibleInterface *const one = QAccessible::queryAccessibleInterface(child);
            one && one->role() == QAccessible::Button && child->isVisible())
            names << one->text(QAccessible::Name);
    EXPECT_TRUE(names.contains(QStringLiteral("Suche beenden"))) << names.join(QLatin1Char('|')).toStdString();
    EXPECT_FALSE(names.contains(QString()));
}

} // namespace
