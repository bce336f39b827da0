// SPDX-License-Identifier: MIT
#pragma once

#include <QtTest/qtestcase.h>

#include <QDebug>

#include <jobxml/TunerProperties.h>

/// \file
/// For tests with Qt Test: with this header, QCOMPARE() shows objects of the model that differ as `qDebug()` does. Qt
/// Test truncates each message after 1,024 bytes, so compare the parts of a large document, or a list of differences.
/// Only this header needs the module Qt Test, and no other includes it.

/// \cond For Qt Test alone
namespace JobXml {

// Qt Test frees it by delete[].
inline char *testText(const DataObject &object)
{
    QString text;
    QDebug(&text).nospace() << object;
    return qstrdup(text.toUtf8().constData());
}

} // namespace JobXml

namespace QTest {

// clang-format off
// A text for each class, made by scripts/model.sh
template <> inline char *toString(const JobXml::TunerProperties &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::StartupModes &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::BandwidthSelection &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::Component &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::Node &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::ValueItem &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::ValueBoolean &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::ValueFloat &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::ValueInt &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::ValueInt64 &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::ValueNumericFloat &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::ValueNumericInt &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::ValueNumericInt64 &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::ValueSelection &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::SelectionItem &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::ValueString &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::ValueStringList &object) { return JobXml::testText(object); }
template <> inline char *toString(const JobXml::StringItem &object) { return JobXml::testText(object); }
// end of what is made
// clang-format on

} // namespace QTest
/// \endcond
