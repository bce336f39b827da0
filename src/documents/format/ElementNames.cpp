// SPDX-License-Identifier: MIT
#include "documents/format/ElementNames.h"

#include <QByteArray>
#include <QSet>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>

#include "documents/values/FindMember.h"

using namespace JobXml;

namespace TunerDocuments::ElementNames {

namespace {

class Names
{
public:
    Names()
    {
        TunerProperties document;
        document.SetValidate(false); // new items have no data
        m_objects.insert(document.GetObjectName().toLatin1());
        note(document);
    }

    bool isValue(QLatin1String name) const { return has(m_values, name); }
    bool isObject(QLatin1String name) const { return has(m_objects, name); }

private:
    void note(DataObject &object)
    {
        visit(object, [this](MemberEditor &member) {
            const QByteArray name(member.GetName().data(), member.GetName().size());
            if (!holdsObjects(member)) {
                m_values.insert(name);
                return;
            }
            m_objects.insert(name);
            note(member.GetKind() == MemberKind::ObjectList ? member.AppendChild() : member.EditChild());
        });
    }

    static bool has(const QSet<QByteArray> &names, QLatin1String name)
    {
        return names.contains(QByteArray::fromRawData(name.data(), name.size()));
    }

    QSet<QByteArray> m_values;
    QSet<QByteArray> m_objects;
};

const Names &names()
{
    static const Names all;
    return all;
}

} // namespace

bool isValue(QLatin1String name)
{
    return names().isValue(name);
}

bool isObject(QLatin1String name)
{
    return names().isObject(name);
}

} // namespace TunerDocuments::ElementNames
