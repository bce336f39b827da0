// SPDX-License-Identifier: MIT
#include "documents/lint/LintedText.h"

namespace TunerDocuments {

void LintedText::check(TextSubject subject)
{
    const std::vector<Rule> &rules = allRules();
    for (m_rule = 0; m_rule < int(rules.size()); ++m_rule) {
        if (rules[std::size_t(m_rule)].subject == subject && (m_report.enabled() & bitOf(m_rule)) != 0)
            rules[std::size_t(m_rule)].checkText(*this);
    }
}

} // namespace TunerDocuments
