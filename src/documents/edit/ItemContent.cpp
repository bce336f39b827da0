// SPDX-License-Identifier: MIT
#include "documents/edit/ItemContent.h"
#include "documents/values/DocumentSize.h"

#include <algorithm>

#include <reportbase/XmlMarkup.h>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Finding.h>

#include "documents/compare/Contents.h"
#include "documents/findings/ModelMember.h"
#include "documents/json/JsonForm.h"
#include "documents/lint/LostTexts.h"
#include "documents/values/FindMember.h"
#include "documents/xml/EncodedText.h"
#include "documents/xml/UnreadParts.h"
#include "documents/xml/XmlBlanks.h"
#include "documents/xml/XmlTexts.h"
#include "text/TextLocation.h"

using namespace JobXml;
using REPORTGENERATOR::XmlMarkup;

namespace TunerDocuments {

namespace {

[[noreturn]] void failAt(const QString &name, int line, int column, const QString &why)
{
    throw DocumentError(QStringLiteral("%1:%2:%3: %4").arg(name).arg(line).arg(column).arg(why));
}

/// The text of an object inside those of the objects around it, so that it is read as what it is. It keeps its lines,
/// and its columns except on the first one.
struct Surrounded
{
    QByteArray text;
    int line = 1; ///< of the object
    int added = 0; ///< before the object on that line

