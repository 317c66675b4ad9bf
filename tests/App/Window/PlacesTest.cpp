#include "App/Window/WindowWorld.h"

#include <QStackedWidget>

#include <set>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

class PlacesTest : public WindowWorld {
protected:
    /// The widget shown in place of the panes.
    QWidget *front() const { return panes->currentWidget(); }
    void begin()
    {
        open();
        for (QStackedWidget *const one : window->findChildren<QStackedWidget *>())
            if (one->isAncestorOf(details()) && (!panes || one->isAncestorOf(panes)))
                panes = one;
        ASSERT_NE(panes, nullptr);
    }

    QStackedWidget *panes = nullptr;
};

TEST_F(PlacesTest, everyPlaceHasItsPageAndItsTitle)
{
    file("a.txt");
    begin();
    QWidget *const entries = front();
    std::set<QWidget *> pages{entries};
    const QString agentTitle = QStringLiteral("Aufräum-Agent");
    const std::vector<std::pair<Place, QString>> expected{
        {Place::photos(), QStringLiteral("Fotos-Mediathek")},
        {Place::search(folder, QStringLiteral("a")), QStringLiteral("d")},
        {Place::agent(), agentTitle},
        {Place::trash(services->folders().trash), QStringLiteral("Papierkorb")},
        {Place::tag(QStringLiteral("Rot")), QStringLiteral("Markierung Rot")},
        {Place::folder(folder), QStringLiteral("d")},
        {Place::device(QStringLiteral("Kamera")), QStringLiteral("Kamera")},
        {Place::storage(folder), QStringLiteral("Speicherplatz")},
        {Place::network(), QStringLiteral("Netzwerk")},
        {Place::history(), QStringLiteral("Verlauf")},
    };
    for (const auto &[place, title] : expected) {
        SCOPED_TRACE(title.toStdString());
        pane().showPlace(place);
        ASSERT_EQ(pane().place.get(), place);
        EXPECT_EQ(window->windowTitle(), title);
        EXPECT_EQ(window->state().page, place.isPage());
        EXPECT_EQ(window->state().agent, place.kind == Place::Kind::Agent);
        EXPECT_EQ(front() != entries, place.isPage());
        EXPECT_EQ(pages.insert(front()).second, place.isPage()) << "no page stands for two places";
    }
}

TEST_F(PlacesTest, aPageBelongsToThePaneThatOpenedIt)
{
    file("a.txt");
    file("b.txt");
    begin();
    QWidget *const entries = front();
    pane().showPlace(Place::search(folder, QStringLiteral("b")));
    ASSERT_TRUE(rowsBecome({QStringLiteral("b.txt")}));
    window->run(CommandId::StorageOverview);
    ASSERT_EQ(window->windowTitle(), QStringLiteral("Speicherplatz"));
    window->run(CommandId::NewTab);
    EXPECT_EQ(front(), entries) << "the new tab shows its folder";
    EXPECT_EQ(window->windowTitle(), QStringLiteral("d"));
    window->run(CommandId::PreviousTab);
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Speicherplatz"));
    window->run(CommandId::Back);
    EXPECT_EQ(front(), entries);
    EXPECT_TRUE(rowsBecome({QStringLiteral("b.txt")})) << "what the page covered";
    window->run(CommandId::Forward);
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Speicherplatz"));
    pane().choose(SidebarItem::place(folder));
    EXPECT_EQ(front(), entries) << "the folder that the page covers can be chosen";
}

} // namespace
