#include "App/Window/WindowWorld.h"

#include "App/Window/FileCommands.h"
#include "Transfers/Screens/QuestionSheet.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

using namespace brellin;
using brellin::test::snapshotOf;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

const QString fotos = QStringLiteral("Fotos");

/// „Fotos“ is cut and pasted into „ziel“, where there is one already with three entries of the same names.
class MergeFlowTest : public WindowWorld {
protected:
    MergeFlowTest()
    {
        for (const char *name : {"eins", "zwei", "innen/drei", "frei"})
            file(std::string("Fotos/") + name, std::string("neu ") + name);
        for (const char *name : {"eins", "zwei", "innen/drei", "eigen"})
            file(std::string("ziel/Fotos/") + name, std::string("alt ") + name);
    }

    QuestionSheet *sheet() const { return shownOne<QuestionSheet>(QStringLiteral("conflictSheet")); }
    bool asks(const QString &name) const
    {
        return waitUntil(
            [&] { return sheet() && sheet()->accessibleName().contains(QStringLiteral("„%1“").arg(name)); });
    }
    void choose(const char *title) const
    {
        QPushButton *const button =
            sheet()->findChild<QPushButton *>(QStringLiteral("answer-") + QString::fromUtf8(title));
        ASSERT_NE(button, nullptr) << title;
        QTest::mouseClick(button, Qt::LeftButton);
        QCoreApplication::processEvents();
    }
    void cutAndPaste() const
    {
        ASSERT_TRUE(rowsBecome({fotos, QStringLiteral("ziel")}));
        click(fotos);
        key(Qt::Key_X, Qt::ControlModifier);
        key(Qt::Key_Down);
        key(Qt::Key_Return);
        ASSERT_TRUE(folderBecomes(folder / "ziel"));
        ASSERT_TRUE(rowsBecome({fotos}));
        key(Qt::Key_V, Qt::ControlModifier);
        ASSERT_TRUE(asks(fotos));
    }
    bool undoable() const
    {
        return waitUntil([this] { return window->state().undo.has_value(); });
    }
    std::string read(const char *name) const
    {
        std::ifstream stream(folder / name);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
};

} // namespace

TEST_F(MergeFlowTest, threeCollisionsAndBackAgain)
{
    open();
    const std::string before = snapshotOf(folder);
    cutAndPaste();
    EXPECT_TRUE(sheet()
                    ->findChild<QLabel *>(QStringLiteral("conflictHint"))
                    ->text()
                    .contains(QStringLiteral("3 Einträge darin sind dort schon vorhanden")));
    choose("Zusammenführen");
    ASSERT_TRUE(asks(QStringLiteral("Fotos/eins")));
    choose("Ersetzen");
    ASSERT_TRUE(asks(QStringLiteral("Fotos/innen/drei")));
    key(Qt::Key_Return); // "Beide behalten" has the focus
    ASSERT_TRUE(asks(QStringLiteral("Fotos/zwei")));
    choose("Überspringen");

    ASSERT_TRUE(undoable());
    EXPECT_EQ(window->state().undo, QStringLiteral("Verschieben von 3 Elementen rückgängig"));
    EXPECT_EQ(read("ziel/Fotos/eins") + read("ziel/Fotos/innen/drei (2)") + read("ziel/Fotos/frei") +
                  read("Fotos/zwei"),
              "neu einsneu innen/dreineu freineu zwei");
    EXPECT_FALSE(has("Fotos/innen"));
    EXPECT_EQ(pane().selection.get().size(), 1U) << "the folder that took everything in";
    const std::string merged = snapshotOf(folder);

    key(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([this] { return !window->state().undo && window->state().redo; }));
    EXPECT_EQ(snapshotOf(folder), before);
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(undoable());
    EXPECT_EQ(snapshotOf(folder), merged);
}

TEST_F(MergeFlowTest, askedLaterAndCancelledSaysWhatHasGone)
{
    open();
    QSignalSpy said(window->findChild<FileCommands *>(), &FileCommands::said);
    cutAndPaste();
    EXPECT_EQ(sheet()->findChild<QPushButton *>(QStringLiteral("answer-Später fragen")), nullptr)
        << "nothing else could go first";
    choose("Zusammenführen");
    ASSERT_TRUE(asks(QStringLiteral("Fotos/eins")));
    choose("Später fragen");
    ASSERT_TRUE(waitUntil([this] { return has("ziel/Fotos/frei"); }));
    ASSERT_TRUE(asks(QStringLiteral("Fotos/eins")));
    EXPECT_TRUE(sheet()
                    ->findChild<QLabel *>(QStringLiteral("conflictHint"))
                    ->text()
                    .contains(QStringLiteral("1 Element ist schon übertragen")));
    key(Qt::Key_Escape);
    ASSERT_TRUE(undoable());
    EXPECT_EQ(said.back().front().toString(), QStringLiteral("Abgebrochen. 1 Element nach „ziel“ verschoben."));
    EXPECT_EQ(read("Fotos/eins") + read("ziel/Fotos/eins"), "neu einsalt eins");
}
