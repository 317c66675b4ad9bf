#pragma once

#include "Agent/Screens/AgentView.h"
#include "Look/Theme.h"
#include "Support/AgentWait.h"
#include "Support/AgentWorld.h"
#include "Support/FakeWorkspace.h"
#include "Support/WaitUntil.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

namespace brellin::test {

/// The agent's view in a window over a small account, driven by clicks and keys via object names.
class ScreenWorld : public ::testing::Test, protected AgentWorld {
protected:
    class Desktop : public FakeWorkspace, public Pasteboard {
    public:
        void setText(const QString &text) override { copied = text; }

        QString copied;
    };

    static void SetUpTestSuite() { Theme::install(*qApp); }

    /// Creates the agent and its window; create rules and files before.
    void show(const std::vector<CleanupRule> &rules)
    {
        agent = std::make_unique<CleanupAgent>(services());
        ASSERT_TRUE(agent->updateRules([&](const auto &) { return rules; }));
        ASSERT_TRUE(agent->setDuplicateFolders({home("Downloads")}));
        model = std::make_unique<ModelSettings>(services().forModel(),
                                                [](const JobControl &) { return std::vector<FoundModelServer>(); });
        window = std::make_unique<QWidget>();
        window->resize(1064, 748);
        const auto ask = [this](QWidget *, const FolderQuestion &question, const auto &chosen) {
            asked = question.title;
            if (!answer.empty())
                chosen(answer);
        };
        view = new AgentView({*agent, *model, services(), desktop, desktop, {}, ask}, window.get());
        view->resize(window->size());
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }

    CleanupRule movingPdfs() const
    {
        CleanupRule rule;
        rule.name = QStringLiteral("Rechnungen ablegen");
        rule.sourcePath = textOf(home("Downloads"));
        rule.conditions = {{.kind = ConditionKind::ExtensionIs, .value = QStringLiteral("pdf")}};
        rule.targetPath = textOf(home("Dokumente/Rechnungen"));
        return rule;
    }

    /// The single visible widget of this name.
    template <class T = QWidget>
    T *find(const char *name) const
    {
        for (T *const one : window->findChildren<T *>(QString::fromUtf8(name)))
            if (one->isVisible())
                return one;
        return nullptr;
    }
    void click(const char *name) const
    {
        auto *const button = find<QAbstractButton>(name);
        ASSERT_TRUE(button) << name;
        ASSERT_TRUE(button->isEnabled()) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    }
    bool settled() const
    {
        return waitUntil([this] { return !agent->running.get(); });
    }
    /// Scans with rules and duplicates, and shows the proposals.
    void scan()
    {
        click("agentScan");
        ASSERT_TRUE(settled());
    }

    QString asked;   ///< title of the last question for a folder
    Location answer; ///< to that question; empty: cancelled
    Desktop desktop;
    std::unique_ptr<CleanupAgent> agent;
    std::unique_ptr<ModelSettings> model;
    std::unique_ptr<QWidget> window;
    AgentView *view = nullptr;
};

} // namespace brellin::test
