// SPDX-License-Identifier: MIT
#include "documents/xml/XmlTexts.h"

using REPORTGENERATOR::XmlMarkup;

namespace TunerDocuments::XmlTexts {

QVector<XmlMarkup::Span> inElement(const XmlMarkup &markup, int element)
{
    return inPart(markup, markup.elements().at(element).content, element + 1);
}

QVector<XmlMarkup::Span> inPart(const XmlMarkup &markup, XmlMarkup::Span part, int element)
{
    const QByteArray &document = markup.document();
    // The end mark of a comment may not overlap the start mark: "<!--->" only begins one.
    const auto endOf = [&](const char *start, const char *mark, int from) {
        const int at = int(document.indexOf(mark, from + int(qstrlen(start))));
        return at < 0 ? part.end : at + int(qstrlen(mark));
    };
    QVector<XmlMarkup::Span> texts;
    for (int at = part.begin; at < part.end;) {
        const QByteArray next = document.mid(at, 9);
        int end = int(document.indexOf('<', at)); // of a text
        if (next.startsWith("<!--")) {
            end = endOf("<!--", "-->", at);
        } else if (next.startsWith("<?")) {
            end = endOf("<?", "?>", at);
        } else if (next == "<![CDATA[") {
            end = endOf("<![CDATA[", "]]>", at);
            texts.append({at, end});
        } else if (next.startsWith('<') && element < markup.elements().size()) {
            end = markup.elements().at(element).end;
            element = markup.elements().at(element).next;
        } else {
            end = end < 0 || end == at ? part.end : end;
            texts.append({at, end});
        }
        at = end;
    }
    return texts;
}

} // namespace TunerDocuments::XmlTexts
