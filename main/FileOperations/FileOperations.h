#pragma once

#include "Base/Job.h"
#include "Base/Published.h"
#include "Disk/FileActions.h"
#include "Disk/Volumes.h"
#include "Features/TrashList.h"
#include "FileOperations/OperationOutcome.h"
#include "FileOperations/TrashActions.h"
#include "FileOperations/UserUndo.h"
#include "System/ProcessRunner.h"
#include "System/Workspace.h"

#include <QPointer>

#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <optional>

namespace brellin {

struct RightsWish;

/// Ports and shared models; all must outlive the operations.
struct FileOperationServices {
    FileActions &files;
    Trash &trash;
    const Volumes &volumes;
    ProcessRunner &processes;
    Workspace &workspace;
    Location homeTrash; ///< contains "files" and "info"
    UserUndo &undo;
    Location archiveReader; ///< path of "…/brellin-bild"
    /// Whether an entry may be changed, or one of this name created. Called on workers; empty allows all.
    std::function<bool(const Location &entry)> mayChange = {};
    Location archiveLogs = {};      ///< folder for notes about hidden folders of archives, read after a crash
    StepRecords *records = nullptr; ///< where operations are recorded; null: nowhere
};

/// A running operation, for a row of the panel.
struct RunningOperation {
    int id = 0;
    QString title;                  ///< e.g. „Komprimiere 3 Elemente“
    QString detail;                 ///< the entry being processed
    std::optional<double> progress; ///< 0 to 1; none if unknown

    bool operator==(const RunningOperation &) const = default;
};

/// A question that must be answered before an operation starts. Cancel is always safe.
struct OperationQuestion {
    enum class Kind { EmptyTrash, DeleteForGood, UnpackBeyondFreeSpace };
    Kind kind = Kind::EmptyTrash;
    QString message;
    QString information;
    QString accept; ///< title of the accepting button; the other is "Abbrechen"
    int id = 0;     ///< distinguishes questions with equal texts

    bool operator==(const OperationQuestion &) const = default;
};

/// The file operations of panes, except transfers. Each runs on a thread of its own, several at once; what they did is
/// recorded for undo. Lives on the main thread.
class FileOperations : public Model<FileOperations> {
public:
    /// Where failures go while the receiver lives: into `errorMessage`, or only to the receiver, which shows them itself.
    enum class Failures { Publish, ToReceiver };
    /// Receiver of the outcome; called once on the main thread, unless the receiver was destroyed or the user declined.
    struct Then {
        Then() {} // NOLINT(modernize-use-equals-default): could not be a default argument then
        Then(QObject *to, std::function<void(const OperationOutcome &)> heard, Failures whereTo = Failures::Publish)
            : receiver(to)
            , call(std::move(heard))
            , failures(whereTo)
        {
        }

        QPointer<QObject> receiver;
        std::function<void(const OperationOutcome &)> call;
        Failures failures = Failures::Publish;
    };
    enum class Answer { Accept, Cancel };

    explicit FileOperations(FileOperationServices services);
    ~FileOperations() override;

    Published<std::vector<RunningOperation>> operations;
    Published<std::optional<OperationQuestion>> question; ///< the first unanswered question; others queue behind it
    Published<std::optional<QString>> errorMessage;
    Published<QString> status; ///< one line about the last operation that ended

    /// Creates "Neues Textdokument.txt"; the outcome contains its location, for renaming it.
    void newTextDocument(const Location &folder, Then then = {});
    /// A copy of a template in `folder`, with a free name.
    void newFromTemplate(const Location &model, const Location &folder, Then then = {});
    void trash(const std::vector<Location> &entries, Then then = {});
    /// Asks, naming the amount if it is known, then permanently deletes everything in this user's Trash on all volumes.
    void emptyTrash(const std::optional<TrashAmount> &amount = {}, Then then = {});
    /// Asks, then permanently deletes entries that are in the Trash, or whose volume has no Trash; refuses others.
    void deleteForGood(const std::vector<Location> &entries, Then then = {});
    void compress(std::vector<Location> entries, const Location &into, Then then = {});
    /// Asks first if the archive claims to need more than the free space.
    void unpack(const Location &archive, const Location &folder, Then then = {});
    void makeAlias(std::vector<Location> sources, const Location &folder, Then then = {});
    /// Changes who may do what with the entries, and with what lies in them if wished.
    void changeRights(std::vector<Location> entries, const RightsWish &wish, Then then = {});
    void openTerminal(const Location &folder);
    void openWith(std::vector<Location> entries, const QString &application);
    void reveal(const Location &entry);

    void answer(Answer given);
    void cancel(int operation);
    void dismissError();

private:
    struct Operation;
    struct Waiting {
        OperationQuestion question;
        std::function<void()> accepted;
    };
    using Work = std::function<OperationOutcome(JobControl &)>;
    using Finished = std::function<void(const OperationOutcome &)>;

    void start(const QString &title, Work work, Finished finished);
    /// Wraps the work; refuses to start it if one of these places belongs to the system.
    Work guarded(std::vector<Location> places, Work work) const;
    /// The same, recorded as a step.
    Work guarded(std::vector<Location> places, StepPlan step, Work work) const;
    /// The usual end: records for undo, publishes status and errors, the latter after `lead`, calls `then`.
    Finished telling(const QString &success, Then then, const QString &lead = {});
    void startDeleting(std::vector<DoomedEntry> entries, Then then);
    void startUnpacking(const Location &archive, const Location &folder, Then then);
    void ask(OperationQuestion asked, std::function<void()> accepted);
    void ended(int id, const OperationOutcome &outcome, const Finished &finished);
    void publishOperations();
    void publishQuestion();

    const FileOperationServices m_services;
    std::list<std::unique_ptr<Operation>> m_operations;
    std::deque<Waiting> m_waiting;
    int m_lastId = 0;
    int m_lastQuestion = 0;
};

} // namespace brellin
