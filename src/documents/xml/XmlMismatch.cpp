// SPDX-License-Identifier: MIT
#include "documents/xml/XmlMismatch.h"

#include <QByteArray>
#include <QStringList>

#include "documents/values/FindMember.h"
#include "documents/values/UnlikeRead.h"

using namespace JobXml;
using REPORTGENERATOR::XmlMarkup;

namespace TunerDocuments {

namespace {

/// Whether nothing in the object is set.
bool isNew(const DataObject &object)
{
    bool hasAny = false;
    visit(object, [&](const MemberView &member) { hasAny = hasAny || member.IsSet(); });
    return !hasAny;
}

/// Reads parts of a document's text again.
class Reader
{
public:
    Reader(const XmlMarkup &markup, const XmlPlaces &places, const TunerProperties &tuner)
        : m_markup(markup), m_places(places), m_tuner(tuner)
    {
    }

    QString mismatchOf(const QVector<Step> &steps) const
    {
        bool isChoice = false; // which follows from the object in it
        visit(*objectAt(m_tuner, steps),
              [&](const MemberView &member) { isChoice = isChoice || member.GetKind() == MemberKind::Choice; });
        if (isChoice)
            return wholeMismatchOf(steps);
        QByteArray text;
        const QVector<int> elements = m_places.elementsOf(steps);
        for (const int element : elements)
            text += withoutObjects(element, *objectAt(m_tuner, steps));
        return mismatch(steps, text, false);
    }

private:
    QString wholeMismatchOf(const QVector<Step> &steps) const
    {
        QByteArray text;
        const QVector<int> elements = m_places.elementsOf(steps);
        for (const int element : elements) {
            const XmlMarkup::Span whole = m_markup.elements().at(element).whole();
            text += m_markup.document().mid(whole.begin, whole.size());
        }
        return mismatch(steps, text, true);
    }

    QByteArray withoutObjects(int element, const DataObject &object) const
    {
        const XmlMarkup::Span whole = m_markup.elements().at(element).whole();
        const QByteArray &document = m_markup.document();
        QByteArray text;
        int done = whole.begin;
        const QVector<XmlPlaces::Child> children = m_places.childrenOf(element, object);
        QStringList objects;
        visit(object, [&](const MemberView &member) {
            if (holdsObjects(member))
                objects.append(member.GetName());
        });
        for (const XmlPlaces::Child &child : children) {
            if (!objects.contains(child.member))
                continue;
            const XmlMarkup::Span span = m_markup.elements().at(child.element).whole();
            text.append(document.constData() + done, span.begin - done);
            done = span.end;
        }
        text.append(document.constData() + done, whole.end - done);
        return text;
    }

    /// The first difference between the object and what the element reads as; null if there is none.
    QString mismatch(const QVector<Step> &steps, const QByteArray &element, bool withObjects) const
    {
        QString unreadable = QStringLiteral("the changed text cannot be read");
        TunerProperties read;
        read.SetValidate(false);
        ReadOptions options;
        options.setValidate(false);
        bool isReadable = true;
        const auto noteEnd = [&](const Problem &problem) { isReadable = isReadable && !problem.isUnreadable; };
        read.SetXmlDocument(steps.isEmpty() ? element : skeletonAround(steps, element), QString(), noteEnd, options);
        const DataObject *same = &read;
        for (const Step &step : steps) {
            const MemberView member = *memberNamed(*same, step.member);
            if (isReadable && member.GetSize() == 0 && member.IsSet() && isNew(*objectAt(m_tuner, steps)))
                return QString(); // objects that are not in lists exist only with data
            if (!isReadable || member.GetSize() == 0)
                return unreadable;
            same = &member.GetChild();
        }
        return isReadable ? firstUnlikeRead(*objectAt(m_tuner, steps), *same, withObjects) : unreadable;
    }

    /// The element inside elements with the names of the objects around it, so that it is read as what it is.
    QByteArray skeletonAround(const QVector<Step> &object, const QByteArray &element) const
    {
        QByteArray start;
        QByteArray end;
        QByteArray name = m_tuner.GetObjectName().toUtf8();
        for (const Step &step : object) {
            start += '<' + name + (start.isEmpty() ? " Version=\"1.1\">" : ">");
            end.prepend("</" + name + '>');
            name = step.member.toUtf8();
        }
        return start + element + end;
    }

    const XmlMarkup &m_markup;
    const XmlPlaces &m_places;
    const TunerProperties &m_tuner;
};

} // namespace

QString mismatchIn(const XmlMarkup &markup, const XmlPlaces &places, const TunerProperties &tuner,
                   const QVector<Step> &object)
{
    return Reader(markup, places, tuner).mismatchOf(object);
}

} // namespace TunerDocuments
