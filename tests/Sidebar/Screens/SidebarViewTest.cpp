#include "Sidebar/Screens/SidebarView.h"

#include "Features/FolderColors.h"
#include "Look/Theme.h"
#include "Places/KnownFolders.h"
#include "Places/VolumeList.h"
#include "Sidebar/ExpandedFolders.h"
#include "Sidebar/FoldedSections.h"
#include "Sidebar/FolderTree.h"
#include "Sidebar/Pins.h"
#include "Sidebar/Screens/SidebarRows.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/MemoryUserDefaults.h"
#include "System/StoredList.h"

#include <QApplication>
#include <QDropEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>

using namespace brellin;
using brellin::test::TempTree;
using brellin::test::waitUntil;

namespace {

struct TwoDisks : MountSource {
    std::vector<Mount> table() const override
    {
        return {{"8:1", "/", "/", "ext4", "/dev/sda1", false},
                {"8:17", "/", "/media/anna/usb", "ext4", "/dev/sdb1", false}};
    }
    std::unique_ptr<QObject> watch(std::function<void()>) override { return std::make_unique<QObject>(); }
};

struct Bus : DiskService {
    Result<std::map<std::string, DiskFacts>> facts() override
    {
        return std::map<std::string, DiskFacts>{{"/dev/sda1", {QStringLiteral("Startvolume"), false, false}},
                                                {"/dev/sdb1", {QStringLiteral("Sicherung"), true, true}}};
    }
    Result<void> eject(const std::string &device) override
    {
        ++ejected;
        return device == "/dev/sdb1" ? failure(QStringLiteral("Ein Programm benutzt es noch.")) : Result<void>();
    }
    std::atomic<int> ejected = 0;
};

KnownFolders homeAt(const Location &home)
{
    ::setenv("HOME", home.c_str(), 1);
    KnownFolders folders = KnownFolders::ofThisUser();
    folders.applications.reset();
    return folders;
}

class SidebarViewTest : public testing::Test {
protected:
    SidebarViewTest()
    {
        Theme::install(*qApp);
        tree.lines({"Documents/Rechnungen/2026/", "Documents/Briefe/", "Desktop/", "Downloads/"});
        volumes.start();
    }

    /// Adds the sidebar to the window once the volumes have been read.
    SidebarView &open()
    {
        view =
            std::make_unique<SidebarView>(SidebarSources{pins, folderTree, volumes, colors, folded, folders}, nullptr);
        QObject::connect(view.get(), &SidebarView::chosen, [this](const SidebarItem &one) { chosen.push_back(one); });
        QObject::connect(view.get(), &SidebarView::chosenForNewTab,
                         [this](const SidebarItem &one) { newTabs.push_back(one); });
        QObject::connect(view.get(), &SidebarView::failed, [this](const QString &text) { failures << text; });
        view->resize(216, 1200);
        view->show();
        view->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(view.get()));
        EXPECT_TRUE(waitUntil([this] { return titles().contains(QStringLiteral("Sicherung")); }));
        return *view;
    }

