#include "App/Window/WindowWorld.h"

#include "Look/YesNoSheet.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QTreeView>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

/// The Trash of the temporary home, by clicks and keys.
class TrashFlowsTest : public WindowWorld {
protected:
    TrashFlowsTest()
    {
        trashed = services->folders().trash;
        std::filesystem::remove_all(trashed);
        std::filesystem::remove_all(trashed.parent_path() / "info");
        for (const char *const name : {"a.txt", "b.txt", "c.txt"})
            file(name, "12345");
    }
    void trashByKey(const QString &name)
    {
        click(name);
        key(Qt::Key_Delete);
        ASSERT_TRUE(waitUntil([&] { return !rows().contains(name); }));
    }
    QTreeView *table() const { return find<QTreeView>(QStringLiteral("trashTable")); }
    bool lists(int count) const
    {
        return waitUntil([&] { return table()->isVisibleTo(window) && table()->model()->rowCount() == count; });
    }
    /// The question, once it is asked.
    YesNoSheet *question() const
    {
        EXPECT_TRUE(waitUntil([this] { return shownOne<YesNoSheet>({}) != nullptr; }));
        return shownOne<YesNoSheet>({});
    }
    static bool says(const YesNoSheet *sheet, const QString &text)
    {
        return std::ranges::any_of(sheet->findChildren<QLabel *>(),
                                   [&](const QLabel *label) { return label->text().contains(text); });
    }
    void accept(YesNoSheet *sheet)
    {
        QTest::mouseClick(sheet->findChild<QPushButton *>(QStringLiteral("accept")), Qt::LeftButton);
    }
    bool has(const char *name) const { return std::filesystem::exists(trashed / name); }

    Location trashed;
};

} // namespace

TEST_F(TrashFlowsTest, deletesOneForGoodAndEmptiesTheRest)
{
    open();
    for (const char *const name : {"a.txt", "b.txt", "c.txt"})
        ASSERT_NO_FATAL_FAILURE(trashByKey(QString::fromLatin1(name)));
    window->run(CommandId::Trash);
    ASSERT_TRUE(lists(3));
    const QModelIndex first = table()->model()->index(0, 0);
    const std::string name = first.data().toString().toStdString();
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, table()->visualRect(first).center());
    QTest::keyClick(table(), Qt::Key_Delete, Qt::ShiftModifier);
    YesNoSheet *sheet = question();
    ASSERT_TRUE(sheet);
    EXPECT_TRUE(says(sheet, QStringLiteral("Größe: 5 Byte."))) << "size and number";
    accept(sheet);
    EXPECT_TRUE(lists(2));
    EXPECT_FALSE(has(name.c_str()));

    QTest::mouseClick(find<QPushButton>(QStringLiteral("trashEmptyAll")), Qt::LeftButton);
    sheet = question();
    ASSERT_TRUE(sheet);
    EXPECT_TRUE(says(sheet, QStringLiteral("2 Elemente, 10 Byte.")));
    accept(sheet);
    EXPECT_TRUE(waitUntil([this] { return std::filesystem::is_empty(trashed); }));
    EXPECT_TRUE(waitUntil([this] { return find<QWidget>(QStringLiteral("trashEmpty"))->isVisible(); }));
}

TEST_F(TrashFlowsTest, theCommandsAreOfferedWhereTheyCanDoSomething)
{
    file("unter/d.txt");
    open();
    const QAction *const remove =
        find<QAction>(QStringLiteral("command%1").arg(static_cast<int>(CommandId::DeleteForGood)));
    ASSERT_NO_FATAL_FAILURE(trashByKey(QStringLiteral("unter")));
    click(QStringLiteral("a.txt"));
    QTest::qWait(100); // for the answer about the folder
    EXPECT_FALSE(remove->isEnabled()) << "its volume has a Trash";
    pane().navigate(trashed / "unter");
    ASSERT_TRUE(rowsBecome({QStringLiteral("d.txt")}));
    click(QStringLiteral("d.txt"));
    EXPECT_TRUE(waitUntil([&] { return remove->isEnabled(); })) << "it is in the Trash";
    window->run(CommandId::EmptyTrash);
    YesNoSheet *const sheet = question();
    ASSERT_TRUE(sheet);
    EXPECT_TRUE(says(sheet, QStringLiteral("1 Element")));
    accept(sheet);
    EXPECT_TRUE(waitUntil([this] { return !has("unter"); }));
}
