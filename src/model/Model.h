// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// The model as share/model.json holds it: the classes in the order of their list, and each row of their tables.
QByteArray modelAsJson();
