// SPDX-License-Identifier: MIT
//
// A program of another project: consumer SCP.xml

#include <cstdio>

#include <jobxml/TunerProperties.h>
#include <jobxml/Version.h>

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    std::printf("built against %s\n", TUNERPROPERTIES_VERSION_STR);

    JobXml::TunerProperties tuner;
    try {
        tuner.Check();
    } catch (const OutOfRangeException &e) { // its type is recognized across the border of the library
        std::printf("OutOfRangeException: %s\n", e.what());
    }

    if (!tuner.LoadXml(QString::fromLocal8Bit(argv[1])))
        return 1;
    std::printf("%s on %s\n", qPrintable(tuner.GettypeAsString()), qPrintable(tuner.Getbaseresource()));

    QByteArray bytes = tuner.GetBinaryRepresentationAsQByteArray();
    JobXml::TunerProperties copy;
    if (!copy.SetBinaryRepresentation(bytes))
        return 1;
    std::printf("its records read back: %s document\n", copy == tuner ? "the same" : "another");
    return 0;
}
