// SPDX-License-Identifier: MIT
//
// A program with catalogs of its own, and without a tuner.

#include <cstdio>

#include <QStringList>

#include <tavikappstartup/TranslationCenter.h>

int main()
{
    TranslationCenter::Instance().Register(QStringLiteral("Application"));
    std::printf("%s\n", qPrintable(TranslationCenter::Instance().RegisteredModules().join(QLatin1Char(','))));
    return 0;
}
