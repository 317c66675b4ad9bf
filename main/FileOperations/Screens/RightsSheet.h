#pragma once

#include "Base/Job.h"
#include "FileOperations/RightsChange.h"
#include "FileOperations/RightsPeople.h"
#include "Look/SheetFrame.h"

#include <array>
#include <memory>

class QCheckBox;
class QComboBox;
class QPushButton;

namespace brellin {

class TextLabel;

/// "Rechte ändern": who may read, write and run the entries, to whom they belong, and what a change would lose. What is
/// not touched stays as each entry has it.
class RightsSheet : public SheetFrame {
    Q_OBJECT
public:
    RightsSheet(std::vector<Location> entries, std::function<bool(const Location &)> mayChange, QWidget *window);
    ~RightsSheet() override;

    Q_SIGNAL void accepted(const brellin::RightsWish &wish);

private:
    struct Read {
        RightsPlan plan;
        RightsPeople people;
    };
    static constexpr std::size_t bitCount = 9;

    void buildGrid();
    void buildOwners();
    void buildEnd();
    void read();
    void plan();
    void startPlan();
    void showRights(const Read &read);
    void showPeople(const Read &read);
    void showPlan(const RightsPlan &plan);
    void touch(std::size_t bit, bool on);
    void accept();

    const std::vector<Location> m_entries;
    const std::function<bool(const Location &)> m_mayChange;
    RightsWish m_wish;
    int m_changes = 0;                          ///< of `m_wish`
    std::array<QCheckBox *, bitCount> m_bits{}; ///< from the owner's reading to the others' running
    QComboBox *m_owner = nullptr;
    QComboBox *m_group = nullptr;
    QWidget *m_owners = nullptr;
    QCheckBox *m_inside = nullptr;
    TextLabel *m_summary = nullptr;
    TextLabel *m_notes = nullptr;
    QPushButton *m_accept = nullptr;
    const std::shared_ptr<QThreadPool> m_pool;
    Job<Read> m_reading;
    Job<RightsPlan> m_planning;
};

} // namespace brellin
