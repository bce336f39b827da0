// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// Keeps what the test programs write as XML while validating, for the test that checks all of it against the schema.
///
/// Programs that use the library need not do anything for it: every text that an object of the model writes is kept.
/// CTest names the folder, which is filled when the program ends; without a folder nothing is kept.
namespace WrittenXml {

/// Keeps a text that something else wrote, such as the tool.
void keep(const QString &className, const QByteArray &utf8);

} // namespace WrittenXml
