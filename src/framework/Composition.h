// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <reportbase/Environment.h>

namespace JobXml {

/// Writing a tree of the model's own classes in one traversal, which also propagates flag and logger and, while
/// validating, checks. See compose() in framework/Child.h.
struct Composition
{
    const REPORTGENERATOR::EnvironmentPointer environment; ///< of the root, for everything below it
    const bool validates;
    /// Whether nothing was found that, while validating, Check() or a writer might refuse. The reason does not matter:
    /// what has been written is discarded, and Check() reports it.
    bool isSound = true;
};

/// The base of the targets to which rows write.
class WriteTarget
{
public:
    WriteTarget() = default;
    WriteTarget(const WriteTarget &) = delete;
    WriteTarget &operator=(const WriteTarget &) = delete;

    /// Null if flag and logger have been propagated, and the check has been passed, before writing began.
    Composition *composition() const { return m_composition; }
    void setComposition(Composition *composition) { m_composition = composition; }

    /// For rows: what they write fails the check, or is a reason to write nothing.
    void noteProblem()
    {
        if (m_composition && m_composition->validates)
            m_composition->isSound = false;
    }

protected:
    ~WriteTarget() = default;

private:
    Composition *m_composition = nullptr;
};

} // namespace JobXml
