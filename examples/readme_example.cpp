// SPDX-License-Identifier: MIT
//
// The example of the README as a program:
//
//     readme_example IN.xml OUT.xml
//
// A test compares the part between the two marks with the README.

#include <cstdio>

// --- README begins ---
#include <jobxml/TunerProperties.h>

QString addOneMore(const QString &from, const QString &to)
{
    JobXml::TunerProperties tuner;
    if (!tuner.LoadXml(from)) // validates what it reads; throws for errors in the content
        return tuner.GetErrorString(); // where and why: "receiver.xml:12:7: ..."
    tuner.Check(); // throws for the first thing that is missing: "TunerProperties: Please set type properly."

    tuner.Setquantity(tuner.Getquantity() + 1);
    for (JobXml::Component &component : tuner.GetComponent())
        if (component.Gettype() == QLatin1String("Preselector"))
            component.Setoptional(true);
    return tuner.SaveXml(to) ? QString() : tuner.GetErrorString(); // the whole new file, or the old one as it was
}
// --- README ends ---

int main(int argc, char *argv[])
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: readme_example IN.xml OUT.xml\n");
        return 2;
    }
    try {
        const QString failure = addOneMore(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2]));
        if (failure.isNull())
            return 0;
        std::fprintf(stderr, "readme_example: %s\n", qPrintable(failure));
    } catch (const ReportException &e) {
        std::fprintf(stderr, "readme_example: %s\n", e.what());
    }
    return 1;
}
