#include "MailScanner/MailStore.h"

#include "Disk/FileAttributes.h"
#include "MailScanner/MailboxNames.h"

#include <QStringList>

#include <algorithm>
#include <fstream>
#include <set>

namespace brellin {

namespace {

constexpr std::string_view folderMark = ".directory";
constexpr std::string_view subMark = ".sbd";
/// Deeper than any mailbox; bounds what a strange tree costs.
constexpr int deepestBox = 12;

bool isFolder(const Location &path)
{
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

QString nameOf(std::string_view bytes)
{
    return mailboxNameFrom(QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

QString below(const QString &parent, const QString &name)
{
    return parent.isEmpty() ? name : parent + u'/' + name;
}

/// The folder's entries, sorted; none if it cannot be read.
std::vector<Location> entriesOf(const Location &folder)
{
    std::vector<Location> entries;
    std::error_code error;
    for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end; it.increment(error))
        entries.push_back(it->path());
    std::ranges::sort(entries);
    return entries;
}

/// Collects the mailboxes of one account.
class StoreWalk {
public:
    explicit StoreWalk(QString account) : m_account(std::move(account)) {}

    /// `name` is that of the folder, empty for the root.
    void maildirs(const Location &folder, const QString &name, int depth)
    {
        if (depth > deepestBox || !isNew(folder))
            return;
        const bool isBox = isMaildir(folder);
        if (isBox)
            add(folder, name.isEmpty() ? QStringLiteral("INBOX") : name, MailLayout::Maildir);
        for (const Location &entry : entriesOf(folder)) {
            const std::string own = entry.filename().native();
            if (isBox && (own == "cur" || own == "new" || own == "tmp"))
                continue;
            if (isFolder(entry))
                maildirs(entry, nameBelow(own, name), depth + 1);
        }
    }

    void mboxes(const Location &folder, const QString &name, int depth)
    {
        if (depth > deepestBox || !isNew(folder))
            return;
        for (const Location &entry : entriesOf(folder)) {
            const std::string own = entry.filename().native();
            if (!isFolder(entry)) {
                if (isMbox(entry))
                    add(entry, below(name, nameOf(own)), MailLayout::Mbox);
            } else if (own.ends_with(subMark)) {
                mboxes(entry, below(name, nameOf(std::string_view(own).substr(0, own.size() - subMark.size()))),
                       depth + 1);
            } else if (isMaildir(entry)) {
                add(entry, below(name, nameOf(own)), MailLayout::Maildir);
            }
        }
    }

    std::vector<StoredMailbox> found;

private:
    bool isNew(const Location &folder)
    {
        std::error_code error;
        const Location resolved = std::filesystem::canonical(folder, error);
        return !error && m_seen.insert(resolved).second;
    }

    void add(const Location &path, const QString &name, MailLayout layout)
    {
        found.push_back({{m_account, name}, path, layout, false});
    }

    /// The name of a folder below the mailbox or folder `parent`.
    static QString nameBelow(std::string_view own, const QString &parent)
    {
        if (own.starts_with('.') && own.ends_with(folderMark) && own.size() > folderMark.size() + 1)
            return below(parent, nameOf(own.substr(1, own.size() - folderMark.size() - 1)));
        if (own.starts_with('.') && own.size() > 1)
            return below(parent, nameOf(own.substr(1)).replace(u'.', u'/'));
        return below(parent, nameOf(own));
    }

    /// A file that begins as a message of an mbox does. An empty one counts if there is an index beside it.
    static bool isMbox(const Location &file)
    {
        if (file.extension() == ".msf")
            return false;
        const Result<FileAttributes> attributes = readAttributes(file);
        if (!attributes || !attributes->isFile())
            return false;
        if (attributes->size == 0)
            return entryExists(Location(file.native() + ".msf"));
        std::array<char, 5> start{};
        std::ifstream(file, std::ios::binary).read(start.data(), start.size());
        return std::string_view(start.data(), start.size()) == "From ";
    }

    QString m_account;
    std::set<Location> m_seen;
};

} // namespace

bool isMaildir(const Location &folder)
{
    return isFolder(folder / "cur") && (isFolder(folder / "new") || isFolder(folder / "tmp"));
}

std::vector<StoredMailbox> maildirsBelow(const Location &root, const QString &account)
{
    StoreWalk walk(account);
    walk.maildirs(root, {}, 0);
    return std::move(walk.found);
}

std::vector<StoredMailbox> mboxesBelow(const Location &root, const QString &account)
{
    StoreWalk walk(account);
    walk.mboxes(root, {}, 0);
    return std::move(walk.found);
}

} // namespace brellin
