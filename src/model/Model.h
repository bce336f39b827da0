// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// The content of share/model.json: the classes in the order of Classes.def, and each row of their tables.
QByteArray modelAsJson();
