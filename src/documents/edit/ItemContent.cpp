// SPDX-License-Identifier: MIT
#include "documents/edit/ItemContent.h"

#include <algorithm>

#include <reportbase/XmlMarkup.h>

#include <tunerdocuments/Document.h>
#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Finding.h>
#include <tunerdocuments/Lint.h>

#include "documents/compare/Contents.h"
#include "documents/json/JsonForm.h"
#include "documents/values/FindMember.h"
#include "documents/xml/EncodedText.h"

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
    return {QByteArray(line - 1, '\n') + start + element + end, line, start.size()};
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
    const int line = json.left(blanks).count('\n') + 1;
    return {json.left(blanks) + start + json.mid(blanks) + end, line, start.size()};
}

/// What was read at the steps, each of which leads to the only object there.
void copyRead(const TunerProperties &document, QVector<Step> steps, DataObject &item)
{
    for (Step &step : steps)
        step.index = 0;
    if (const DataObject *const read = objectAt(document, steps))
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
    const int line = encoded.utf8().left(root.startTag.begin).count('\n') + 1;
    if (markup.localName(root) != expected)
        failAt(name, line, 1,
               QStringLiteral("is a '%1', not a '%2'")
                   .arg(QString::fromUtf8(markup.bytes(root.name).data(), root.name.size()), expected));
    return surroundedElement(encoded.utf8().mid(root.startTag.begin, root.whole().size()), line, steps);
}

/// The rules about what a reader skips or converts.
LintOptions onlyLostContent()
{
    const QStringList wanted = {QStringLiteral("not-a-number"), QStringLiteral("number-out-of-range"),
                                QStringLiteral("not-a-boolean"), QStringLiteral("unknown-attribute"),
                                QStringLiteral("unknown-element")};
    LintOptions options;
    for (const LintRule &rule : lintRules()) {
        if (!wanted.contains(rule.name))
            options.disabled.append(rule.name);
    }
    return options;
}

void readElement(DataObject &item, const QVector<Step> &steps, const QByteArray &xml, const QString &name)
{
    const Surrounded whole = rootIn(xml, steps, name);
    KeptItems kept; // incomplete items are read nevertheless
    const auto refuseProblem = [&](const Problem &problem) {
        if (problem.line > 0 && !kept.contain(problem))
            whole.failIn(name, problem.line, problem.column, findingOf(problem).message);
    };
    const Document document = Document::fromBytes(whole.text, name, {Form::Xml}, refuseProblem);
    static const LintOptions options = onlyLostContent();
    const auto refuseFinding = [&](const Finding &finding) {
        const QString suggestion = finding.suggestion.isNull() ? QString() : QStringLiteral("; ") + finding.suggestion;
        whole.failIn(name, finding.line, finding.column, finding.message + suggestion);
    };
    lint(document, whole.text, refuseFinding, options);
    copyRead(document.tuner, steps, item);
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
    const auto refuseProblem = [&](const JsonProblem &problem) {
        whole.failIn(name, problem.line, problem.column, problem.message);
    };
    if (JsonForm::read(document, whole.text, refuseProblem) == 0)
        copyRead(document, steps, item);
}

} // namespace

void readItem(DataObject &item, const QVector<Step> &steps, const QByteArray &text, const QString &name)
{
    const QByteArray content = text.trimmed();
    if (content.isEmpty())
        return;
    if (content.startsWith('{'))
        readJson(item, steps, text, name);
    else
        readElement(item, steps, text, name);
}

} // namespace TunerDocuments
