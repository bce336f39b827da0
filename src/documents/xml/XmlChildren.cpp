// SPDX-License-Identifier: MIT
#include "documents/xml/XmlChildren.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <QStringList>

#include "documents/xml/XmlBlanks.h"

using namespace JobXml;

namespace TunerDocuments {

XmlChildren::XmlChildren(const Markup &markup, const XmlPlaces &places, const XmlText::Layout &documentLayout,
                         QVector<int> elements, const DataObject &object)
    : m_markup(markup), m_places(places), m_documentLayout(documentLayout), m_elements(std::move(elements)),
      m_object(object)
{
}

void XmlChildren::remove(int element)
{
    m_fates[element].isRemoved = true;
}

void XmlChildren::addBefore(int element, const QByteArray &text)
{
    m_fates[element].before.append(text);
}

void XmlChildren::addAfter(int element, const QByteArray &text)
{
    m_fates[element].after.append(text);
}

/// The child that a new one of that member follows, or that it precedes.
XmlChildren::Neighbor XmlChildren::neighborOf(const QString &member) const
{
    QStringList order;
    visit(m_object, [&](const MemberView &other) { order.append(other.GetName()); });
    const auto position = order.indexOf(member);
    const QVector<XmlPlaces::Child> children = m_places.childrenOf(m_elements.last(), m_object);
    Neighbor neighbor;
    for (const XmlPlaces::Child &child : children) {
        if (order.indexOf(child.member) < position)
            neighbor = {child.element, true};
    }
    if (neighbor.element < 0 && !children.isEmpty())
        neighbor = {children.first().element, false};
    return neighbor;
}

void XmlChildren::add(const QString &member, const QByteArrayList &texts)
{
    const Neighbor neighbor = neighborOf(member);
    if (neighbor.element < 0)
        m_first += texts;
    else if (neighbor.isBefore)
        m_fates[neighbor.element].after += texts;
    else
        m_fates[neighbor.element].before += texts;
}

/// Whether there is something in its place afterwards.
bool XmlChildren::isLeft(int element) const
{
    const auto fate = m_fates.find(element);
    return fate == m_fates.end() || !fate->second.isRemoved || !fate->second.before.isEmpty()
        || !fate->second.after.isEmpty();
}

/// The series of more than one child.
QVector<XmlChildren::Series> XmlChildren::seriesOfChildren() const
{
    const auto &elements = m_markup.elements();
    QVector<Series> result;
    for (const int element : m_elements) {
        int last = -1;
        bool continues = false; // the last series of the result
        const QVector<XmlPlaces::Child> children = m_places.childrenOf(element, m_object);
        for (const XmlPlaces::Child &child : children) {
            const int begin = elements.at(child.element).whole().begin;
            const bool isNext = last >= 0 && elements.at(last).next == child.element
                && m_markup.localName(elements.at(last)) == child.member;
            const QByteArray blanks = XmlBlanks::before(m_markup.document(), begin);
            const bool isInSeries =
                isNext && elements.at(last).whole().end + blanks.size() == begin && blanks.count('\n') > 1;
            if (isInSeries && !continues)
                result.append(Series{last});
            if (isInSeries)
                result.last().append(child.element);
            continues = isInSeries;
            last = child.element;
        }
    }
    return result;
}

/// The blanks between two children of a series.
REPORTGENERATOR::XmlMarkup::Span XmlChildren::gapBefore(const Series &series, int at) const
{
    return {m_markup.elements().at(series.at(at - 1)).whole().end, m_markup.elements().at(series.at(at)).whole().begin};
}

/// Blank lines go with the children that are removed, and separate those that are added, as long as some are left.
void XmlChildren::spread(const Series &series, std::map<int, QByteArray> &separators,
                         std::map<int, Markup::Span> &removed) const
{
    if (std::none_of(series.begin(), series.end(), [this](int child) { return isLeft(child); }))
        return;
    bool isAnyLeft = false; // so far
    for (int at = 0; at < series.size(); ++at) {
        const int child = series.at(at);
        const Markup::Span whole = m_markup.elements().at(child).whole();
        const Markup::Span gap = gapBefore(series, qMax(at, 1));
        separators[child] = m_markup.document().mid(gap.begin, gap.size());
        if (isLeft(child))
            isAnyLeft = true;
        else if (isAnyLeft)
            removed[child] = {gap.begin, whole.end};
        else
            removed[child] = {whole.begin, gapBefore(series, at + 1).end};
    }
}

Replacements XmlChildren::replacements() const
{
    Replacements out;
    std::map<int, QByteArray> separators;
    std::map<int, Markup::Span> removed;
    const QVector<Series> allSeries = m_fates.empty() ? QVector<Series>() : seriesOfChildren();
    for (const Series &series : allSeries)
        spread(series, separators, removed);
    for (const auto &[element, fate] : m_fates) {
        const XmlText::Layout layout = layoutAt(element);
        const auto blankLines = separators.find(element);
        const QByteArray separator = blankLines != separators.end() ? blankLines->second
            : layout.lineEnd.isEmpty()                              ? QByteArray()
                                                                    : layout.lineEnd + layout.indentation;
        const Markup::Span whole = m_markup.elements().at(element).whole();
        if (fate.isRemoved) {
            const QByteArray instead = (fate.before + fate.after).join(separator);
            const auto withGap = removed.find(element);
            const Markup::Span part = !instead.isEmpty() ? whole
                : withGap != removed.end()               ? withGap->second
                                                         : lineOf(whole);
            out.append({part.begin, part.end, instead});
            continue;
        }
        for (const QByteArray &text : fate.before)
            out.append({whole.begin, whole.begin, text + separator});
        const int end = separator.isEmpty() ? whole.end : endOfLineComments(whole.end);
        for (const QByteArray &text : fate.after)
            out.append({end, end, separator + text});
    }
    if (!m_first.isEmpty())
        out.append(firstChildren());
    return out;
}

/// After the comments that end the line of an element: they are about that element.
int XmlChildren::endOfLineComments(int end) const
{
    const QByteArray &document = m_markup.document();
    int last = end; // the end of the last comment
    for (int at = end; at < document.size();) {
        const char character = document.at(at);
        if (character == '\n' || character == '\r')
            return last;
        if (character == ' ' || character == '\t') {
            ++at;
            continue;
        }
        constexpr int startSize = 4; // of "<!--", which the end may not overlap
        const bool isComment = document.mid(at, startSize) == "<!--";
        const int close = isComment ? int(document.indexOf("-->", at + startSize)) : -1;
        if (close < 0)
            break;
        at = last = close + 3;
    }
    return end; // something else is on the line
}

Replacement XmlChildren::firstChildren() const
{
    const Markup::Element &place = m_markup.elements().at(m_elements.last());
    const QByteArray &document = m_markup.document();
    const XmlText::Layout used = layoutAt(-1);
    const QByteArray separator = used.lineEnd.isEmpty() ? QByteArray() : used.lineEnd + used.indentation;
    const QByteArray children = separator + m_first.join(separator);
    QByteArray outerIndentation = used.indentation;
    outerIndentation.chop(used.step.size());
    const QByteArray end = used.lineEnd.isEmpty() ? QByteArray() : used.lineEnd + outerIndentation;
    const QByteArray endTag = "</" + document.mid(place.name.begin, place.name.size()) + '>';
    constexpr int endSize = 2; // "/>"
    if (place.isEmptyTag)
        return {place.startTag.end - endSize, place.startTag.end, '>' + children + end + endTag};
    // After the comments, and whatever else is there.
    const Markup::Span kept = XmlBlanks::trimmed(document, place.content);
    return {kept.size() == 0 ? place.content.begin : kept.end, place.content.end, children + end};
}

namespace {

/// The blanks before an element, if it is the first thing on its line.
std::optional<QByteArray> indentationOf(const REPORTGENERATOR::XmlMarkup &markup, int element)
{
    const QByteArray blanks = XmlBlanks::before(markup.document(), markup.elements().at(element).startTag.begin);
    const auto lineStart = blanks.lastIndexOf('\n');
    return lineStart < 0 ? std::optional<QByteArray>() : blanks.mid(lineStart + 1);
}

} // namespace

XmlText::Layout XmlChildren::layoutOf(const Markup &markup)
{
    XmlText::Layout layout;
    const QByteArray &document = markup.document();
    const auto &elements = markup.elements();
    if (elements.isEmpty())
        return layout;
    const int feed = int(document.indexOf('\n', elements.first().startTag.begin));
    layout.lineEnd = feed < 0                       ? QByteArray()
        : feed > 0 && document.at(feed - 1) == '\r' ? QByteArray("\r\n")
                                                    : QByteArray("\n");
    // The root's first child shows the step of the document.
    const QByteArray outer = indentationOf(markup, 0).value_or(QByteArray());
    const auto first = elements.size() > 1 ? indentationOf(markup, 1) : std::optional<QByteArray>();
    if (first && first->startsWith(outer) && first->size() > outer.size())
        layout.step = first->mid(outer.size());
    return layout;
}

XmlText::Layout XmlChildren::layoutFor(const QString &member) const
{
    return layoutAt(neighborOf(member).element);
}

XmlText::Layout XmlChildren::layoutAt(int neighbor) const
{
    const int parent = m_elements.last();
    XmlText::Layout layout = m_documentLayout;
    const QLatin1String name = m_markup.bytes(m_markup.elements().at(neighbor < 0 ? parent : neighbor).name);
    const auto colon = QByteArray::fromRawData(name.data(), name.size()).indexOf(':');
    layout.prefix = QByteArray(name.data(), colon + 1);
    const auto ofNeighbor = neighbor < 0 ? std::optional<QByteArray>() : indentationOf(m_markup, neighbor);
    if (neighbor >= 0 && !ofNeighbor)
        layout.lineEnd.clear();
    layout.indentation =
        ofNeighbor ? *ofNeighbor : indentationOf(m_markup, parent).value_or(QByteArray()) + layout.step;
    return layout;
}

XmlText::Layout XmlChildren::layoutLike(int item) const
{
    XmlText::Layout layout = layoutAt(item);
    const Markup::Element &element = m_markup.elements().at(item);
    const QLatin1String text = m_markup.bytes(element.whole());
    const bool hasChildren = element.next != item + 1;
    if (!layout.lineEnd.isEmpty() && hasChildren && std::find(text.begin(), text.end(), '\n') == text.end())
        layout.lineEnd.clear();
    return layout;
}

/// An element, and its line if nothing else is on it.
REPORTGENERATOR::XmlMarkup::Span XmlChildren::lineOf(const Markup::Span &element) const
{
    const QByteArray &document = m_markup.document();
    const auto isSpace = [&](int at) { return document.at(at) == ' ' || document.at(at) == '\t'; };
    Markup::Span line = element;
    while (line.begin > 0 && isSpace(line.begin - 1))
        --line.begin;
    while (line.end < document.size() && isSpace(line.end))
        ++line.end;
    const bool beginsLine = line.begin > 0 && document.at(line.begin - 1) == '\n';
    const bool endsLine =
        line.end < document.size() && (document.at(line.end) == '\n' || document.at(line.end) == '\r');
    if (!beginsLine || !endsLine)
        return element;
    line.end +=
        document.at(line.end) == '\r' && line.end + 1 < document.size() && document.at(line.end + 1) == '\n' ? 2 : 1;
    return line;
}

} // namespace TunerDocuments
