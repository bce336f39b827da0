// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <reportbase/ReportException.h>

/// The exception of a call, as "Type: message"; a null string if it threw nothing. Comparing it with one literal checks
/// the exception's type and its whole message at once.
template <typename Call>
QString thrownBy(Call &&call)
{
    try {
        call();
    } catch (const OutOfRangeException &e) {
        return QStringLiteral("OutOfRangeException: ") + e.GetMessageText();
    } catch (const InvalidXmlException &e) {
        return QStringLiteral("InvalidXmlException: ") + e.GetMessageText();
    } catch (const BinaryParsingException &e) {
        return QStringLiteral("BinaryParsingException: ") + e.GetMessageText();
    } catch (const IncompleteDefinitionException &e) {
        return QStringLiteral("IncompleteDefinitionException: ") + e.GetMessageText();
    } catch (const RGException &e) {
        return QStringLiteral("RGException: ") + e.GetMessageText();
    } catch (const ReportException &e) {
        return QStringLiteral("ReportException: ") + e.GetMessageText();
    }
    return QString();
}
