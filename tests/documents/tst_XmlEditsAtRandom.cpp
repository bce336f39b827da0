// SPDX-License-Identifier: MIT
#include <QTest>

#include <reportbase/XmlMarkup.h>

#include <tunerdocuments/DocumentError.h>
#include <tunerdocuments/Editor.h>
#include <tunerdocuments/Path.h>

#include "documents/ChangedBytes.h"
#include "documents/Edited.h"
#include "documents/JsonOf.h"
#include "documents/RandomChanges.h"
#include "documents/RandomEdits.h"
#include "framework/XmlSpellings.h"

using namespace TunerDocuments;
using JobXml::MemberKind;
using JobXml::TunerProperties;
using REPORTGENERATOR::XmlMarkup;

/// Random edits of XML in place, compared with reading, changing and writing the document.
class XmlEditsAtRandomTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void randomEditsChangeNothingElse();
    void randomEditsOfOddDocumentsReadAsTheDescription();
};

namespace {

const QString name = QStringLiteral("d.xml");

/// The names of all elements and attributes, the values of these, and the comments.
QStringList partsOf(const QByteArray &xml)
{
    const XmlMarkup markup(xml);
    QStringList parts;
    for (const XmlMarkup::Element &element : markup.elements())
        parts.append(QString::fromUtf8(markup.bytes(element.name).data(), element.name.size()));
    for (const XmlMarkup::Attribute &attribute : markup.attributes())
        parts.append(QString::fromUtf8(xml.mid(attribute.name.begin, attribute.whole().size())));
    for (const XmlMarkup::Comment &comment : markup.comments())
        parts.append(QString::fromUtf8(xml.mid(comment.whole.begin, comment.whole.size())));
    parts.sort();
    return parts;
}

/// How many of the parts the other list does not have.
int missing(QStringList parts, const QStringList &others)
{
    for (const QString &part : others)
        parts.removeOne(part);
    return parts.size();
}

/// The child elements of that name, whatever their prefix.
QVector<int> childrenNamed(const XmlMarkup &markup, int element, const QString &childName)
{
    QVector<int> children;
    for (int i = element + 1; i < markup.elements().at(element).next; i = markup.elements().at(i).next) {
        if (markup.localName(markup.elements().at(i)) == childName)
            children.append(i);
    }
    return children;
}

/// Whether all child elements of the document itself are members: the content of others may count in it.
bool hasOnlyMembers(const XmlMarkup &markup)
{
    QStringList names;
    visit(TunerProperties(), [&](const JobXml::MemberView &member) { names.append(member.GetName()); });
    bool hasOnly = true;
    for (int i = 1; i < markup.elements().size(); i = markup.elements().at(i).next)
        hasOnly = hasOnly && names.contains(markup.localName(markup.elements().at(i)));
    return hasOnly;
}

/// The only element that these steps lead to; -1 if there is none, or not a single one.
int elementAt(const XmlMarkup &markup, const QVector<JobXml::Step> &steps)
{
    int element = 0;
    for (const JobXml::Step &step : steps) {
        const QVector<int> children = childrenNamed(markup, element, step.member);
        if (step.index < 0 && children.size() != 1)
            return -1;
        element = children.value(qMax(step.index, 0), -1);
        if (element < 0)
            return -1;
    }
    return element;
}

/// The place of a value: what is replaced, and what is removed with it.
struct ValuePlace
{
    ChangedBytes::Part value;
    ChangedBytes::Part whole;
};

QVector<ValuePlace> placesOf(const XmlMarkup &markup, int element, const JobXml::MemberView &member)
{
    QVector<ValuePlace> places;
    const int attribute =
        member.IsAttribute() ? markup.findAttribute(markup.elements().at(element), member.GetName()) : -1;
    if (attribute >= 0) {
        const XmlMarkup::Attribute &place = markup.attributes().at(attribute);
        places.append(ValuePlace{{place.value.begin, place.value.end}, {place.whole().begin, place.whole().end}});
    }
    for (const int child : childrenNamed(markup, element, member.GetName())) {
        const XmlMarkup::Element &place = markup.elements().at(child);
        const ChangedBytes::Part content = place.isEmptyTag
            ? ChangedBytes::Part{place.startTag.end - 2, place.startTag.end}
            : ChangedBytes::Part{place.content.begin, place.content.end};
        places.append(ValuePlace{content, {place.whole().begin, place.whole().end}});
    }
    return places;
}

/// The text as it is when a first child is added to the element: without the blanks before its end tag, and not as an
/// empty-element tag.
QByteArray opened(const QByteArray &xml, const XmlMarkup &markup, int element)
{
    const XmlMarkup::Element &place = markup.elements().at(element);
    if (place.isEmptyTag)
        return xml.left(place.startTag.end - 2) + "></" + xml.mid(place.name.begin, place.name.size()) + '>'
            + xml.mid(place.startTag.end);
    const int end = ChangedBytes::withBlanks(xml, {place.content.end, place.content.end}).begin;
    return xml.left(qMax(end, place.content.begin)) + xml.mid(place.content.end);
}

/// Compares the bytes before and after one edit.
class Comparison
{
public:
    /// To be made before the edit.
    Comparison(const QByteArray &xml, const RandomEdit &edit)
        : m_xml(xml), m_markup(xml), m_edit(edit), m_kind(edit.target.member.GetKind()),
          m_names(namesOf(edit.target.member)), m_isUnset(edit.value.isNull())
    {
        // A choice exchanges an element: the names and comments that stay are compared for it.
        const bool isKnown =
            m_kind != MemberKind::Choice && m_kind != MemberKind::Alternative && hasOnlyMembers(m_markup);
        m_object = isKnown ? elementAt(m_markup, stepsToObject()) : -1;
        if (m_object >= 0)
            m_places = placesOf(m_markup, m_object, edit.target.member);
    }

