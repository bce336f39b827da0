// SPDX-License-Identifier: MIT
//
// A program of another project, with documents in files: documents SCP.xml OUTPUT.json

#include <cstdio>

#include <tunerdocuments/Diff.h>
#include <tunerdocuments/Document.h>
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Finding.h>
#include <tunerdocuments/Path.h>
#include <tunerdocuments/Value.h>

using namespace TunerDocuments;

int main(int argc, char *argv[])
{
    if (argc != 3)
        return 2;
    const Document original = Document::load(QString::fromLocal8Bit(argv[1]));

    // A problem is found with its path, and shows as a difference.
    Document changed = original;
    changed.tuner.GetComponent()[1].Resetoptional();
    Findings findings;
    for (const JobXml::Problem &problem : changed.tuner.GetProblems())
        findings.add(problem);
    findings.describePaths(changed.tuner);
    for (const Finding &finding : findings.listed())
        std::printf("%s: %s\n", qPrintable(finding.path), qPrintable(finding.message));
    for (const Difference &difference : findDifferences(original.tuner, changed.tuner))
        std::printf("%s\n", qPrintable(difference.text()));

    // JSON holds an incomplete document, too, and is recognized by its content.
    const QString json = QString::fromLocal8Bit(argv[2]);
    changed.save(json, Form::Json);
    const Document again = Document::load(json);
    std::printf("the file is %s\n", qPrintable(Forms::nameOf(again.form)));
    const Paths::Target quantity = Paths::find(again.tuner, QStringLiteral("quantity"));
    std::printf("quantity is %s\n", qPrintable(TypedValue::print(quantity.member.GetValue())));

    try {
        (void)Document::load(QStringLiteral("missing.xml"));
    } catch (const DocumentError &error) { // its type is recognized across the border of the library
        std::printf("%s\n", error.what());
    }
    return 0;
}
