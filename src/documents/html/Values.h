// SPDX-License-Identifier: MIT
#pragma once

#include "documents/html/Objects.h"

namespace TunerDocuments {

/// The values of nodes, each with a picture that fits it: a switch, a slider, a drop-down list. The picture follows the
/// shape of the object, not its class; members that are not in the picture are shown below it.
///
/// Pictures are not controls: they are images, meters or texts for assistive technology, and not reachable by the Tab
/// key, since the page cannot change the document. The only exception is the drop-down list, which shows the options.
class Values
{
public:
    Values(Markup &out, Problems &problems) : m_out(out), m_problems(problems), m_objects(out, problems) { }

    /// Shows an item of a node: the chosen value, or all members if none is chosen.
    void item(const JobXml::DataObject &item, const ObjectPath &path);

private:
    void chosen(const JobXml::MemberView &alternative, const ObjectPath &path);
    bool slider(Members &members, const QString &label);
    bool dropDown(Members &members, const ObjectPath &path, const QString &label);
    bool textList(Members &members, const ObjectPath &path);
    void plain(const JobXml::MemberView &value);
    void note(const QString &text);
    void noteDifferences(const JobXml::MemberView &options, int index, const JobXml::MemberView *text,
                         const JobXml::MemberView &value);

    Markup &m_out;
    Problems &m_problems;
    Objects m_objects;
};

} // namespace TunerDocuments
