#pragma once

#include "Agent/Screens/AgentPorts.h"
#include "Base/Job.h"
#include "Look/SheetFrame.h"

#include <functional>

class QCheckBox;
class QLineEdit;
class QPushButton;
class QSpinBox;

namespace brellin {

class NoticeBar;

/// Edits a copy of a profile. `done` gets the edited profile, or nullopt if the user cancels; it may refuse with the
/// reason to show. Asks before discarding changes.
class ProfileEditor : public SheetFrame {
    Q_OBJECT
public:
    enum class Purpose { ConfirmDetected, AddNew, EditStored };
    using Done = std::function<Result<void>(const std::optional<FolderProfile> &)>;

    ProfileEditor(const AgentPorts &ports, const FolderProfile &profile, Purpose purpose, Done done, QWidget *window);

    /// The copy in its present state, with paths as typed.
    FolderProfile edited() const;

protected:
    void escape() override;

private:
    struct EntryRow {
        QUuid id;
        QString given; ///< the path as stored, detected or picked
        QWidget *row = nullptr;
        QLineEdit *path = nullptr;
        QLineEdit *reason = nullptr;
    };

    void buildEntries();
    void buildNoEntries();
    void buildTidying();
    void buildButtons(Purpose purpose);
    void addEntry(const ProtectedEntry &entry);
    void addChosen(const Location &entry);
    void detectEntries();
    void tellWhatIsProtected();
    Result<FolderProfile> checked() const;
    void save();
    void discard();

    AgentPorts m_ports;
    FolderProfile m_profile;
    FolderProfile m_opened; ///< the unedited state, as read back from the fields
    Done m_done;
    NoticeBar *m_problem;
    NoticeBar *m_noEntries = nullptr;
    QVBoxLayout *m_entryRows = nullptr;
    std::vector<EntryRow> m_entries;
    QLineEdit *m_name = nullptr;
    QCheckBox *m_tidy = nullptr;
    QLineEdit *m_groups = nullptr;
    QSpinBox *m_archiveDays = nullptr;
    QSpinBox *m_videoDays = nullptr;
    std::shared_ptr<QThreadPool> m_pool;
    std::unique_ptr<Job<std::vector<ProtectedEntry>>> m_detection; ///< of the folder's entries; one at a time
};

} // namespace brellin
