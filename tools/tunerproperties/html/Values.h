// SPDX-License-Identifier: MIT
#pragma once

#include "html/Objects.h"

/// The values of nodes, each with a picture that fits what it holds: a switch, a slider, a list that drops down. What
/// is chosen goes by the shape of the object, not by its class, and what has no part in the picture stands below it.
///
/// Pictures are no controls: they are images, meters or texts to those who cannot see them, and nobody comes upon them
/// by the tab key, since the page shows a document and cannot change it. The one exception is the drop-down, which does
/// what it looks like: it shows the options.
class Values
{
public:
    Values(Markup &out, Problems &problems) : m_out(out), m_problems(problems), m_objects(out, problems) { }

    /// An item of a node: what it has chosen, or all there is if it has chosen nothing.
    void item(const JobXml::DataObject &item, const Spot &spot);

private:
    void chosen(const JobXml::MemberView &alternative, const Spot &spot);
    bool slider(Members &members, const QString &label);
    bool dropDown(Members &members, const Spot &spot, const QString &label);
    bool textList(Members &members, const Spot &spot);
    void plain(const JobXml::MemberView &value);
    void note(const QString &text);
    void noteDifferences(const JobXml::MemberView &options, int index, const JobXml::MemberView *text,
                         const JobXml::MemberView &value);

    Markup &m_out;
    Problems &m_problems;
    Objects m_objects;
};