    QListView *list() const { return view->findChild<QListView *>(QStringLiteral("sidebarList")); }
    /// The list of tags, Trash and assistants.
    QListView *marks() const { return view->findChild<QListView *>(QStringLiteral("sidebarMarks")); }
    QListView *listOf(const QModelIndex &index) const { return index.model() == rows() ? list() : marks(); }
    SidebarRows *rows() const { return static_cast<SidebarRows *>(list()->model()); }
    /// Of both lists, from top to bottom.
    std::vector<QModelIndex> lines() const
    {
        std::vector<QModelIndex> all;
        for (const QListView *const half : {list(), marks()})
            for (int row = 0; row < half->model()->rowCount(); ++row)
                all.push_back(half->model()->index(row, 0));
        return all;
    }
    QStringList titles() const
    {
        QStringList all;
        for (const QModelIndex &index : lines())
            all << index.data().toString();
        return all;
    }
    /// The last row of this title and kind.
    QModelIndex line(const QString &title, SidebarRow::Kind kind) const
    {
        QModelIndex found;
        for (const QModelIndex &index : lines())
            if (index.data().toString() == title &&
                static_cast<const SidebarRows *>(index.model())->row(index).kind == kind)
                found = index;
        EXPECT_TRUE(found.isValid()) << "no line " << title.toStdString();
        return found;
    }
    QPoint middle(const QModelIndex &index) const { return listOf(index)->visualRect(index).center(); }
    void click(const QModelIndex &index, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mouseClick(listOf(index)->viewport(), button, {}, middle(index));
    }
    /// The arrow at the right end of a section's head.
    void clickArrow(const QString &section) const
    {
        const QModelIndex index = line(section, SidebarRow::Kind::Section);
        const QRect head = listOf(index)->visualRect(index);
        const QPoint arrow(head.right() - scaled(8 + 9 + 7), head.center().y() + scaled(3));
        QTest::mouseClick(listOf(index)->viewport(), Qt::LeftButton, {}, arrow);
    }
    QMenu *menuOf(const QModelIndex &index) const
    {
        QWidget *const area = listOf(index)->viewport();
        QContextMenuEvent event(QContextMenuEvent::Mouse, middle(index), area->mapToGlobal(QPoint()));
        QCoreApplication::sendEvent(area, &event);
        QMenu *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        EXPECT_TRUE(menu);
        return menu;
    }
    void trigger(const QModelIndex &index, const QString &action) const
    {
        QMenu *const menu = menuOf(index);
        QAction *const found = menu->findChild<QAction *>(action);
        ASSERT_TRUE(found) << action.toStdString();
        menu->close();
        found->trigger();
    }
    static QStringList actionsIn(const QMenu &menu)
    {
        QStringList names;
        for (const QAction *action : menu.actions())
            if (!action->isSeparator())
                names << action->text();
        return names;
    }
    QStringList entries() const
    {
        QStringList names;
        for (const QuickEntry &entry : pins.entries.get())
            names << entry.name;
        return names;
    }

    TempTree tree;
    MemoryUserDefaults defaults;
    KnownFolders folders = homeAt(tree.root());
    TwoDisks mounts;
    Bus bus;
    VolumeList volumes{mounts, bus, [](const Location &) -> Result<VolumeSpace> {
                           return VolumeSpace{500'000'000'000, 212'400'000'000};
                       }};
    Pins pins{defaults, folders};
    FoldedSections folded{defaults};
    ExpandedFolders expanded{defaults};
    FolderTree folderTree{expanded};
    FolderColors colors{defaults};
    std::unique_ptr<SidebarView> view;
    std::vector<SidebarItem> chosen;
    std::vector<SidebarItem> newTabs;
    QStringList failures;
};

} // namespace

TEST_F(SidebarViewTest, everyLineLeadsWhereItSays)
{
    open();
    struct Row {
        QString title;
        SidebarRow::Kind kind;
        SidebarItem choice;
    };
    using RowKind = SidebarRow::Kind;
    const std::vector<Row> expected = {
        {QStringLiteral("Downloads"), RowKind::Quick, SidebarItem::quick(tree.path("Downloads"))},
        {QStringLiteral("Fotos-Mediathek"), RowKind::Quick, SidebarItem::photos()},
        {QStringLiteral("Benutzerordner"), RowKind::Folder, SidebarItem::tree(tree.root(), tree.root())},
        {QStringLiteral("Sicherung"), RowKind::Volume, SidebarItem::place("/media/anna/usb")},
        {QStringLiteral("Netzwerk"), RowKind::Place, SidebarItem::network()},
        {QStringLiteral("Grün"), RowKind::Place, SidebarItem::tag(QStringLiteral("Grün"))},
        {QStringLiteral("Papierkorb"), RowKind::Place, SidebarItem::place(folders.trash)},
        {QStringLiteral("Aufräum-Agent"), RowKind::Place, SidebarItem::agent()},
    };
    for (const Row &row : expected) {
        click(line(row.title, row.kind));
        ASSERT_FALSE(chosen.empty());
        EXPECT_EQ(chosen.back(), row.choice) << row.title.toStdString();
        click(line(row.title, row.kind), Qt::MiddleButton);
        ASSERT_FALSE(newTabs.empty());
        EXPECT_EQ(newTabs.back(), row.choice) << row.title.toStdString();
    }
    EXPECT_EQ(chosen.size(), expected.size());
    EXPECT_FALSE(titles().contains(QStringLiteral("Fotos"))) << "the quick access has them";
    EXPECT_EQ(view->folderAt(middle(line(QStringLiteral("Downloads"), RowKind::Quick))), tree.path("Downloads"));
    EXPECT_FALSE(marks()->viewport()->acceptDrops())
        << "files dropped on the Trash would lie in it without a record of where they came from";
}

