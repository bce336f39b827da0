// SPDX-License-Identifier: MIT
#include <jobxml/DataObject.h>

#include <algorithm>
#include <exception>
#include <optional>

#include <QFile>

#include "framework/CollectedReading.h"
#include "framework/ObjectAccess.h"
#include "framework/Problems.h"

namespace JobXml {

using REPORTGENERATOR::ErrorLocation;
using REPORTGENERATOR::ReadLimits;

namespace {

/// The problem that ended the reading.
Problem last(Problem problem)
{
    problem.isUnreadable = true;
    return problem;
}

/// Why the document could not be read, without the place.
Problem unreadable(const DataObject &object)
{
    const ErrorLocation location = object.GetErrorLocation();
    QString place = location.source + QLatin1Char(':');
    if (location.line != 0)
        place +=
            QString::number(location.line) + QLatin1Char(':') + QString::number(location.column) + QLatin1Char(':');
    place += QLatin1Char(' ');
    const QString text = object.GetErrorString();
    Problem problem({}, text.startsWith(place) ? text.mid(place.size()) : text);
    problem.line = location.line;
    problem.column = location.column;
    return problem;
}

ReadLimits limitsOf(const ReadOptions &options)
{
    ReadLimits limits;
    limits.setLargestSize(std::min(limits.largestSize(), options.maxBytes()));
    limits.setLargestExpandedSize(std::min(limits.largestExpandedSize(), options.maxBytes()));
    limits.setAcceptCompressed(options.allowCompressed());
    return limits;
}

/// Ends the reading after an exception of the visitor, which may be of the same type as those of the model.
struct Stopped
{
};

/// Calls the function, which reads the object and returns whether it could be read, and visits all problems. Returns
/// whether there are none.
template <class Read>
bool readWithProblems(DataObject &object, const ProblemVisitor &visitor, const ReadOptions &options, Read &&read)
{
    bool hasProblems = false;
    std::exception_ptr exceptionOfVisitor;
    const ProblemVisitor visit = [&](const Problem &problem) {
        hasProblems = true;
        try {
            visitor(problem);
        } catch (...) {
            exceptionOfVisitor = std::current_exception();
            throw Stopped();
        }
    };
    std::optional<Problem> end;
    const bool validated = object.GetValidate();
    object.SetValidate(options.validate());
    try {
        const CollectedReading reading(object, options.validate() ? &visit : nullptr);
        try {
            if (!read())
                end = last(unreadable(object));
        } catch (const ReportException &exception) {
            end = last(problemOf(exception, reading.pathOfEnd()));
        }
    } catch (...) {
        object.SetValidate(validated);
        if (exceptionOfVisitor)
            std::rethrow_exception(exceptionOfVisitor);
        throw;
    }
    const bool looksForMore = options.validate() && !end;
    if (looksForMore && !ObjectAccess::isOfDerivedClass(object))
        object.IRGObject::SetValidate(validated); // VisitProblems() propagates it
    else
        object.SetValidate(validated);
    if (end)
        visitor(*end);
    if (looksForMore)
        object.VisitProblems([&](const Problem &problem) {
            hasProblems = true;
            visitor(problem);
        });
    return !end && !hasProblems;
}

ProblemVisitor appendTo(QVector<Problem> &problems)
{
    problems.clear();
    return [&problems](const Problem &problem) { problems.append(problem); };
}

} // namespace

bool DataObject::visitLoadXml(QFile *file, const ProblemVisitor &visitor, const ReadOptions &options)
{
    return readWithProblems(*this, visitor, options, [&] { return readXmlFile(file, options.maxBytes()); });
}

bool DataObject::visitLoadXml(const QString &path, const ProblemVisitor &visitor, const ReadOptions &options)
{
    QFile file(path);
    return visitLoadXml(&file, visitor, options);
}

bool DataObject::visitSetXmlString(const QString &xml, const ProblemVisitor &visitor, const ReadOptions &options)
{
    return readWithProblems(*this, visitor, options, [&] { return readXmlText(xml, options.maxBytes()); });
}

bool DataObject::visitSetXmlDocument(const QByteArray &document, const QString &source, const ProblemVisitor &visitor,
                                     const ReadOptions &options)
{
    return readWithProblems(*this, visitor, options,
                            [&] { return readXmlBytes(document, source, options.maxBytes()); });
}

bool DataObject::visitSetBinaryRepresentation(const QByteArray &representation, const ProblemVisitor &visitor,
                                              const ReadOptions &options)
{
    return readWithProblems(*this, visitor, options,
                            [&] { return IRGObject::SetBinaryRepresentation(representation, limitsOf(options)); });
}

bool DataObject::visitLoadBinary(QFile *file, const ProblemVisitor &visitor, const ReadOptions &options)
{
    return readWithProblems(*this, visitor, options, [&] { return IRGObject::LoadBinary(file, limitsOf(options)); });
}

bool DataObject::visitLoadBinary(const QString &path, const ProblemVisitor &visitor, const ReadOptions &options)
{
    QFile file(path);
    return visitLoadBinary(&file, visitor, options);
}

bool DataObject::LoadXml(const QString &path, QVector<Problem> &problems, const ReadOptions &options)
{
    return visitLoadXml(path, appendTo(problems), options);
}

bool DataObject::LoadXml(QFile *file, QVector<Problem> &problems, const ReadOptions &options)
{
    return visitLoadXml(file, appendTo(problems), options);
}

bool DataObject::SetXmlString(const QString &xml, QVector<Problem> &problems, const ReadOptions &options)
{
    return visitSetXmlString(xml, appendTo(problems), options);
}

bool DataObject::SetXmlDocument(const QByteArray &document, const QString &source, QVector<Problem> &problems,
                                const ReadOptions &options)
{
    return visitSetXmlDocument(document, source, appendTo(problems), options);
}

bool DataObject::SetBinaryRepresentation(const QByteArray &representation, QVector<Problem> &problems,
                                         const ReadOptions &options)
{
    return visitSetBinaryRepresentation(representation, appendTo(problems), options);
}

bool DataObject::LoadBinary(const QString &path, QVector<Problem> &problems, const ReadOptions &options)
{
    return visitLoadBinary(path, appendTo(problems), options);
}

bool DataObject::LoadBinary(QFile *file, QVector<Problem> &problems, const ReadOptions &options)
{
    return visitLoadBinary(file, appendTo(problems), options);
}

} // namespace JobXml
