// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <jobxml/TunerProperties.h>

/// The example document of a receiver.
inline JobXml::TunerProperties receiver()
{
    JobXml::TunerProperties tuner;
    if (!tuner.LoadXml(QStringLiteral(EXAMPLES_DIR "/receiver.xml")))
        qFatal("%s", qPrintable(tuner.GetErrorString()));
    return tuner;
}
