// SPDX-License-Identifier: MIT
#include <tunerdocuments/Lint.h>

#include "text/OptionValues.h"

namespace TunerDocuments {

struct LintOptions::Values
{
    QStringList disabled;
    QStringList errors;
    qint64 most = std::numeric_limits<qint64>::max();
};

LintOptions::LintOptions() noexcept = default;

const LintOptions::Values &LintOptions::values() const
{
    return OptionValues::of(m_values);
}

LintOptions::Values &LintOptions::change()
{
    return OptionValues::changed(m_values);
}

QStringList LintOptions::disabled() const
{
    return values().disabled;
}

LintOptions &LintOptions::setDisabled(const QStringList &rules)
{
    change().disabled = rules;
    return *this;
}

QStringList LintOptions::errors() const
{
    return values().errors;
}

LintOptions &LintOptions::setErrors(const QStringList &rules)
{
    change().errors = rules;
    return *this;
}

qint64 LintOptions::most() const noexcept
{
    return values().most;
}

LintOptions &LintOptions::setMost(qint64 findings)
{
    change().most = findings;
    return *this;
}

LintOptions LintOptions::lostByReading()
{
    const QStringList wanted = {QStringLiteral("not-a-number"),         QStringLiteral("number-out-of-range"),
                                QStringLiteral("not-a-boolean"),        QStringLiteral("unknown-attribute"),
                                QStringLiteral("unknown-element"),      QStringLiteral("repeated-member"),
                                QStringLiteral("repeated-alternative"), QStringLiteral("stray-text"),
                                QStringLiteral("element-in-value")};
    QStringList others;
    for (const LintRule &rule : lintRules()) {
        if (!wanted.contains(rule.name))
            others.append(rule.name);
    }
    return LintOptions().setDisabled(others);
}

} // namespace TunerDocuments