    /// Whether the edit has a single place, or those of a list, which are known.
    bool isStrict() const
    {
        return m_object >= 0 && (m_places.size() <= 1 || (isList() && m_places.size() == m_names.size()));
    }

    bool isAddition() const { return m_places.isEmpty(); }
    bool isList() const { return m_kind == MemberKind::EnumerationList; }

    /// Whether the text differs only in that place.
    bool holds(const QByteArray &after) const
    {
        if (m_places.isEmpty())
            return m_isUnset ? after == m_xml : isAdded(after) && isRequested(after);
        if (isList())
            return ChangedBytes::areWithin(m_xml, after, changedNames());
        return (m_isUnset || isRequested(after)) && holdsInPlace(after);
    }

private:
    static QStringList namesOf(const JobXml::MemberView &member)
    {
        QStringList names;
        const QVariantList entries =
            member.GetKind() == MemberKind::EnumerationList ? member.GetValue().toList() : QVariantList();
        for (const QVariant &entry : entries)
            names.append(entry.toString());
        return names;
    }

    QVector<JobXml::Step> stepsToObject() const { return m_edit.target.steps.mid(0, m_edit.target.steps.size() - 1); }

    /// From the first name that differs to the last one.
    ChangedBytes::Part changedNames() const
    {
        const QStringList after = m_isUnset ? QStringList() : m_edit.value.split(QLatin1Char(','));
        const SharedNames shared(m_names, after);
        const auto whole = [&](int place) { return m_places.at(place).whole; };
        ChangedBytes::Part part = ChangedBytes::withBlanks(m_xml, {whole(0).begin, whole(m_places.size() - 1).end});
        if (shared.first > 0)
            part.begin = whole(shared.first - 1).end;
        if (shared.last > 0)
            part.end = whole(m_places.size() - shared.last).begin;
        return part;
    }

    /// Whether the last text of the value, which counts, denotes what was requested. It is not decoded.
    bool isRequested(const QByteArray &after) const
    {
        const XmlMarkup markup(after);
        const int object = elementAt(markup, stepsToObject());
        if (object < 0)
            return false;
        const QVector<ValuePlace> places = placesOf(markup, object, m_edit.target.member);
        if (places.isEmpty())
            return false;
        const ChangedBytes::Part value = places.last().value;
        const QByteArray text = after.mid(value.begin, value.end - value.begin);
        return text.contains('&') || text.contains('<') || denotes(m_kind, QString::fromUtf8(text), m_edit.value);
    }

    bool holdsInPlace(const QByteArray &after) const
    {
        const ValuePlace &place = m_places.first();
        return m_isUnset ? ChangedBytes::areRemoved(m_xml, after, place.whole)
                         : ChangedBytes::areWithin(m_xml, after, place.value);
    }

    bool isAdded(const QByteArray &after) const
    {
        const XmlMarkup::Span object = m_markup.elements().at(m_object).whole();
        return ChangedBytes::areWithin(m_xml, after, {object.begin, object.end})
            && (ChangedBytes::areOnePiece(m_xml, after)
                || ChangedBytes::areOnePiece(opened(m_xml, m_markup, m_object), after))
            && missing(partsOf(after), partsOf(m_xml)) <= (isList() ? m_edit.value.count(QLatin1Char(',')) + 1 : 1);
    }

