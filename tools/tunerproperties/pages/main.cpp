// SPDX-License-Identifier: MIT

// Runs during the build; the argument is the folder to write to.

#include <cstdio>

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <reportbase/SaveFile.h>

#include "Pages.h"

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        std::fputs("the only argument is the folder to write into\n", stderr);
        return 2;
    }
    const struct
    {
        const char *name;
        QString text;
    } pages[] = {
        {"tunerproperties.1",
         Pages::manual({QStringLiteral(TOOL_VERSION), QStringLiteral(TOOL_DATE), QStringLiteral(TOOL_DATA_FOLDER)})},
        {"tunerproperties.bash", Pages::bashCompletion()},
        {"_tunerproperties", Pages::zshCompletion()},
        {"tunerproperties.fish", Pages::fishCompletion()},
    };
    const QDir folder(arguments.last());
    for (const auto &page : pages) {
        const QString failure =
            REPORTGENERATOR::SaveFile(folder.filePath(QString::fromLatin1(page.name)), page.text.toUtf8());
        if (!failure.isNull()) {
            std::fprintf(stderr, "%s\n", qPrintable(failure));
            return 1;
        }
    }
    return 0;
}
