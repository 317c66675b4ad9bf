#include "MailScanner/MailStores.h"

#include "MailScanner/MailProfile.h"

#include <algorithm>
#include <set>

namespace brellin {

namespace {

/// Folders of Maildirs that people and synchronisers use.
std::vector<Location> plainStores(const MailPlaces &places)
{
    std::vector<Location> stores{places.home / "Maildir", places.home / "Mail", places.home / ".mail",
                                 places.data / "mail"};
    if (places.other)
        stores.insert(stores.begin(), *places.other);
    return stores;
}

/// Maildirs of programs that keep an index of them.
std::vector<Location> indexedStores(const MailPlaces &places)
{
    return {places.data / "local-mail", places.data / "evolution/mail/local"};
}

/// Folders with Thunderbird's profiles: its own, Flatpak's, Snap's.
std::vector<Location> profileRoots(const MailPlaces &places)
{
    return {places.home / ".thunderbird", places.home / ".var/app/org.mozilla.Thunderbird/.thunderbird",
            places.home / "snap/thunderbird/common/.thunderbird"};
}

/// A store with a folder per account, where none of them is a mailbox itself, gives each its own.
std::vector<StoredMailbox> maildirStore(const Location &root)
{
    std::vector<StoredMailbox> boxes = maildirsBelow(root, shownName(root));
    const bool byAccount =
        std::ranges::all_of(boxes, [](const StoredMailbox &one) { return one.ref.name.contains(u'/'); });
    for (StoredMailbox &one : boxes) {
        if (byAccount)
            one.ref = {one.ref.name.section(u'/', 0, 0), one.ref.name.section(u'/', 1)};
    }
    return boxes;
}

/// Collects mailboxes, each folder once.
class Collection {
public:
    void add(std::vector<StoredMailbox> found, bool indexed)
    {
        for (StoredMailbox &one : found) {
            std::error_code error;
            const Location resolved = std::filesystem::canonical(one.path, error);
            if (error || !m_seen.insert(resolved).second)
                continue;
            one.indexed = indexed;
            boxes.push_back(std::move(one));
        }
    }

    std::vector<StoredMailbox> boxes;

private:
    std::set<Location> m_seen;
};

} // namespace

std::vector<Location> MailPlaces::all() const
{
    std::vector<Location> folders = plainStores(*this);
    for (const std::vector<Location> &more : {indexedStores(*this), profileRoots(*this)})
        folders.insert(folders.end(), more.begin(), more.end());
    return folders;
}

std::vector<StoredMailbox> mailboxesOf(const MailPlaces &places)
{
    Collection collection;
    // Programs with an index first: a folder that a program and the user name stays the program's.
    for (const Location &store : indexedStores(places))
        collection.add(maildirStore(store), true);
    for (const Location &root : profileRoots(places)) {
        for (const Location &profile : profilesIn(root)) {
            for (const ProfileAccount &account : accountsOf(profile))
                collection.add(mboxesBelow(account.folder, account.name), true);
        }
    }
    for (const Location &store : plainStores(places)) {
        collection.add(maildirStore(store), false);
        collection.add(mboxesBelow(store, shownName(store)), false);
    }
    return std::move(collection.boxes);
}

} // namespace brellin
