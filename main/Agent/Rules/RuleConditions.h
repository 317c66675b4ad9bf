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

/// A file as seen by conditions. Computes expensive properties on first use; reuse one object for many files.
class RuleFile {
public:
    /// `name` must stay valid while this file is tested. Pass no size for a package.
    void set(std::string_view name, std::optional<std::int64_t> size, std::optional<Instant> modified);

    std::optional<std::int64_t> size() const { return m_size; }
    std::optional<Instant> modified() const { return m_modified; }
    /// Name and extension as UTF-8, normalised for comparison.
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

/// Whether a condition asks for a file's age, so that it holds some day if it does not hold today.
bool isAge(const RuleCondition &condition);
std::vector<RuleCondition> withoutAges(std::vector<RuleCondition> conditions);

/// Parses a number as typed into a condition, with a decimal comma or point.
std::optional<double> conditionNumber(const QString &value);

/// The conditions of one rule, parsed once so that testing 100,000 files is cheap. Thread-safe.
class RuleConditions {
public:
    explicit RuleConditions(const std::vector<RuleCondition> &conditions);

    /// Whether all conditions hold. A condition whose list is empty is ignored; one with an invalid number, or on an
    /// attribute that could not be read, never holds.
    bool hold(RuleFile &file, Instant now) const;

private:
    struct Test {
        ConditionKind kind;
        std::vector<std::string> parts; ///< case-folded UTF-8
        QStringList words;              ///< categories as typed
        std::optional<double> number;
    };
    static std::optional<Test> compiled(const RuleCondition &condition);
    static bool holds(const Test &test, RuleFile &file, Instant now);

    std::vector<Test> m_tests;
};

} // namespace brellin
