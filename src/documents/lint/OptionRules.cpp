// SPDX-License-Identifier: MIT
#include "documents/lint/ObjectRules.h"

#include <algorithm>

#include <tunerdocuments/Value.h>

#include "text/Suggestion.h"

namespace TunerDocuments::ObjectRules {

bool isSelection(const Shape &shape)
{
    return shape.list >= 0 && shape.index >= 0 && shape.value.number >= 0;
}

namespace {

/// The index of a selection, if it is that of an option.
int validIndex(const LintedObject &object)
{
    const long double index = object.number(object.shape.index);
    const bool isValid = index >= 0 && index < static_cast<long double>(object.items(object.shape.list).size());
    return isValid ? int(index) : Shape::none;
}

QString optionCount(std::size_t count)
{
    return count == 1 ? QStringLiteral("there is 1 option") : QStringLiteral("there are %1 options").arg(count);
}

} // namespace

void indexOutOfRange(const LintedObject &object)
{
    if (!object.isSet(object.shape.index) || validIndex(object) >= 0)
        return;
    object.warn(object.shape.index, [&]() -> Description {
        const std::size_t count = object.items(object.shape.list).size();
        const QString message = QStringLiteral("no option has the index %1; %2")
                                    .arg(object.written(object.shape.index), optionCount(count));
        return {message,
                count == 0       ? QString()
                    : count == 1 ? QStringLiteral("use the index 0")
                                 : QStringLiteral("use an index from 0 to %1").arg(count - 1)};
    });
}

void optionDiffers(const LintedObject &object)
{
    const Shape &shape = object.shape;
    const int index = object.isSet(shape.index) ? validIndex(object) : Shape::none;
    if (index < 0)
        return;
    const std::vector<LintedItem> &options = object.items(shape.list);
    const LintedItem &option = options[std::size_t(index)];
    const auto warn = [&](int member, const QString &own, const QString &ofOption, const auto &isSame) {
        object.warn(member, [&]() -> Description {
            const auto same = std::find_if(options.begin(), options.end(), isSame);
            return {QStringLiteral("%1 %2 differs from option %3, which has %4")
                        .arg(object.member(member).GetName(), own)
                        .arg(index)
                        .arg(ofOption),
                    same == options.end() ? QStringLiteral("use %1").arg(ofOption)
                                          : QStringLiteral("option %1 has it").arg(same - options.begin())};
        });
    };
    const double number = double(object.number(shape.value.number));
    const auto hasNumber = [&](const LintedItem &item) { return item.hasNumber && item.number == number; };
    if (object.isSet(shape.value.number) && option.hasNumber && !hasNumber(option))
        warn(shape.value.number, ValueText::exactly(number), ValueText::exactly(option.number), hasNumber);
    if (shape.text < 0 || !option.isIdentified)
        return;
    const QString &text = object.text(shape.text);
    const auto hasText = [&](const LintedItem &item) { return item.isIdentified && item.identity[0] == text; };
    if (!text.isNull() && !hasText(option))
        warn(shape.text, quoted(text), quoted(option.identity[0]), hasText);
}

bool isTextWithList(const Shape &shape)
{
    return shape.list >= 0 && shape.value.text >= 0;
}

void valueNotListed(const LintedObject &object)
{
    const QString &value = object.text(object.shape.value.text);
    const std::vector<LintedItem> &items = object.items(object.shape.list);
    const auto isValue = [&](const LintedItem &item) { return item.isIdentified && item.identity[0] == value; };
    if (value.isEmpty() || std::any_of(items.begin(), items.end(), isValue))
        return;
    object.warn(object.shape.value.text, [&]() -> Description {
        constexpr int most = 100; // the search takes time for each
        QStringList known;
        for (const LintedItem &item : items) {
            if (item.isIdentified && known.size() < most)
                known.append(item.identity[0].left(most));
        }
        const QString nearest = Suggestion::nearest(value, known);
        return {QStringLiteral("value %1 is not in the list").arg(quoted(value)),
                nearest.isNull() ? QString() : QStringLiteral("did you mean %1?").arg(quoted(nearest))};
    });
}

} // namespace TunerDocuments::ObjectRules
