// SPDX-License-Identifier: MIT
#pragma once

#include "tools/Tool.h"

/// A repository of git, in the folder of a workshop.
class GitRepository
{
public:
    static bool isGitInstalled() { return !QByteArray(GIT_PROGRAM).isEmpty(); }

    /// Creates the folder "repository" in the workshop, which must outlive this object.
    explicit GitRepository(Workshop &workshop) : m_workshop(workshop)
    {
        workshop.setEnvironment(QStringLiteral("HOME"), workshop.path(QStringLiteral(".")));
        workshop.setEnvironment(QStringLiteral("GIT_CONFIG_NOSYSTEM"), QStringLiteral("1"));
        workshop.setEnvironment(QStringLiteral("LC_ALL"), QStringLiteral("C"));
        for (const char *name : {"AUTHOR_NAME", "COMMITTER_NAME", "AUTHOR_EMAIL", "COMMITTER_EMAIL"})
            workshop.setEnvironment(QStringLiteral("GIT_") + QLatin1String(name), QStringLiteral("t"));
        QDir(workshop.path(QStringLiteral("."))).mkdir(QStringLiteral("repository"));
        QVERIFY(shell(QStringLiteral("git init -q -b main .")).startsWith(QLatin1String("0\n")));
    }

    /// Runs shell commands in the repository, up to the first that fails. Status, output and errors.
    QString shell(const QString &commands) const
    {
        return m_workshop
            .shell(QStringLiteral("set -e; PATH=\"$(dirname \"$tool\"):$PATH\"; cd repository; ") + commands)
            .all();
    }

private:
    Workshop &m_workshop;
};
