#pragma once

#include "Base/Job.h"
#include "Base/Published.h"
#include "Disk/FileActions.h"
#include "Disk/Volumes.h"
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

/// What file operations work with; all of it outlives them.
struct FileOperationServices {
    FileActions &files;
    Trash &trash;
    const Volumes &volumes;
    ProcessRunner &processes;
    Workspace &workspace;
    Location homeTrash; ///< the folder that holds "files" and "info"
    UserUndo &undo;
    Location archiveReader; ///< the program that reads archives, "…/brellin-bild"
    /// Whether an entry may be changed, or one of this name be made; callable from every thread. Without it, everything may.
    std::function<bool(const Location &entry)> mayChange = {};
    Location archiveLogs = {}; ///< where is noted what archives leave when the program dies
};

/// An operation under way, for a line of the panel.
struct RunningOperation {
    int id = 0;
    QString title;                  ///< „Komprimiere 3 Elemente“
    QString detail;                 ///< what it is at
    std::optional<double> progress; ///< none where it cannot be told

    bool operator==(const RunningOperation &) const = default;
};

/// Something that the user has to decide before it happens. Cancelling is the answer that is always safe.
struct OperationQuestion {
    enum class Kind { EmptyTrash, DeleteForGood, UnpackBeyondFreeSpace };
    Kind kind = Kind::EmptyTrash;
    QString message;
    QString information;
    QString accept; ///< the title of the button that does it; the other is "Abbrechen"
    int id = 0;     ///< two questions of one wording are two questions

    bool operator==(const OperationQuestion &) const = default;
};

/// The single-step file operations of panes. Everything that touches files runs on a thread of its own, several may run at
/// once; what was done is recorded for undo. Lives on the main thread.
class FileOperations : public Model<FileOperations> {
public:
    /// Who wants to know the outcome; called once, on the main thread, unless the receiver has gone or the user declined.
    struct Then {
        QPointer<QObject> receiver;
        std::function<void(const OperationOutcome &)> call;
    };
    enum class Answer { Accept, Cancel };

    explicit FileOperations(FileOperationServices services);
    ~FileOperations() override;

    Published<std::vector<RunningOperation>> operations;
    Published<std::optional<OperationQuestion>> question; ///< waits for `answer`; further ones wait behind it
    Published<std::optional<QString>> errorMessage;
    Published<QString> status; ///< one line about the last operation that ended

    /// "Neues Textdokument.txt"; the outcome names it, so that its renaming can begin.
    void newTextDocument(const Location &folder, Then then = {});
    void trash(const std::vector<Location> &entries, Then then = {});
    /// Asks, then removes what lies in every volume's Trash.
    void emptyTrash(Then then = {});
    /// Asks, then deletes what lies in the Trash, or where no Trash is, for good. Anything else is refused.
    void deleteForGood(const std::vector<Location> &entries, Then then = {});
    void compress(std::vector<Location> entries, const Location &into, Then then = {});
    /// Asks where the archive says that it needs more than the free space.
    void unpack(const Location &archive, const Location &folder, Then then = {});
    void makeAlias(std::vector<Location> sources, const Location &folder, Then then = {});
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
    /// The work, or the refusal where one of these places belongs to the system.
    Work guarded(std::vector<Location> places, Work work) const;
    /// The usual end: records what was done, and says what came of it.
    Finished telling(const QString &success, Then then);
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
