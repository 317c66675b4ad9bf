#include "Agent/Rules/RuleConditions.h"

#include "Base/CommaList.h"
#include "Base/Location.h"
#include "Disk/FileTypes.h"

#include <algorithm>
#include <cmath>

namespace brellin {

namespace {

void assignFolded(std::string &to, std::string_view text)
{
    const bool plain = std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (!plain) {
        const QByteArray utf8 = folded(shown(text)).toUtf8();
        to.assign(utf8.constData(), static_cast<std::size_t>(utf8.size()));
        return;
    }
    to.resize(text.size());
    std::ranges::transform(text, to.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; });
}

std::string foldedPart(const QString &part)
{
    return folded(part).toStdString();
}

QString withoutDotsAround(const QString &part)
{
    QStringView rest(part);
    while (rest.startsWith(u'.'))
        rest = rest.sliced(1);
    while (rest.endsWith(u'.'))
        rest.chop(1);
    return rest.toString();
}

/// Sort key: cheap tests that decide most files come first.
int cost(ConditionKind kind)
{
    switch (kind) {
    case ConditionKind::OlderThanDays:
    case ConditionKind::LargerThanMB:
        return 0;
    case ConditionKind::ExtensionIs:
        return 1;
    case ConditionKind::NameContains:
        return 2;
    case ConditionKind::Category:
        break;
    }
    return 3;
}

bool isOlder(std::optional<Instant> modified, double days, Instant now)
{
    if (!modified)
        return false;
    // Every date is 0 days old, even one in the future (a wrong camera clock).
    return days <= 0 || std::chrono::duration<double>(now - *modified).count() >= days * 86400.0;
}

bool isAsLarge(std::optional<std::int64_t> size, double megabytes)
{
    return size && static_cast<double>(*size) >= megabytes * 1e6;
}

bool extensionMatches(const std::string &part, RuleFile &file)
{
    // Users call "tar.gz" an extension; extensionOf() returns "gz".
    if (part.find('.') != std::string::npos)
        return file.foldedName().ends_with('.' + part);
    return file.foldedExtension() == part;
}

} // namespace

bool isAge(const RuleCondition &condition)
{
    return condition.kind == ConditionKind::OlderThanDays;
}

std::vector<RuleCondition> withoutAges(std::vector<RuleCondition> conditions)
{
    std::erase_if(conditions, isAge);
    return conditions;
}

std::optional<double> conditionNumber(const QString &value)
{
    QString text = value.trimmed();
    text.replace(u',', u'.');
    bool read = false;
    const double number = text.toDouble(&read);
    return read && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

void RuleFile::set(std::string_view name, std::optional<std::int64_t> size, std::optional<Instant> modified)
{
    m_name = name;
    m_size = size;
    m_modified = modified;
    m_nameKnown = false;
    m_foldedExtensionKnown = false;
    m_lowerExtensionKnown = false;
    m_category = nullptr;
}

const std::string &RuleFile::foldedName()
{
    if (!m_nameKnown)
        assignFolded(m_foldedName, m_name);
    m_nameKnown = true;
    return m_foldedName;
}

const std::string &RuleFile::foldedExtension()
{
    if (!m_foldedExtensionKnown)
        assignFolded(m_foldedExtension, extensionOf(m_name));
    m_foldedExtensionKnown = true;
    return m_foldedExtension;
}

const std::string &RuleFile::lowerExtension()
{
    if (!m_lowerExtensionKnown)
        m_lowerExtension = lowerExtensionOf(m_name);
    m_lowerExtensionKnown = true;
    return m_lowerExtension;
}

const QString &RuleFile::category()
{
    if (m_category == nullptr)
        m_category = &fileCategory(lowerExtension());
    return *m_category;
}

RuleConditions::RuleConditions(const std::vector<RuleCondition> &conditions)
{
    for (const RuleCondition &condition : conditions) {
        if (std::optional<Test> test = compiled(condition))
            m_tests.push_back(*std::move(test));
    }
    std::ranges::stable_sort(m_tests, {}, [](const Test &test) { return cost(test.kind); });
}

std::optional<RuleConditions::Test> RuleConditions::compiled(const RuleCondition &condition)
{
    Test test{.kind = condition.kind, .parts = {}, .words = {}, .number = {}};
    if (condition.kind == ConditionKind::OlderThanDays || condition.kind == ConditionKind::LargerThanMB) {
        test.number = conditionNumber(condition.value);
        return test;
    }
    test.words = commaList(condition.value);
    if (test.words.isEmpty())
        return std::nullopt;
    for (const QString &word : std::as_const(test.words))
        test.parts.push_back(foldedPart(condition.kind == ConditionKind::ExtensionIs ? withoutDotsAround(word) : word));
    return test;
}

bool RuleConditions::hold(RuleFile &file, Instant now) const
{
    return std::ranges::all_of(m_tests, [&](const Test &test) { return holds(test, file, now); });
}

bool RuleConditions::holds(const Test &test, RuleFile &file, Instant now)
{
    switch (test.kind) {
    case ConditionKind::NameContains:
        return std::ranges::any_of(
            test.parts, [&](const std::string &part) { return file.foldedName().find(part) != std::string::npos; });
    case ConditionKind::ExtensionIs:
        return std::ranges::any_of(test.parts, [&](const std::string &part) { return extensionMatches(part, file); });
    case ConditionKind::Category:
        return test.words.contains(file.category(), Qt::CaseInsensitive);
    case ConditionKind::OlderThanDays:
        return test.number && isOlder(file.modified(), *test.number, now);
    case ConditionKind::LargerThanMB:
        return test.number && isAsLarge(file.size(), *test.number);
    }
    return false;
}

} // namespace brellin