TEST_F(SidebarViewTest, keysChooseFoldAndRemove)
{
    open().focusList();
    QTest::keyClick(list(), Qt::Key_Home);
    EXPECT_EQ(list()->currentIndex().data().toString(), QStringLiteral("Schnellzugriff"));
    QTest::keyClick(list(), Qt::Key_Down);
    QTest::keyClick(list(), Qt::Key_Return);
    QTest::keyClick(list(), Qt::Key_Return, Qt::ControlModifier);
    const SidebarItem documents = SidebarItem::quick(tree.path("Documents"));
    EXPECT_EQ(chosen, std::vector{documents});
    EXPECT_EQ(newTabs, std::vector{documents});
    QTest::keyClick(list(), Qt::Key_Delete);
    EXPECT_FALSE(entries().contains(QStringLiteral("Eigene Dateien")));

    QTest::keyClick(list(), Qt::Key_Home);
    QTest::keyClick(list(), Qt::Key_Left);
    EXPECT_FALSE(titles().contains(QStringLiteral("Fotos-Mediathek")));
    EXPECT_EQ(list()->currentIndex().data().toString(), QStringLiteral("Schnellzugriff"));
    view.reset();
    folded.reload();
    open();
    EXPECT_FALSE(titles().contains(QStringLiteral("Fotos-Mediathek"))) << "still folded at the next start";
    click(line(QStringLiteral("Schnellzugriff"), SidebarRow::Kind::Section));
    EXPECT_FALSE(titles().contains(QStringLiteral("Fotos-Mediathek"))) << "only its arrow opens it";
    clickArrow(QStringLiteral("Schnellzugriff"));
    EXPECT_TRUE(titles().contains(QStringLiteral("Fotos-Mediathek")));
    clickArrow(QStringLiteral("Markierungen"));
    EXPECT_FALSE(titles().contains(QStringLiteral("Rot")));
    clickArrow(QStringLiteral("Markierungen"));
    EXPECT_TRUE(chosen.size() == 1) << "a head leads nowhere";
}

TEST_F(SidebarViewTest, theTreeOpensAndFollowsThePane)
{
    open();
    const QModelIndex home = line(QStringLiteral("Benutzerordner"), SidebarRow::Kind::Folder);
    const QRect place = list()->visualRect(home);
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, QPoint(scaled(24), place.center().y()));
    ASSERT_TRUE(waitUntil([this] { return titles().contains(QStringLiteral("Documents")); }));
    EXPECT_TRUE(chosen.empty()) << "the chevron only opens";

    view->setCurrent(Place::folder(tree.path("Documents/Rechnungen/2026")));
    ASSERT_TRUE(waitUntil([this] { return rows()->current().isValid(); }));
    EXPECT_EQ(rows()->current().data().toString(), QStringLiteral("2026"));

    view->focusList();
    list()->setCurrentIndex(rows()->current());
    QTest::keyClick(list(), Qt::Key_Left);
    EXPECT_EQ(list()->currentIndex().data().toString(), QStringLiteral("Rechnungen"));
    trigger(line(QStringLiteral("Rechnungen"), SidebarRow::Kind::Folder), QStringLiteral("pin"));
    EXPECT_TRUE(pins.holds(tree.path("Documents/Rechnungen")));
    trigger(line(QStringLiteral("Rechnungen"), SidebarRow::Kind::Folder), QStringLiteral("colorGrün"));
    EXPECT_EQ(colors.color(tree.path("Documents/Rechnungen")), QStringLiteral("Grün"));
}

