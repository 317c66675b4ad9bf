#include "FileOperations/RightsPeople.h"

#include <algorithm>

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace brellin {

namespace {

/// A directory service may know tens of thousands.
constexpr std::size_t mostPeople = 2000;

void sortByName(std::vector<NamedId> &people)
{
    std::ranges::sort(people, {}, &NamedId::name);
}

std::vector<NamedId> allOwners()
{
    std::vector<NamedId> owners;
    ::setpwent();
    for (const passwd *one = ::getpwent(); one != nullptr && owners.size() < mostPeople; one = ::getpwent())
        owners.push_back({one->pw_uid, QString::fromLocal8Bit(one->pw_name)});
    ::endpwent();
    return owners;
}

std::vector<NamedId> allGroups()
{
    std::vector<NamedId> groups;
    ::setgrent();
    for (const group *one = ::getgrent(); one != nullptr && groups.size() < mostPeople; one = ::getgrent())
        groups.push_back({one->gr_gid, QString::fromLocal8Bit(one->gr_name)});
    ::endgrent();
    return groups;
}

std::vector<NamedId> ownGroups()
{
    std::vector<gid_t> numbers(static_cast<std::size_t>(std::max(0, ::getgroups(0, nullptr))));
    const int count = ::getgroups(static_cast<int>(numbers.size()), numbers.data());
    numbers.resize(static_cast<std::size_t>(std::max(0, count)));
    if (std::ranges::find(numbers, ::getegid()) == numbers.end())
        numbers.push_back(::getegid());
    std::vector<NamedId> groups;
    for (const gid_t number : numbers) {
        const group *const known = ::getgrgid(number);
        groups.push_back({number, known ? QString::fromLocal8Bit(known->gr_name) : QString::number(number)});
    }
    return groups;
}

} // namespace

RightsPeople RightsPeople::ofThisProcess()
{
    const bool all = ::geteuid() == 0;
    RightsPeople people{all ? allOwners() : std::vector<NamedId>(), all ? allGroups() : ownGroups()};
    sortByName(people.owners);
    sortByName(people.groups);
    return people;
}

} // namespace brellin
