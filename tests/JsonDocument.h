// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// A document as JSON, with these members: `"quantity": 2`.
inline QByteArray jsonWith(const QByteArray &members)
{
    return R"({"TunerProperties": {"Version": "1.1", )" + members + "}}";
}
