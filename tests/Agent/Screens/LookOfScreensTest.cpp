#include "Agent/Screens/ScreenWorld.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSpinBox>

using namespace brellin;
using namespace brellin::test;

namespace {

/// All pages and sheets, at 100 % and 125 % font size.
class AgentLookTest : public ScreenWorld, public ::testing::WithParamInterface<double> {
protected:
    void SetUp() override
    {
        Theme::shared().setFontFactor(GetParam());
        tree().lines({"home/Downloads/a.pdf=1", "home/Downloads/b.pdf=2", "home/Website/package.json={}"});
        show({movingPdfs()});
        view->resize(window->size());
        wait(*agent, [this] { agent->scan(CleanupAgent::Search::Rules); });
        FolderProfile profile;
        profile.rootPath = textOf(home("Website"));
        profile.name = QStringLiteral("Website");
        ASSERT_TRUE(agent->saveProfile(profile));
    }
    void TearDown() override
    {
        view = nullptr;
        window.reset();
        Theme::shared().setFontFactor(1);
    }

    static bool isCut(const QWidget &widget)
    {
        if (const auto *const button = qobject_cast<const QAbstractButton *>(&widget))
            return !button->text().isEmpty() && !button->isCheckable() &&
                   (button->width() < button->minimumSizeHint().width() ||
                    button->height() < button->minimumSizeHint().height());
        const auto *const label = qobject_cast<const QLabel *>(&widget);
        if (!label || label->text().isEmpty() || label->inherits("brellin::ElidedLabel"))
            return false;
        if (label->wordWrap())
            return label->height() < label->heightForWidth(label->width());
        return label->width() < label->fontMetrics().horizontalAdvance(label->text());
    }

    static bool isNameless(const QWidget &widget)
    {
        if (widget.inherits("QLineEditIconButton"))
            return false; // part of a field that has an accessible name
        if (const auto *const button = qobject_cast<const QAbstractButton *>(&widget))
            return button->accessibleName().isEmpty() && button->text().isEmpty();
        const bool field = qobject_cast<const QLineEdit *>(&widget) || qobject_cast<const QComboBox *>(&widget) ||
                           qobject_cast<const QSpinBox *>(&widget) || qobject_cast<const QAbstractItemView *>(&widget);
        const bool inner = widget.parentWidget() && (qobject_cast<const QSpinBox *>(widget.parentWidget()) ||
                                                     widget.window() != widget.parentWidget()->window());
        return field && !inner && widget.accessibleName().isEmpty();
    }

    void inspect(const char *where)
    {
        // Wait until a sheet's data has arrived and is laid out.
        ASSERT_TRUE(waitUntil([this] { return !model->checking.get(); }));
        QTest::qWait(1);
        for (const QWidget *const widget : window->findChildren<QWidget *>()) {
            if (!widget->isVisible() || widget->inherits("QComboBoxPrivateContainer"))
                continue;
            const auto *const label = qobject_cast<const QLabel *>(widget);
            const auto *const button = qobject_cast<const QAbstractButton *>(widget);
            const QString text = label ? label->text() : button ? button->text() : QString();
            EXPECT_FALSE(isCut(*widget)) << where << ": " << widget->objectName().toStdString() << " "
                                         << text.toStdString();
            const bool ownParts =
                widget->objectName().startsWith(QStringLiteral("qt_")) || qobject_cast<const QScrollBar *>(widget);
            EXPECT_FALSE(!ownParts && isNameless(*widget))
                << where << ": " << widget->metaObject()->className() << " " << widget->objectName().toStdString();
        }
    }
};

TEST_P(AgentLookTest, nothingIsCutAndEveryControlHasAName)
{
    inspect("start page");
    for (const AgentArea area : agentAreas) {
        view->open(area);
        inspect(qPrintable(title(area)));
    }
    view->showGuide();
    inspect("guide");
    for (const AgentSheet sheet :
         {AgentSheet::CleanupRules, AgentSheet::ReceiptRules, AgentSheet::Settings, AgentSheet::Recipes}) {
        view->openSheet(sheet);
        inspect(qPrintable(title(sheet)));
        for (QWidget *const one : window->findChildren<QWidget *>())
            if (one->inherits("brellin::SheetFrame") && one->isVisible())
                QTest::keyClick(one, Qt::Key_Escape);
    }
    view->openSheet(AgentSheet::CleanupRules);
    click("ruleEdit");
    inspect("rule editor");
}

INSTANTIATE_TEST_SUITE_P(sizes, AgentLookTest, ::testing::Values(1.0, 1.25));

} // namespace
