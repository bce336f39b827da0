// SPDX-License-Identifier: MIT
//! [program]
#include <cstdio>
#include <utility>

#include <jobxml/TunerProperties.h>

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: first_program DOCUMENT.xml\n");
        return 2;
    }
    try {
        JobXml::TunerProperties tuner;
        if (!tuner.LoadXml(QString::fromLocal8Bit(argv[1]))) { // an error in the file or its XML
            std::fprintf(stderr, "%s\n", qPrintable(tuner.GetErrorString()));
            return 1;
        }
        tuner.Check(); // throws for the first missing member

        std::printf("%s based on %s\n", qPrintable(tuner.GettypeAsString()), qPrintable(tuner.Getbaseresource()));
        for (const JobXml::Component &component : std::as_const(tuner).GetComponent())
            std::printf("  %s: %d nodes\n", qPrintable(component.Getname()), component.GetNode().size());
    } catch (const ReportException &e) { // an error in the content
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
    return 0;
}
//! [program]
