// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>

#include <QString>
#include <QVector>

#include <jobxml/DataObject.h>

#include "documents/compare/Pairs.h"

namespace TunerDocuments {

/// Where the objects of one document are in another one, whose items are paired with its own as findDifferences() does.
class Counterparts
{
public:
    /// Both must outlive this object and not change meanwhile.
    Counterparts(const JobXml::DataObject &of, const JobXml::DataObject &in) : m_of(of), m_in(in) { }

    /// The steps to the counterpart of the object at these steps; no value if there is none.
    std::optional<QVector<JobXml::Step>> find(const QVector<JobXml::Step> &steps);

private:
    const JobXml::DataObject &m_of;
    const JobXml::DataObject &m_in;
    std::map<QString, Pairs> m_pairs; // by the steps to the lists
};

} // namespace TunerDocuments