    const QByteArray m_xml;
    const XmlMarkup m_markup;
    const RandomEdit m_edit;
    const MemberKind m_kind;
    const QStringList m_names; // of a list
    const bool m_isUnset;
    int m_object = -1; // the element that has the member
    QVector<ValuePlace> m_places;
};

/// The result of random edits on one document.
struct Trial
{
    bool isEdited = false;
    bool isRefused = false;
    int replaced = 0; ///< values whose bytes were compared, see Comparison
    int added = 0;
    int removed = 0;
    int lists = 0; ///< the same, of names
};

Trial tryEdits(const QByteArray &xml, quint32 seed, int count)
{
    Trial trial;
    Document document;
    try {
        document = Document::fromBytes(xml, name);
    } catch (const DocumentError &) {
        return trial; // not a document
    }
    RandomChanges random{seed};
    Editor editor(document, xml, name);
    if (!editor.isInPlace()) {
        trial.isRefused = true;
        return trial;
    }
    QByteArray result = xml;
    bool removes = false; // an element, and with it the comments in it
    const auto verify = [&](bool holds, const char *sentence, const QByteArray &before) {
        if (!holds)
            QTest::qFail(
                qPrintable(QStringLiteral("%1: %2: %3\n--- became ---\n%4")
                               .arg(seed)
                               .arg(QLatin1String(sentence), QString::fromUtf8(before), QString::fromUtf8(result))),
                __FILE__, __LINE__);
    };
    for (int i = 0; i < count; ++i) {
        const RandomEdit edit = randomEdit(editor.document().tuner, random);
        const Comparison comparison(result, edit);
        const QByteArray before = result;
        try {
            removes = removes || edit.value.isNull() || edit.target.member.GetKind() == MemberKind::Choice
                || edit.target.member.GetKind() == MemberKind::EnumerationList;
            if (!apply(editor, edit))
                continue; // the model refuses it
            result = editor.toBytes();
        } catch (const DocumentError &) {
            trial.isRefused = true;
            return trial;
        }
        const QString problem = problemAfter(Document::fromBytes(result, name).tuner, edit);
        verify(problem.isNull(), qPrintable(problem), before);
        if (!comparison.isStrict())
            continue;
        verify(comparison.holds(result), qPrintable(edit.target.path + QStringLiteral(": other bytes change")), before);
        if (result == before)
            continue;
        ++(edit.value.isNull() ? trial.removed : comparison.isAddition() ? trial.added : trial.replaced);
        trial.lists += comparison.isList();
    }
    trial.isEdited = true;
    const TunerProperties read = Document::fromBytes(result, name).tuner;
    verify(jsonOf(read) == jsonOf(editor.document().tuner), "the text reads as the description", xml);
    // Each edit replaces or removes the places of one value, and adds at most one; of a list five.
    const QStringList before = partsOf(xml);
    const QStringList after = partsOf(result);
    verify(removes || XmlMarkup(result).comments().size() == XmlMarkup(xml).comments().size(), "comments stay", xml);
    verify(missing(after, before) <= 5 * count, "nothing else is added", xml);
    return trial;
}

} // namespace

void XmlEditsAtRandomTest::randomEditsChangeNothingElse()
{
    int edited = 0;
    int refused = 0;
    int replaced = 0;
    int added = 0;
    int removed = 0;
    int lists = 0;
    for (quint32 seed = 0; seed < 3000; ++seed) {
        Random random(seed);
        const QByteArray xml = XmlSpellings::plainDocument(random, "TunerProperties");
        const Trial trial = tryEdits(xml, seed, 1 + int(seed % 3));
        edited += trial.isEdited;
        refused += trial.isRefused;
        replaced += trial.replaced;
        added += trial.added;
        removed += trial.removed;
        lists += trial.lists;
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY2(edited > 2700, qPrintable(QString::number(edited)));
    QVERIFY2(refused < 250, qPrintable(QString::number(refused)));
    QVERIFY2(replaced > 2000, qPrintable(QString::number(replaced)));
    QVERIFY2(added > 1350, qPrintable(QString::number(added)));
    QVERIFY2(removed > 650, qPrintable(QString::number(removed)));
    QVERIFY2(lists > 50, qPrintable(QString::number(lists)));
}

void XmlEditsAtRandomTest::randomEditsOfOddDocumentsReadAsTheDescription()
{
    int edited = 0;
    for (quint32 seed = 0; seed < 2500; ++seed) {
        Random random(seed);
        edited += tryEdits(XmlSpellings::document(random, "TunerProperties"), seed, 2).isEdited;
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY2(edited > 1650, qPrintable(QString::number(edited)));
}

TEST_SUITE(XmlEditsAtRandomTest)
#include "tst_XmlEditsAtRandom.moc"
