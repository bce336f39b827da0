// SPDX-License-Identifier: MIT
#include "documents/xml/XmlEditor.h"

#include <algorithm>
#include <optional>

#include <QStringList>

#include <jobxml/Visit.h>

#include <tunerdocuments/Value.h>

#include "documents/values/FindMember.h"

using namespace JobXml;

namespace TunerDocuments {

namespace {

bool isBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

/// The members in the order in which XML has them.
QStringList orderOf(const DataObject &object, bool attributes)
{
    QStringList names;
    visit(object, [&](const MemberView &member) {
        if (!attributes || member.IsAttribute())
            names.append(member.GetName());
    });
    return names;
}

/// Without the blanks around it.
REPORTGENERATOR::XmlMarkup::Span trimmed(const QByteArray &text, REPORTGENERATOR::XmlMarkup::Span span)
{
    while (span.begin < span.end && isBlank(text.at(span.begin)))
        ++span.begin;
    while (span.begin < span.end && isBlank(text.at(span.end - 1)))
        --span.end;
    return span;
}

/// Whether nothing in the object is set.
bool isNew(const DataObject &object)
{
    bool hasAny = false;
    visit(object, [&](const MemberView &member) { hasAny = hasAny || member.IsSet(); });
    return !hasAny;
}

/// The first value or flag in which the objects differ, with their child objects or without them; null if there is
/// none.
QString differenceBetween(const DataObject &left, const DataObject &right, bool withObjects)
{
    QVector<MemberView> ofRight;
    visit(right, [&](const MemberView &member) { ofRight.append(member); });
    QString difference;
    int i = 0;
    visit(left, [&](const MemberView &mine) {
        const MemberView &other = ofRight.at(i++);
        if (!difference.isNull() || !mine.IsChosen() || (holdsObjects(mine) && !withObjects))
            return;
        const auto text = [](const MemberView &member) {
            return holdsObjects(member) ? QStringLiteral("%1 items").arg(member.GetSize())
                                        : ValueText::ofMember(member);
        };
        const bool isSame = mine.IsSet() == other.IsSet() && (!mine.IsSet() || text(mine) == text(other));
        if (!isSame)
            difference = QStringLiteral("%1: %2 would be read as %3").arg(mine.GetName(), text(mine), text(other));
        for (int child = 0; isSame && difference.isNull() && child < mine.GetSize() && child < other.GetSize(); ++child)
            difference = differenceBetween(mine.GetChild(child), other.GetChild(child), true);
    });
    return difference;
}

} // namespace

XmlEditor::XmlEditor(const QByteArray &document, const TunerProperties &tuner) : m_tuner(tuner), m_text(document)
{
    scan(m_text.utf8());
}

XmlEditor::~XmlEditor() = default;

void XmlEditor::scan(const QByteArray &utf8)
{
    m_markup = std::make_unique<Markup>(utf8);
    m_places = std::make_unique<XmlPlaces>(*m_markup, m_tuner);
}

QString XmlEditor::refusal() const
{
    if (!m_text.isExact())
        return QStringLiteral("its bytes are not the usual ones for its text in the encoding %1")
            .arg(m_text.encoding());
    return m_places->refusal();
}

// --- Changes that wait until they are needed -------------------------------------------------------------------------

/// Computes replacements, and keeps them. They refer to the text without those that are pending, which is possible as
/// long as they do not touch these.
template <class Compute>
void XmlEditor::change(Compute compute)
{
    Replacements replacements = compute();
    if (touches(replacements)) {
        apply();
        replacements = compute();
    }
    for (const Replacement &replacement : qAsConst(replacements))
        m_pending.emplace(replacement.span.begin, replacement);
}

bool XmlEditor::touches(const Replacements &replacements) const
{
    return std::any_of(replacements.begin(), replacements.end(), [this](const Replacement &replacement) {
        const auto after = m_pending.lower_bound(replacement.span.begin);
        return (after != m_pending.end() && after->first <= replacement.span.end)
            || (after != m_pending.begin() && std::prev(after)->second.span.end >= replacement.span.begin);
    });
}

void XmlEditor::apply()
{
    if (m_pending.empty())
        return;
    const QByteArray &old = m_markup->document();
    QByteArray text;
    text.reserve(old.size());
    int done = 0;
    for (const auto &[begin, replacement] : m_pending) {
        text.append(old.constData() + done, begin - done);
        text += replacement.text;
        done = replacement.span.end;
    }
    text.append(old.constData() + done, old.size() - done);
    m_pending.clear();
    m_pendingValues.clear();
    scan(text);
}

QByteArray XmlEditor::document()
{
    apply();
    return m_text.encode(m_markup->document());
}

// --- Values ----------------------------------------------------------------------------------------------------------

void XmlEditor::storeValue(const QVector<Step> &object, const QString &member, const QString &typed)
{
    // What is pending may be the place of the value.
    QString key;
    for (const Step &step : object)
        key += step.member + QString::number(step.index) + QLatin1Char('/');
    key += member;
    if (m_pendingValues.contains(key))
        apply();
    change([&] { return valueReplacements(object, member, typed); });
    m_pendingValues.insert(key);
}

XmlEditor::Replacements XmlEditor::valueReplacements(const QVector<Step> &steps, const QString &name,
                                                     const QString &typed) const
{
    Replacements out;
    const DataObject &object = *objectAt(m_tuner, steps);
    const MemberView member = *memberNamed(object, name);
    const QVector<int> elements = m_places->elementsOf(steps);
    const QVector<XmlPlaces::Value> values = m_places->valuesOf(elements, object, member);
    if (!member.IsSet()) {
        for (const XmlPlaces::Value &value : values)
            removeValue(out, value);
        return out;
    }
    if (member.GetKind() == MemberKind::EnumerationList)
        return listReplacements(elements, object, member, values);
    const QString text = typed.isNull() ? XmlText::ofValue(member).value(0) : typed;
    if (values.isEmpty())
        addValue(out, elements, object, member, text);
    else if (values.last().isAttribute)
        replaceAttribute(out, values.last().index, text, isNumber(member));
    else
        replaceContent(out, values.last().index, text, isNumber(member));
    return out;
}

/// The names of a list are in one element each.
XmlEditor::Replacements XmlEditor::listReplacements(const QVector<int> &elements, const DataObject &object,
                                                    const MemberView &member,
                                                    const QVector<XmlPlaces::Value> &values) const
{
    Replacements out;
    const QStringList texts = XmlText::ofValue(member);
    for (int i = 0; i < values.size(); ++i) {
        if (i < texts.size())
            replaceContent(out, values.at(i).index, texts.at(i), false);
        else
            removeValue(out, values.at(i));
    }
    QByteArray added;
    const int parent = elements.isEmpty() ? 0 : elements.last();
    const XmlText::Layout layout = layoutIn(parent);
    for (int i = values.size(); i < texts.size(); ++i) {
        added += (i == values.size() ? QByteArray() : layout.lineEnd + layout.indentation)
            + XmlText::element(member.GetName(), texts.at(i), layout, m_text);
    }
    if (!added.isEmpty())
        addElement(out, parent, object, member.GetName(), values.size(),
                   [&](const XmlText::Layout &) { return added; });
    return out;
}

void XmlEditor::replaceAttribute(Replacements &out, int attribute, const QString &text, bool isNumber) const
{
    const QByteArray &document = m_markup->document();
    const Span value = m_markup->attributes().at(attribute).value;
    const Span span = isNumber ? trimmed(document, value) : value;
    const QByteArray written = XmlText::inAttribute(text, document.at(value.end), m_text);
    if (m_markup->bytes(span) != QLatin1String(written))
        out.append({span, written});
}

/// The parts of an element's content that are its text: without comments, processing instructions and other elements.
QVector<REPORTGENERATOR::XmlMarkup::Span> XmlEditor::textsIn(int element) const
{
    const QByteArray &document = m_markup->document();
    const Span content = m_markup->elements().at(element).content;
    const auto endOf = [&](const char *mark, int from) {
        const int at = document.indexOf(mark, from);
        return at < 0 ? content.end : at + int(qstrlen(mark));
    };
    QVector<Span> texts;
    int child = element + 1;
    for (int at = content.begin; at < content.end;) {
        const QByteArray next = document.mid(at, 9);
        int end = document.indexOf('<', at); // of a text
        if (next.startsWith("<!--")) {
            end = endOf("-->", at);
        } else if (next.startsWith("<?")) {
            end = endOf("?>", at);
        } else if (next == "<![CDATA[") {
            end = endOf("]]>", at);
            texts.append({at, end});
        } else if (next.startsWith('<')) {
            end = m_markup->elements().at(child).end;
            child = m_markup->elements().at(child).next;
        } else {
            texts.append({at, end});
        }
        at = end;
    }
    return texts;
}

void XmlEditor::replaceContent(Replacements &out, int element, const QString &text, bool isNumber) const
{
    const QByteArray &document = m_markup->document();
    const Markup::Element &place = m_markup->elements().at(element);
    const QByteArray written = XmlText::inElement(text, m_text);
    if (place.isEmptyTag) {
        constexpr int endSize = 2; // "/>"
        if (!written.isEmpty())
            out.append({{place.startTag.end - endSize, place.startTag.end},
                        '>' + written + "</" + document.mid(place.name.begin, place.name.size()) + '>'});
        return;
    }
    QVector<Span> texts = textsIn(element);
    if (isNumber) { // blanks around a number do not matter
        for (Span &span : texts)
            span = trimmed(document, span);
        texts.erase(std::remove_if(texts.begin(), texts.end(), [](const Span &span) { return span.size() == 0; }),
                    texts.end());
    }
    if (texts.isEmpty()) {
        out.append({{place.content.begin, place.content.begin}, written});
        return;
    }
    if (texts.size() == 1 && m_markup->bytes(texts.first()) == QLatin1String(written))
        return;
    for (int i = 0; i < texts.size(); ++i)
        out.append({texts.at(i), i == 0 ? written : QByteArray()});
}

/// An element, and its line if nothing else is on it.
REPORTGENERATOR::XmlMarkup::Span XmlEditor::lineOf(const Span &element) const
{
    const QByteArray &document = m_markup->document();
    const auto isSpace = [&](int at) { return document.at(at) == ' ' || document.at(at) == '\t'; };
    Span line = element;
    while (line.begin > 0 && isSpace(line.begin - 1))
        --line.begin;
    while (line.end < document.size() && isSpace(line.end))
        ++line.end;
    const bool beginsLine = line.begin > 0 && document.at(line.begin - 1) == '\n';
    const bool endsLine =
        line.end < document.size() && (document.at(line.end) == '\n' || document.at(line.end) == '\r');
    if (!beginsLine || !endsLine)
        return element;
    line.end +=
        document.at(line.end) == '\r' && line.end + 1 < document.size() && document.at(line.end + 1) == '\n' ? 2 : 1;
    return line;
}

void XmlEditor::removeValue(Replacements &out, const XmlPlaces::Value &value) const
{
    if (!value.isAttribute) {
        out.append({lineOf(m_markup->elements().at(value.index).whole()), QByteArray()});
        return;
    }
    Span span = m_markup->attributes().at(value.index).whole();
    while (isBlank(m_markup->document().at(span.begin - 1)))
        --span.begin;
    out.append({span, QByteArray()});
}

// --- New values ------------------------------------------------------------------------------------------------------

void XmlEditor::addValue(Replacements &out, const QVector<int> &elements, const DataObject &object,
                         const MemberView &member, const QString &text) const
{
    if (elements.isEmpty())
        throw CannotEdit{QStringLiteral("its text has no '%1'").arg(object.GetObjectName())};
    const int element = elements.last();
    // An author who writes the other members as elements wants this one as an element, too.
    bool hasAttributes = false;
    bool hasElements = false;
    visit(object, [&](const MemberView &other) {
        if (!other.IsAttribute())
            return;
        const QVector<XmlPlaces::Value> values = m_places->valuesOf({element}, object, other);
        for (const XmlPlaces::Value &value : values)
            (value.isAttribute ? hasAttributes : hasElements) = true;
    });
    if (member.IsAttribute() && (hasAttributes || !hasElements)) {
        addAttribute(out, element, object, member, text);
        return;
    }
    addElement(out, element, object, member.GetName(), 0,
               [&](const XmlText::Layout &layout) { return XmlText::element(member.GetName(), text, layout, m_text); });
}

/// The attribute follows those that the library writes before it, separated as they are.
void XmlEditor::addAttribute(Replacements &out, int element, const DataObject &object, const MemberView &member,
                             const QString &text) const
{
    const QByteArray &document = m_markup->document();
    const Markup::Element &place = m_markup->elements().at(element);
    const QStringList order = orderOf(object, true);
    const int position = order.indexOf(member.GetName());
    int before = -1; // the attribute that it follows
    int after = -1; // the first one that it precedes
    for (int i = place.firstAttribute; i < place.firstAttribute + place.attributeCount; ++i) {
        const int other = order.indexOf(m_markup->bytes(m_markup->attributes().at(i).name));
        if (other < position) // -1 for those that the model does not have
            before = i;
        else if (after < 0)
            after = i;
    }
    const auto quoteOf = [&](int attribute) { return document.at(m_markup->attributes().at(attribute).value.end); };
    const int neighbor = before >= 0 ? before : after;
    const char quote = neighbor < 0 ? '"' : quoteOf(neighbor);
    const QByteArray attribute = QByteArray(member.GetName().data(), member.GetName().size()) + '=' + quote
        + XmlText::inAttribute(text, quote, m_text) + quote;
    if (neighbor < 0) {
        out.append({{place.name.end, place.name.end}, ' ' + attribute});
        return;
    }
    const Span whole = m_markup->attributes().at(neighbor).whole();
    // The first attribute is usually on the line of its tag, and the others below it.
    const bool isFirst = neighbor == place.firstAttribute;
    const bool hasSecond = place.attributeCount > 1;
    const int sample = isFirst && hasSecond ? neighbor + 1 : neighbor;
    const QByteArray blanks = blanksBefore(m_markup->attributes().at(sample).name.begin);
    if (before >= 0)
        out.append({{whole.end, whole.end}, blanks + attribute});
    else
        out.append({{whole.begin, whole.begin}, attribute + blanks});
}

QByteArray XmlEditor::blanksBefore(int at) const
{
    const QByteArray &document = m_markup->document();
    int begin = at;
    while (begin > 0 && isBlank(document.at(begin - 1)))
        --begin;
    return document.mid(begin, at - begin);
}

/// How the child elements of an element are laid out: like those that it has, or like others in the document.
XmlText::Layout XmlEditor::layoutIn(int parent) const
{
    const auto &elements = m_markup->elements();
    const auto indentationOf = [&](int element) -> std::optional<QByteArray> {
        const QByteArray blanks = blanksBefore(elements.at(element).startTag.begin);
        const int lineStart = blanks.lastIndexOf('\n');
        return lineStart < 0 ? std::optional<QByteArray>() : blanks.mid(lineStart + 1);
    };
    XmlText::Layout layout;
    const QByteArray &document = m_markup->document();
    const int feed = document.indexOf('\n', elements.at(0).startTag.begin);
    layout.lineEnd = feed < 0                       ? QByteArray()
        : feed > 0 && document.at(feed - 1) == '\r' ? QByteArray("\r\n")
                                                    : QByteArray("\n");
    const QLatin1String name = m_markup->bytes(elements.at(parent).name);
    const int colon = QByteArray::fromRawData(name.data(), name.size()).indexOf(':');
    layout.prefix = QByteArray(name.data(), colon + 1);
    // The root's first child shows the step of the document.
    const QByteArray rootIndentation = indentationOf(0).value_or(QByteArray());
    if (elements.size() > 1) {
        const auto first = indentationOf(1);
        if (first && first->startsWith(rootIndentation) && first->size() > rootIndentation.size())
            layout.step = first->mid(rootIndentation.size());
    }
    const bool hasChild = elements.at(parent).next > parent + 1;
    const auto ofChild = hasChild ? indentationOf(parent + 1) : std::optional<QByteArray>();
    if (hasChild && !ofChild)
        layout.lineEnd.clear();
    layout.indentation = ofChild ? *ofChild : indentationOf(parent).value_or(QByteArray()) + layout.step;
    return layout;
}

/// Adds a child element, or several as one text, after those that the library writes before it; `index` counts those of
/// the same name.
template <class Make>
void XmlEditor::addElement(Replacements &out, int parent, const DataObject &object, const QString &member, int index,
                           Make make) const
{
    const QByteArray &document = m_markup->document();
    const Markup::Element &place = m_markup->elements().at(parent);
    const XmlText::Layout layout = layoutIn(parent);
    const QByteArray element = make(layout);
    const QStringList order = orderOf(object, false);
    const int position = order.indexOf(member);
    int before = -1; // the element that it follows
    int alike = 0;
    const QVector<XmlPlaces::Child> children = m_places->childrenOf(parent, object);
    for (const XmlPlaces::Child &child : children) {
        const int other = order.indexOf(child.member);
        if (other < position || (other == position && alike++ < index))
            before = child.element;
    }
    const QByteArray separator = layout.lineEnd.isEmpty() ? QByteArray() : layout.lineEnd + layout.indentation;
    if (before >= 0) {
        const int end = m_markup->elements().at(before).end;
        out.append({{end, end}, separator + element});
    } else if (!children.isEmpty()) {
        const int begin = m_markup->elements().at(children.first().element).startTag.begin;
        out.append({{begin, begin}, element + separator});
    } else {
        XmlText::Layout outer = layout;
        outer.indentation.chop(layout.step.size());
        const QByteArray last = layout.lineEnd.isEmpty() ? QByteArray() : layout.lineEnd + outer.indentation;
        const QByteArray endTag = "</" + document.mid(place.name.begin, place.name.size()) + '>';
        constexpr int endSize = 2; // "/>"
        if (place.isEmptyTag)
            out.append({{place.startTag.end - endSize, place.startTag.end}, '>' + separator + element + last + endTag});
        else if (trimmed(document, place.content).size() == 0)
            out.append({place.content, separator + element + last});
        else
            out.append({{place.content.begin, place.content.begin}, separator + element});
    }
}

// --- Objects ---------------------------------------------------------------------------------------------------------

void XmlEditor::storeObject(const QVector<Step> &steps, const QString &name)
{
    apply();
    change([&] {
        Replacements out;
        const DataObject &object = *objectAt(m_tuner, steps);
        const MemberView member = *memberNamed(object, name);
        const QVector<int> elements = m_places->elementsOf(steps);
        if (!member.IsSet() || !member.IsChosen()) {
            const QVector<XmlPlaces::Value> values = m_places->valuesOf(elements, object, member);
            for (const XmlPlaces::Value &value : values)
                removeValue(out, value);
        } else if (!elements.isEmpty() && !m_places->valuesOf(elements, object, member).isEmpty()) {
            makeLast(out, elements.last(), object, member);
        } else if (!elements.isEmpty()) {
            addElement(out, elements.last(), object, name, 0, [&](const XmlText::Layout &layout) {
                return XmlText::element(member.GetChild(), layout, m_text);
            });
        }
        return out;
    });
    apply();
}

/// Makes an alternative that the text has the one that is chosen: the last one.
void XmlEditor::makeLast(Replacements &out, int item, const DataObject &object, const MemberView &alternative) const
{
    const QVector<XmlPlaces::Child> children = m_places->childrenOf(item, object);
    if (alternative.GetKind() != MemberKind::Alternative || children.last().member == alternative.GetName())
        return;
    const int last = m_places->valuesOf({item}, object, alternative).last().index;
    const Span chosen = m_markup->elements().at(last).whole();
    removeValue(out, {false, last});
    const int end = m_markup->elements().at(children.last().element).end;
    out.append({{end, end}, blanksBefore(chosen.begin) + m_markup->document().mid(chosen.begin, chosen.size())});
}

void XmlEditor::insertItem(const QVector<Step> &steps, const QString &list, int index)
{
    insertItem(steps, list, index, QByteArray());
}

void XmlEditor::insertItem(const QVector<Step> &steps, const QString &list, int index, const QByteArray &element)
{
    apply();
    change([&] {
        Replacements out;
        const DataObject &object = *objectAt(m_tuner, steps);
        const QVector<int> elements = m_places->elementsOf(steps);
        if (elements.isEmpty())
            throw CannotEdit{QStringLiteral("its text has no '%1'").arg(object.GetObjectName())};
        addElement(out, elements.last(), object, list, index, [&](const XmlText::Layout &layout) {
            return element.isEmpty() ? XmlText::element(memberNamed(object, list)->GetChild(index), layout, m_text)
                                     : element;
        });
        return out;
    });
    apply();
}

void XmlEditor::removeItem(const QVector<Step> &steps, const QString &list, int index)
{
    apply();
    change([&] {
        Replacements out;
        const DataObject &object = *objectAt(m_tuner, steps);
        const auto values = m_places->valuesOf(m_places->elementsOf(steps), object, *memberNamed(object, list));
        if (index < values.size())
            removeValue(out, values.at(index));
        return out;
    });
    apply();
}

void XmlEditor::moveItem(const QVector<Step> &steps, const QString &list, int from, int to)
{
    apply();
    const DataObject &object = *objectAt(m_tuner, steps);
    const auto values = m_places->valuesOf(m_places->elementsOf(steps), object, *memberNamed(object, list));
    if (from >= values.size() || to >= values.size())
        return;
    const Span span = m_markup->elements().at(values.at(from).index).whole();
    const QByteArray element = m_markup->document().mid(span.begin, span.size());
    removeItem(steps, list, from);
    insertItem(steps, list, to, element);
}

// --- Comparing with the description ----------------------------------------------------------------------------------

int XmlEditor::itemCount(const QVector<Step> &steps, const QString &list)
{
    apply();
    const DataObject &object = *objectAt(m_tuner, steps);
    return m_places->valuesOf(m_places->elementsOf(steps), object, *memberNamed(object, list)).size();
}

/// The element inside elements with the names of the objects around it, so that it is read as what it is.
QByteArray XmlEditor::skeletonAround(const QVector<Step> &object, const QByteArray &element) const
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

QByteArray XmlEditor::withoutObjects(int element, const DataObject &object) const
{
    const Span whole = m_markup->elements().at(element).whole();
    const QByteArray &document = m_markup->document();
    QByteArray text;
    int done = whole.begin;
    const QVector<XmlPlaces::Child> children = m_places->childrenOf(element, object);
    QStringList objects;
    visit(object, [&](const MemberView &member) {
        if (holdsObjects(member))
            objects.append(member.GetName());
    });
    for (const XmlPlaces::Child &child : children) {
        if (!objects.contains(child.member))
            continue;
        const Span span = m_markup->elements().at(child.element).whole();
        text.append(document.constData() + done, span.begin - done);
        done = span.end;
    }
    text.append(document.constData() + done, whole.end - done);
    return text;
}

/// The first difference between the object and what the element reads as; null if there is none.
QString XmlEditor::mismatch(const QVector<Step> &steps, const QByteArray &element, bool withObjects) const
{
    QString unreadable = QStringLiteral("the changed text cannot be read");
    TunerProperties read;
    read.SetValidate(false);
    ReadOptions options;
    options.validate = false;
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
    return isReadable ? differenceBetween(*objectAt(m_tuner, steps), *same, withObjects) : unreadable;
}

QString XmlEditor::mismatchOf(const QVector<Step> &steps)
{
    apply();
    bool isChoice = false; // which follows from the object in it
    visit(*objectAt(m_tuner, steps),
          [&](const MemberView &member) { isChoice = isChoice || member.GetKind() == MemberKind::Choice; });
    if (isChoice)
        return wholeMismatchOf(steps);
    QByteArray text;
    const QVector<int> elements = m_places->elementsOf(steps);
    for (const int element : elements)
        text += withoutObjects(element, *objectAt(m_tuner, steps));
    return mismatch(steps, text, false);
}

QString XmlEditor::wholeMismatchOf(const QVector<Step> &steps)
{
    apply();
    QByteArray text;
    const QVector<int> elements = m_places->elementsOf(steps);
    for (const int element : elements) {
        const Span whole = m_markup->elements().at(element).whole();
        text += m_markup->document().mid(whole.begin, whole.size());
    }
    return mismatch(steps, text, true);
}

} // namespace TunerDocuments
