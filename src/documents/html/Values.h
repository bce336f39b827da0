// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "documents/html/Objects.h"
#include "documents/html/Range.h"

namespace TunerDocuments {

/// The values of a node, each with a picture that fits it: a scale, a list of options. The picture follows the shape of
/// the object, not its class; members that are not in the picture are shown below it.
///
/// Pictures are not controls and do not look like them, since the page cannot change the document: they are images,
/// meters or texts for assistive technology, and not reachable by the Tab key. Only a long list of options opens and
/// closes.
class Values
{
public:
    Values(Markup &out, Problems &problems, const Unit &unit)
        : m_out(out), m_problems(problems), m_objects(out, problems), m_unit(unit)
    {
    }

    /// Shows an item of a node: the chosen value, or all members if none is chosen. Alternatives that are not chosen
    /// follow, as far as they hold anything.
    void item(const JobXml::DataObject &item, const ObjectPath &path);

private:
    void chosen(const JobXml::MemberView &alternative, const ObjectPath &path);
    bool scale(Members &members, const QString &label);
    void picture(const Range &range, const QString &label, const QStringList &numbers);
    bool selection(Members &members, const ObjectPath &path);
    bool textList(Members &members, const ObjectPath &path);
    void options(const JobXml::MemberView &list, const ObjectPath &path,
                 const std::function<bool(int index, const Members &option)> &isCurrent);
    void option(const Members &option, const ObjectPath &path, bool isCurrent);
    void plain(const JobXml::MemberView &value);

    Markup &m_out;
    Problems &m_problems;
    Objects m_objects;
    const Unit m_unit;
};

} // namespace TunerDocuments
