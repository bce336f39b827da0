// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <jobxml/DataObject.h>
#include <jobxml/Visitor.h>

/// Calls a function for an object and for everything below it that counts.
class WholeTree : public JobXml::Visitor
{
public:
    using Function = std::function<void(const JobXml::DataObject &)>;

    static void visit(const JobXml::DataObject &root, const Function &function)
    {
        WholeTree tree(function);
        tree.VisitChild({}, root, -1);
    }

    /// How many objects of the tree are as asked.
    static int count(const JobXml::DataObject &root, const std::function<bool(const JobXml::DataObject &)> &asked)
    {
        int found = 0;
        visit(root, [&](const JobXml::DataObject &object) { found += asked(object) ? 1 : 0; });
        return found;
    }

    static int size(const JobXml::DataObject &root)
    {
        return count(root, [](const JobXml::DataObject &) { return true; });
    }

    void VisitValue(QLatin1String, const QVariant &, bool) override { }
    void VisitList(QLatin1String, int, bool) override { }
    void VisitChild(QLatin1String, const JobXml::DataObject &child, int) override
    {
        m_function(child);
        child.Accept(*this);
    }

private:
    explicit WholeTree(const Function &function) : m_function(function) { }

    Function m_function;
};
