// SPDX-License-Identifier: MIT
#pragma once

#include <tools/Tool.h>

#include "Saving.h"

/// A way to save a document: by a function of the library, or by the tool in one of its forms.
struct Saving
{
    /// The error, prefixed with the path; a null string if the document was saved.
    std::function<QString(JobXml::TunerProperties &document, const QString &path)> save;
};
Q_DECLARE_METATYPE(Saving)

namespace EveryWay {

/// Converts the document by the tool. Returns the same as Saving::save.
inline QString convert(JobXml::TunerProperties &document, const QString &path, const QString &form)
{
    Workshop shop;
    shop.write(QStringLiteral("in.tpb"), document.GetBinaryRepresentationAsQByteArray());
    shop.setEnvironment(QStringLiteral("out"), path);
    const Run run = shop.shell(QStringLiteral("exec \"$tool\" convert in.tpb \"$out\" --to ") + form);
    if (run.status == 0)
        return run.err.isEmpty() ? QString() : QStringLiteral("done, but said ") + run.err;
    const QString start = QStringLiteral("tunerproperties: ");
    const bool isAsUsual = run.status == 3 && run.out.isEmpty() && run.err.startsWith(start) && run.err.endsWith(u'\n');
    return isAsUsual ? run.err.mid(start.size()).chopped(1)
                     : QStringLiteral("status %1: %2").arg(run.status).arg(run.err);
}

inline void addRows()
{
    QTest::addColumn<Saving>("saving");
    for (const Way &way : waysToSave) {
        QTest::newRow(way.name) << Saving{[=](JobXml::TunerProperties &document, const QString &path) {
            const bool saved = way.save(document, path);
            return saved == document.GetErrorString().isNull()
                ? document.GetErrorString()
                : QStringLiteral("the result and the error string disagree");
        }};
    }
    for (const char *form : {"xml", "tagged", "compressed", "snapshot"}) {
        QTest::addRow("convert --to %s", form) << Saving{[=](JobXml::TunerProperties &document, const QString &path) {
            return convert(document, path, QString::fromLatin1(form));
        }};
    }
}

} // namespace EveryWay
