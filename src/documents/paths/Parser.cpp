// SPDX-License-Identifier: MIT
#include "documents/paths/Parser.h"

#include <charconv>

#include "text/WholeNumber.h"

namespace TunerDocuments::Paths {

namespace {

class Parser
{
public:
    explicit Parser(const QString &path) : m_path(path) { }

    QVector<Path::Step> steps()
    {
        QVector<Path::Step> result = {step()};
        while (take(QLatin1Char('/')))
            result.append(step());
        if (!atEnd())
            fail(QStringLiteral("expected '/' or '['"));
        return result;
    }

private:
    Path::Step step()
    {
        Path::Step result;
        result.member = textUpTo(QStringLiteral("/[]"));
        if (result.member.isEmpty())
            fail(QStringLiteral("expected a member name"));
        while (take(QLatin1Char('['))) {
            const int start = m_at;
            const QString name = textUpTo(QStringLiteral("=,[]/\""));
            if (take(QLatin1Char('=')))
                readConditions(result, name);
            else if (name == QLatin1String("*"))
                readAll(result, start);
            else
                readPosition(result, name, start);
        }
        return result;
    }

    void readConditions(Path::Step &step, const QString &first)
    {
        step.conditions.append({first, text()});
        while (take(QLatin1Char(','))) {
            const QString name = textUpTo(QStringLiteral("=,[]/\""));
            if (!take(QLatin1Char('=')))
                fail(QStringLiteral("expected '='"));
            step.conditions.append({name, text()});
        }
        close();
    }

    void readAll(Path::Step &step, int start)
    {
        if (step.isAll || step.position > 0) {
            m_at = start;
            fail(QStringLiteral("unexpected '*'"));
        }
        step.isAll = true;
        close();
    }

    void readPosition(Path::Step &step, const QString &digits, int start)
    {
        if (step.position > 0 || step.isAll)
            fail(QStringLiteral("unexpected second position"));
        step.position = WholeNumber::read<int>(digits).value_or(0);
        if (step.position < 1) {
            m_at = start;
            fail(QStringLiteral("expected a position (counted from 1) or MEMBER=TEXT"));
        }
        close();
    }

    void close()
    {
        if (!take(QLatin1Char(']')))
            fail(QStringLiteral("expected ']'"));
    }

    QString text()
    {
        if (!take(QLatin1Char('"')))
            return textUpTo(QStringLiteral(",[]\""));
        QString result = QStringLiteral("");
        while (!atEnd() && m_path[m_at] != QLatin1Char('"')) {
            const QChar character = m_path[m_at++];
            result += character == QLatin1Char('\\') ? escaped() : character;
        }
        if (!take(QLatin1Char('"')))
            fail(QStringLiteral("expected '\"'"));
        return result;
    }

    QChar escaped()
    {
        const QChar which = atEnd() ? QChar() : m_path[m_at++];
        switch (which.unicode()) {
        case '"':
        case '\\':
            return which;
        case 'n':
            return QLatin1Char('\n');
        case 'r':
            return QLatin1Char('\r');
        case 't':
            return QLatin1Char('\t');
        case 'u': {
            const QByteArray digits = m_path.mid(m_at, 4).toLatin1();
            ushort code = 0;
            if (digits.size() == 4 && std::from_chars(digits.begin(), digits.end(), code, 16).ptr == digits.end()) {
                m_at += 4;
                return QChar(code);
            }
            break;
        }
        default:
            break;
        }
        fail(QStringLiteral("expected \\\" \\\\ \\n \\r \\t or \\u0000"));
    }

    QString textUpTo(const QString &ends)
    {
        const int start = m_at;
        while (!atEnd() && !ends.contains(m_path[m_at]))
            ++m_at;
        return m_path.mid(start, m_at - start);
    }

    bool take(QChar character)
    {
        if (atEnd() || m_path[m_at] != character)
            return false;
        ++m_at;
        return true;
    }

    bool atEnd() const { return m_at >= m_path.size(); }

    [[noreturn]] void fail(const QString &message) const
    {
        throw PathFailure(QStringLiteral("%1 at character %2 of the path").arg(message).arg(m_at + 1));
    }

    const QString m_path;
    int m_at = 0;
};

} // namespace

QVector<Path::Step> parsed(const QString &path)
{
    return Parser(path).steps();
}

} // namespace TunerDocuments::Paths