    /// Throws for what has been found in the text.
    [[noreturn]] void failIn(const QString &name, int atLine, int atColumn, const QString &why) const
    {
        TunerDocuments::failAt(name, atLine, atLine == line ? qMax(atColumn - added, 1) : atColumn, why);
    }
};

Surrounded surroundedElement(const QByteArray &element, int line, const QVector<Step> &steps)
{
    QByteArray start;
    QByteArray end;
    QByteArray name = TunerProperties().GetObjectName().toUtf8();
    for (const Step &step : steps) {
        start += '<' + name + (start.isEmpty() ? " Version=\"1.1\">" : ">");
        end.prepend("</" + name + '>');
        name = step.member.toUtf8();
    }
    return {QByteArray(line - 1, '\n') + start + element + end, line, int(start.size())};
}

Surrounded surroundedJson(const QByteArray &json, const QVector<Step> &steps)
{
    QByteArray start = "{\"" + TunerProperties().GetObjectName().toUtf8() + "\":{\"Version\":\"1.1\"";
    QByteArray end = "}}";
    QVector<Step> outer;
    for (const Step &step : steps) {
        TunerProperties document;
        const DataObject &object = Contents::newObjectAt(document, outer);
        const bool isList = memberNamed(object, step.member)->GetKind() == MemberKind::ObjectList;
        const bool isLast = outer.size() + 1 == steps.size();
        start +=
            (outer.isEmpty() ? ",\"" : "\"") + step.member.toUtf8() + (isList ? "\":[" : "\":") + (isLast ? "" : "{");
        end.prepend(QByteArray(isLast ? "" : "}") + (isList ? "]" : ""));
        outer.append(step);
    }
    const int blanks = int(std::find_if(json.begin(), json.end(), [](char c) { return c == '{'; }) - json.begin());
    const int line = int(json.left(blanks).count('\n')) + 1;
    return {json.left(blanks) + start + json.mid(blanks) + end, line, int(start.size())};
}

/// The steps to the only object there.
QVector<Step> firstItems(QVector<Step> steps)
{
    TunerProperties document;
    QVector<Step> outer;
    for (Step &step : steps) {
        const bool isList =
            memberNamed(Contents::newObjectAt(document, outer), step.member)->GetKind() == MemberKind::ObjectList;
        step.index = isList ? 0 : -1;
        outer.append(step);
        document = TunerProperties();
    }
    return steps;
}

/// What was read at the steps.
void copyRead(const TunerProperties &document, const QVector<Step> &steps, DataObject &item)
{
    if (const DataObject *const read = objectAt(document, firstItems(steps)))
        Contents::copy(*read, item);
}

/// The element alone: what is before it would be in the middle of the document.
Surrounded rootIn(const QByteArray &xml, const QVector<Step> &steps, const QString &name)
{
    const EncodedText encoded(xml);
    const XmlMarkup markup(encoded.utf8());
    if (!markup.isComplete() || markup.elements().isEmpty())
        throw DocumentError(name + QStringLiteral(": is not an element with all of its tags"));
    const XmlMarkup::Element &root = markup.elements().first();
    const QString expected = steps.last().member;
    const int line = int(encoded.utf8().left(root.startTag.begin).count('\n')) + 1;
    if (markup.localName(root) != expected)
        failAt(name, line, 1,
               QStringLiteral("is a '%1', not a '%2'")
                   .arg(QString::fromUtf8(markup.bytes(root.name).data(), root.name.size()), expected));
    const auto failAtOffset = [&](int offset, const QString &why) {
        const TextLocation location = TextLocator(encoded.utf8()).at(offset);
        failAt(name, location.line, location.column, why);
    };
    if (root.next < markup.elements().size())
        failAtOffset(markup.elements().at(root.next).startTag.begin, QStringLiteral("there is a second element"));
    const QVector<XmlMarkup::Span> texts =
        XmlTexts::inPart(markup, {root.end, int(encoded.utf8().size())}, int(markup.elements().size()));
    for (const XmlMarkup::Span &text : texts) {
        const XmlMarkup::Span part = XmlBlanks::trimmed(encoded.utf8(), text);
        if (part.size() > 0)
            failAtOffset(part.begin, QStringLiteral("there is a text after the element"));
    }
    return surroundedElement(encoded.utf8().mid(root.startTag.begin, root.whole().size()), line, steps);
}

void readElement(DataObject &item, const QVector<Step> &steps, const QByteArray &xml, const QString &name)
{
    const Surrounded whole = rootIn(xml, steps, name);
    const auto refuseProblem = [&](const Problem &problem) {
        if (problem.line > 0 && !isAboutKeptItem(problem)) // incomplete items are read nevertheless
            whole.failIn(name, problem.line, problem.column, findingOf(problem).message);
    };
    const Document document = Document::fromBytes(whole.text, name, LoadOptions().setForm(Form::Xml), refuseProblem);
    const XmlMarkup markup(whole.text);
    visitLostTexts(document, markup, [&](const Finding &finding, int) {
        whole.failIn(name, finding.line, finding.column, finding.explained());
    });
    UnreadParts(markup, document.tuner).visit(firstItems(steps), [&](const UnreadPart &part) {
        const TextLocation location = TextLocator(whole.text).at(part.offset);
        whole.failIn(name, location.line, location.column, part.problem);
    });
    copyRead(document.tuner, steps, item);
}

/// The path of a problem from the item, which is so many steps inside of the document.
QString pathInItem(const JsonProblem &problem, int depth)
{
    QStringList path;
    for (const Step &step : problem.steps.mid(depth))
        path.append(step.index < 0 ? step.member : QStringLiteral("%1[%2]").arg(step.member).arg(step.index + 1));
    if (!problem.member.isNull())
        path.append(problem.member);
    return path.join(QLatin1Char('/'));
}

void readJson(DataObject &item, const QVector<Step> &steps, const QByteArray &json, const QString &name)
{
    try {
        JsonText::parse(json); // alone: it could close what is around it
    } catch (const JsonFailure &failure) {
        throw DocumentError(failure.text(name));
    }
    const Surrounded whole = surroundedJson(json, steps);
    TunerProperties document;
    constexpr int most = LoadOptions::UsualProblems;
    Findings problems(most);
    const auto addProblem = [&](const JsonProblem &problem) {
        Finding finding;
        finding.message = problem.message;
        finding.value = problem.value;
        finding.choices = problem.choices;
        finding.line = problem.line;
        finding.column = problem.line == whole.line ? qMax(problem.column - whole.added, 1) : problem.column;
        finding.path = pathInItem(problem, int(steps.size()));
        problems.add(finding);
    };
    const qint64 count = JsonForm::read(document, whole.text, addProblem, most);
    problems.addUnlisted(count - problems.count());
    if (count > 0)
        throw InvalidContent(name, problems);
    copyRead(document, steps, item);
}

} // namespace

void readItem(DataObject &item, const QVector<Step> &steps, const QByteArray &text, const QString &name)
{
    checkSize(text, name);
    const QByteArray content = text.trimmed();
    if (content.isEmpty())
        return;
    if (content.startsWith('{'))
        readJson(item, steps, text, name);
    else
        readElement(item, steps, text, name);
}

} // namespace TunerDocuments
