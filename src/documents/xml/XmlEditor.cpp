// SPDX-License-Identifier: MIT
#include "documents/xml/XmlEditor.h"

#include <algorithm>
#include <utility>

#include <QStringList>

#include <jobxml/Visit.h>

#include <tunerdocuments/Value.h>

#include "documents/values/FindMember.h"
#include "documents/values/ItemArrangement.h"
#include "documents/xml/XmlBlanks.h"
#include "documents/xml/XmlTexts.h"

using namespace JobXml;

namespace TunerDocuments {

namespace {

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
    m_layout = XmlChildren::layoutOf(*m_markup);
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
    keep(replacements);
}

void XmlEditor::keep(const Replacements &replacements)
{
    for (const Replacement &replacement : replacements)
        m_pending.emplace(replacement.begin, replacement);
}

bool XmlEditor::touches(const Replacements &replacements) const
{
    return std::any_of(replacements.begin(), replacements.end(), [this](const Replacement &replacement) {
        const auto after = m_pending.lower_bound(replacement.begin);
        return (after != m_pending.end() && after->first <= replacement.end)
            || (after != m_pending.begin() && std::prev(after)->second.end >= replacement.begin);
    });
}

void XmlEditor::apply()
{
    if (m_pending.empty())
        return;
    Replacements pending;
    QVector<Markup::TextPart> texts;
    for (const auto &[begin, replacement] : m_pending) {
        pending.append(replacement);
        if (replacement.isText)
            texts.append({{replacement.begin, replacement.end}, replacement.text.size()});
    }
    const QByteArray text = replaced(m_markup->document(), 0, m_markup->document().size(), pending);
    const bool hasOnlyTexts = texts.size() == int(m_pending.size());
    m_pending.clear();
    m_pendingValues.clear();
    if (hasOnlyTexts)
        m_markup->replaceTexts(text, texts);
    else
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
    const DataObject &described = *objectAt(m_tuner, object);
    const MemberView view = *memberNamed(described, member);
    const auto elements = [&] { return m_places->elementsOf(object); };
    if (elements().isEmpty())
        apply();
    if (elements().isEmpty()) {
        if (view.IsSet())
            addMissing(object);
        return;
    }
    change([&] {
        Replacements out;
        XmlChildren children = childrenOf(elements(), described);
        writeValue(out, children, view, typed);
        return out + children.replacements();
    });
    m_pendingValues.insert(key);
}

/// Adds the outermost object on the way to one that the text does not have.
void XmlEditor::addMissing(QVector<Step> steps)
{
    Step missing;
    while (!steps.isEmpty() && m_places->elementsOf(steps).isEmpty())
        missing = steps.takeLast();
    storeObject(steps, missing.member);
}

/// Makes the text of an object have the value of a member, or not.
void XmlEditor::writeValue(Replacements &out, XmlChildren &children, const MemberView &member,
                           const QString &typed) const
{
    const QVector<XmlPlaces::Value> values = m_places->valuesOf(children.elements(), children.object(), member);
    if (!member.IsSet()) {
        removeValues(out, children, values);
        return;
    }
    if (member.GetKind() == MemberKind::EnumerationList) {
        writeNames(out, children, member, values);
        return;
    }
    const QString text = typed.isNull() ? XmlText::ofValue(member).value(0) : typed;
    if (values.isEmpty())
        addValue(out, children, member, text);
    else if (values.last().isAttribute)
        replaceAttribute(out, values.last().index, text, isNumber(member));
    else
        replaceContent(out, values.last().index, text, isNumber(member));
}

/// The names of a list are in one element each.
void XmlEditor::writeNames(Replacements &out, XmlChildren &children, const MemberView &member,
                           const QVector<XmlPlaces::Value> &values) const
{
    const QStringList texts = XmlText::ofValue(member);
    for (int i = 0; i < values.size(); ++i) {
        if (i < texts.size() && texts.at(i).isNull())
            continue; // whatever the text has that is not a name of the model
        if (i < texts.size())
            replaceContent(out, values.at(i).index, texts.at(i), false);
        else
            children.remove(values.at(i).index);
    }
    QByteArrayList added;
    const XmlText::Layout layout =
        values.isEmpty() ? children.layoutFor(member.GetName()) : children.layoutAt(values.last().index);
    for (int i = values.size(); i < texts.size(); ++i)
        added.append(XmlText::element(member.GetName(), texts.at(i), layout, m_text));
    if (values.isEmpty())
        children.add(member.GetName(), added);
    for (const QByteArray &name : values.isEmpty() ? QByteArrayList() : added)
        children.addAfter(values.last().index, name);
}

void XmlEditor::replaceAttribute(Replacements &out, int attribute, const QString &text, bool isNumber) const
{
    const QByteArray &document = m_markup->document();
    const Span value = m_markup->attributes().at(attribute).value;
    const Span span = isNumber ? XmlBlanks::trimmed(document, value) : value;
    const QByteArray written = XmlText::inAttribute(text, document.at(value.end), m_text);
    if (m_markup->bytes(span) != QLatin1String(written))
        out.append({span.begin, span.end, written, span.size() > 0});
}

void XmlEditor::replaceContent(Replacements &out, int element, const QString &text, bool isNumber) const
{
    const QByteArray &document = m_markup->document();
    const Markup::Element &place = m_markup->elements().at(element);
    const QByteArray written = XmlText::inElement(text, m_text);
    if (place.isEmptyTag) {
        constexpr int endSize = 2; // "/>"
        if (!written.isEmpty())
            out.append({place.startTag.end - endSize, place.startTag.end,
                        '>' + written + "</" + document.mid(place.name.begin, place.name.size()) + '>'});
        return;
    }
    QVector<Span> texts = XmlTexts::inElement(*m_markup, element);
    if (isNumber) { // blanks around a number do not matter
        for (Span &span : texts)
            span = XmlBlanks::trimmed(document, span);
        texts.erase(std::remove_if(texts.begin(), texts.end(), [](const Span &span) { return span.size() == 0; }),
                    texts.end());
    }
    if (texts.isEmpty()) {
        out.append({place.content.begin, place.content.begin, written});
        return;
    }
    if (texts.size() == 1 && m_markup->bytes(texts.first()) == QLatin1String(written))
        return;
    for (int i = 0; i < texts.size(); ++i)
        out.append({texts.at(i).begin, texts.at(i).end, i == 0 ? written : QByteArray(), true});
}

void XmlEditor::removeValues(Replacements &out, XmlChildren &children, const QVector<XmlPlaces::Value> &values) const
{
    for (const XmlPlaces::Value &value : values) {
        if (!value.isAttribute) {
            children.remove(value.index);
            continue;
        }
        Span span = m_markup->attributes().at(value.index).whole();
        span.begin -= XmlBlanks::before(m_markup->document(), span.begin).size();
        out.append({span.begin, span.end, QByteArray()});
    }
}

// --- New values ------------------------------------------------------------------------------------------------------

void XmlEditor::addValue(Replacements &out, XmlChildren &children, const MemberView &member, const QString &text) const
{
    const int element = children.elements().last();
    // An author who writes the other members as elements wants this one as an element, too.
    bool hasAttributes = false;
    bool hasElements = false;
    visit(children.object(), [&](const MemberView &other) {
        if (!other.IsAttribute())
            return;
        const QVector<XmlPlaces::Value> values = m_places->valuesOf({element}, children.object(), other);
        for (const XmlPlaces::Value &value : values)
            (value.isAttribute ? hasAttributes : hasElements) = true;
    });
    if (member.IsAttribute() && (hasAttributes || !hasElements))
        addAttribute(out, element, children.object(), member, text);
    else
        children.add(member.GetName(),
                     {XmlText::element(member.GetName(), text, children.layoutFor(member.GetName()), m_text)});
}

/// The attribute follows those that the library writes before it, separated as they are.
void XmlEditor::addAttribute(Replacements &out, int element, const DataObject &object, const MemberView &member,
                             const QString &text) const
{
    const QByteArray &document = m_markup->document();
    const Markup::Element &place = m_markup->elements().at(element);
    QStringList order;
    QVector<bool> areSet;
    visit(object, [&](const MemberView &other) {
        if (!other.IsAttribute())
            return;
        order.append(other.GetName());
        areSet.append(other.IsSet());
    });
    const auto isUnset = [&](int attribute) { return attribute >= 0 && !areSet.at(attribute); };
    const int position = order.indexOf(member.GetName());
    int before = -1; // the attribute that it follows
    int after = -1; // the first one that it precedes
    for (int i = place.firstAttribute; i < place.firstAttribute + place.attributeCount; ++i) {
        const int other = order.indexOf(m_markup->bytes(m_markup->attributes().at(i).name));
        if (isUnset(other))
            continue; // it is removed
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
        out.append({place.name.end, place.name.end, ' ' + attribute});
        return;
    }
    const Span whole = m_markup->attributes().at(neighbor).whole();
    // The first attribute is usually on the line of its tag, and the others below it.
    const bool isFirst = neighbor == place.firstAttribute;
    const bool hasSecond = place.attributeCount > 1;
    const int sample = isFirst && hasSecond ? neighbor + 1 : neighbor;
    const QByteArray blanks = XmlBlanks::before(document, m_markup->attributes().at(sample).name.begin);
    if (before >= 0)
        out.append({whole.end, whole.end, blanks + attribute});
    else
        out.append({whole.begin, whole.begin, attribute + blanks});
}

// --- Objects ---------------------------------------------------------------------------------------------------------

void XmlEditor::storeObject(const QVector<Step> &steps, const QString &name)
{
    ObjectEdit edit;
    ObjectEdit &inObject = edit.at(steps);
    const DataObject &object = *objectAt(m_tuner, steps);
    inObject.members[name];
    if (const auto choice = choiceOf(object))
        inObject.members[choice->GetName()]; // may follow from it
    follow(edit);
}

void XmlEditor::follow(const ObjectEdit &edit)
{
    apply();
    keep(replacementsIn({0}, m_tuner, edit));
    apply();
}

/// The changes of an object that is read from these elements, and of everything in it.
Replacements XmlEditor::replacementsIn(const QVector<int> &elements, const DataObject &object,
                                       const ObjectEdit &edit) const
{
    Replacements out;
    if (edit.members.empty())
        return out;
    XmlChildren children = childrenOf(elements, object);
    const auto choice = choiceOf(object);
    const bool isChosenAnew = choice && edit.of(*choice);
    visit(object, [&](const MemberView &member) {
        const MemberEdit *const found = edit.of(member);
        if (member.GetKind() == MemberKind::Alternative && isChosenAnew)
            writeObject(out, children, member, found ? *found : MemberEdit());
        else if (!found || member.GetKind() == MemberKind::Choice)
            return;
        else if (member.GetKind() == MemberKind::ObjectList)
            writeItems(out, children, member, *found);
        else if (holdsObjects(member))
            writeObject(out, children, member, *found);
        else
            writeValue(out, children, member, QString());
    });
    return out + children.replacements();
}

XmlChildren XmlEditor::childrenOf(const QVector<int> &elements, const DataObject &object) const
{
    if (elements.isEmpty())
        throw CannotEdit{QStringLiteral("its text has no '%1'").arg(object.GetObjectName())};
    return XmlChildren(*m_markup, *m_places, m_layout, elements, object);
}

/// Child elements, without values that are attributes.
QVector<int> XmlEditor::childElements(const XmlChildren &children, const MemberView &member) const
{
    QVector<int> elements;
    const QVector<XmlPlaces::Value> values = m_places->valuesOf(children.elements(), children.object(), member);
    for (const XmlPlaces::Value &value : values) {
        if (!value.isAttribute)
            elements.append(value.index);
    }
    return elements;
}

void XmlEditor::writeObject(Replacements &out, XmlChildren &children, const MemberView &member,
                            const MemberEdit &edit) const
{
    QVector<int> elements = childElements(children, member);
    const bool isAlternative = member.GetKind() == MemberKind::Alternative;
    if (!member.IsSet()) {
        for (const int element : qAsConst(elements))
            children.remove(element);
        return;
    }
    if (isAlternative && !elements.isEmpty())
        elements = {elements.last()}; // each one replaces the one before
    const auto written = [&] {
        const XmlText::Layout layout =
            elements.isEmpty() ? children.layoutFor(member.GetName()) : children.layoutAt(elements.last());
        return XmlText::element(member.GetChild(), layout, m_text);
    };
    if (elements.isEmpty()) {
        if (member.IsChosen()) // others are not written
            children.add(member.GetName(), {written()});
        return;
    }
    Replacements inside;
    const auto nested = edit.children.find(0);
    if (edit.isReplaced) {
        for (const int element : qAsConst(elements))
            children.remove(element);
        children.addAfter(elements.last(), written());
    } else if (nested != edit.children.end()) {
        inside = replacementsIn(elements, member.GetChild(), nested->second);
    }
    // The last alternative is the chosen one.
    const int last = isAlternative ? lastAlternative(children) : elements.last();
    if (last == elements.last() || !member.IsChosen()) {
        out += inside;
        return;
    }
    if (!edit.isReplaced)
        children.remove(elements.last());
    children.addAfter(last, changedText(elements.last(), inside));
}

/// The last element of an alternative in the text.
int XmlEditor::lastAlternative(const XmlChildren &children) const
{
    QStringList alternatives;
    visit(children.object(), [&](const MemberView &member) {
        if (member.GetKind() == MemberKind::Alternative)
            alternatives.append(member.GetName());
    });
    int last = -1;
    const QVector<XmlPlaces::Child> all = m_places->childrenOf(children.elements().last(), children.object());
    for (const XmlPlaces::Child &child : all) {
        if (alternatives.contains(child.member))
            last = child.element;
    }
    return last;
}

/// The items of a list, for arrangeItems(). An item is known by its element.
class XmlEditor::Items
{
public:
    Items(const XmlEditor &editor, Replacements &out, XmlChildren &children, QString list)
        : m_editor(editor), m_out(out), m_children(children), m_list(std::move(list))
    {
    }

