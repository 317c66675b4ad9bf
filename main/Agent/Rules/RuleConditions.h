#pragma once

#include "Agent/Rules/CleanupRule.h"
#include "Base/Instant.h"

#include <QStringList>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brellin {

/// A file as conditions see it. What costs something is worked out when the first condition asks for it; one object serves
/// many files, one after the other.
class RuleFile {
public:
    /// The name stays where it is while this file is looked at. A package has no size.
    void set(std::string_view name, std::optional<std::int64_t> size, std::optional<Instant> modified);

    std::optional<std::int64_t> size() const { return m_size; }
    std::optional<Instant> modified() const { return m_modified; }
    /// Name and extension in the form in which names are compared, as UTF-8.
    const std::string &foldedName();
    const std::string &foldedExtension();
    /// The extension with its ASCII letters in lower case.
    const std::string &lowerExtension();
    const QString &category();

private:
    std::string_view m_name;
    std::optional<std::int64_t> m_size;
    std::optional<Instant> m_modified;
    bool m_nameKnown = false;
    bool m_foldedExtensionKnown = false;
    bool m_lowerExtensionKnown = false;
    std::string m_foldedName;
    std::string m_foldedExtension;
    std::string m_lowerExtension;
    const QString *m_category = nullptr;
};

/// A number as people type it into a condition, with a decimal comma or point.
std::optional<double> conditionNumber(const QString &value);

/// The conditions of one rule, read once so that testing a hundred thousand files is cheap. Usable by several threads.
class RuleConditions {
public:
    explicit RuleConditions(const std::vector<RuleCondition> &conditions);

    /// Whether all of them hold. A condition whose list names nothing is no condition; a number that does not parse, and an
    /// attribute that could not be read, never hold.
    bool hold(RuleFile &file, Instant now) const;

private:
    struct Test {
        ConditionKind kind;
        std::vector<std::string> parts; ///< folded, UTF-8
        QStringList words;              ///< categories as typed
        std::optional<double> number;
    };
    static std::optional<Test> compiled(const RuleCondition &condition);
    static bool holds(const Test &test, RuleFile &file, Instant now);

    std::vector<Test> m_tests;
};

} // namespace brellin