TEST_F(SidebarViewTest, tagsTrashAndAgentStayOnTheScreen)
{
    for (int number = 0; number < 40; ++number)
        tree.folder("Documents/Ordner " + std::to_string(number));
    open();
    view->resize(216, 648);
    EXPECT_TRUE(folderTree.expand(tree.root()));
    EXPECT_TRUE(folderTree.expand(tree.path("Documents")));
    ASSERT_TRUE(waitUntil([this] { return titles().contains(QStringLiteral("Ordner 39")); }));
    const auto whole = [this](const char *title) {
        const QModelIndex index = line(QString::fromUtf8(title), SidebarRow::Kind::Place);
        return marks()->viewport()->rect().contains(marks()->visualRect(index));
    };
    view->setCurrent(Place::folder(tree.path("Documents/Ordner 39")));
    for (const int height : {648, 560}) {
        view->resize(216, height);
        QCoreApplication::processEvents();
        for (const char *const title : {"Rot", "Grau", "Papierkorb", "Aufräum-Agent"})
            EXPECT_TRUE(whole(title)) << title << " at " << height;
        EXPECT_LE(marks()->geometry().bottom(), height);
        EXPECT_GE(list()->height(), height / 3) << "and the places are not squeezed out";
    }
    // The keyboard goes through both lists as through one.
    view->focusList();
    list()->setCurrentIndex(line(QStringLiteral("Netzwerk"), SidebarRow::Kind::Place));
    QTest::keyClick(list(), Qt::Key_Down);
    EXPECT_TRUE(marks()->hasFocus());
    EXPECT_EQ(marks()->currentIndex().data().toString(), QStringLiteral("Markierungen"));
    QTest::keyClick(marks(), Qt::Key_End);
    EXPECT_EQ(marks()->currentIndex().data().toString(), QStringLiteral("Aufräum-Agent"));
    QTest::keyClick(marks(), Qt::Key_Home);
    EXPECT_TRUE(list()->hasFocus());
    EXPECT_EQ(list()->currentIndex().data().toString(), QStringLiteral("Schnellzugriff"));
    QTest::keyClick(list(), Qt::Key_End);
    marks()->setCurrentIndex(marks()->model()->index(0, 0));
    QTest::keyClick(marks(), Qt::Key_Up);
    EXPECT_EQ(list()->currentIndex().data().toString(), QStringLiteral("Netzwerk"));
    // In a high window there is no gap between them.
    view->resize(216, 2600);
    QCoreApplication::processEvents();
    EXPECT_EQ(marks()->y(), list()->geometry().bottom() + 1);
    EXPECT_EQ(list()->verticalScrollBar()->maximum(), 0);
}

TEST_F(SidebarViewTest, theLineThatWasChosenIsHighlighted)
{
    SidebarView &sidebar = open();
    sidebar.setCurrent(Place::folder(tree.path("Downloads")));
    EXPECT_EQ(rows()->row(rows()->current()).kind, SidebarRow::Kind::Quick);
    EXPECT_FALSE(titles().contains(QStringLiteral("Documents"))) << "the tree stays as it is";

    EXPECT_TRUE(folderTree.expand(tree.root()));
    ASSERT_TRUE(waitUntil([this] { return titles().count(QStringLiteral("Downloads")) == 2; }));
    click(line(QStringLiteral("Downloads"), SidebarRow::Kind::Folder));
    sidebar.setCurrent(Place::folder(tree.path("Downloads")));
    EXPECT_EQ(rows()->row(rows()->current()).kind, SidebarRow::Kind::Folder);

    sidebar.setCurrent(Place::tag(QStringLiteral("Blau")));
    EXPECT_FALSE(rows()->current().isValid());
    EXPECT_EQ(static_cast<SidebarRows *>(marks()->model())->current().data().toString(), QStringLiteral("Blau"));
    sidebar.setCurrent(Place::photos());
    EXPECT_TRUE(rows()->current().isValid());
    sidebar.setCurrent(Place::folder("/nirgends/hier"));
    EXPECT_FALSE(rows()->current().isValid());
}

