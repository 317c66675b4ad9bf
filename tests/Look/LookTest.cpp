#include "Look/Buttons.h"
#include "Look/Cards.h"
#include "Look/Digits.h"
#include "Look/EntryIcons.h"
#include "Look/SheetFrame.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace brellin;

namespace {

constexpr Appearance both[] = {Appearance::Light, Appearance::Dark};

TEST(LookTest, textIsReadOnEveryGroundItStandsOn)
{
    struct Row {
        Token ink;
        std::vector<Token> grounds;
        double least;
    };
    const std::vector<Token> plain = {Token::Window, Token::Sidebar, Token::Content, Token::Card, Token::Zebra};
    const std::vector<Row> rows = {
        {Token::Text,
         {Token::Window, Token::Sidebar, Token::Content, Token::Card, Token::Zebra, Token::AccentSoft},
         4.5},
        {Token::Secondary,
         {Token::Window, Token::Sidebar, Token::Content, Token::Card, Token::Zebra, Token::AccentSoft},
         4.5},
        {Token::Tertiary, plain, 4.5},
        {Token::OnAccent, {Token::Accent}, 4.5},
        {Token::Accent, {Token::Window, Token::Content, Token::Card, Token::AccentSoft}, 4.5},
        {Token::Warning, {Token::Card, Token::WarningSoft}, 4.5},
        {Token::Danger, {Token::Card, Token::Content, Token::DangerSoft}, 4.5},
        {Token::Success, {Token::Window, Token::Card}, 4.5},
        {Token::FieldBorder, {Token::Content, Token::Card, Token::Window}, 3},
    };
    for (const Appearance appearance : both)
        for (const Row &row : rows)
            for (const Token ground : row.grounds)
                EXPECT_GE(contrast(tokenColor(row.ink, appearance), tokenColor(ground, appearance)), row.least)
                    << "ink " << static_cast<int>(row.ink) << " on " << static_cast<int>(ground) << ", appearance "
                    << static_cast<int>(appearance);
}

TEST(LookTest, everyNameOfASymbolDrawsOne)
{
    EXPECT_FALSE(Symbols::knows(QStringLiteral("gibt.es.nicht")));
    QStringList names = Symbols::choice();
    names << QStringLiteral("arrow-up") << QStringLiteral("checkmark.circle.fill");
    const QImage folder = Symbols::pixmap(QStringLiteral("folder"), 32, Qt::black, 1).toImage();
    for (const QString &name : names) {
        EXPECT_TRUE(Symbols::knows(name)) << name.toStdString();
        const QImage drawn = Symbols::pixmap(name, 32, Qt::black, 1).toImage();
        EXPECT_EQ(drawn == folder, name == u"folder") << name.toStdString();
    }
    EXPECT_EQ(Symbols::pixmap(QStringLiteral("house"), 16, Qt::red, 2).size(), QSize(32, 32))
        << "sharp on a fine screen";
}

TEST(LookTest, digitsStandUnderEachOther)
{
    Theme::install(*qApp);
    const QFont plain = sizedFont();
    EXPECT_DOUBLE_EQ(digitsWidth(plain, QStringLiteral("111,11 MB")), digitsWidth(plain, QStringLiteral("848,08 MB")));
    EXPECT_GT(digitsWidth(plain, QStringLiteral("1111")), digitsWidth(plain, QStringLiteral("111")));
}

TEST(LookTest, everyControlHasTheLookAndGrowsWithTheFont)
{
    Theme &theme = Theme::install(*qApp);
    QWidget window;
    auto *const column = new QVBoxLayout(&window);
    QPushButton *const button =
        makeButton(QStringLiteral("Regeln prüfen"), ButtonKind::Primary, QStringLiteral("b"), &window);
    auto *const field = new QLineEdit(&window);
    column->addWidget(button);
    column->addWidget(field);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    EXPECT_EQ(button->grab().toImage().pixelColor(button->width() / 2, 3).name(), color(Token::Accent).name());
    const int before = field->sizeHint().height();
    EXPECT_GE(before, 30);
    theme.setFontFactor(1.25);
    EXPECT_GE(field->sizeHint().height(), before * 12 / 10);
    EXPECT_EQ(scaled(100), 125);
    theme.setAppearance(Appearance::Dark);
    EXPECT_EQ(button->grab().toImage().pixelColor(button->width() / 2, 4).name(),
              tokenColor(Token::Accent, Appearance::Dark).name());
    theme.setAppearance(Appearance::Light);
    theme.setFontFactor(1);
}

TEST(LookTest, aSheetKeepsTheFocusAndGivesItBack)
{
    Theme::install(*qApp);
    QWidget window;
    window.resize(800, 500);
    auto *const behind = new QLineEdit(&window);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    behind->setFocus();
    auto *const sheet = new SheetFrame(QStringLiteral("Regel bearbeiten"), {}, {900, 700}, &window);
    auto *const first = new QLineEdit;
    auto *const second = new QLineEdit;
    sheet->content()->addWidget(first);
    sheet->content()->addWidget(second);
    QPushButton *const button = makeButton(QStringLiteral("Fertig"), ButtonKind::Primary, QStringLiteral("b"), sheet);
    sheet->buttons()->addWidget(button);
    int clicked = 0;
    QObject::connect(button, &QPushButton::clicked, [&clicked] { ++clicked; });
    int closed = 0;
    QObject::connect(sheet, &SheetFrame::closed, [&closed] { ++closed; });
    sheet->open();
    EXPECT_TRUE(first->hasFocus());
    QTest::keyClick(first, Qt::Key_Tab);
    EXPECT_TRUE(second->hasFocus());
    QTest::keyClick(second, Qt::Key_Tab);
    EXPECT_TRUE(button->hasFocus());
    QTest::keyClick(button, Qt::Key_Return);
    EXPECT_EQ(clicked, 1) << "once";
    QTest::keyClick(button, Qt::Key_Tab);
    EXPECT_TRUE(first->hasFocus()) << "round within the sheet";
    QTest::keyClick(first, Qt::Key_Return);
    EXPECT_EQ(clicked, 1) << "a field's Return is no button's";
    QTest::keyClick(first, Qt::Key_Escape);
    EXPECT_EQ(closed, 1);
    EXPECT_TRUE(behind->hasFocus());
}

TEST(LookTest, aSheetWithoutAHeightIsAsHighAsItsContent)
{
    QWidget window;
    window.resize(900, 700);
    window.show();
    SheetFrame sheet(QStringLiteral("Titel"), {}, {500, 0}, &window);
    auto *const row = new QWidget;
    row->setFixedHeight(100);
    sheet.content()->addWidget(row);
    sheet.open();
    const auto panel = [&sheet] { return sheet.findChild<QWidget *>({}, Qt::FindDirectChildrenOnly)->height(); };
    const int before = panel();
    EXPECT_GT(before, 100);
    row->setFixedHeight(240);
    QApplication::processEvents();
    EXPECT_EQ(panel(), before + 140) << "it grows with what it holds";
    row->setFixedHeight(4000);
    QApplication::processEvents();
    EXPECT_LE(panel(), window.height()) << "what does not fit is scrolled";
}

} // namespace
