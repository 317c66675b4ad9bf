#include "Transfers/Screens/QuestionSheet.h"

#include "Look/Theme.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>

using namespace brellin;

namespace {

class QuestionSheetTest : public testing::Test {
protected:
    QuestionSheetTest()
    {
        Theme::install(*qApp);
        window.resize(900, 620);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    ~QuestionSheetTest() override { Theme::shared().setFontFactor(1); }

    QuestionSheet &ask(decltype(TransferQuestion::about) about)
    {
        sheet = makeQuestionSheet({QUuid::createUuid(), QUuid::createUuid(), std::move(about)}, &window);
        QObject::connect(sheet, &QuestionSheet::answered, sheet,
                         [this](const TransferAnswer &answer) { given.push_back(answer); });
        sheet->ask();
        return *sheet;
    }
    QString keys() const { return QApplication::focusWidget()->objectName(); }
    void press(const char *name)
    {
        auto *const button = sheet->findChild<QPushButton *>(QString::fromUtf8(name));
        ASSERT_TRUE(button) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    }
    template <class Kind>
    std::optional<Kind> last() const
    {
        if (given.empty() || !std::holds_alternative<Kind>(given.back()))
            return std::nullopt;
        return std::get<Kind>(given.back());
    }

    QWidget window;
    QuestionSheet *sheet = nullptr;
    std::vector<TransferAnswer> given;
};

const QString longName = QString(u'x').repeated(230) + QStringLiteral(".pdf");

} // namespace

TEST_F(QuestionSheetTest, whatCannotBeReplacedHasNoSuchButton)
{
    ask(ConflictQuestion{QStringLiteral("Fotos"), 1, true, WhyItStays::HoldsSource, {}, {}});
    EXPECT_FALSE(sheet->findChild<QPushButton *>(QStringLiteral("answer-Ersetzen")));
    EXPECT_EQ(keys(), QStringLiteral("answer-Beide behalten"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    ASSERT_TRUE(last<ConflictAnswer>());
    EXPECT_EQ(last<ConflictAnswer>()->choice, ConflictChoice::keepBoth);
}

TEST_F(QuestionSheetTest, forGoodIsNeverWhatReturnMeans)
{
    ask(NoTrashQuestion{longName, false});
    EXPECT_EQ(keys(), QStringLiteral("answer-Überspringen"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(last<Confirmation>(), Confirmation::No);
    ask(NoTrashQuestion{QStringLiteral("a"), false});
    press("answer-Endgültig ersetzen");
    EXPECT_EQ(last<Confirmation>(), Confirmation::Yes);
    ask(NoTrashQuestion{QStringLiteral("a"), false});
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_EQ(last<Confirmation>(), Confirmation::Cancel);
    EXPECT_EQ(given.size(), 3u);
}

TEST_F(QuestionSheetTest, obstaclesAreListedAndAnsweredOnce)
{
    ObstacleQuestion about;
    for (int i = 0; i < 12; ++i)
        about.lines << QStringLiteral("Film %1.mkv: Mit 5 GB ist die Datei für das Ziel zu groß.").arg(i);
    about.count = 14;
    about.leftOut = {QStringLiteral("Filme")};
    about.foldersLeftOut = true;
    ask(about);
    const auto *const hint = sheet->findChild<QLabel *>(QStringLiteral("obstacleHint"));
    EXPECT_EQ(hint->text(),
              QStringLiteral("Noch ist nichts übertragen. „Diese auslassen“ überträgt nicht: „Filme“. Ein "
                             "Ordner bleibt mit allem darin zurück."));
    const QString all = sheet->findChild<QWidget *>(QStringLiteral("obstacles"))->accessibleName();
    EXPECT_TRUE(all.contains(QStringLiteral("Film 11.mkv: Mit 5 GB")));
    EXPECT_TRUE(all.endsWith(QStringLiteral("… und 2 weitere")));
    EXPECT_EQ(keys(), QStringLiteral("answer-Diese auslassen"));
    press("answer-Trotzdem versuchen");
    QTest::keyClick(sheet, Qt::Key_Escape);
    EXPECT_EQ(given.size(), 1u);
    EXPECT_EQ(last<ObstacleChoice>(), ObstacleChoice::TryAnyway);
}

TEST_F(QuestionSheetTest, nothingIsCutWithALargeFontAndLongNames)
{
    Theme::shared().setFontFactor(1.25);
    window.resize(scaled(640), scaled(420));
    const QString line = QStringLiteral("mehr als 1.234 Einträge, mehr als 999,99 GB, 30. September 2026, 14:05");
    ask(ConflictQuestion{longName, 3, true, {}, line, line, true, MergePreview{1234, false}, true, 56});
    EXPECT_EQ(sheet->findChildren<QPushButton *>().size(), 6);
    EXPECT_EQ(keys(), QStringLiteral("answer-Beide behalten"));
    QApplication::processEvents();
    for (const QPushButton *const button : sheet->findChildren<QPushButton *>()) {
        const QRect place(button->mapTo(&window, QPoint()), button->size());
        EXPECT_TRUE(window.rect().contains(place)) << button->text().toStdString();
        EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
    }
    for (const QLabel *const label : sheet->findChildren<QLabel *>())
        EXPECT_GE(label->width() + 1, label->wordWrap() ? label->minimumSizeHint().width() : label->sizeHint().width())
            << label->text().toStdString();
}