    void changeItem(int item, const DataObject &described, const ObjectEdit &edit)
    {
        m_out += m_editor.replacementsIn({item}, described, edit);
    }
    QByteArray movedItem(int item, const DataObject &described, const ObjectEdit &edit)
    {
        return m_editor.changedText(item, m_editor.replacementsIn({item}, described, edit));
    }
    QByteArray newItem(const DataObject &described, int neighbor)
    {
        const XmlText::Layout layout = neighbor < 0 ? m_children.layoutFor(m_list) : m_children.layoutAt(neighbor);
        return XmlText::element(described, layout, m_editor.m_text);
    }
    void remove(int item) { m_children.remove(item); }
    void addBefore(int item, const QByteArray &text) { m_children.addBefore(item, text); }
    void addAfter(int item, const QByteArray &text) { m_children.addAfter(item, text); }
    void addFirst(const QByteArrayList &texts) { m_children.add(m_list, texts); }

private:
    const XmlEditor &m_editor;
    Replacements &m_out;
    XmlChildren &m_children;
    const QString m_list;
};

void XmlEditor::writeItems(Replacements &out, XmlChildren &children, const MemberView &list,
                           const MemberEdit &edit) const
{
    const QVector<int> elements = childElements(children, list);
    if (!list.IsSet()) { // its items are not written
        for (const int element : elements)
            children.remove(element);
        return;
    }
    if (edit.orderOf(elements.size()).size() != list.GetSize())
        throw CannotEdit{QStringLiteral("its text has another number of items than '%1'").arg(list.GetName())};
    Items items(*this, out, children, list.GetName());
    arrangeItems(items, elements, list, edit);
}

/// The text of an element with the changes in it.
QByteArray XmlEditor::changedText(int element, const Replacements &changes) const
{
    const Span whole = m_markup->elements().at(element).whole();
    return replaced(m_markup->document(), whole.begin, whole.end, changes);
}

// --- Comparing with the description ----------------------------------------------------------------------------------

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
