// SPDX-License-Identifier: MIT
#include "documents/values/Replacement.h"

#include <algorithm>
#include <tuple>

#include "documents/values/CannotEdit.h"

namespace TunerDocuments {

QByteArray replaced(const QByteArray &text, int begin, int end, Replacements replacements)
{
    std::stable_sort(replacements.begin(), replacements.end(), [](const Replacement &left, const Replacement &right) {
        return std::tie(left.begin, left.end) < std::tie(right.begin, right.end);
    });
    QByteArray result;
    result.reserve(end - begin);
    int done = begin;
    for (const Replacement &replacement : qAsConst(replacements)) {
        if (replacement.begin < done || replacement.end > end)
            throw CannotEdit{QStringLiteral("two changes concern the same text")};
        result.append(text.constData() + done, replacement.begin - done);
        result += replacement.text;
        done = replacement.end;
    }
    result.append(text.constData() + done, end - done);
    return result;
}

} // namespace TunerDocuments
