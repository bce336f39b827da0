// SPDX-License-Identifier: MIT
#include "documents/xml/XmlEditor.h"

#include <algorithm>
#include <utility>

#include <QStringList>

#include <jobxml/Visit.h>

#include "documents/values/FindMember.h"
#include "documents/values/ItemArrangement.h"
#include "documents/xml/XmlMismatch.h"
#include "documents/xml/XmlValues.h"

using namespace JobXml;

namespace TunerDocuments {

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
            texts.append({{replacement.begin, replacement.end}, int(replacement.text.size())});
    }
    const QByteArray text = replaced(m_markup->document(), 0, int(m_markup->document().size()), pending);
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

namespace {

QString keyOf(const QVector<Step> &object, const QString &member)
{
    QString key;
    for (const Step &step : object)
        key += step.member + QString::number(step.index) + QLatin1Char('/');
    return key + member;
}

} // namespace

/// What is pending may be the place of the value.
void XmlEditor::applyIfPending(const QString &value)
{
    if (m_pendingValues.contains(value))
        apply();
}

bool XmlEditor::hasExactly(const QVector<Step> &object, const QString &member, const QString &typed)
{
    applyIfPending(keyOf(object, member));
    const QVector<int> elements = m_places->elementsOf(object);
    if (elements.isEmpty())
        return false;
    const DataObject &described = *objectAt(m_tuner, object);
    Replacements none;
    XmlChildren children = childrenOf(elements, described);
    return XmlValues(*m_markup, *m_places, m_text, none, children).hasExactly(*memberNamed(described, member), typed);
}

void XmlEditor::storeValue(const QVector<Step> &object, const QString &member, const QString &typed)
{
    const QString key = keyOf(object, member);
    applyIfPending(key);
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
        XmlValues(*m_markup, *m_places, m_text, out, children).write(view, typed);
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
    std::vector<MemberView> members = membersOf(object);
    std::stable_partition(members.begin(), members.end(), [](const MemberView &member) {
        return member.GetKind() != MemberKind::Alternative || !member.IsChosen(); // the chosen one follows the others
    });
    for (const MemberView &member : members) {
        const MemberEdit *const found = edit.of(member);
        if (member.GetKind() == MemberKind::Alternative && isChosenAnew)
            writeObject(out, children, member, found ? *found : MemberEdit());
        else if (!found || member.GetKind() == MemberKind::Choice)
            continue;
        else if (member.GetKind() == MemberKind::ObjectList)
            writeItems(out, children, member, *found);
        else if (holdsObjects(member))
            writeObject(out, children, member, *found);
        else
            XmlValues(*m_markup, *m_places, m_text, out, children).write(member);
    }
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
    if (elements.isEmpty()) {
        addObject(children, member);
        return;
    }
    const int element = elements.last();
    const int last = isAlternative ? lastAlternative(children) : element;
    const bool isMoved = last != element && member.IsChosen(); // the last alternative is the chosen one
    const auto nested = edit.children.find(0);
    const Replacements inside = edit.isReplaced || nested == edit.children.end()
        ? Replacements()
        : replacementsIn(elements, member.GetChild(), nested->second);
    if (!edit.isReplaced && !isMoved) {
        out += inside;
        return;
    }
    for (const int each : qAsConst(elements))
        children.remove(each);
    children.addAfter(isMoved ? last : element,
                      edit.isReplaced ? XmlText::element(member.GetChild(), children.layoutAt(element), m_text)
                                      : changedText(element, inside));
}

/// An object that the text does not have yet.
void XmlEditor::addObject(XmlChildren &children, const MemberView &member) const
{
    const int last = member.GetKind() == MemberKind::Alternative ? lastAlternative(children) : -1;
    const XmlText::Layout layout = last < 0 ? children.layoutFor(member.GetName()) : children.layoutAt(last);
    if (!member.IsChosen() && !XmlText::hasChosenIn(children.object()))
        return; // it would count as chosen
    const QByteArray text = XmlText::element(member.GetChild(), layout, m_text);
    if (last < 0)
        children.add(member.GetName(), {text});
    else if (member.IsChosen())
        children.addAfter(last, text);
    else
        children.addBefore(last, text);
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
        const XmlText::Layout layout = neighbor < 0 ? m_children.layoutFor(m_list) : m_children.layoutLike(neighbor);
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
    if (edit.orderOf(int(elements.size())).size() != list.GetSize())
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

QString XmlEditor::mismatchOf(const QVector<Step> &object)
{
    apply();
    return mismatchIn(*m_markup, *m_places, m_tuner, object);
}

} // namespace TunerDocuments
