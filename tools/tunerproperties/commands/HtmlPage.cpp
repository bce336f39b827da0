// SPDX-License-Identifier: MIT
#include "commands/HtmlPage.h"

#include <jobxml/Visit.h>

#include "console/Console.h"
#include "files/FileName.h"

namespace {

/// The number of objects below this one, or a larger number than `most`.
int countObjects(const JobXml::DataObject &object, int most)
{
    int count = 0;
    JobXml::visit(object, [&](const JobXml::MemberView &member) {
        for (int i = 0; i < member.GetSize() && count <= most; ++i)
            count += 1 + countObjects(member.GetChild(i), most - count - 1);
    });
    return count;
}

} // namespace

QString HtmlPage::sourceOf(const FileName &name)
{
    return name.isStandardStream() ? QStringLiteral("standard input") : name.withoutFolder().shown();
}

void HtmlPage::checkSize(const TunerDocuments::Document &document, const QString &shownName, const QString &instead)
{
    constexpr int mostObjects = 1000000;
    if (countObjects(document.tuner, mostObjects) > mostObjects)
        throw FileFailure(
            shownName
            + QStringLiteral(": cannot show more than %1 objects on a page; use '%2'").arg(mostObjects).arg(instead));
}
