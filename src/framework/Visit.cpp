// SPDX-License-Identifier: MIT
#include <jobxml/Visit.h>

#include <numeric>
#include <vector>

#include "framework/Behavior.h"
#include "framework/ListRoom.h"
#include "framework/Member.h"

namespace JobXml {

// --- Viewing ---------------------------------------------------------------------------------------------------------

QLatin1String MemberView::GetName() const
{
    return m_row->name();
}

MemberKind MemberView::GetKind() const
{
    return m_row->kind();
}

bool MemberView::IsSet() const
{
    return m_row->isSet(ObjectAccess::existingBlock(*m_object));
}

bool MemberView::IsMandatory() const
{
    return m_row->has(Mandatory);
}

bool MemberView::IsAttribute() const
{
    return m_row->has(Attribute);
}

bool MemberView::IsIdentifying() const
{
    return m_row->has(Identifies) || m_row->has(AlsoIdentifies);
}

bool MemberView::IsChosen() const
{
    return m_row->isChosen(ObjectAccess::existingBlock(*m_object));
}

QStringList MemberView::GetNames() const
{
    return m_row->names();
}

QVariant MemberView::GetValue() const
{
    return m_row->value(ObjectAccess::existingBlock(*m_object));
}

QVariant MemberView::GetDefaultValue() const
{
    return m_row->value(nullptr);
}

int MemberView::GetSize() const
{
    const Block *block = ObjectAccess::existingBlock(*m_object);
    return block ? m_row->childCount(*block) : 0;
}

const DataObject &MemberView::GetChild(int index) const
{
    if (index < 0 || index >= GetSize())
        m_row->throwNoSuchChild();
    return m_row->child(*ObjectAccess::existingBlock(*m_object), index);
}

void MemberView::forEach(const DataObject &object, Call call, void *visitor)
{
    auto show = [&](const VisitedMember &row) {
        MemberView view(row, object);
        call(visitor, view);
    };
    ObjectAccess::behavior(object).forEachMember(object, MemberAction(show));
}

// --- Editing ---------------------------------------------------------------------------------------------------------

// An editor is only created for an object that is not const.
DataObject &MemberEditor::object() const
{
    return const_cast<DataObject &>(*m_object);
}

bool MemberEditor::SetValue(const QVariant &value)
{
    return row().setValue(object(), value);
}

DataObject &MemberEditor::EditChild(int index)
{
    const bool exists = GetKind() == MemberKind::ObjectList ? index >= 0 && index < GetSize() : index == 0;
    if (!exists)
        row().throwNoSuchChild();
    return row().editChild(object(), index);
}

DataObject &MemberEditor::AppendChild()
{
    return row().appendChild(object());
}

QVector<int> MemberEditor::presentOrder() const
{
    QVector<int> order;
    makeRoom(order, GetSize());
    order.resize(GetSize());
    std::iota(order.begin(), order.end(), 0);
    return order;
}

void MemberEditor::RemoveChild(int index)
{
    QVector<int> order = presentOrder();
    if (index < 0 || index >= order.size())
        row().throwNoSuchChild();
    order.remove(index);
    row().arrangeChildren(object(), order);
}

void MemberEditor::MoveChild(int from, int to)
{
    QVector<int> order = presentOrder();
    if (from < 0 || from >= order.size() || to < 0 || to >= order.size())
        row().throwNoSuchChild();
    order.move(from, to);
    row().arrangeChildren(object(), order);
}

void MemberEditor::ArrangeChildren(const QVector<int> &order)
{
    const int size = GetSize();
    std::vector<bool> isFree(std::size_t(size), true);
    for (const int index : order) {
        if (index < 0 || index >= size || !isFree[std::size_t(index)])
            row().throwNoSuchChild();
        isFree[std::size_t(index)] = false;
    }
    row().arrangeChildren(object(), order);
}

void MemberEditor::Reset()
{
    row().reset(object());
}

void MemberEditor::SetFlag(bool set)
{
    row().setFlag(object(), set);
}

void MemberEditor::forEach(DataObject &object, Call call, void *visitor)
{
    auto show = [&](const VisitedMember &row) {
        MemberEditor editor(row, object);
        call(visitor, editor);
    };
    ObjectAccess::behavior(object).forEachMember(object, MemberAction(show));
}

} // namespace JobXml