TEST_F(SidebarViewTest, entriesAreEditedFromTheirMenu)
{
    open();
    const auto entry = [this](const QString &name) { return line(name, SidebarRow::Kind::Quick); };
    QMenu *const menu = menuOf(entry(QStringLiteral("Downloads")));
    EXPECT_EQ(actionsIn(*menu), (QStringList{QStringLiteral("Öffnen"), QStringLiteral("In neuem Tab öffnen"),
                                             QStringLiteral("Umbenennen"), QStringLiteral("Nach oben"),
                                             QStringLiteral("Nach unten"), QStringLiteral("Symbol …"),
                                             QStringLiteral("Farbe"), QStringLiteral("Aus Schnellzugriff entfernen")}));
    menu->close();

    trigger(entry(QStringLiteral("Downloads")), QStringLiteral("rename"));
    auto *const editor = list()->findChild<QLineEdit *>(QStringLiteral("sidebarRename"));
    ASSERT_TRUE(editor);
    pins.reload();
    colors.setColor(tree.path("Desktop"), QStringLiteral("Rot"));
    editor->selectAll();
    QTest::keyClicks(editor, QStringLiteral("Geladenes"));
    QTest::keyClick(editor, Qt::Key_Return);
    ASSERT_TRUE(waitUntil([this] { return entries().contains(QStringLiteral("Geladenes")); }));
    EXPECT_TRUE(pins.holds(tree.path("Downloads"))) << "the folder keeps its name";
    EXPECT_TRUE(tree.has("Downloads"));

    trigger(entry(QStringLiteral("Geladenes")), QStringLiteral("moveUp"));
    EXPECT_EQ(entries().indexOf(QStringLiteral("Geladenes")), 1);
    trigger(entry(QStringLiteral("Geladenes")), QStringLiteral("colorLila"));
    EXPECT_EQ(pins.entries.get()[1].color, QStringLiteral("Lila"));
    trigger(entry(QStringLiteral("Geladenes")), QStringLiteral("colorNone"));
    EXPECT_FALSE(pins.entries.get()[1].color);

    trigger(entry(QStringLiteral("Geladenes")), QStringLiteral("chooseSymbol"));
    auto *const symbols = view->findChild<QListWidget *>(QStringLiteral("symbols"));
    ASSERT_TRUE(symbols);
    QTest::keyClick(symbols, Qt::Key_Home);
    QTest::keyClick(symbols, Qt::Key_Right);
    QTest::keyClick(symbols, Qt::Key_Return);
    EXPECT_EQ(pins.entries.get()[1].symbol, QStringLiteral("photo.on.rectangle.angled"));

    trigger(entry(QStringLiteral("Geladenes")), QStringLiteral("unpin"));
    EXPECT_FALSE(pins.holds(tree.path("Downloads")));
}

TEST_F(SidebarViewTest, draggingReordersEntries)
{
    open();
    const QStringList before = entries();
    const auto drop = [this](const QString &entry, const QString &onto, int offset) {
        QMimeData data;
        data.setData(QStringLiteral("application/x-brellin-quick-entry"),
                     rows()->row(line(entry, SidebarRow::Kind::Quick)).entry.toByteArray());
        const QModelIndex target = onto == u"Ordner"     ? line(onto, SidebarRow::Kind::Section)
                                   : onto == u"Netzwerk" ? line(onto, SidebarRow::Kind::Place)
                                                         : line(onto, SidebarRow::Kind::Quick);
        const QPoint place = middle(target) + QPoint(0, offset);
        QDragEnterEvent enter(place, Qt::MoveAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(list()->viewport(), &enter);
        QDropEvent event(place, Qt::MoveAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(list()->viewport(), &event);
    };
    drop(QStringLiteral("Downloads"), QStringLiteral("Eigene Dateien"), -5);
    EXPECT_EQ(entries().indexOf(QStringLiteral("Downloads")), 0);
    drop(QStringLiteral("Downloads"), QStringLiteral("Schreibtisch"), 8);
    EXPECT_EQ(entries().indexOf(QStringLiteral("Downloads")), entries().indexOf(QStringLiteral("Schreibtisch")) + 1);
    drop(QStringLiteral("Eigene Dateien"), QStringLiteral("Ordner"), 0);
    EXPECT_EQ(entries().last(), QStringLiteral("Eigene Dateien"));
    const QStringList ordered = entries();
    drop(QStringLiteral("Eigene Dateien"), QStringLiteral("Netzwerk"), 0);
    EXPECT_EQ(entries(), ordered) << "entries stay in the quick access";
    EXPECT_EQ(ordered.size(), before.size());
}

TEST_F(SidebarViewTest, aVolumeIsEjectedWithAClickAndAFailureIsSaid)
{
    open();
    const auto usb = [this] { return line(QStringLiteral("Sicherung"), SidebarRow::Kind::Volume); };
    ASSERT_TRUE(waitUntil([&] { return rows()->row(usb()).used && rows()->row(usb()).ejectable; }));
    EXPECT_EQ(usb().data(Qt::AccessibleTextRole).toString(), QStringLiteral("Sicherung, 212,4 GB frei"));
    EXPECT_FALSE(rows()->row(line(QStringLiteral("Startvolume"), SidebarRow::Kind::Volume)).ejectable);
    const QRect place = list()->visualRect(usb());
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, QPoint(place.right() - scaled(22), place.top() + 14));
    ASSERT_TRUE(waitUntil([this] { return !failures.isEmpty(); }));
    EXPECT_EQ(failures,
              QStringList{QStringLiteral("„Sicherung“ wurde nicht ausgeworfen: Ein Programm benutzt es noch.")});
    EXPECT_TRUE(chosen.empty());
    EXPECT_EQ(rows()->row(usb()).note, QStringLiteral("212,4 GB frei")) << "it stays";
    trigger(usb(), QStringLiteral("eject"));
    EXPECT_EQ(rows()->row(usb()).note, QStringLiteral("auswerfen …"));
    EXPECT_TRUE(waitUntil([this] { return bus.ejected == 2 && failures.size() == 2; }));
}

TEST_F(SidebarViewTest, propertiesAreOfferedOnceSomebodyListens)
{
    open();
    const QModelIndex downloads = line(QStringLiteral("Downloads"), SidebarRow::Kind::Quick);
    std::vector<Location> wanted;
    QObject::connect(view.get(), &SidebarView::propertiesWanted,
                     [&](const Location &folder) { wanted.push_back(folder); });
    trigger(downloads, QStringLiteral("properties"));
    EXPECT_EQ(wanted, std::vector{tree.path("Downloads")});
}

TEST_F(SidebarViewTest, nothingIsCutInLargeType)
{
    Theme::shared().setFontFactor(1.25);
    open();
    view->resize(view->sizeHint().width(), 1400);
    view->setAgentBadge(7);
    for (const QModelIndex &index : lines()) {
        const QString title = index.data().toString();
        if (!title.isEmpty()) {
            EXPECT_GE(listOf(index)->visualRect(index).height(), QFontMetrics(sizedFont(0.85)).height())
                << title.toStdString();
            EXPECT_LE(QFontMetrics(sizedFont(1, QFont::DemiBold)).horizontalAdvance(title), scaled(216 - 40 - 17))
                << title.toStdString();
        }
    }
    EXPECT_TRUE(line(QStringLiteral("Aufräum-Agent"), SidebarRow::Kind::Place)
                    .data(Qt::AccessibleTextRole)
                    .toString()
                    .contains(QStringLiteral("7 Vorschläge")));
    Theme::shared().setFontFactor(1);
}
